#pragma once
// What random cases of selectors share. KOREL_CASES is the number of cases that each selector gets; the usual one is
// small. A failure tells selector, modulus and number of the case, which determine it.

#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <span>
#include <string>

#include "algebra/modular/modular_polynomials.h"
#include "algebra/modular/plain_polynomials.h"
#include "algebra/modular/selectors.h"
#include "kernel_fixture.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {

inline int casesOfSelector(int usual) {
  const char* wanted = std::getenv("KOREL_CASES");
  return wanted == nullptr ? usual : std::atoi(wanted);
}

/// Raw, machine words and integers; primes, and composite ones whose residues may have no inverse.
struct CampaignModulus {
  const char* text;
  bool isSmall;  // below 2^32
};
constexpr CampaignModulus campaignModuli[] = {{"2", true},          {"3", true},     {"101", true},
                                              {"46327", true},      {"46337", true}, {"100000000000000000039", false},
                                              {"10^99+289", false}, {"6", true},     {"8", true},
                                              {"46320", true},      {"46350", true}, {"2^32-5", true},
                                              {"2^64*3", false},    {"10^60", false}};

/// What a selector should answer: a value, or the text of an error.
struct Answer {
  DAG value{};
  std::string error{};
};
inline Answer missingInverse() { return {DAG(), "the modular inverse does not exist"}; }

inline DAG listOf(const std::vector<DAG>& members) {
  DAG sequence = newl2(static_cast<Word>(members.size() + 1), EXPSEQ);
  for (std::size_t i = 0; i < members.size(); ++i) sequence[static_cast<Word>(i) + 1] = members[i];
  return simpl(new2(LIST, simpl(sequence)));
}

/// One random case of a selector: operands, and models of them.
template <class Numbers>
struct SelectorCase {
  using Plain = PlainPolynomials<Numbers>;
  using Number = typename Plain::Number;
  using List = typename Plain::List;

  Plain plain;
  const SelectorFamily& family;
  const char* selector;
  std::mt19937_64 random;
  DAG x, y, m;

  std::uint64_t below(std::uint64_t n) { return random() % n; }
  bool chance(std::uint64_t n) { return below(n) == 0; }

  Number residue() {
    switch (below(6)) {
      case 0: return plain.zero();
      case 1: return plain.n.of(std::int64_t{-1});
      default: break;
    }
    Number r = plain.zero();
    const Number shift = plain.n.of(std::int64_t{1} << 29);
    for (int bits = 0; bits < (isImmediate(m) ? 1 : 360); bits += 29)
      r = plain.n.add(plain.n.multiply(r, shift), plain.n.of(static_cast<std::int64_t>(random() >> 35)));
    return r;
  }
  /// Mostly a few coefficients, sometimes up to 300; with zeros and extreme ones among them.
  List list(long most = 300) {
    const std::uint64_t kind = below(40);
    const long range = kind == 0 ? 301 : kind < 6 ? 61 : 13;
    const long n = static_cast<long>(below(static_cast<std::uint64_t>(std::min(range, most + 1)) + 1));
    List a;
    for (long i = 0; i < n; ++i) a.push_back(residue());
    return plain.trimmed(a);
  }
  DAG integer(Number c) { return plain.n.integer(c); }
  DAG dense(const List& a, DAG indeterminate) {
    DAG r = newDense(indeterminate, m, static_cast<std::int64_t>(a.size()) - 1);
    for (std::size_t i = 0; i < a.size(); ++i) setDenseCoefficient(r, static_cast<std::int64_t>(i), integer(a[i]));
    return finishedDense(r);
  }
  DAG dense(const List& a) { return dense(a, x); }
  DAG small(std::int64_t n) { return immediate(static_cast<std::int32_t>(n)); }

  DAG callOf(const char* name, const std::vector<DAG>& arguments) {
    DAG sequence = newl2(static_cast<Word>(arguments.size() + 1), EXPSEQ);
    for (std::size_t i = 0; i < arguments.size(); ++i) sequence[static_cast<Word>(i) + 1] = arguments[i];
    return simpl(new3(FUNCTION, naminstall(name), simpl(sequence)));
  }
  DAG run(const std::vector<DAG>& arguments) { return runSelector(family, callOf(selector, arguments), m); }

  /// Runs the selector and compares. `more` looks at what it has assigned.
  template <class More>
  void expect(const std::vector<DAG>& arguments, const Answer& answer, More more) {
    DAG value;
    const std::string error = errorOf([&] { value = run(arguments); });
    auto shown = [&] { return text(callOf(selector, arguments)) + " modulo " + text(m); };
    if (error != answer.error) ADD_FAILURE() << shown() << ": \"" << error << "\" for \"" << answer.error << "\"";
    else if (!error.empty()) return;
    else if (value != answer.value) ADD_FAILURE() << shown() << ": " << text(value) << " for " << text(answer.value);
    else more();
  }
  void expect(const std::vector<DAG>& arguments, const Answer& answer) {
    expect(arguments, answer, [] {});
  }
  void expect(const std::vector<DAG>& arguments, DAG value) { expect(arguments, Answer{value}); }
  /// "modp1: invalid arguments to function %1".
  void expectInvalid(const std::vector<DAG>& arguments) {
    std::string message = family.invalidArguments;
    message.replace(message.find("%1"), 2, selector);
    expect(arguments, Answer{DAG(), message});
  }
};

/// A row of a campaign: the case on either kind of numbers.
struct SelectorModel {
  const char* name;
  void (*onMachine)(SelectorCase<MachineNumbers>&);
  void (*onKernel)(SelectorCase<KernelNumbers>&);
};
#define KOREL_MODEL(name, function) \
  { name, function<SelectorCase<MachineNumbers>>, function<SelectorCase<KernelNumbers>> }

/// Case `k` of a selector.
inline void runCase(const SelectorFamily& family, const SelectorModel& model, int k) {
  const CampaignModulus& modulus = campaignModuli[static_cast<std::size_t>(k) % std::size(campaignModuli)];
  SCOPED_TRACE(std::string(model.name) + " modulo " + modulus.text + ", case " + std::to_string(k));
  DAG m = simpl(valueOf(modulus.text));
  std::mt19937_64 random(static_cast<std::uint64_t>(k) * 1000003 + 11);
  if (modulus.isSmall) {
    SelectorCase<MachineNumbers> one = {{{m}}, family, model.name, random, parsed("x"), parsed("y"), m};
    model.onMachine(one);
  } else {
    SelectorCase<KernelNumbers> one = {{{m}}, family, model.name, random, parsed("x"), parsed("y"), m};
    model.onKernel(one);
  }
}

/// Runs all cases of each selector, some hundreds at a time in a process of their own: what a running statement has made
/// is not collected before its end.
inline void runCampaign(const SelectorFamily& family, std::span<const SelectorModel> models, int usualCases) {
  constexpr int batch = 200;
  const int cases = casesOfSelector(usualCases);
  // No row of the family's table is without a model.
  ASSERT_EQ(models.size(), family.selectorCount);
  for (std::size_t i = 0; i < models.size(); ++i) ASSERT_STREQ(models[i].name, family.selectors[i].name);
  for (const SelectorModel& model : models)
    for (int first = 0; first < cases; first += batch) {
      const ChildResult result = inChild([&] {
        for (int k = first; k < std::min(first + batch, cases) && !testing::Test::HasFailure(); ++k)
          runCase(family, model, k);
        if (testing::Test::HasFailure()) std::exit(1);
      });
      ASSERT_EQ(result.status, 0) << result.output;
    }
}

}  // namespace korel::test
