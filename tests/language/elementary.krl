# Multiples of Pi/12 and Pi/10: exact values agree with the floats, and the inverse functions find the way back.
values := proc(f) local k, t, bad;
  bad := NULL;
  for k from -60 to 60 do for t in [k*Pi/12, k*Pi/10] do
    if member(f, [tan, sec]) and type(t/Pi - 1/2, integer) or member(f, [cot, csc]) and type(t/Pi, integer) then next end if;
    if has(f(t), f) or abs(evalf(f(t), 30) - f(evalf(t, 40))) > 1/10^25 then bad := bad, f(t) end if
  end do end do;
  bad
end proc:
[seq(values(f), f = [sin, cos, tan, cot, sec, csc])];
seq(evalb(arcsin(sin(k*Pi/12)) = k*Pi/12 and arcsin(sin(k*Pi/10)) = k*Pi/10), k = -5..5);
seq(evalb(arccos(cos(k*Pi/12)) = k*Pi/12), k = 0..12), seq(evalb(arctan(tan(k*Pi/10)) = k*Pi/10), k = -4..4);
arcsec(2), arccsc(-2), arccot(-1), arccot(sqrt(3)), arcsin(sqrt(10 - 2*sqrt(5))/4), arccos(-(1 + sqrt(5))/4);
sin(Pi/7), sin(8*Pi/7), sin(5*Pi/7), cos(9*Pi/7), tan(-5*Pi/7), sec(3*Pi/7);
# Parity, shifts, imaginary arguments.
sin(-x), cos(-x), tan(-2*x), sec(-x/y), evalb(csc(-x - y) = -csc(x + y)), evalb(sin(x - y) = 'sin'(x - y)), sinh(-x), cosh(-x), arcsin(-x), arctan(-x), arccos(-x), arcsinh(-3), sin(-1/3);
sin(x + Pi), sin(x - Pi/2), cos(x + 3*Pi/2), tan(x + Pi/2), cot(x - 5*Pi), sec(x + Pi), csc(x + Pi/2), sin(x + Pi/3), sin(x + 7*Pi/3), evalb(cos(y - x - 4*Pi) = cos(y - x));
sin(I), cos(I*x), tan(2*I*x), cot(I), sec(I*x), csc(I), sinh(I*Pi/6), cosh(I*x), tanh(I*Pi/4), arcsin(I), arctan(I/2), arcsinh(I/2), arctanh(I), sinh(-I);
# One function of another.
sin(arcsin(x)), cos(arcsin(x)), tan(arcsin(x)), sin(arctan(x)), cos(arctan(x)), cot(arctan(x)), sec(arccos(x)), sin(arccot(x)), tan(arcsec(x));
sinh(arcsinh(x)), cosh(arcsinh(x)), tanh(arccosh(x)), coth(arctanh(x)), sech(arcsech(x)), arcsin(sin(1)), arcsin(sin(2)), arccos(cos(3)), arctan(tan(1/2)), arccosh(cosh(2)), arcsinh(sinh(-2));
# Exponentials and logarithms.
exp(0), exp(ln(x)), exp(-2*ln(x)), exp(y*ln(x)), exp(x + 3*ln(y)), exp(ln(x) + ln(y)), exp(I*Pi), exp(-I*Pi/2), exp(I*Pi/4), exp(7*I*Pi/3), exp(9*I*Pi/7), exp(x + I*Pi), exp(x + I*Pi/7);
ln(1), ln(exp(1)), ln(exp(-3/2)), ln(exp(x)), ln(exp(2*I)), ln(exp(4*I)), ln(32), ln(6), ln(1/2), ln(8/27), ln(-1), ln(-8), ln(I), ln(-2*I), ln(sqrt(x)), ln(x^2), ln(2^(1/3)), ln(-Pi);
log[2](1024), log[3](1/81), log[4](8), log10(10^6), log(x), log[b](x), log[2](5.), log10(2.), log[10](0.001);
# Roots.
sqrt(0), sqrt(1), sqrt(12), sqrt(3/4), sqrt(-12), sqrt(10^40), sqrt(2*10^41), sqrt(3^101), sqrt(x), sqrt(4*x), sqrt(-9*x*y), sqrt(x^2), sqrt(Pi^2), sqrt(2*I), sqrt(-I), sqrt(5 + 12*I), sqrt(1 + I);
root(81, 4), root(48, 4), root(64, 4), root(-27, 3), root(2/9, 3), root[3](x), root(x, 0.5), surd(-27, 3), surd(-32, 5), surd(16, 4), surd(-16, 4), surd(x, 3), surd(-8., 3), surd(-Pi, 3), root(2^200*3, 100), root(8, -3), surd(-8, -3), root(7, 1), sqrt(exp(4));
arctan(3, -3), arctan(-1, sqrt(3)), arctan(2., -1), arctan(0, -2), arctan(x, 2), arctan(1, I), arctan(y, x), arccosh(sqrt(2)/2), arccosh(-1/2);
arcsin(1. + 0.3*I), arcsec(0.1 + 0.3*I), arcsec(0.5 + 0.5*I), arccos(-1. + 1e-5*I), arctanh(1. + 1e-20*I), arccoth(0.5 + 0.5*I);
sqrt(1000000007^2*1000000009), sqrt(2^127 - 1), root((2^61 - 1)^3*5, 3)/root(5, 3);
# What is known of a name is used.
assume(p > 0); assume(r, real): interface(showassumed = 0):
sqrt(p^2), sqrt(r^2), sqrt(4*p*x), ln(exp(r)), ln(p^r), signum(p), evalb(signum(-p*r) = -signum(p*r)), csgn(p), argument(-p), Heaviside(p), arctan(-p, 0), arctan(r, p), ln(p^3);
p := 'p': r := 'r':
# Signs, steps and pieces.
signum(-3), signum(0), signum(-2.5), signum(x), signum(-2*x), signum(3 - 4*I), signum(-2*I), signum(sqrt(2) - 3/2), signum(Pi - 22/7), signum(infinity);
csgn(0), csgn(I), csgn(-I), csgn(-1 + I), csgn(2.), csgn(x), argument(-2), argument(I), argument(1 + I), argument(-1 - I), argument(0), argument(1. - 1.*I), argument(x);
Heaviside(2), Heaviside(-1/2), Heaviside(0), Heaviside(3.), Heaviside(x), Dirac(1), Dirac(0), Dirac(x), Dirac(2, 5), Dirac(0, x);
piecewise(x < 0, -1, x > 0, 1, 0), piecewise(1 < 0, a, 2 < 3, b, c), piecewise(x < 0, 1, 2 < 3, b, c), piecewise(1 < 0, a), piecewise(1 = 1 and x < 0, 2), piecewise(Pi > 3, yes, no);
f := x -> piecewise(x < 0, -x, x <= 1, x^2, 1): [f(-2), f(1/2), f(1), f(7.), f(t)], eval(f(t), t = -3), evalf(f(Pi/7));
# The ends.
exp(infinity), exp(-infinity), ln(infinity), sqrt(infinity), sin(infinity), arctan(-infinity), tanh(infinity), arccot(-infinity), sech(infinity), arcsinh(-infinity), exp(undefined), sin(Float(infinity)), arctan(Float(infinity)), exp(-Float(infinity));
# Poles are events.
ln(0); tan(Pi/2); cot(0); sec(3*Pi/2); csc(Pi); coth(0); arctanh(1); arcsech(0); log[2](0); arctan(I);
ln(0.), cot(0.), csc(-0.), arctanh(1.), arccoth(-1.), arccsch(0.);
NumericEventHandler(division_by_zero = proc(operation, operands, value) print(convert(operation, string), operands, value); 7. end proc): cot(0.); NumericEventHandler(division_by_zero = default):
# Floats at once, on the right side of the cuts.
Digits := 12:
sin(1.), cos(10.^20), exp(-0.5), ln(2.), ln(-2.), sqrt(2.), sqrt(-2.), arcsin(2.), arccos(-2.), arccosh(0.5), arctanh(2.), arccot(-1.), (-8.)^(1/3);
seq([ln(-1. + e*I), sqrt(-4. + e*I), arcsin(2. + e*I), arccos(-2. + e*I), arccosh(-2. + e*I), arctanh(3. + e*I)], e = [0., -0.]);
seq([arctan(e + 2.*I), arcsinh(e - 2.*I)], e = [0., -0.]);
sin(2. + 3.*I), tan(1. + 40.*I), exp(1. - 2.*I), ln(3. - 4.*I), arctan(1. + I), sinh(1. + I), arcsec(0.5 + I), arccsch(2.*I), 2.^I, (1. + I)^(2. - I), log[2](-8.);
# Identities of complex numbers at 40 digits, and reflections.
Digits := 40: tol := 1/10^37:
near := (a, b) -> evalb(abs(a - b) <= tol*max(1, abs(a))):
points := [0.3 + 0.4*I, -2.5 + 0.01*I, 3.7 - 2.2*I, -0.001 - 5.5*I, 1e-20 + 1e-15*I, 0.99999999999999 + 1e-12*I, 40.25 + 0.5*I]:
check := proc(name, test) local z, bad; bad := NULL; for z in points do if not test(z) then bad := bad, [name, z] end if end do; bad end proc:
conj := z -> Re(z) - I*Im(z):
pairs := [[sin, arcsin], [cos, arccos], [tan, arctan], [cot, arccot], [sec, arcsec], [csc, arccsc], [sinh, arcsinh], [cosh, arccosh], [tanh, arctanh], [coth, arccoth], [sech, arcsech], [csch, arccsch], [exp, ln]]:
[seq(check(p, z -> near(p[1](p[2](z)), z)), p = pairs)];
[seq(seq(check(g, z -> near(g(conj(z)), conj(g(z)))), g = p), p = pairs)];
[check("sin", z -> near(sin(z)^2 + cos(z)^2, 1) or abs(Im(z)) > 3), check("sum", z -> near(sin(z + 1/3), sin(z)*cos(1/3.) + cos(z)*sin(1/3.))), check("exp", z -> near(exp(z), cosh(z) + sinh(z))), check("tan", z -> near(tan(z), sin(z)/cos(z))), check("ln", z -> near(ln(z^2), 2*ln(z)) or abs(argument(z)) > 1.57), check("arctan", z -> near(arctan(z) + arccot(z), evalf(Pi/2))), check("arccos", z -> near(arcsin(z) + arccos(z), evalf(Pi/2))), check("power", z -> near(z^(1/3)*z^(2/3), z)), check("sqrt", z -> near(sqrt(z)^2, z))];
Digits := 10:
# Unknown arguments, wrong ones, and floats too large.
sin(x), exp(x*y), arctan(y, x), arctan(y, 2), sin(f), evalf(sin(x + 1/3)); sin([1]); exp(); sin(1, 2); sqrt("a"); arctan(1, 2, 3); log[2](x = 1); log[1](x); root(x); sin(Float(1, 10^8)); arctan(0, 0); piecewise(); piecewise(x, 1);
# A definition of one's own takes the place; a remembered value too; quotes keep a call.
'sin'(0), 'sin(0)'; exp(5) := "five": exp(5), exp(0); tan := x -> x + 1: tan(3), cot(0.5); tan := 'tan':
g := sin: g(Pi/6), map(g, [0, Pi/2, x]), (sin@arcsin)(y), (sin@@2)(Pi/2);
diff(sin(x)*exp(x), x), series(sin(x), x, 5), subs(x = Pi, sin(x)), eval(sin(x), x = Pi), has(sin(x), sin), type(sin(x), function), op(sin(x)), op(0, sin(x)), convert(sin(x), string);
# Wrong kinds, with one text for all.
refused := proc(f, x) evalb(op(1, [traperror(f(x))]) = "%1 expects an algebraic expression, but received %2") end proc:
{seq(refused(f, [1]), f = [sin, arctan, ln, log10, sqrt, signum, csgn, argument, Heaviside, Dirac])};
{seq(refused(exp, x), x = ["a", {1}, 1 .. 2, u = v, u <= v, u and v, Array(1 .. 2)]), refused(exp, table()), refused(sin, proc(y) y end proc)}, {seq(refused(exp, x), x = [u, f(u), u[1], 2])};
traperror(log[[1]](2)), traperror(log[2]([1])), traperror(arctan(1, "a")), traperror(root([1], 2));
