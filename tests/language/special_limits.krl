# Special functions where they leave the range of floats, at large arguments, and of high degrees.
# Out of range: only what is certain counts as infinite.
[GAMMA(Complex(-8.97e37, 917.)), GAMMA(Complex(-5., 1e15)), GAMMA(Complex(5., 1e7)), GAMMA(-1e30 - 0.5)];
[erfc(1e30), AiryAi(Complex(1e30, 2.)), AiryAi(1, 1e25), AiryBi(-9.83455e33), AiryAi(1, -6.05e30)];
traperror(GAMMA(1e30)), traperror(AiryBi(1e30)), traperror(BesselI(0, 1e20));
# Quotients of gamma functions keep the range that their factors leave.
[Beta(3.62628e11, -7.00371e-4), Beta(1e40, 3.5), Beta(-1e7 - 0.5, 3.5), binomial(1e9 + 0.5, 3.5)];
[binomial(0.5, 5*10^6), binomial(-1.5, 10^9), binomial(-3.0, 5000), binomial(-7., 2*10^7 + 1), binomial(3., 5000), binomial(2.5, 3)];
# A float near an integer is none.
[ChebyshevU(-0.99999999999999, -0.4), LegendreP(-1.00000000000002, 0.25), LegendreP(0.198960, -1.)];
# The disc of a complex argument, not its square.
[ChebyshevU(2.4, Complex(1.00009, -2.)), hypergeom([0.25, 0.75], [1.5], Complex(0.5, -0.5))];
# Large arguments of hypergeometric functions, to either side.
[hypergeom([1.5], [2.5], -1e3), hypergeom([1.5], [2.5], Complex(3., 1e5)), hypergeom([1.5], [2.5], 1e6), hypergeom([], [2.5], -1e9), hypergeom([], [2.5], 1e5)];
[HermiteH(1.303193, 6.74954e3), HermiteH(1.303193, -67.4954), HermiteH(0.407435, Complex(-6.67699e3, -5.6)), LaguerreL(-0.5, 0.2, Complex(-6.80027e3, -664.836))];
hypergeom([1, 1], [1.5], 1.), hypergeom([1, 1], [2.5], 1.);
# A series at 1: its sum, exact where it is one of gamma functions, or infinity with the sign of its late terms.
hypergeom([1/2, 1/3], [5/2], 1), hypergeom([1, 2], [7], 1), hypergeom([1/2, -1/3], [5/3, 1/2], 1), hypergeom([1/2, 1/3, 1/4], [7/5, 8/5], 1), traperror(hypergeom([1, 2], [3], 1)), traperror(hypergeom([-1/2, 1/4], [-3/4], 1));
[hypergeom([0.5, 1/3], [5/2], 1), hypergeom([1.2, 2.3], [3.5], 1.), hypergeom([-0.5, 3.25], [2.25], 1.), hypergeom([1 + I, 2.], [7 - I], 1), hypergeom([1.2, 2.3], [3.5], 1.000000000000000042)];
[hypergeom([1, 1, 1], [2, 2], 1.)*6/evalf(Pi^2), evalf(hypergeom([1, 1, 1, 1], [2, 2, 2], 1), 60)/evalf(Zeta(3), 60), hypergeom([5, 4, 3], [6.1, 7], 1.), evalf(hypergeom([1/2, 1/3, 1/4], [7/5, 8/5], 1), 40)];
evalf(hypergeom([1, 2], [7/2], 1 - 10^(-30)), 40), evalf(hypergeom([1.1, 2], [3.5], 1.001), 20);
# Decimal arguments whose sum is an integer: zeros and poles that no precision would find.
[Beta(-2.2, 0.2), Beta(-4., 1.), Beta(2.0, -3.), Beta(-4., 5.), binomial(2.2, 3.2), LaguerreL(-2.2, 0.2, 1.), GegenbauerC(-2.2, 0.6, 0.5), JacobiP(-2.2, 0.2, 0.5, 0.5)];
[JacobiP(4.51, 0., 0.46, -1.0), GegenbauerC(2.5, 0.7, -1.), GegenbauerC(2.5, 0.3, -1.), ChebyshevU(2.5, -1.), EllipticF(-1., 1.), EllipticE(1., -1.), EllipticPi(-1., 0.5, 1.)], traperror(EllipticF(1, -1)), traperror(EllipticPi(1/2, 1));
# Many values of the gamma function at one precision come from another series; both keep the functional equations.
gammas := proc(digits)
  local k, x, same;
  Digits := digits;
  same := (a, b) -> evalb(abs(a - b) <= 10^(3 - Digits)*abs(b));
  {seq(same(GAMMA(x + 1), x*GAMMA(x)), x = [seq(k/7. - 10.1, k = 0 .. 200)])}, {seq(same(GAMMA(x)*GAMMA(1 - x)*sin(evalf(Pi)*x), evalf(Pi)), x = [seq(k/7. - 3.3, k = 0 .. 60)])}
