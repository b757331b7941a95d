#pragma once
// Integers for tests: how they are made, written, and checked by independent routes.
//
// One route is GMP, where it is installed; the other, always there, are residues modulo primes that
// have nothing in common with the base. Random cases come from a fixed seed, which failures print.

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "numbers/integer/integer_space.h"
#include "store/constants.h"
#include "store/generations.h"

#ifdef KOREL_HAVE_GMP
#include <gmp.h>
#endif

namespace korel::test {

/// Decimal text of an integer in either form.
inline std::string decimal(DAG x) {
  std::string text(static_cast<std::size_t>(ilength(x)) + 12, '\0');
  text.resize(static_cast<std::size_t>(writeDecimal(x, text.data()) - text.data()));
  return text;
}

/// The canonical integer of a decimal text.
inline DAG integer(const std::string& text) {
  bool negative = text[0] == '-';
  std::string digits = negative ? text.substr(1) : text;
  auto count = static_cast<Word>((digits.size() + 3) / 4);
  DAG x = news(count + 1);
  for (Word i = 0; i < count; ++i) {
    std::size_t end = digits.size() - 4 * i, from = end < 4 ? 0 : end - 4;
    digitsOf(x)[i] = static_cast<Word>(std::stoul(digits.substr(from, end - from)));
  }
  return settled(withDigits(x, negative ? INTNEG : INTPOS, count), count + 1);
}

/// Heap form of an integer in either form, fresh.
inline DAG heap(DAG x) { return isImmediate(x) ? NewSoftInt(x) : CopyAlg(x); }

/// Value modulo p below 2^62, in [0, p).
inline std::uint64_t residue(DAG x, std::uint64_t p) {
  if (isImmediate(x)) {
    std::int64_t r = immediateValue(x) % static_cast<std::int64_t>(p);
    return static_cast<std::uint64_t>(r < 0 ? r + static_cast<std::int64_t>(p) : r);
  }
  unsigned __int128 r = 0;
  for (Word i = digitCount(x); i-- > 0;) r = (r * 10000 + digitsOf(x)[i]) % p;
  auto rest = static_cast<std::uint64_t>(r);
  return hasTag(x, INTNEG) && rest != 0 ? p - rest : rest;
}

constexpr std::uint64_t testPrimes[] = {2305843009213693951u, 1000000007u, 998244353u, 65537u};

inline std::uint64_t timesModulo(std::uint64_t a, std::uint64_t b, std::uint64_t p) {
  return static_cast<std::uint64_t>(static_cast<unsigned __int128>(a) * b % p);
}

class Random {
 public:
  /// The operands and results of these tests lie in spaces longer than they need, which the collector
  /// cannot walk over: from here on it stays away.
  explicit Random(std::uint64_t seed) : seed(seed), engine_(seed) { nextgc = std::numeric_limits<std::int64_t>::max(); }
  const std::uint64_t seed;

  std::int64_t below(std::int64_t n) { return static_cast<std::int64_t>(engine_() % static_cast<std::uint64_t>(n)); }
  /// Heap integer of exactly n digits of base 10000, of one of several kinds: random, all 9999, a power
  /// of the base, a power of ten, few digits that aren't 0.
  DAG heapOf(Word n) {
    DAG x = news(n + 1);
    Word* digit = digitsOf(x);
    int kind = static_cast<int>(below(8));
    for (Word i = 0; i < n; ++i)
      digit[i] = kind == 0   ? 9999
                 : kind <= 2 ? 0
                 : kind == 3 ? (below(6) == 0 ? static_cast<Word>(below(10000)) : 0)
                             : static_cast<Word>(below(10000));
    if (digit[n - 1] == 0) {
      if (kind == 2) digit[n - 1] = static_cast<Word>(pow10[below(4)]);
      else digit[n - 1] = static_cast<Word>(kind == 1 ? 1 : 1 + below(9999));
    }
    setHeader(x, INTPOS, n + 1);
    return x;
  }
  /// Canonical integer of up to n digits, of either sign; zero and immediates among them.
  DAG upTo(Word n) {
    auto length = static_cast<Word>(below(n + 1));
    if (length == 0) return immediate(static_cast<std::int32_t>(below(7)) - 3);
    DAG x = heapOf(length);
    if (below(2) != 0) negateint(x);
    return MakeImmediate(x);
  }

 private:
  std::mt19937_64 engine_;
};

#ifdef KOREL_HAVE_GMP
/// A number of GMP that cleans up behind itself.
struct Big {
  mpz_t value;
  Big() { mpz_init(value); }
  explicit Big(DAG x) { mpz_init_set_str(value, decimal(x).c_str(), 10); }
  ~Big() { mpz_clear(value); }
  Big(const Big&) = delete;
  Big& operator=(const Big&) = delete;
  operator mpz_ptr() { return value; }
  std::string text() const {
    std::string s(mpz_sizeinbase(value, 10) + 2, '\0');
    mpz_get_str(s.data(), 10, value);
    s.resize(s.find('\0'));
    return s;
  }
};
#endif

}  // namespace korel::test
