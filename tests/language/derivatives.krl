# Derivatives. Sums and products by the kernel's own rules: powers lose one, a factor is differentiated in its place.
diff(x, x), diff(y, x), diff(7, x), diff(2.5, x), diff(1 + I, x), diff("x", x), diff(x^2, x), diff(3*x^5 + 2*x*y - 7, x), diff(1/x, x), diff(x^(1/2), x), diff((x + 1)^3, x), diff(x*(x + 1)*(x + 2), x);
diff(x^x, x), diff(2^x, x), diff(x^n, x), diff(x::integer, x), diff(O(1), x), diff(a[x], x), diff(a[1]^2, a[1]), diff(a[1], a), diff('x', x);
# Members of collections and equations; several variables from the left.
diff([x, [x^2], y], x), diff({x, x^2}, x); diff(x = x^2, x); diff(y = 1, x);
diff(x^5*y^3, x, y, x), diff(x^4, x$2), diff(x*y, y, x), diff(f(x, y), x, y), diff(f(x), x, y);
# What has no derivative.
diff(table([1 = x]), x);
diff(1..x, x);
diff(x < 2, x);
diff(x <> 2, x);
diff(proc(y) x end, x);
diff(Array(1..2), x);
diff(x);
diff(x, 2);
diff();
diff(1..2, x), diff(y < 2, x), diff(table(), x);
# Elementary functions, and calls with other arguments than they take.
seq(diff(f(x), x), f = [exp, ln, sqrt, sin, cos, tan, cot, sec, csc]);
seq(diff(f(x), x), f = [sinh, cosh, tanh, coth, sech, csch, log, log10]);
seq(diff(f(x), x), f = [arcsin, arccos, arctan, arccot, arcsec, arccsc, arcsinh, arccosh, arctanh, arccoth, arcsech, arccsch]);
seq(diff(f(x), x), f = [abs, signum, floor, ceil, round, trunc, frac, Re, Im, conjugate]);
diff(sin(2*x), x), diff(exp(x^2), x), diff(log[2](x), x), diff(arctan(y, x), x), diff(arctan(x), y), diff('sin'(x, y), x), diff('exp'(), x), diff(sin(cos(exp(x))), x);
# Special functions.
seq(diff(f(x), x), f = [erf, erfc, erfi, GAMMA, lnGAMMA, Psi, factorial, Si, Ci, Li, Ei, dilog, LambertW, Zeta, Heaviside]);
diff(GAMMA(a, x), x), diff(GAMMA(x, a), x), diff(Psi(2, x^2), x), diff(BesselJ(0, x), x), diff(BesselK(n, 2*x), x), diff(BesselJ(x, 1), x), diff(polylog(2, x), x), diff(binomial(x, 3), x), diff(Beta(x, y), y);
# Bound variables and bounds.
diff(int(f(t), t = 0..x), x), diff(int(f(t, x), t = x..x^2), x), diff(int(f(x), x), x), diff(int(f(x), y), x), diff(int(x*t, x = 0..t), t), diff(Int(sin(x*t), t = 0..1), x), diff(int(f(x), x = 0..1), x);
diff(sum(x^k, k = 0..n), x), diff(sum(k, k = 0..x), x), diff(Sum(f(x), x), x), diff(product(x + k, k = 1..n), x);
diff(piecewise(x < 0, x^2, x), x), diff(piecewise(x < 0, x^2, x < 1, x^3), x), diff(max(x, x^2), x), diff(min(x, 1 - x, y), x), diff(RootOf(_Z^2 - x), x);
# Functions that nothing is known of: the call stays, or the chain rule speaks of D.
diff(f(x), x), diff(f(2), x), diff(f(x), x$2), diff(f(x, y), x), diff(f(x, x), x), diff(f(x^2), x), diff(f(x^2), x$2), diff(f(x^2, y), x), diff(g(f(x)), x), diff(D(f)(x), x), diff(D(f)(x^2), x);
diff((sin@@2)(x), x), diff((f@@3)(x), x), diff((f@@n)(x), x), diff((f@@(-1))(x), x), diff((ln@@(-2))(x), x);
# Names that the library uses for itself are free for functions.
diff(bound(x^2), x), diff(partial(x^2), x), diff(at(x^2, y), x), expand(argument(x + y)), evalf(size(3)), series(terms(x), x, 1), series(sum(x), x, 1), monic(2*x) mod 5;
# Order terms lose an order.
diff(O(x^3), x), diff(x + O((x - 1)^2), x), diff(O(x^(1/2)), x), diff(O(sin(x)), x);
# Own rules come first.
`diff/h` := proc(u, x) 2*h(u)*diff(u, x) end: `diff/q` := proc() [args] end: `diff/r` := proc() NULL end:
diff(h(x^2), x), diff(h(x), x$3), diff(q(x, y), x), diff(q[1](x), x), diff(r(x), x), diff(r(x^2), x);
# Results are remembered, those that stay and those of floats are not. A derivative that failed leaves nothing.
`diff/w` := proc(u, x) global count; count := count + 1; w(u)*diff(u, x) end: count := 0:
diff(w(x), x): diff(w(x), x): count; diff(2.5*w(y), y): diff(2.5*w(y), y): count;
`diff/bad` := proc(u, x) error "no slope at %1", u end: diff(bad(x) + x^2, x); diff(x^2, x);