end proc:
gammas(10), gammas(50), gammas(10), [GAMMA(-3.00000000001), GAMMA(1e-30), GAMMA(-19.5), GAMMA(33.25), GAMMA(0.5)], [evalf(GAMMA(1/3), 50), evalf(GAMMA(1/3), 51), evalf(GAMMA(1/3), 70)];
# High degrees agree with the recurrences, at either side of the change and of the interval.
x := [0.3, -0.3, 0.99999, -0.999999999, 1.3, -1.0000001, 0., 1., -1.]: near := (a, b) -> evalb(abs(a - b) <= 10^(-8)*(abs(a) + abs(b))):
p := proc(n, x) local k, a, b; Digits := 40 + n; a, b := 1, x; for k to n - 1 do a, b := b, ((2*k + 1)*x*b - k*a)/(k + 1) end do; evalf(b, 20) end proc:
t := proc(n, x, u) local k, a, b; Digits := 40 + n; a, b := 1, u*x; for k to n - 1 do a, b := b, 2*x*b - a end do; evalf(b, 20) end proc:
{seq(seq(near(LegendreP(n, y), p(n, y)), y = x), n = [60, 61, 100, 151])}, {seq(seq(near(ChebyshevT(n, y), t(n, y, 1)), y = x), n = [60, 61, 150])};
{seq(seq(near(ChebyshevU(n, y), t(n, y, 2)), y = x), n = [60, 61, 150])}, {seq(near(JacobiP(n, 0., 0., 0.3), p(n, 0.3)), n = [60, 61, 150])};
[LegendreP(10^6 + 1/2, 0.3), LegendreP(-101.25, -0.3), LegendreP(10^6, 0.3), LegendreP(10^6, -0.9999999999), LegendreP(10^5, 1.3), ChebyshevT(10^6, 0.3), LaguerreL(10^5, 0.3), JacobiP(1000, 0.5, 0.3, 0.2)];
# Beyond the circle, on it and far out, where the path must not cost digits at each step; polylogarithms are such functions.
[hypergeom([0.1, 0.2, 0.3], [0.5, 0.7], 0.9999), hypergeom([0.1, 0.2, 0.3], [0.5, 0.7], Complex(0.8, 0.6)), hypergeom([0.1, 0.2, 0.3, 1], [0.5, 0.7, 2], 2.)];
{seq(near(hypergeom([1, 1, 1], [2, 2], z)*z, polylog(2, z)), z = [0.98, -1., -5., 3., Complex(1., 0.001), Complex(-3., 2.), -1e6, 1e4])};
{seq(near(hypergeom([1, 1, 1, 1], [2, 2, 2], z)*z, polylog(3, z)), z = [0.98, -1., -5., 3., Complex(1., 0.001), Complex(-3., 2.), -1e6, 1e4])};
[hypergeom([1.2, 0.3], [2.5], Complex(1000., 1000.)), hypergeom([1.2, 0.3], [2.5], 1e7)];
# Lambert's W between -1 and -1/e; a zero of a polylogarithm.
w := proc(k, z) local w; w := LambertW(k, z); Digits := 20; evalb(abs(w*exp(w) - z) <= 10^(-8)*abs(z)) end proc:
{seq(seq(w(k, z), k = -2..2), z = [-0.802427, -0.69, -0.7276, -0.4, -1.5, Complex(-0.3678, 0.001), Complex(-0.3678, -0.0001), -0.2])}, LambertW(0, -0.72759), polylog(-2, -1.);
