# Products and small powers: terms in the order of the factors.
expand((x + 1)^2*(x - 1)), expand(y*(x + 1)), expand((2 + I)*(x + 1)), expand(I*(x + 1)*(z + 2)), expand((x + I)^4), expand(2*(x + 1)*(y + 1)), expand((x + 1)^2/(x + 2)), expand(1/((x + 1)*x));
evalb(expand(x*y^2*a[1]) = x*y^2*a[1]), expand((1.5*x + y)^3), expand((x/2 - 1/3)^2), expand((x^(1/2) + 1)^2), expand(2^(1/2)*(2^(1/2) + x)), expand(0), expand("s"), expand((x + 1)*g(x)*(y - g(x)));
# Structures, and what stays.
expand([(x + 1)^2, a*(b + c)]), expand({x*(x + 1)}), expand(x*(x + 1) = (y + 1)^2), expand([1, 2]*(x + 1)), expand(g((x + 1)^2)), expand((z + 1)*(v + 2), z + 1), expand((x + 1)^2*(y + 1), (x + 1)^2), expand(''(x + 1)^2'');
expand(x -> (x + 1)^2), expand(proc(x) x; (x + 1)^2 end proc);
expand();
# Elementary functions over sums and multiples.
expand(sin(2*x)), expand(sin(3*x)), expand(cos(4*x)), expand(sin(-x)), expand(cos(-2*x)), expand(sin(a + b)), expand(cos(a - 2*b)), expand(tan(x + y)), expand(tan(3*x)), expand(sec(2*x)), expand(sinh(2*x)), expand(cosh(a + b)), expand(tanh(2*x)), expand(sin(x)), expand(cot(x));
expand(exp(2*x + y - 1)), expand(ln(2*x)), expand(ln(3/4)), expand(ln(x*y)), expand(ln(2^(1/2)*x)), expand((x + 1)*sin(2*x)), expand(cos(x*(y + 1)));
near := proc(e) evalb(abs(evalf(subs(x = 0.3, y = 0.4, e), 25)) < 10^(-15)) end proc:
seq(near(expand(sin(n*x)) - sin(n*x)) and near(expand(cos(n*x)) - cos(n*x)) and near(expand(tan(n*x)) - tan(n*x)), n = 2 .. 12), seq(near(expand(f(3*x - 2*y)) - f(3*x - 2*y)), f = [sin, cos, tan, exp]);
# Powers with symbolic exponents, operators and repeated calls.
expand(x^(n1 + 1)), expand((x + 1)^(n1 + 2)), expand(x^(2*n1)), expand((2*x)^n1), expand('(f@@3)'(x)), expand('(f@@(k + 2))'(x)), expand('(f@@k)'(x));
