#include "algebra/series/prime_base.h"

#include <algorithm>

#include "eval/simplify/simplify.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"

namespace korel {

namespace {

Group residueOf(const Group* a, std::size_t n, Group divisor) {
  const GroupDivisor by(divisor);
  Group rest = 0;
  for (std::size_t i = n; i-- > 0;) rest = by.split(Wide{rest} * groupBase + a[i]).rest;
  return rest;
}

}  // namespace

PrimeBase::PrimeBase(engine::Arena& arena, std::int32_t bound) : arena_(arena) {
  const auto size = static_cast<std::size_t>(std::max(bound, 2)) + 1;
  auto* isComposite = arena.makeZero<bool>(size);
  primes_ = arena.make<Prime>(size);
  run_ = arena.make<Run>(size);
  for (std::size_t p = 2; p < size; ++p) {
    if (isComposite[p]) continue;
    for (std::size_t k = p * p; k < size; k += p) isComposite[k] = true;
    primes_[count_] = {p, p, 1};
    for (Prime& prime = primes_[count_]; Wide{prime.power} * p < groupBase; ++prime.exponent) prime.power *= p;
    if (runs_ == 0 || Wide{run_[runs_ - 1].product} * p >= groupBase) run_[runs_++] = {count_, count_, 1};
    run_[runs_ - 1].product *= p;
    run_[runs_ - 1].end = ++count_;
  }
  arena.free(isComposite);
}

// A number that is divided by one factor after the other: small ones are gathered to groups.
struct PrimeBase::Dividend {
  Group* a;
  std::size_t n;
  Group pending = 1;

  void divideBy(Group factor) {
    if (Wide{pending} * factor >= groupBase) settle();
    pending *= factor;
  }
  void settle() {
    if (pending == 1) return;
    divideGroupsBy(a, a, n, pending);
    n = significantGroups(a, n);
    pending = 1;
  }
  bool isOne() const { return n == 1 && a[0] == 1; }
};

// Divides by the prime, which goes at least once, `most` times at the utmost; tells how often it went.
std::int32_t PrimeBase::divideOut(Dividend& x, const Prime& prime, std::int32_t most) {
  std::int32_t found = 0;
  while (found < most) {
    const std::int32_t k = std::min(prime.exponent, most - found);
    Group power = prime.power;
    for (std::int32_t i = k; i < prime.exponent; ++i) power /= prime.p;
    std::int32_t v = k;
    if (Group rest = most == 1 ? 0 : residueOf(x.a, x.n, power); rest != 0) {
      power = 1;
      for (v = 0; rest % prime.p == 0; rest /= prime.p, ++v) power *= prime.p;
    }
    x.divideBy(power);
    found += v;
    if (v < k) break;
    if (found < most) x.settle();
  }
  return found;
}

std::size_t PrimeBase::takeOut(Group* a, std::size_t n, const SmoothNumber& most, SmoothNumber& taken) const {
  Dividend x{a, n};
  std::fill_n(taken.exponents, std::max(taken.used, most.used), 0);
  taken.used = most.used;
  for (int k = 0; k < runs_ && run_[k].first < most.used && !x.isOne(); ++k) {
    const int first = run_[k].first, end = std::min(run_[k].end, most.used);
    const std::int32_t* e = most.exponents;
    if (std::all_of(e + first, e + end, [](std::int32_t limit) { return limit == 0; })) continue;
    // What still waits to be divided out has none of these primes.
    const Group rest = residueOf(a, x.n, run_[k].product);
    for (int i = first; i < end; ++i)
      if (e[i] > 0 && rest % primes_[i].p == 0) taken.exponents[i] = divideOut(x, primes_[i], e[i]);
    if (x.n <= 2) x.settle();
  }
  x.settle();
  taken.trim();
  return x.n;
}

void PrimeBase::assign(SmoothNumber& x, const SmoothNumber& value) const {
  std::copy_n(value.exponents, value.used, x.exponents);
  if (x.used > value.used) std::fill(x.exponents + value.used, x.exponents + x.used, 0);
  x.used = value.used;
}

void PrimeBase::multiply(SmoothNumber& x, const SmoothNumber& more) const {
  for (int i = 0; i < more.used; ++i) x.exponents[i] += more.exponents[i];
  x.used = std::max(x.used, more.used);
}

void PrimeBase::multiply(SmoothNumber& x, std::int32_t number) const {
  for (int i = 0; number != 1; ++i)
    for (const auto p = static_cast<std::int32_t>(primes_[i].p); number % p == 0; number /= p) {
      ++x.exponents[i];
      x.used = std::max(x.used, i + 1);
    }
}

void PrimeBase::divide(SmoothNumber& x, const SmoothNumber& divisor) const {
  for (int i = 0; i < divisor.used; ++i) x.exponents[i] -= divisor.exponents[i];
  x.trim();
}

bool PrimeBase::factor(DAG number, SmoothNumber& x) const {
  const std::size_t n = groupCount(number);
  if (n == 1) {
    std::fill_n(x.exponents, x.used, 0);
    x.used = 0;
    Group rest;
    packInteger(number, &rest);
    for (int i = 0; i < count_ && rest != 1; ++i)
      for (; rest % primes_[i].p == 0; rest /= primes_[i].p) {
        ++x.exponents[i];
        x.used = i + 1;
      }
    return rest == 1;
  }
  auto* groups = arena_.make<Group>(n);
  packInteger(number, groups);
  SmoothNumber unlimited = one();
  std::fill_n(unlimited.exponents, count_, INT32_MAX);
  unlimited.used = count_;
  const std::size_t left = takeOut(groups, n, unlimited, x);
  const bool isOne = left == 1 && groups[0] == 1;
  arena_.free(groups);
  arena_.free(unlimited.exponents);
  return isOne;
}

std::size_t PrimeBase::groupsOf(const SmoothNumber& x) const {
  std::size_t factors = 1;
  forEachFactor(x, [&](Group) { ++factors; });
  return factors;
}

DAG PrimeBase::numberOf(const SmoothNumber& x) const {
  if (x.isOne()) return cons1;
  auto* groups = arena_.make<Group>(groupsOf(x) + 1);
  std::size_t n = 1;
  groups[0] = 1;
  forEachFactor(x, [&](Group factor) {
    if (Group carry = scaleGroups(groups, groups, n, factor); carry != 0) groups[n++] = carry;
  });
  DAG number = simpl(integerOfGroups(groups, n, INTPOS));
  arena_.free(groups);
  return number;
}

}  // namespace korel
