// Integers against GMP: products, quotients, greatest common divisors, roots, decimal text.

#include <random>
#include <string>

#include "eval/simplify.h"
#include "numbers/integer.h"
#include "numbers/integer_functions.h"
#include "row.h"
#include "store/objects.h"
#include "text/source.h"

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

DAG rows() {
  for (int n : {10, 100, 1000, 10000, 100000}) {
    static DAG a, b, c;
    static mpz_t x, y, z, r;
    std::string ta = digits(n, 1), tb = digits(n, 2);
    a = simpl(parsestring(ta.c_str(), 1));
    b = simpl(parsestring(tb.c_str(), 1));
    c = simpl(mulint(a, b));
    mpz_inits(x, y, z, r, nullptr);
    mpz_set_str(x, ta.c_str(), 10);
    mpz_set_str(y, tb.c_str(), 10);
    mpz_mul(z, x, y);
    const int rounds = n <= 100 ? 100000 : n <= 1000 ? 2000 : n <= 10000 ? 50 : 2;
    auto repeat = [rounds](auto work) {
      return [rounds, work] {
        for (int i = 0; i < rounds; ++i) work();
      };
    };
    pair("product", n, rounds, repeat([] {
           DAG p = mulint(a, b);
           if (!isImmediate(p)) release(p, lengthOf(p));
         }),
         repeat([] { mpz_mul(r, x, y); }));
    pair("square", n, rounds, repeat([] {
           DAG p = mulint(a, a);
           if (!isImmediate(p)) release(p, lengthOf(p));
         }),
         repeat([] { mpz_mul(r, x, x); }));
    pair("quotient of 2n by n", n, rounds, repeat([] {
           DAG rest;
           IntegerDivide(c, b, &rest);
         }),
         repeat([] { mpz_tdiv_q(r, z, y); }));
    const int slow = n <= 1000 ? rounds / 20 + 1 : n <= 10000 ? 3 : 1;
    if (n <= 10000)
      pair("greatest common divisor", n, slow, [slow] { for (int i = 0; i < slow; ++i) igcd(a, b); },
           [slow] { for (int i = 0; i < slow; ++i) mpz_gcd(r, x, y); });
    static std::string text(static_cast<std::size_t>(n) + 64, ' ');
    text.resize(static_cast<std::size_t>(n) + 64);
    pair("decimal text", n, rounds, repeat([] { writeDecimal(a, text.data()); }),
         repeat([] { mpz_get_str(text.data(), 10, x); }));
    mpz_clears(x, y, z, r, nullptr);
  }
  return null;
}

#else
DAG rows() {
  std::puts("GMP is not installed: no reference for integers");
  return null;
}
#endif

}  // namespace

int main() {
  startKernel();
  runInKernel(rows);
}
