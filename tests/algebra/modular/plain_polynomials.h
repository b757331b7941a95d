#pragma once
// Plain models for selectors: residues as machine words or as integers of the kernel, polynomials as lists of them, each
// operation by its definition.

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "eval/simplify/simplify.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "store/vocabulary.h"

namespace korel::test {

/// Residues modulo a number below 2^32.
struct MachineNumbers {
  using Number = std::uint64_t;
  DAG modulus;
  Number m = static_cast<Number>(LongLongValue(modulus));

  Number of(DAG integer) const { return static_cast<Number>(LongLongValue(simpl(imod(integer, modulus, false)))); }
  DAG integer(Number a) const { return simpl(NewInteger(static_cast<std::int64_t>(a))); }
  Number of(std::int64_t k) const {
    const auto size = static_cast<std::int64_t>(m);
    return static_cast<Number>((k % size + size) % size);
  }
  Number add(Number a, Number b) const { return (a + b) % m; }
  Number negate(Number a) const { return a == 0 ? 0 : m - a; }
  Number multiply(Number a, Number b) const { return a * b % m; }
  std::optional<Number> inverse(Number a) const {
    std::int64_t r = static_cast<std::int64_t>(m), s = static_cast<std::int64_t>(a), u = 0, v = 1;
    while (s != 0) {
      const std::int64_t q = r / s;
      r = std::exchange(s, r - q * s);
      u = std::exchange(v, u - q * v);
    }
    if (r != 1) return std::nullopt;
    return of(u);
  }
};

/// Residues modulo any number.
struct KernelNumbers {
  using Number = DAG;
  DAG modulus;

  Number of(DAG integer) const { return simpl(imod(simpl(integer), modulus, false)); }
  Number of(std::int64_t k) const { return of(NewInteger(k)); }
  DAG integer(Number a) const { return a; }
  Number add(Number a, Number b) const { return of(korel::add(a, b)); }
  Number negate(Number a) const { return of(korel::negate(a)); }
  Number multiply(Number a, Number b) const { return of(mul(a, b)); }
  std::optional<Number> inverse(Number a) const {
    DAG r = modulus, s = a, u = cons0, v = cons1;
    while (s != cons0) {
      DAG q, rest = simpl(rem(r, s, &q));
      q = simpl(q);
      r = std::exchange(s, rest);
      u = std::exchange(v, simpl(korel::add(u, korel::negate(simpl(mul(q, v))))));
    }
    if (r != cons1) return std::nullopt;
    return of(u);
  }
};

/// Polynomials are lists of coefficients, lowest first, without zeros on top. Where an inverse is wanted that doesn't
/// exist, there is no result.
template <class Numbers>
struct PlainPolynomials {
  using Number = typename Numbers::Number;
  using List = std::vector<Number>;
  Numbers n;

  Number zero() const { return n.of(std::int64_t{0}); }
  Number one() const { return n.of(std::int64_t{1}); }
  static long degree(const List& a) { return static_cast<long>(a.size()) - 1; }
  List trimmed(List a) const {
    while (!a.empty() && a.back() == zero()) a.pop_back();
    return a;
  }
  List constant(Number c) const { return trimmed({c}); }
  Number at(const List& a, long i) const { return i < 0 || i > degree(a) ? zero() : a[static_cast<std::size_t>(i)]; }

  List sum(const List& a, const List& b) const {
    List r;
    for (long i = 0; i <= std::max(degree(a), degree(b)); ++i) r.push_back(n.add(at(a, i), at(b, i)));
    return trimmed(r);
  }
  List negative(List a) const {
    for (Number& c : a) c = n.negate(c);
    return a;
  }
  List difference(const List& a, const List& b) const { return sum(a, negative(b)); }
  List product(const List& a, const List& b) const {
    if (a.empty() || b.empty()) return {};
    List r(a.size() + b.size() - 1, zero());
    for (std::size_t i = 0; i < a.size(); ++i)
      for (std::size_t j = 0; j < b.size(); ++j) r[i + j] = n.add(r[i + j], n.multiply(a[i], b[j]));
    return trimmed(r);
  }
  List scaled(const List& a, Number c) const { return product(a, constant(c)); }
  Number value(const List& a, Number point) const {
    Number r = zero();
    for (long i = degree(a); i >= 0; --i) r = n.add(n.multiply(r, point), at(a, i));
    return r;
  }
  List derivative(const List& a) const {
    List r;
    for (long i = 1; i <= degree(a); ++i) r.push_back(n.multiply(at(a, i), n.of(std::int64_t{i})));
    return trimmed(r);
  }
  List shifted(const List& a, long by) const {
    List r;
    if (a.empty()) return r;
    for (long i = 0; i <= degree(a) + by; ++i) r.push_back(at(a, i - by));
    return trimmed(r);
  }

