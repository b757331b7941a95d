// Values of special functions by the balls of Arb: what bench/special_errors.py measures errors against.
//
// A line of input is DIGITS NAME RE IM RE IM ...: a function by Korel's name and its arguments, exact decimal numbers
// (hypergeom has its counts of parameters in the name: hypergeom2/1). A line of output is the value, RE IM with some ten
// digits more than asked for, each part certain but for its last digits; `? ?` where Arb finds none.

#include <acb.h>
#include <acb_elliptic.h>
#include <acb_hypgeom.h>
#include <acb_poly.h>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

// A complex ball that cleans up after itself.
class Ball {
 public:
  Ball() { acb_init(z_); }
  Ball(const Ball& other) : Ball() { acb_set(z_, other.z_); }
  Ball& operator=(const Ball& other) {
    acb_set(z_, other.z_);
    return *this;
  }
  ~Ball() { acb_clear(z_); }
  operator acb_ptr() { return z_; }           // NOLINT
  operator acb_srcptr() const { return z_; }  // NOLINT

 private:
  acb_t z_;
};

// r = f(a...) at so many bits.
using Value = void (*)(Ball& r, const std::vector<Ball>& a, slong bits);

slong wholeNumber(const Ball& z) {
  fmpz_t n;
  fmpz_init(n);
  slong value = 0;
  if (arb_get_unique_fmpz(n, acb_realref(static_cast<acb_srcptr>(z)))) value = fmpz_get_si(n);
  fmpz_clear(n);
  return value;
}
Ball one() {
  Ball x;
  acb_one(x);
  return x;
}
Ball squareOf(const Ball& k, slong bits) {
  Ball m;
  acb_mul(m, k, k, bits);
  return m;
}
// 1 - a z^2
Ball complementOf(const Ball& a, const Ball& z, slong bits) {
  Ball r;
  acb_mul(r, squareOf(z, bits), a, bits);
  acb_sub_si(r, r, 1, bits);
  acb_neg(r, r);
  return r;
}
// An elliptic integral from 0 to z by those of Carlson: the first kind, and `factor` z^3/3 RJ(.., 1 - n z^2). An amplitude
// would lie beside a quarter turn where z is near 1.
void carlson(Ball& r, const Ball& z, const Ball& k, const Ball& factor, const Ball& n, slong bits) {
  Ball one, more;
  acb_one(one);
  const Ball x = complementOf(one, z, bits), y = complementOf(squareOf(k, bits), z, bits);
  acb_elliptic_rf(r, x, y, one, 0, bits);
  acb_mul(r, r, z, bits);
  if (acb_is_zero(factor)) return;
  acb_elliptic_rj(more, x, y, one, complementOf(n, z, bits), 0, bits);
  acb_mul(more, more, factor, bits);
  acb_mul(more, more, z, bits);
  acb_mul(more, more, squareOf(z, bits), bits);
  acb_div_si(more, more, 3, bits);
  acb_add(r, r, more, bits);
}

// The n-th derivative of the zeta function of Hurwitz.
void zetaDerivative(Ball& r, slong n, const Ball& s, const Ball& a, slong bits) {
  acb_poly_t series, zeta;
  acb_poly_init(series);
  acb_poly_init(zeta);
  acb_poly_set_coeff_acb(series, 0, s);
  acb_poly_set_coeff_si(series, 1, 1);
  acb_poly_zeta_series(zeta, series, a, 0, n + 1, bits);
  acb_poly_get_coeff_acb(r, zeta, n);
  for (slong k = 2; k <= n; ++k) acb_mul_si(r, r, k, bits);
  acb_poly_clear(series);
  acb_poly_clear(zeta);
}

void betaValue(Ball& r, const std::vector<Ball>& a, slong bits) {
  Ball sum, below;
  acb_add(sum, a[0], a[1], bits);
  acb_rgamma(below, sum, bits);
  acb_gamma(r, a[0], bits);
  acb_mul(r, r, below, bits);
  acb_gamma(below, a[1], bits);
  acb_mul(r, r, below, bits);
}

void airyValue(Ball& r, const std::vector<Ball>& a, slong bits, bool second) {
  Ball rest;
  const bool derivative = a.size() == 2 && wholeNumber(a[0]) == 1;
  Ball ai, aiPrime, bi, biPrime;
  acb_hypgeom_airy(ai, aiPrime, bi, biPrime, a.back(), bits);
  r = derivative ? (second ? biPrime : aiPrime) : (second ? bi : ai);
}

template <void (*F)(acb_t, const acb_t, slong)>
void unary(Ball& r, const std::vector<Ball>& a, slong bits) {
  F(r, a[0], bits);
}
template <void (*F)(acb_t, const acb_t, const acb_t, slong)>
void binary(Ball& r, const std::vector<Ball>& a, slong bits) {
  F(r, a[0], a[1], bits);
}