# Against difference quotients, at 30 digits.
quotient := proc(e, a) local h; Digits := 60; h := 1/10^20; evalf((eval(e, x = a + h) - eval(e, x = a - h))/(2*h), 50) end:
agrees := proc(e, a) local d, q; d := evalf(eval(diff(e, x), x = a), 50); q := quotient(e, a); Digits := 30; evalb(abs(d - q) < 1/10^28*(1 + abs(d))) end:
map(agrees, [sin(x)*exp(x), ln(x)^2/x, x^x, tan(x) + cot(x), sec(x)*csc(x), sinh(x)/cosh(x), tanh(x)*coth(x), sech(x) + csch(x), arcsin(x), arccos(x^2), arctan(x), sqrt(1 + x^3), 2^sin(x), arcsinh(x), arctanh(x), exp(sin(cos(x))), (1 + x^2)^(-3/2), (x + 1)^5*(x - 2)^(-3)], 7/10);
map(agrees, [arccosh(x), ln(ln(x)), x^(1/3)*cos(1/x), arctan(x^2), sin(sin(sin(x)))], 17/10);
# Special functions, by each argument that has a derivative.
map(agrees, [LambertW(-1, x - 1), LambertW(2, x), hypergeom([1/3, 6/5], [7/10], x), LegendreP(7/3, x), ChebyshevT(7/3, x), ChebyshevU(7/3, x), HermiteH(7/3, x), LaguerreL(7/3, x), LaguerreL(7/3, 2/5, x), GegenbauerC(7/3, 2/5, x), JacobiP(7/3, 2/5, 3/5, x), EllipticPi(1/3, x), EllipticPi(x, x^2/2, 1/3 + x/5), EllipticF(x, 1/3), EllipticE(1/3, x), Zeta(0, 7/3, x), Zeta(1, x + 1, 5/4), Zeta(2, 7/3, x), polylog(7/3, x), BesselY(6/5, x), BesselK(6/5, x), AiryBi(2, x), GAMMA(6/5, x), Beta(x, 4/3), Ei(2, x), Chi(x), Li(x), surd(x, 3)], 7/10);
diff(AiryAi(x, x), x), diff(Dirac(2*x), x, x), diff(LegendreP(3, x), x), diff(LaguerreL(x, y), x), diff(hypergeom([a], [c], x^2), x), diff(hypergeom([x], [], x), x);
# The chain rule on nested expressions: a derivative by way of the series coefficients, too.
e := x: to 4 do e := sin(e)*exp(x) + e^2 end do: evalf(eval(diff(e, x), x = 1/100), 20); agrees(e, 1/100);
nests := [exp(sin(x))*ln(2 + x), (x + 1)^(1/3)*tan(x), arctan(x + 1)]:
bycoefficient := proc(e, k) local s, i; s := series(e, x, k + 1); add(`if`(op(2*i, s) = k, op(2*i - 1, s), 0), i = 1..nops(s)/2)*k! end:
bydifferences := proc(e, k) local d; d := e; to k do d := diff(d, x) end do; eval(d, x = 0) end:
seq(seq(evalb(abs(evalf(bycoefficient(e, k) - bydifferences(e, k), 40)) < 1/10^25), e = nests), k = 0..3);
# High derivatives.
diff(sin(x), x$200), diff(x^20, x$20), diff(x^20, x$21), diff(x*exp(x), x$50), eval(diff(1/(1 - x), x$30), x = 0);
