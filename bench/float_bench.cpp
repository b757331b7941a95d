// Floats against MPFR of the same precision: products, quotients, square roots. Exact sums and factorials
// against GMP.

#include <cmath>
#include <random>
#include <string>

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer_functions.h"
#include "row.h"
#include "store/objects.h"
#include "text/read/source.h"

#ifdef KOREL_HAVE_MPFR
#include <gmp.h>
#include <mpfr.h>
#endif

using namespace korel;
using namespace korel::bench;

namespace {

#ifdef KOREL_HAVE_MPFR

// A result that no one else refers to goes back, as the collector would take it.
void drop(DAG x) {
  DAG m = x[1];
  if (isObject(m)) release(m, lengthOf(m));
  release(x, lengthOf(x));
}

std::string decimals(int n, unsigned seed) {
  std::mt19937 random(seed);
  std::string s = "7.";
  while (static_cast<int>(s.size()) <= n) s += static_cast<char>('0' + random() % 10);
  s.back() = '3';
  return s;
}

template <class Korel, class Mpfr>
void floatRow(const char* what, int digits, int rounds, Korel&& korel, Mpfr&& mpfr) {
  char name[64];
  std::snprintf(name, sizeof name, "float %s, %d digits", what, digits);
  row(
      name, "us", 1e6 / rounds, "MPFR",
      [&] {
        for (int i = 0; i < rounds; ++i) korel();
      },
      [&] {
        for (int i = 0; i < rounds; ++i) mpfr();
      });
}

int digits;

DAG floatRows() {
  // The flag is up, as it is after the first inexact result of a session.
  SetNumericStatusFlag(inexactEvent, 1);
  assignenv(ini("Digits"), immediate(digits));
  std::string ta = decimals(digits, 1), tb = decimals(digits, 2);
  DAG a = simpl(parsestring(ta.c_str(), 1)), b = simpl(parsestring(tb.c_str(), 1));
  const auto bits = static_cast<mpfr_prec_t>(std::ceil(digits * std::log2(10.0)));
  mpfr_t x, y, r;
  mpfr_inits2(bits, x, y, r, nullptr);
  mpfr_set_str(x, ta.c_str(), 10, MPFR_RNDN);
  mpfr_set_str(y, tb.c_str(), 10, MPFR_RNDN);
  const int rounds = digits <= 20 ? 100000 : digits <= 100 ? 50000 : digits <= 1000 ? 2000 : 20;
  // A thousandth of b: the digits don't stand below each other.
  DAG c = simpl(newFLOAT(b[1], addint(b[2], immediate(-3))));
  mpfr_t z;
  mpfr_init2(z, bits);
  mpfr_div_ui(z, y, 1000, MPFR_RNDN);
  floatRow(
      "sum", digits, rounds, [&] { drop(FloatAdd(a, c)); }, [&] { mpfr_add(r, x, z, MPFR_RNDN); });
  mpfr_clear(z);
  floatRow(
      "product", digits, rounds, [&] { drop(FloatMultiply(a, b)); }, [&] { mpfr_mul(r, x, y, MPFR_RNDN); });
  floatRow(
      "quotient", digits, rounds, [&] { drop(evalfdiv(a, b)); }, [&] { mpfr_div(r, x, y, MPFR_RNDN); });
  floatRow(
      "square root", digits, rounds, [&] { drop(evalfsqrt(a)); }, [&] { mpfr_sqrt(r, x, MPFR_RNDN); });
  mpfr_clears(x, y, r, nullptr);
  return null;
}

void sumRow() {
  // A whole statement, which the kernel keeps reachable while its loop collects.
  row(
      "sum of 1/k to 5,000", "ms", 1e3, "GMP, mpq_add in a loop",
      [] { runInKernel([] { return eval(simpl(parsestring("add(1/k, k = 1..5000)", 1))); }); },
      [] {
        mpq_t sum, term;
        mpq_inits(sum, term, nullptr);
        for (unsigned long k = 1; k <= 5000; ++k) {
          mpq_set_ui(term, 1, k);
          mpq_add(sum, sum, term);
        }
        mpq_clears(sum, term, nullptr);
      });
}

DAG factorialRow() {
  row(
      "factorial of 10,000", "us", 1e6, "GMP, mpz_fac_ui",
      [] {
        DAG f = factorial(immediate(10000));
        release(f, lengthOf(f));
      },
      [] {
        mpz_t f;
        mpz_init(f);
        mpz_fac_ui(f, 10000);
        mpz_clear(f);
      });
  return null;
}

#endif

}  // namespace

int main() {
#ifdef KOREL_HAVE_MPFR
  startKernel();
  for (int n : {20, 100, 1000, 10000}) {
    digits = n;
    runInKernel(floatRows);
  }
  sumRow();
  runInKernel(factorialRow);
#else
  std::puts("MPFR is not installed: no reference for floats");
#endif
}