const std::map<std::string, Value> functions = {
    {"GAMMA/1", unary<acb_gamma>},
    {"GAMMA/2", [](Ball& r, const std::vector<Ball>& a, slong b) { acb_hypgeom_gamma_upper(r, a[0], a[1], 0, b); }},
    {"lnGAMMA/1", unary<acb_lgamma>},
    {"Psi/1", unary<acb_digamma>},
    {"Psi/2", binary<acb_polygamma>},
    {"Beta/2", betaValue},
    {"Zeta/1", unary<acb_zeta>},
    {"Zeta/2",
     [](Ball& r, const std::vector<Ball>& a, slong b) { zetaDerivative(r, wholeNumber(a[0]), a[1], one(), b); }},
    {"Zeta/3",
     [](Ball& r, const std::vector<Ball>& a, slong b) {
       if (wholeNumber(a[0]) == 0) acb_hurwitz_zeta(r, a[1], a[2], b);
       else zetaDerivative(r, wholeNumber(a[0]), a[1], a[2], b);
     }},
    {"erf/1", unary<acb_hypgeom_erf>},
    {"erfc/1", unary<acb_hypgeom_erfc>},
    {"erfi/1", unary<acb_hypgeom_erfi>},
    {"Ei/1", unary<acb_hypgeom_ei>},
    {"Ei/2", binary<acb_hypgeom_expint>},
    {"Si/1", unary<acb_hypgeom_si>},
    {"Ci/1", unary<acb_hypgeom_ci>},
    {"Shi/1", unary<acb_hypgeom_shi>},
    {"Chi/1", unary<acb_hypgeom_chi>},
    {"Li/1", [](Ball& r, const std::vector<Ball>& a, slong b) { acb_hypgeom_li(r, a[0], 0, b); }},
    {"dilog/1",
     [](Ball& r, const std::vector<Ball>& a, slong b) {
       Ball w;
       acb_sub_ui(w, a[0], 1, b);
       acb_neg(w, w);
       acb_hypgeom_dilog(r, w, b);
     }},
    {"polylog/2", binary<acb_polylog>},
    {"LambertW/1",
     [](Ball& r, const std::vector<Ball>& a, slong b) {
       fmpz_t k;
       fmpz_init(k);
       acb_lambertw(r, a[0], k, 0, b);
       fmpz_clear(k);
     }},
    {"LambertW/2",
     [](Ball& r, const std::vector<Ball>& a, slong b) {
       fmpz_t k;
       fmpz_init_set_si(k, wholeNumber(a[0]));
       acb_lambertw(r, a[1], k, 0, b);
       fmpz_clear(k);
     }},
    {"BesselJ/2", binary<acb_hypgeom_bessel_j>},
    {"BesselY/2", binary<acb_hypgeom_bessel_y>},
    {"BesselI/2", binary<acb_hypgeom_bessel_i>},
    {"BesselK/2", binary<acb_hypgeom_bessel_k>},
    {"AiryAi/1", [](Ball& r, const std::vector<Ball>& a, slong b) { airyValue(r, a, b, false); }},
    {"AiryBi/1", [](Ball& r, const std::vector<Ball>& a, slong b) { airyValue(r, a, b, true); }},
    {"AiryAi/2", [](Ball& r, const std::vector<Ball>& a, slong b) { airyValue(r, a, b, false); }},
    {"AiryBi/2", [](Ball& r, const std::vector<Ball>& a, slong b) { airyValue(r, a, b, true); }},
    {"EllipticK/1", [](Ball& r, const std::vector<Ball>& a, slong b) { acb_elliptic_k(r, squareOf(a[0], b), b); }},
    {"EllipticE/1", [](Ball& r, const std::vector<Ball>& a, slong b) { acb_elliptic_e(r, squareOf(a[0], b), b); }},
    {"EllipticPi/2",
     [](Ball& r, const std::vector<Ball>& a, slong b) { acb_elliptic_pi(r, a[0], squareOf(a[1], b), b); }},
    {"EllipticF/2", [](Ball& r, const std::vector<Ball>& a, slong b) { carlson(r, a[0], a[1], Ball(), Ball(), b); }},
    {"EllipticE/2",
     [](Ball& r, const std::vector<Ball>& a, slong b) {
       Ball minus = squareOf(a[1], b);
       acb_neg(minus, minus);
       carlson(r, a[0], a[1], minus, Ball(), b);
     }},
    {"EllipticPi/3", [](Ball& r, const std::vector<Ball>& a, slong b) { carlson(r, a[0], a[2], a[1], a[1], b); }},
    {"LegendreP/2",
     [](Ball& r, const std::vector<Ball>& a, slong b) { acb_hypgeom_legendre_p(r, a[0], Ball(), a[1], 0, b); }},
    {"ChebyshevT/2", binary<acb_hypgeom_chebyshev_t>},
    {"ChebyshevU/2", binary<acb_hypgeom_chebyshev_u>},
    {"HermiteH/2", binary<acb_hypgeom_hermite_h>},
    {"LaguerreL/2",
     [](Ball& r, const std::vector<Ball>& a, slong b) { acb_hypgeom_laguerre_l(r, a[0], Ball(), a[1], b); }},
    {"LaguerreL/3",
     [](Ball& r, const std::vector<Ball>& a, slong b) { acb_hypgeom_laguerre_l(r, a[0], a[1], a[2], b); }},
    {"GegenbauerC/3",
     [](Ball& r, const std::vector<Ball>& a, slong b) { acb_hypgeom_gegenbauer_c(r, a[0], a[1], a[2], b); }},
    {"JacobiP/4",
     [](Ball& r, const std::vector<Ball>& a, slong b) { acb_hypgeom_jacobi_p(r, a[0], a[1], a[2], a[3], b); }},
    {"hypergeom0/1/2", [](Ball& r, const std::vector<Ball>& a, slong b) { acb_hypgeom_0f1(r, a[0], a[1], 0, b); }},
    {"hypergeom1/1/3", [](Ball& r, const std::vector<Ball>& a, slong b) { acb_hypgeom_m(r, a[0], a[1], a[2], 0, b); }},
    {"hypergeom2/1/4",
     [](Ball& r, const std::vector<Ball>& a, slong b) { acb_hypgeom_2f1(r, a[0], a[1], a[2], a[3], 0, b); }},
};

