# Numbers: each kind of constant, once as a literal and once behind a name.
evalhf(7), evalhf(-7), evalhf(10^20), evalhf(-10^20), evalhf(1/3), evalhf(-1/3), evalhf(2.5), evalhf(0), evalhf(-0.);
evalhf(10^400), evalhf(-10^400), evalhf(10^400/(10^400 + 1));
x := 1/3: y := x: evalhf(x), evalhf(y), evalhf(3*x);
evalhf(Pi), evalhf(gamma), evalhf(Catalan), evalhf(true), evalhf(false), evalhf(infinity), evalhf(-infinity),
  evalhf(undefined);
evalhf(LNMAXFLOAT), evalhf(FLT_RADIX), evalhf(DBL_MANT_DIG), evalhf(DBL_DIG), evalhf(DBL_EPSILON);
evalhf(DBL_MIN_EXP), evalhf(DBL_MAX_EXP), evalhf(DBL_MIN), evalhf(DBL_MAX), evalhf(DBL_MIN_10_EXP),
  evalhf(DBL_MAX_10_EXP);
# Both ways without loss, up to the limits of doubles.
evalhf(1e308), evalhf(1e309), evalhf(-1e309), evalhf(1e-320), evalhf(1e-330), evalhf(4.9e-324);
b := true: for v in [0.1, 1/3, 1e23, 123456789.125, 1e-310, 2^60 + 1, 1.7976931348623157e308] do
  b := b and evalb(evalhf(evalhf(v)) = evalhf(v)) end do: b;
evalhf(0.1), evalhf(0.5), evalhf(1.5e10), evalhf(2147483647), evalhf(2147483648), evalhf(0.1 + 0.2);
Float(undefined), evalhf(Float(undefined)), evalhf(Float(infinity));
# The parts of a complex number, which is none by itself unless its imaginary part is zero.
evalhf(1/2 + 1/3*I), evalhf(I/4), evalhf(2. + 0.*I);
z := 2 + 3*I: evalhf(z);
p := x -> 2*x: evalhf(p(2. + 0.*I)), evalhf(p(1 + I));
# Sums and products: from the left, and division by zero is the one quotient that is refused.
s := proc(a, b, c) a - b + 2*c - c/3 end: evalhf(s(1, 0.1, 0.7));
d := proc(a, b) a/b end: evalhf(d(1, 3)), evalhf(d(0, 5)); evalhf(d(1, 0)); evalhf(d(1, -0.));
q := proc(a, b) a/b^2 + b^3 + sqrt(a)*b^(1/2) end: evalhf(q(2, 3));
# Powers.
w := proc(a, b) a^b end:
evalhf(w(2, 10)), evalhf(w(2, -2)), evalhf(w(2, 0)), evalhf(w(2, 0.5)), evalhf(w(-2, 3)), evalhf(w(-8, 2)),
  evalhf(w(2, -1074)), evalhf(w(0, 3)), evalhf(w(-0., 3)), evalhf(w(-0., 2)), evalhf(w(1, 10^18)), evalhf(w(-1, 10^18 + 1));
evalhf(w(infinity, 2)), evalhf(w(infinity, 0)), evalhf(w(infinity, -2)), evalhf(w(-infinity, 3)), evalhf(w(-infinity, 2)),
  evalhf(w(-infinity, 0.5)), evalhf(w(0.5, infinity)), evalhf(w(0.5, -infinity)), evalhf(w(2, infinity)),
  evalhf(w(-1, infinity)), evalhf(w(undefined, 0)), evalhf(w(2, undefined));
evalhf(w(0, 0)); evalhf(w(0, -1)); evalhf(w(-8., 1/3)); evalhf(w(10, 400)); evalhf(w(10, 400.5)); evalhf(w(1e-300, -2));
evalhf(w(10, 308)), evalhf(w(10., -323));
# Powers of numbers are judged here, not when the call is read.
evalhf(0^0); evalhf((-8.0)^(1/3)); evalhf(1 + 2*sin((0.^0)^2)); evalhf((-8)^2*2^(1/2)), evalhf(-8^(1/3)), evalhf(0^2), 0^0;
# Functions of one number.
for f in [abs, ceil, csgn, Dirac, floor, frac, Heaviside, round, signum, trunc] do
  print(convert(f, string), evalhf(f(-2.5)), evalhf(f(-0.3)), evalhf(f(0)), evalhf(f(0.5)), evalhf(f(3))) end do:
for f in [arccos, arcsin, arctan, arctanh, arccot, cos, cosh, cot, csc, erf, erfc, exp, GAMMA, lnGAMMA, ln, log, log10,
          sec, sin, sinh, sqrt, tan, tanh, coth, csch, sech, arcsinh, arccsch, arcsech] do print(convert(f, string), evalhf(f(1/2))) end do:
