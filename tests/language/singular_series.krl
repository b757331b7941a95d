# Expansions at zeros, poles and branch points and at infinity, against values of the functions at 30 digits.
Digits := 30:
# The error at h must be of the order of the terms left out, and shrink with h.
gap := proc(f, s, x, y) evalf(abs(subs(x = y, s) - subs(x = y, f))/abs(subs(x = y, f))) end:
wrong := proc(f, x, a, n, h)
  local s, place, e;
  s := eval(subs(O = (u -> 0), convert(series(f, x = a, n), polynom)));
  place := h -> `if`(a = infinity, 1/h, a + h);
  e := gap(f, s, x, place(h)), gap(f, s, x, place(h/4));
  `if`(type([e], list(numeric)) and e[1] < 20*h^(n - 2) and (e[2] < e[1]/2 or e[1] < 1e-20), NULL, [f, e])
end:
# Bessel functions of integral and other order; elliptic integrals; polylogarithms; integrals of exp, sin and cos.
[seq(wrong(f, x, 0, 5, 1/100), f = [BesselJ(0, x), BesselJ(-2, x), BesselI(3, x), BesselY(0, x), BesselY(3, x), BesselY(2, x + x^2), BesselK(0, x), BesselK(3, x), BesselK(1, sin(2*x)), BesselJ(1/3, x), BesselY(1/3, x), BesselI(-2/3, x), BesselK(2/3, x)])];
[seq(wrong(f, x, 0, 5, 1/100), f = [EllipticK(x), EllipticE(x), EllipticF(x, 1/3), EllipticE(x, 1/3), EllipticPi(x, 1/3, 1/4), dilog(2*x + x^2), polylog(2, x), polylog(5/2, x), polylog(3, sin(x)), Ei(x), Ei(1, x), Ei(4, x + x^2), Ci(x), Chi(x), Shi(x)])];
[seq(wrong(f, x, 1, 5, 1/100), f = [EllipticK(x), EllipticE(x), polylog(2, x), polylog(3, x), Li(x), arcsech(x), Zeta(0, 2, x), GegenbauerC(1/3, 1/4, x), LegendreP(1/3, x)])], wrong(LambertW(x), x, -exp(-1), 4, 1/10000);
# Branch points and poles of inverse functions.
[seq(wrong(f, x, 0, 5, 1/100), f = [arcsech(x), arccsch(x), arcsec(x), arccsc(x), arcsin(1 + x), arccos(x - 1), arctanh(1 + x), arctan(I + x), arccosh(1 + x), arccosh(x - 1), arccsc(1 + x), arccoth(1 + x), arcsinh(I + x), arctan(1/x), arcsin(x)/x^(3/2)])];
# At infinity.
[seq(wrong(f, x, infinity, 5, 1/50), f = [GAMMA(x), lnGAMMA(x), Psi(x), Psi(1, x), x!, erf(x), erfc(2*x + 1), Ei(x), Ei(2, x), Si(x), Ci(x), BesselJ(1/3, x), BesselJ(1, 2*x + 1), BesselY(2, x), BesselI(1, x), BesselK(2/3, x), exp(x + 1/x), sin(x + 1/x), cosh(x), x^x, (1 + 1/x)^(x^2), GAMMA(x + 1/2)/GAMMA(x), exp(-x)*x^(1/3), arccosh(x), arcsin(x), arcsech(x)])];
Digits := 10:
series(exp(x), x = infinity), series(sin(x + 1/x), x = infinity, 2), series(x^x, x = infinity), series(lnGAMMA(x), x = infinity, 2), series(1/x^(1/2), x = infinity, 3), series(n!/n^n, n = infinity, 2), series(binomial(2*n, n), n = infinity, 3), series(cosh(x)*exp(-x), x = infinity, 2);
# Logarithms and constants in coefficients; Stieltjes' constants at the pole of Zeta.
series(dilog(x), x, 3), series(Ei(x), x, 3), series(Zeta(x), x = 1, 3), evalf([gamma(1), gamma(5)]), series(GAMMA(x), x, 2), series(Beta(x, 1/2), x, 2), series(binomial(2, x), x, 3), series(BesselJ(v, x), x, 3), series(polylog(n, x), x, 3);
# Integrals with bounds, sums; what is not regular has none.
series(int(exp(t^2), t = 0..x), x), series(Int(f(t), t = x..x^2), x, 3), series(int(f(t), t = 1..exp(x)), x, 2), series(sum(x^k, k = 0..3), x), series(Sum(k^2*sin(k*x), k = 1..n), x, 3), series(hypergeom([a], [b], x^2), x, 3), series(product(1 + k*x, k = 1..n), x, 2), series(Product(1 + k*x, k = 1..3), x), series(GAMMA(a, x), x, 2), series(GAMMA(-1, x), x, 2);
series(surd(x, 3), x); series(product(f(k), k = 1..x), x); series(f(x, k = 1..n), x); series(tan(1/x), x); series(Ei(x, x), x);
