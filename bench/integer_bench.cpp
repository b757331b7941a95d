// Integers against GMP: products, quotients, roots, greatest common divisors, powers, decimal text.

#include <algorithm>
#include <random>
#include <string>

#include "eval/simplify/simplify.h"
#include "numbers/integer/integer.h"
#include "numbers/integer/integer_functions.h"
#include "row.h"
#include "store/objects.h"
#include "text/read/source.h"

#ifdef KOREL_HAVE_GMP
#include <gmp.h>
#endif

using namespace korel;
using namespace korel::bench;

namespace {

#ifdef KOREL_HAVE_GMP

std::string digits(int n, unsigned seed) {
  std::mt19937 random(seed);
  std::string s;
  for (int i = 0; i < n; ++i) s += static_cast<char>('0' + random() % 10);
  s[0] = '7';
  return s;
}

template <class Korel, class Gmp>
void pair(const char* what, int n, int rounds, Korel&& korel, Gmp&& gmp) {
  char name[64];
  std::snprintf(name, sizeof name, "%s, %d digits", what, n);
  row(name, "us", 1e6 / rounds, "GMP", korel, gmp);
}

/// A row of one round, for what takes half a minute.
template <class Korel, class Gmp>
void once(const char* what, int n, Korel&& korel, Gmp&& gmp) {
  auto seconds = [](auto& work) {
    std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
  };
  char name[64];
  std::snprintf(name, sizeof name, "%s, %d digits", what, n);
  double ours = seconds(korel), theirs = seconds(gmp);
  std::printf("%-44s %11.3f us %11.3f us %8.2f  GMP, one round\n", name, ours * 1e6, theirs * 1e6, ours / theirs);
  std::fflush(stdout);
}

void discard(DAG x) {
  if (isObject(x)) release(x, lengthOf(x));
}

/// Rounds that take about the same time at every length; costly operations take fewer.
int roundsFor(int n, int cost) {
  int rounds = n <= 100 ? 100000 : n <= 1000 ? 2000 : n <= 10000 ? 50 : n <= 100000 ? 3 : 1;
  return std::max(1, rounds / cost);
}

int n;

DAG rows() {
  std::string ta = digits(n, 1), tb = digits(n, 2);
  DAG a = simpl(parsestring(ta.c_str(), 1)), b = simpl(parsestring(tb.c_str(), 1));
  DAG c = simpl(mulint(a, b));
  mpz_t x, y, z, r;
  mpz_inits(x, y, z, r, nullptr);
  mpz_set_str(x, ta.c_str(), 10);
  mpz_set_str(y, tb.c_str(), 10);
  mpz_mul(z, x, y);
  auto compare = [](const char* what, int cost, auto korel, auto gmp) {
    const int rounds = roundsFor(n, cost);
    pair(
        what, n, rounds,
        [&] {
          for (int i = 0; i < rounds; ++i) korel();
        },
        [&] {
          for (int i = 0; i < rounds; ++i) gmp();
        });
  };
  compare(
      "product", 1, [&] { discard(mulint(a, b)); }, [&] { mpz_mul(r, x, y); });
  compare(
      "square", 1, [&] { discard(mulint(a, a)); }, [&] { mpz_mul(r, x, x); });
  compare(
      "quotient of 2n by n", 2,
      [&] {
        DAG rest;
        discard(IntegerDivide(c, b, &rest));
        discard(rest);
      },
      [&] { mpz_tdiv_q(r, z, y); });
  compare(
      "square root of 2n", 2, [&] { discard(isqrt(c)); }, [&] { mpz_sqrt(r, z); });
  if (n <= 100000) {
    compare(
        "greatest common divisor", 20, [&] { discard(igcd(a, b)); }, [&] { mpz_gcd(r, x, y); });
  } else {
    once(
        "greatest common divisor", n, [&] { discard(igcd(a, b)); }, [&] { mpz_gcd(r, x, y); });
  }
  // A power of about n digits.
  compare(
      "power of 7", 1, [&] { discard(powint(immediate(7), n * 13 / 11)); },
      [&] { mpz_ui_pow_ui(r, 7, static_cast<unsigned long>(n * 13 / 11)); });
  std::string text(static_cast<std::size_t>(n) + 64, ' ');
  compare(
      "decimal text", 1, [&] { writeDecimal(a, text.data()); }, [&] { mpz_get_str(text.data(), 10, x); });
  mpz_clears(x, y, z, r, nullptr);
  return null;
}

#endif

}  // namespace

int main() {
#ifdef KOREL_HAVE_GMP
  startKernel();
  for (int length : {10, 100, 1000, 10000, 100000, 1000000}) {
    n = length;
    runInKernel(rows);
  }
#else
  std::puts("GMP is not installed: no reference for integers");
#endif
}
