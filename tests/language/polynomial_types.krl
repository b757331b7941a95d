# Polynomials in all names, with any constant as a coefficient.
constants := false, gamma, infinity, true, Catalan, FAIL, Pi:
p := 2*x^3 - 3*x*y + 1/2: q := 2.5*x + Pi*y: r := (x + 1)/(y - 2)^3:
type(p, polynom), type(q, polynom), type(r, polynom), type(r, ratpoly), type(sqrt, polynom), type(x^(1/2), polynom), type(x^(-1), polynom), type(x^(-1), ratpoly), type(x^y, ratpoly), type(2^(1/2)*x, polynom), type(Pi^(-1)*x, polynom), type(g(2)*x, polynom), type(g(x)*x, polynom), type([x], polynom), type("x", polynom), type(x[1] + x::integer, polynom), type((x + y)^5*(x - y), polynom), type(5, polynom), type(I*x, polynom);
# Coefficients by a word: names in `constants` are no variables then.
coefficients := proc(e) lprint(e, [seq(type(e, polynom(_c)), _c = [integer, rational, numeric, complex, constant, anything])]) end proc:
for e in [7, 2/3, 1.5, 2 + 3*I, x, 3*x + 1, x/2, 1.5*x + 1, 2*I*x, Pi*x, Float(infinity)*x, x^(1/2), 2^(1/2)*x, (3*x + 1)^2*y, x + undefined, Pi, g(x), "x", x[1] - x[2]] do coefficients(e) end do:
# Variables given: the others are coefficients, where anything may be one.
type(p, polynom(x)), type(r, polynom(x)), type(r, polynom(y)), type(r, ratpoly(y)), type(g(y)*x, polynom(x)), type(g(x)*x, polynom(x)), type(y^(1/2)*x, polynom(x)), type(x^(1/2)*y, polynom(x)), type(x^y, polynom(x)), type(y^z, polynom(x)), type(x[1], polynom(x)), type(x[1]^2 + 1, polynom(x[1])), type("s", polynom(x)), type(y::integer, polynom(x));
type(p, polynom([x, y])), type(p, polynom({x, y})), type(r, polynom([x, y])), type(r, ratpoly([x, y])), type(x*g(z) + y, polynom({x, y})), type(x*g(y) + y, polynom({x, y})), type(x, polynom([]));
type(3*x^2 + 1, polynom(integer, x)), type(3*x^2 + y, polynom(integer, x)), type(3*x^2 + y, polynom(integer, [x, y])), type(x/2 + 1, polynom(integer, x)), type(x/2 + 1, polynom(rational, x)), type(1.5*x, polynom(rational, x)), type(1.5*x, polynom(numeric, x)), type(I*x, polynom(numeric, x)), type(I*x, polynom(complex, x)), type(g(2)*x, polynom(constant, x)), type(g(2)*x, polynom(integer, x)), type(g(y)*x, polynom(constant, x)), type(g(y)*x, polynom(anything, x)), type(x^(-2) + 3, polynom(integer, x)), type(x^(-2) + 3, ratpoly(integer, x)), type(Pi*x, polynom(constant, x)), type(2^(1/2)*x, polynom(integer, x)), type(2^(1/2)*x, polynom(constant, x));
type(5*x - 7, polynom(odd, x)), type(5*x - 8, polynom(odd, x)), type(x + 7, polynom({odd, float}, x)), type(x + 7, polynom(float, x)), type(7, polynom(even, x));
type(2*I + 3, polynom(anything, I)), type(g(I)^(1/2), polynom(I)), type(g(2)^(1/2), polynom(I));
# What can't be variables.
type(x, polynom(3)); type(x, polynom(integer, x + y)); type(x, polynom(integer, [x, 3])); try type(x, ratpoly({x, g(x)})) catch "invalid arguments": "caught" end try; type(x, polynom(x, integer));
# Constants.
for e in [g(2, Pi), g(x), g(), 2^Pi, Pi^x, 2*Pi + g(3), 2*Pi + x, x::integer, 3::integer, [1], 1 = 1, "s", Pi[1], infinity*I, undefined + 1, Float(undefined), RootOf(_Z^2 + 1), RootOf(_Z^2 + x), RootOf(x), RootOf(_Z^2 + RootOf(_Z^3 + 2)), RootOf(_Z^2 + 2, 1.4), RootOf(x^2 + 2, 1.4), RootOf(_Z^2 + g(_Z)), RootOf(_Z^2 + g(_Z), 1), RootOf(3, 1)] do lprint(e, type(e, constant)) end do:
constants := g: type(g, constant), type(g(g), constant), type(Pi, constant); constants := undefined, Pi: type(undefined, constant), type(g(undefined), constant), type(g(Pi), constant); constants := 'constants': type(Pi, constant), type(constants, constant), type(Pi*x, polynom(integer));