for f in [arccosh, arccoth, arccsc, arcsec] do print(convert(f, string), evalhf(f(3/2))) end do:
evalhf(arctan(1, -1)), evalhf(surd(-27, 3)), evalhf(surd(16, 4)), evalhf(max(1, 3, 2)), evalhf(min(1, 3, -2)),
  evalhf(`+`(1, 2, 3)), evalhf(`*`(2, 3, 4)), evalhf(`^`(2, 3)), evalhf(`**`(2, 3));
evalhf(ln(0)), evalhf(ln(-1)), evalhf(arcsin(2)), evalhf(GAMMA(0)), evalhf(exp(1000)), evalhf(erfc(30)), evalhf(sin(1e22));
evalhf(sqrt(-1.0)); evalhf(lnGAMMA(0)); evalhf(lnGAMMA(-3)); evalhf(surd(-16, 4));
# Their derivatives, with the order in front.
evalhf(abs(0, -2)), evalhf(abs(1, -2)), evalhf(abs(2, -2)), evalhf(signum(0, 0)), evalhf(signum(0, -3)), evalhf(signum(1, 3)),
  evalhf(csgn(1, 3)), evalhf(floor(1, 0.5)), evalhf(ceil(1, 0.5)), evalhf(trunc(1, 0.5)), evalhf(frac(1, 0.5)),
  evalhf(frac(2, 0.5)), evalhf(round(1, 0.25)), evalhf(round(0, 2.5)), evalhf(Dirac(2, 5)), evalhf(trunc(1, 0));
evalhf(abs(1, 0)); evalhf(signum(1, 0)); evalhf(floor(1, 2)); evalhf(ceil(1, 2)); evalhf(trunc(1, 2)); evalhf(frac(1, -2));
evalhf(round(1, 2.5)); evalhf(abs(1.5, 2)); evalhf(Dirac(1, 0));
# Choices, sums and products.
c := proc(x) piecewise(x < 0, -1, x = 0, 10, x < 5, x^2, 100) end: evalhf(c(-3)), evalhf(c(0)), evalhf(c(4)), evalhf(c(9));
c := proc(x) piecewise(x < 0, -1) end: evalhf(c(1));
h := proc(n) local i; i := 7; sum(1/i, i = 1 .. n) + 10*product(i, i = 1 .. n) + 100*Sum(i, i = 3 .. 2) + 1000*i end:
evalhf(h(4));
h := proc(n) sum(k^2, k = 1 .. n) + add(k, k = 1 .. n)*mul(k, k = 1 .. 3) end: evalhf(h(4));
evalhf(sum(k, k = 1 .. 3)); evalhf(sum(k, 3)); evalhf(`if`(1 < 2, 3, 4));
# Truth: relations and junctions are 1 or 0, and nothing else decides.
evalhf(1 < 2), evalhf(2 <= 1), evalhf(1 = 1.0), evalhf(1 <> 1), evalhf(not (1 < 2)), evalhf(1 < 2 and 2 < 1), evalhf(1 < 2 or foo(1));
t := proc(x) if x then 1 else 2 end if end: evalhf(t(1)), evalhf(t(0)); evalhf(t(2)); evalhf(t(foo));
u := proc() if undefined = undefined then 1 else 2 end if end: evalhf(u());
# Types of a value.
k := proc(x) local r; r := 0;
  if type(x, rational) and type(x, float) and x::numeric then r := r + 1 end if;
  if x::integer then r := r + 10 end if; if x::odd then r := r + 100 end if; if x::even then r := r + 1000 end if;
  if x::undefined then r := r + 10^4 end if; if type(x, hfarray) and type(x, array) and type(x, rtable) then r := r + 10^5 end if;
  if x::procedure then r := r + 10^6 end if; r end:
evalhf(k(3)), evalhf(k(-4)), evalhf(k(2.5)), evalhf(k(undefined)), evalhf(k(hfarray(1 .. 2))), evalhf(k(k)), evalhf(k(-3));
l := proc(x) if x::list then 1 end if end: evalhf(l(1)); evalhf(type(1, string)); evalhf(type(1));
# What is no number at all.
evalhf(foo); evalhf(foo(2)); evalhf("text"); evalhf([1, 2]); evalhf({1}); evalhf('sin(1)'); evalhf(1 .. 2); evalhf(igcd(4, 6));
evalhf(sin()); evalhf(sin(1, 2)); evalhf(arctan(1, 2, 3)); evalhf(max()); evalhf((1, 2)); evalhf();