  struct Quotient {
    List q, r;
  };
  std::optional<Quotient> divided(List a, const List& b) const {
    if (a.size() < b.size()) return Quotient{{}, a};
    const std::optional<Number> inverse = n.inverse(b.back());
    if (!inverse) return std::nullopt;
    List q(a.size() - b.size() + 1, zero());
    for (std::size_t k = q.size(); k-- > 0;) {
      q[k] = n.multiply(a[k + b.size() - 1], *inverse);
      for (std::size_t j = 0; j < b.size(); ++j) a[k + j] = n.add(a[k + j], n.negate(n.multiply(q[k], b[j])));
    }
    return Quotient{trimmed(q), trimmed(a)};
  }
  std::optional<List> monic(const List& a) const {
    const std::optional<Number> inverse = n.inverse(a.back());
    if (!inverse) return std::nullopt;
    return scaled(a, *inverse);
  }
  std::optional<List> gcd(List a, List b) const {
    if (a.size() < b.size()) std::swap(a, b);
    while (b.size() > 1) {
      const std::optional<Quotient> step = divided(a, b);
      if (!step) return std::nullopt;
      a = std::exchange(b, step->r);
    }
    if (b.size() == 1 || a.size() == 1) return List{one()};
    if (a.empty()) return a;
    return monic(a);
  }
  struct Cofactors {
    List g, s;
  };
  std::optional<Cofactors> gcdex(List a, List b) const {
    List s = {one()}, t;
    while (!b.empty()) {
      const std::optional<Quotient> step = divided(a, b);
      if (!step) return std::nullopt;
      a = std::exchange(b, step->r);
      s = std::exchange(t, difference(s, product(step->q, t)));
    }
    if (a.empty()) return Cofactors{a, s};
    const std::optional<Number> inverse = n.inverse(a.back());
    if (!inverse) return std::nullopt;
    return Cofactors{scaled(a, *inverse), scaled(s, *inverse)};
  }
  /// By repeated products.
  std::optional<List> powmod(const List& a, int exponent, const List& b) const {
    const std::optional<Quotient> base = divided(a, b);
    if (!base) return std::nullopt;
    List r = base->r;
    if (exponent == 0) r = {one()};
    for (int i = 1; i < exponent; ++i) {
      const std::optional<Quotient> step = divided(product(r, base->r), b);
      if (!step) return std::nullopt;
      r = step->r;
    }
    return r;
  }
  Number power(Number a, long exponent) const {
    Number r = one();
    for (long i = 0; i < exponent; ++i) r = n.multiply(r, a);
    return r;
  }
  /// By remainders; the sign is that of Sylvester's matrix.
  std::optional<Number> resultant(List a, List b) const {
    if (a.empty() || b.empty()) return zero();
    Number r = one();
    auto turn = [&] {
      if ((degree(a) & degree(b) & 1) != 0) r = n.negate(r);
      std::swap(a, b);
    };
    if (a.size() < b.size()) turn();
    while (b.size() > 1) {
      const std::optional<Quotient> step = divided(a, b);
      if (!step) return std::nullopt;
      if (step->r.empty()) return zero();
      r = n.multiply(r, power(b.back(), degree(a) - degree(step->r)));
      if ((degree(a) & degree(b) & 1) != 0) r = n.negate(r);
      a = std::exchange(b, step->r);
    }
    return n.multiply(r, power(b.back(), degree(a)));
  }
  List translated(const List& a, Number c) const {
    List r;
    for (long i = degree(a); i >= 0; --i) r = sum(product(r, {c, one()}), constant(at(a, i)));
    return r;
  }
};

}  // namespace korel::test
