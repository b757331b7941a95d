#pragma once
// A plain model of dense polynomials modulo m: lists of integers, added, multiplied and reduced one by one.

#include <random>
#include <string>
#include <vector>

#include "algebra/modular/modular_polynomials.h"
#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"

namespace korel::test {

using Model = std::vector<DAG>;

struct ModelRing {
  DAG m;

  DAG reduced(DAG x) const { return simpl(imod(simpl(x), m, false)); }
  Model trimmed(Model a) const {
    while (!a.empty() && a.back() == cons0) a.pop_back();
    return a;
  }
  static DAG at(const Model& a, std::size_t i) { return i < a.size() ? a[i] : cons0; }
  Model sum(const Model& a, const Model& b, DAG factor = cons1) const {
    Model r;
    for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i)
      r.push_back(reduced(add(at(a, i), mul(factor, at(b, i)))));
    return trimmed(r);
  }
  Model product(const Model& a, const Model& b) const {
    if (a.empty() || b.empty()) return {};
    Model r(a.size() + b.size() - 1, cons0);
    for (std::size_t i = 0; i < a.size(); ++i)
      for (std::size_t j = 0; j < b.size(); ++j) r[i + j] = reduced(add(r[i + j], mul(a[i], b[j])));
    return trimmed(r);
  }
  DAG value(const Model& a, DAG point) const {
    DAG r = cons0;
    for (std::size_t i = a.size(); i-- > 0;) r = reduced(add(mul(r, point), a[i]));
    return r;
  }
};

inline Model modelOf(DAG a) {
  Model r;
  for (long i = 0; i <= denseDegree(a); ++i) r.push_back(denseCoefficient(a, i));
  return r;
}
inline DAG denseOf(const Model& a, DAG x, DAG m) {
  DAG r = newDense(x, m, static_cast<std::int64_t>(a.size()) - 1);
  for (std::size_t i = 0; i < a.size(); ++i) setDenseCoefficient(r, static_cast<std::int64_t>(i), a[i]);
  return finishedDense(r);
}

/// Random polynomials, among them sparse ones, those with extreme coefficients, constants and zero.
class RandomPolynomials {
 public:
  explicit RandomPolynomials(std::uint32_t seed) : random_(seed) {}

  std::uint32_t below(std::uint32_t n) { return static_cast<std::uint32_t>(random_() % n); }
  DAG residue(const ModelRing& ring) {
    switch (below(8)) {
      case 0: return cons0;
      case 1: return ring.reduced(cons1);
      case 2: return ring.reduced(consm1);
      default: break;
    }
    DAG r = cons0;
    for (int bits = 0; bits < 400 && (bits == 0 || !isImmediate(ring.m)); bits += 29)
      r = add(mul(r, immediate(1 << 29)), immediate(static_cast<std::int32_t>(random_() >> 35)));
    return ring.reduced(r);
  }
  DAG polynomial(const ModelRing& ring, DAG x, long mostDegree) {
    const long n = static_cast<long>(below(static_cast<std::uint32_t>(mostDegree + 2)));
    Model a;
    for (long i = 0; i < n; ++i) a.push_back(residue(ring));
    return denseOf(ring.trimmed(a), x, ring.m);
  }

 private:
  std::mt19937_64 random_;
};

/// Moduli of all forms: the raw ones to their limit, machine words, several words, even and odd composites.
inline const std::vector<const char*>& modelModuli() {
  static const std::vector<const char*> moduli = {
      "2",          "3",   "101",   "46327", "46337", "4294967291", "100000000000000000039",
      "10^100+267",  // primes
      "4",          "6",   "46320", "46332", "2^32",  "2^64",       "2^64*3",
      "10^20",      "6^40"};
  return moduli;
}
constexpr std::size_t primeModuli = 8;

}  // namespace korel::test
