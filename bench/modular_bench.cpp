// Dense polynomials modulo a prime against FLINT and PARI: products, remainders, greatest common divisors, powers,
// factors; modulo 46327 and modulo a prime of 100 digits.

#include <algorithm>
#include <cstdio>
#include <vector>

#include "algebra/modular/modular_polynomials.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer_functions.h"
#include "row.h"
#include "store/names.h"
#include "store/objects.h"

#ifdef KOREL_HAVE_FLINT
#include <flint/flint.h>
#include <flint/fmpz_mod_poly.h>
#include <flint/nmod_poly.h>
#endif
#ifdef KOREL_HAVE_PARI
#include <pari/pari.h>
#endif

using namespace korel;
using namespace korel::bench;

namespace {

long size;
bool wide;

constexpr const char* bigPrime =
    "10000000000000000000000000000000000000000000000000000000000000000000000000000000000"
    "000000000000000267";
constexpr std::uint64_t exponent = 46327;

// Coefficient i of the polynomial number k, so that all sides have the same ones: powers of a number.
DAG coefficients(long k, DAG x, DAG m) {
  DAG a = newDense(x, m, size), c = immediate(static_cast<std::int32_t>(12345 + 54321 * k)), factor = c;
  if (wide) factor = simpl(imod(mul(m, m), immediate(1000003), false));
  for (long i = 0; i <= size; ++i) {
    c = simpl(imod(add(mul(mul(c, c), factor), immediate(static_cast<std::int32_t>(i + 1))), m, false));
    setDenseCoefficient(a, i, c == cons0 ? cons1 : c);
  }
  return finishedDense(a);
}

struct Operands {
  DAG a, b, product, m;
  DAG points, values;  // lists, as long as the polynomials
} operands;

int roundsFor(int cost) {
  const int rounds = size <= 10 ? 20000 : size <= 100 ? 1000 : size <= 1000 ? 30 : 1;
  return std::max(1, rounds / cost / (wide ? 10 : 1));
}
template <class Korel, class Reference>
void timed(const char* what, const char* reference, int cost, Korel korel, Reference other) {
  char name[64];
  std::snprintf(name, sizeof name, "%s, degree %ld, %s", what, size, wide ? "100 digits" : "46327");
  const int rounds = roundsFor(cost);
  auto repeat = [rounds](auto& work) {
    return [rounds, &work] {
      for (int i = 0; i < rounds; ++i) work();
    };
  };
  row(name, "us", 1e6 / rounds, reference, repeat(korel), repeat(other));
  std::fflush(stdout);
}

// What Korel does in each row.
void product() { mMultiply(operands.a, operands.b, operands.m); }
void division() {
  DAG q, r;
  mDivide(operands.product, operands.b, &q, &r, operands.m);
}
void gcd() { mGcd(operands.a, operands.b, operands.m); }
void power() { mPowmod(operands.a, immediate(exponent), operands.b, operands.m); }
void factors() { native::modularFactors({newSequence({operands.a, operands.m}), DAG(), DAG()}); }
void values() { mEval2(operands.a, operands.points, operands.m); }
void interpolation() { mInterpolate(operands.points, operands.values, operands.a[1], operands.m); }
bool powersAreShort() { return size <= (wide ? 100 : 1000); }
bool gcdsAreShort() { return size <= (wide ? 1000 : 10000); }

#ifdef KOREL_HAVE_FLINT
void flintRows() {
  if (!wide) {
    nmod_poly_t a, b, c, q, r;
    for (auto* p : {a, b, c, q, r}) nmod_poly_init(p, 46327);
    for (long i = 0; i <= size; ++i) {
      nmod_poly_set_coeff_ui(a, i, static_cast<ulong>(immediateValue(denseCoefficient(operands.a, i))));
      nmod_poly_set_coeff_ui(b, i, static_cast<ulong>(immediateValue(denseCoefficient(operands.b, i))));
    }
    nmod_poly_mul(c, a, b);
    timed("product", "FLINT", 1, product, [&] { nmod_poly_mul(r, a, b); });
    timed("division", "FLINT", 1, division, [&] { nmod_poly_divrem(q, r, c, b); });
    timed("gcd", "FLINT", 10, gcd, [&] { nmod_poly_gcd(r, a, b); });
    if (powersAreShort()) timed("power", "FLINT", 20, power, [&] { nmod_poly_powmod_ui_binexp(r, a, exponent, b); });
    std::vector<mp_limb_t> at(static_cast<std::size_t>(size) + 1), value(at.size());
    for (std::size_t i = 0; i < at.size(); ++i) at[i] = 3 * i + 1;
    timed("values", "FLINT", 20, values, [&] { nmod_poly_evaluate_nmod_vec(value.data(), a, at.data(), size + 1); });
    timed("interpolation", "FLINT", 40, interpolation,
          [&] { nmod_poly_interpolate_nmod_vec(r, at.data(), value.data(), size + 1); });
    if (size == 100 || size == 500)
      timed("factors", "FLINT", 1000, factors, [&] {
        nmod_poly_factor_t f;
        nmod_poly_factor_init(f);
        nmod_poly_factor(f, a);
        nmod_poly_factor_clear(f);
      });
    for (auto* p : {a, b, c, q, r}) nmod_poly_clear(p);
    return;
  }
  fmpz_t m, t;
  fmpz_init(m);
  fmpz_init(t);
  fmpz_set_str(m, bigPrime, 10);
  fmpz_mod_ctx_t ctx;
  fmpz_mod_ctx_init(ctx, m);
  fmpz_mod_poly_t a, b, c, q, r;
  for (auto* p : {a, b, c, q, r}) fmpz_mod_poly_init(p, ctx);
  for (long i = 0; i <= size; ++i)
    for (bool first : {true, false}) {
      fmpz_set_str(t, textOf(KorelIntToStr(denseCoefficient(first ? operands.a : operands.b, i))), 10);
      fmpz_mod_poly_set_coeff_fmpz(first ? a : b, i, t, ctx);
    }
  fmpz_mod_poly_mul(c, a, b, ctx);
  timed("product", "FLINT", 1, product, [&] { fmpz_mod_poly_mul(r, a, b, ctx); });
  timed("division", "FLINT", 1, division, [&] { fmpz_mod_poly_divrem(q, r, c, b, ctx); });
  if (gcdsAreShort()) timed("gcd", "FLINT", 10, gcd, [&] { fmpz_mod_poly_gcd(r, a, b, ctx); });
  if (powersAreShort())
    timed("power", "FLINT", 20, power, [&] { fmpz_mod_poly_powmod_ui_binexp(r, a, exponent, b, ctx); });
  for (auto* p : {a, b, c, q, r}) fmpz_mod_poly_clear(p, ctx);
  fmpz_mod_ctx_clear(ctx);
  fmpz_clear(m);
  fmpz_clear(t);
}
#endif

#ifdef KOREL_HAVE_PARI
GEN pariPolynomial(DAG a) {
  GEN p = cgetg(size + 3, t_POL);
  p[1] = evalsigne(1) | evalvarn(0);
  for (long i = 0; i <= size; ++i) gel(p, i + 2) = strtoi(textOf(KorelIntToStr(denseCoefficient(a, i))));
  return normalizepol(p);
}
void pariRows() {
  pari_sp start = avma;
  GEN m = strtoi(wide ? bigPrime : "46327");
  GEN a = pariPolynomial(operands.a), b = pariPolynomial(operands.b), n = utoi(exponent);
  auto clean = [](auto work) {
    return [work] {
      pari_sp before = avma;
      work();
      avma = before;
    };
  };
  if (!wide) {
    const ulong p = 46327;
    GEN x = ZX_to_Flx(a, p), y = ZX_to_Flx(b, p), z = Flx_mul(x, y, p);
    timed("product", "PARI", 1, product, clean([=] { Flx_mul(x, y, p); }));
    timed("division", "PARI", 1, division, clean([=] {
            GEN r;
            Flx_divrem(z, y, p, &r);
          }));
    timed("gcd", "PARI", 10, gcd, clean([=] { Flx_gcd(x, y, p); }));
    if (powersAreShort()) timed("power", "PARI", 20, power, clean([=] { Flxq_pow(x, n, y, p); }));
    if (size == 100 || size == 500) timed("factors", "PARI", 1000, factors, clean([=] { Flx_factor(x, p); }));
  } else {
    GEN z = FpX_mul(a, b, m);
    timed("product", "PARI", 1, product, clean([=] { FpX_mul(a, b, m); }));
    timed("division", "PARI", 1, division, clean([=] {
            GEN r;
            FpX_divrem(z, b, m, &r);
          }));
    if (gcdsAreShort()) timed("gcd", "PARI", 10, gcd, clean([=] { FpX_gcd(a, b, m); }));
    if (powersAreShort()) timed("power", "PARI", 20, power, clean([=] { FpXQ_pow(a, n, b, m); }));
  }
  avma = start;
}
#endif

DAG rows() {
  DAG x = naminstall("x");
  operands.m = wide ? simpl(parsestring(bigPrime, 1)) : immediate(46327);
  operands.a = coefficients(1, x, operands.m);
  operands.b = coefficients(2, x, operands.m);
  operands.product = mMultiply(operands.a, operands.b, operands.m);
  DAG points = newl2(static_cast<Word>(size + 2), EXPSEQ);
  for (long i = 0; i <= size; ++i) points[i + 1] = immediate(static_cast<std::int32_t>(3 * i + 1));
  operands.points = simpl(new2(LIST, simpl(points)));
  operands.values = mEval2(operands.a, operands.points, operands.m);
#ifdef KOREL_HAVE_FLINT
  flintRows();
#endif
#ifdef KOREL_HAVE_PARI
  pariRows();
#endif
  return null;
}

}  // namespace

// Degrees may be given: only those are measured.
int main(int argc, char** argv) {
#if !defined(KOREL_HAVE_FLINT) && !defined(KOREL_HAVE_PARI)
  std::puts("neither FLINT nor PARI is installed: no reference for polynomials modulo a prime");
  return 0;
#endif
  startKernel();
#ifdef KOREL_HAVE_PARI
  pari_init(1 << 28, 2);
#endif
  for (bool big : {false, true})
    for (long n : {10, 100, 500, 1000, 10000}) {
      if (big && n == 500) continue;
      const auto isWanted = [n](const char* degree) { return std::atol(degree) == n; };
      if (argc > 1 && std::none_of(argv + 1, argv + argc, isWanted)) continue;
      wide = big;
      size = n;
      runInKernel(rows);
    }
}
