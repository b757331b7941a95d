# Coefficients: of sums and products as they stand, of other forms by what is in them.
coeff(x^2 + 3*x, x, 1), coeff(5, x, 0), coeff(5, x, 1), coeff(x, x), coeff(x, x, 0), coeff(x^2*y + x^2*z + 3, x^2), coeff(y, x, 0), coeff(x^(-2)*y + x, x, -2);
coeff((x + 1)^5, x, 3), coeff((x + y)*(x - y)*z, x, 2), coeff(sin(x)^2*y + sin(x), sin(x), 2), coeff(3 + 2*I, I), coeff(3 + 2*I, I, 0);
# Where x stands in an unexpanded form a series that is long enough tells; Order is as it was.
coeff((x + 1)^5*(y + 2), x, 3), coeff(exp(x), x, 3), coeff(1/(1 - x), x, 20), coeff(1/(x*(1 - x)), x, -1), coeff((x + 1)^10*exp(x), x, 2), Order, coeff(series(exp(x), x), x, 4), coeff(series(exp(x), x), y, 4);
coeff(series(exp(y*x), x), y, 1); coeff(x^(1/2), x, 1); Order;
# Indices of names don't count.
coeff(a[x]*x, x, 1), coeff(a[x] + x, x, 0), coeff(2*a[1]^3*x, a[1], 3);
coeff(x, x, y); coeff(x, 3); coeff(x); coeff(x, x, 1, 1);
# Both ends.
p := 3*x^2*y + x*y^5 + 7*x:
lcoeff(p, x), tcoeff(p, x), lcoeff(p, [x, y], 't'), t, lcoeff(p, [y, x], 't'), t, tcoeff(p, {x}, 't'), t, lcoeff(0, x), lcoeff(x, x), lcoeff(x, y), lcoeff(-3*x);
lcoeff(sin(x), x); lcoeff(1/(x + 1), x); lcoeff(p, x, 5);
sign(-3*x^2 + 1), sign(p, x), sign(-5), sign(x), sign(1 - x, x), sign(1 - a*x, [x, a]), sign(-a*x^2 + 5, x), sign(-2.5*x);
sign(sin(x)*x, x);
# All of them rebuild the polynomial.
c := [coeffs(p, x, 't')]; [t]; expand(add(c[k]*t[k], k = 1 .. nops(c)) - p);
c := [coeffs(p, [x, y], 't')]; [t]; add(c[k]*t[k], k = 1 .. nops(c)) - p; [coeffs(p)];
coeffs(0, x), coeffs(7, x, 't'), t, coeffs(x, x, 't'), t, coeffs(y, x, 't'), t, coeffs(z*x + 3*x + 1, x), coeffs(g(y)*x + x/2, x);
coeffs((x + 1)^2, x); coeffs(x^(1/2), x); coeffs(1/x + 1, x); coeffs(g(x), x); coeffs(x, x, x + 1);
# The imaginary unit as the variable: it stands in numbers, too.
seq([coeff(p, I, 0), coeff(p, I, 1), coeff(p, I, 2)], p = [x + I*y + 3 + 4*I, (1 + 6*I)*x, 5*I, 2/3]), evalb([seq(coeff((x + I*y)*(a + I), I, k), k = 0..2)] = [a*x, x + a*y, y]);
# Degrees.
degree(0, x), ldegree(0, x), degree(0., x), ldegree(0., x), degree(5), degree(x^2*y^3 + x^4, [x, y]), degree(x^2*y^3 + x^4, {x, y}), degree(x^2*y^3 + x^4), ldegree(x^2*y^3 + x^4, x), degree((x^2 + 1)^3*(x + y), x), degree((x^2 + 1)^3*(x + y), [x, y]), degree("x", x);
degree(sin(x), x), degree(sin(y), x), degree(x^(-2), x), ldegree(x^(-2) + x, x), degree(1/(x + 1), x), degree(x^(1/2), x), degree(y^(1/2)*x, x), degree(x^n, x), degree(x^n, y), degree(a[x], x), degree(x::integer, x), degree(sin(x)^3 + x, sin(x));
degree(x, x, 1); degree(); degree(x, 3);
# Indeterminates: what is constant is none.
constants := false, gamma, infinity, true, Catalan, FAIL, Pi:
evalb(indets(f(x) + x^n + Pi*sin(1) + a[1]) = {f(x), x^n, x, n, a[1]}), evalb(indets(y[1]^3*y) = {y, y[1]}), evalb(indets(x^(1/2) + 2^y) = {x, y}), indets(5), indets("s"), evalb(indets([x = 1, {z}, 3]) = {x, z}), indets(sin(Pi)), indets(x::integer);
indets(RootOf(_Z^2 - 2)), indets(RootOf(_Z^2 - a)) minus {a}, indets(RootOf(a));
indets([f(x), x^2 + 3], integer); evalb(indets(sin(x)*cos(y)^2, function) = {sin(x), cos(y)}), evalb(indets(x + y^2, name) = {x, y}), evalb(indets(f(g(x)), function) = {g(x), f(g(x))}), evalb(indets(x^2 + sin(x^3), `^`) = {x^2, x^3}), evalb(indets(x = 3, {name, integer}) = {3, x});
indets(''x''); indets(x, y, z); indets();
constants := 'constants':
# Digits in a base, largest coefficients.
genpoly(1234567, 10, x), subs(x = 10, genpoly(1234567, 10, x)), genpoly(0, 7, x), genpoly(-7, 2, x), genpoly(-8, 3, x), genpoly(15, 10, x), genpoly(-15, 10, x), genpoly(5, 10, x), subs(x = 10^9, genpoly(10^40 - 3^70, 10^9, x)) - 10^40 + 3^70;
genpoly(12*y + 7, 5, x), expand(subs(x = 5, genpoly(12*y - 7*z^2 + 13, 5, x)));
genpoly(5, 1, x); genpoly(1/2, 10, x); genpoly(5, 10);
maxnorm(3*x - 17*y + 1), maxnorm(x), maxnorm(-4), maxnorm(0), maxnorm((2*x - 3)^3*y), maxnorm(x/2 - 5/3), maxnorm(2.5*x);
maxnorm(x + sin(x)); maxnorm([x]); `maxnorm/sin` := proc(x) 100 end proc: maxnorm(x + 2*sin(x)); `maxnorm/sin` := '`maxnorm/sin`':
coeff(1/sin(x), x, 5), coeff(cot(x)^2, x, 0), coeff(exp(x)/sin(x)^3, x, -3), coeff(GAMMA(x), x, -1);