// Whether x is known to so many bits, or is 0; a part that is nothing beside the other part counts as 0.
bool isKnown(const arb_t x, const arb_t other, slong bits) {
  if (arb_is_zero(x) || arb_rel_accuracy_bits(x) >= bits) return true;
  mag_t size, rest;
  mag_init(size);
  mag_init(rest);
  arb_get_mag_lower(size, other);
  mag_mul_2exp_si(size, size, -4 * bits - 400);
  arb_get_mag(rest, x);
  const bool negligible = mag_cmp(rest, size) < 0;
  mag_clear(size);
  mag_clear(rest);
  return negligible;
}

std::string partText(const arb_t x, slong digits) {
  if (arb_rel_accuracy_bits(x) <= 1) return "0";
  char* text = arb_get_str(x, digits, ARB_STR_MORE | ARB_STR_NO_RADIUS);
  std::string result = text;
  std::free(text);
  return result;
}

std::string answer(const std::string& line) {
  std::istringstream words(line);
  slong digits = 0;
  std::string name, re, im;
  words >> digits >> name;
  std::vector<std::string> parts;
  while (words >> re >> im) {
    parts.push_back(re);
    parts.push_back(im);
  }
  const auto row = functions.find(name + "/" + std::to_string(parts.size() / 2));
  const auto wanted = static_cast<slong>(static_cast<double>(digits + 10) * 3.3219281) + 2;
  if (row != functions.end()) {
    for (slong bits = wanted + 40; bits <= 24 * wanted + 8000; bits = 2 * bits) {
      std::vector<Ball> arguments(parts.size() / 2);
      for (std::size_t i = 0; i < arguments.size(); ++i) {
        arb_set_str(acb_realref(static_cast<acb_ptr>(arguments[i])), parts[2 * i].c_str(), bits + 4000);
        arb_set_str(acb_imagref(static_cast<acb_ptr>(arguments[i])), parts[2 * i + 1].c_str(), bits + 4000);
      }
      Ball r;
      row->second(r, arguments, bits);
      acb_ptr z = r;
      if (!acb_is_finite(z) || !isKnown(acb_realref(z), acb_imagref(z), wanted) ||
          !isKnown(acb_imagref(z), acb_realref(z), wanted))
        continue;
      return partText(acb_realref(z), digits + 10) + " " + partText(acb_imagref(z), digits + 10);
    }
  }
  return "? ?";
}

// Ends the process after a tenth of a second of its own and one for each hundred digits.
void setPatience(const std::string& line) {
  const long milliseconds = 100 + 10 * std::atol(line.c_str());
  const itimerval timer = {{0, 0}, {milliseconds / 1000, milliseconds % 1000 * 1000}};
  setitimer(ITIMER_VIRTUAL, &timer, nullptr);
}

}  // namespace

int main() {
  // Constants that Arb keeps are computed before the processes part.
  answer("600 GAMMA 0.3 0");
  answer("600 Zeta 0.3 2");
  answer("600 erfc 3 1");
  std::string line;
  while (std::getline(std::cin, line)) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
      setPatience(line);
      const std::string text = answer(line);
      signal(SIGVTALRM, SIG_IGN);
      std::printf("%s\n", text.c_str());
      std::fflush(stdout);
      _exit(0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) < 0 || status != 0) std::printf("? ?\n");
  }
  return 0;
}
