# Exact values of special functions.
GAMMA(1/2), GAMMA(5), GAMMA(-3/2), GAMMA(7/2), GAMMA(31), GAMMA(infinity), GAMMA(a, 0), GAMMA(1, x), GAMMA(a, infinity), lnGAMMA(2), lnGAMMA(5), lnGAMMA(1/2);
Psi(1), Psi(4), Psi(1/2), Psi(-1/2), Psi(1/3), Psi(3/4), Psi(1/6), Psi(0, x), Psi(1, 1), Psi(2, 1), Psi(1, 1/2), Psi(1, 3), Psi(3, -1/2);
Beta(2, 3), Beta(1/2, 1/2), Beta(3, 1/3), Beta(-3, 2), Beta(3/2, -1/2), Beta(x, y);
seq(Zeta(2*n), n = 0..4), seq(Zeta(-n), n = 1..5), Zeta(infinity), Zeta(0, s), Zeta(0, s, 1/2), Zeta(0, 2, 3), Zeta(0, -2, x), Zeta(1, 0), Zeta(2, s, 1);
erf(0), erf(infinity), erf(-infinity), erf(-x), erf(-2/3), erf(x - y), erf(-x - y), erfc(0), erfc(infinity), erfc(-infinity), erfi(-x);
Ei(-infinity), Ei(infinity), Ei(3, 0), Ei(0, x), Ei(2, infinity), Si(0), Si(-x), Si(infinity), Si(-infinity), Shi(-2*x), Ci(infinity), Chi(infinity), Li(0), Li(infinity);
dilog(1), dilog(0), dilog(2), dilog(-1), dilog(1/2), polylog(2, 1), polylog(s, 1), polylog(1, x), polylog(0, x), polylog(3, -1), polylog(s, 0), polylog(-2, 1/3);
LambertW(0), LambertW(exp(1)), LambertW(-exp(-1)), LambertW(2*exp(2)), LambertW(-2*exp(-2)), LambertW(-1, -2*exp(-2)), LambertW(-Pi/2), LambertW(-ln(2)/2), LambertW(-1, -ln(2)/2), LambertW(0, x), LambertW(infinity);
BesselJ(0, 0), BesselJ(2, 0), BesselJ(-3, x), BesselJ(3, -x), BesselJ(1/2, x), BesselJ(0, infinity), BesselI(0, 0), BesselI(-2, x), BesselK(-v, x), BesselK(1/2, x), BesselY(-1, x), BesselY(-1/2, x);
AiryAi(0), AiryBi(0), AiryAi(1, 0), AiryBi(1, 0), AiryAi(infinity), AiryBi(infinity), AiryAi(0, x), AiryAi(2, x), AiryBi(3, x);
EllipticK(0), EllipticE(0), EllipticE(1), EllipticE(-1), EllipticK(-k), EllipticK(2^(1/2)/2), EllipticF(0, k), EllipticF(z, 0), EllipticF(1, k), EllipticF(-z, k), EllipticE(z, 1), EllipticPi(0, k), EllipticPi(z, 0, k), EllipticPi(1/2, 0);
hypergeom([a], [], x), hypergeom([], [], x), hypergeom([b, a], [b], x), hypergeom([2, 1], [3], x), hypergeom([-3, 1/2], [1/3], 2), hypergeom([0], [c], x), hypergeom([1, 2], [3], 0);
near := (a, b) -> evalb(abs(a - b) <= 2e-9*max(1, abs(b))):
near(evalf(Psi(5/6)), Psi(5/6.)), near(evalf(Psi(-7/3)), Psi(-7/3.)), near(evalf(Psi(2, -5/2)), Psi(2, -2.5)), near(evalf(polylog(-3, 2/5)), polylog(-3, 0.4)), near(evalf(EllipticK(I)), EllipticK(1.*I)), Beta(-7, 3);

# Orthogonal polynomials against their recurrences, and their values.
LegendreP(4, x), ChebyshevT(5, x), ChebyshevU(4, x), HermiteH(4, x), LaguerreL(3, x);
LaguerreL(2, a, x), GegenbauerC(3, a, x), expand(JacobiP(1, a, b, x)), LegendreP(n, x), LegendreP(0, x), ChebyshevT(-3, x), HermiteH(3, 0), LegendreP(5, 1), LegendreP(4, 1/2);
for n from 2 to 12 do
  if expand(n*LegendreP(n, x) - (2*n - 1)*x*LegendreP(n - 1, x) + (n - 1)*LegendreP(n - 2, x)) <> 0
  or expand(ChebyshevT(n, x) - 2*x*ChebyshevT(n - 1, x) + ChebyshevT(n - 2, x)) <> 0
  or expand(ChebyshevU(n, x) - 2*x*ChebyshevU(n - 1, x) + ChebyshevU(n - 2, x)) <> 0
  or expand(HermiteH(n, x) - 2*x*HermiteH(n - 1, x) + 2*(n - 1)*HermiteH(n - 2, x)) <> 0
  or expand(n*LaguerreL(n, a, x) - (2*n - 1 + a - x)*LaguerreL(n - 1, a, x) + (n - 1 + a)*LaguerreL(n - 2, a, x)) <> 0
  or expand(n*GegenbauerC(n, a, x) - 2*(n + a - 1)*x*GegenbauerC(n - 1, a, x) + (n + 2*a - 2)*GegenbauerC(n - 2, a, x)) <> 0
  or expand(JacobiP(n, 1/2, 1/2, x)*ChebyshevU(n, 1) - ChebyshevU(n, x)*JacobiP(n, 1/2, 1/2, 1)) <> 0
  then print(n) end if
end do: n := 'n':
near(LegendreP(40, 0.3), eval(LegendreP(40, x), x = 3/10)), near(HermiteH(25, 1.5), eval(HermiteH(25, x), x = 3/2)), near(JacobiP(9, 1/3, -1/2, 0.7), eval(JacobiP(9, 1/3, -1/2, x), x = 7/10)), near(JacobiP(3, -2, -3, 0.7), eval(JacobiP(3, -2, -3, x), x = 7/10));
near(LaguerreL(20, 2/3, 7.5), eval(LaguerreL(20, 2/3, x), x = 15/2)), near(GegenbauerC(15, 3/4, 0.2), eval(GegenbauerC(15, 3/4, x), x = 1/5)), near(ChebyshevU(30, -0.99), eval(ChebyshevU(30, x), x = -99/100)), near(ChebyshevT(7/2, 0.4), evalf(cos(3.5*arccos(0.4))));

# Derivatives and series use the same names.
diff(lnGAMMA(x), x), diff(AiryAi(x), x), diff(EllipticK(k), k), series(Psi(x), x = 1, 3);
