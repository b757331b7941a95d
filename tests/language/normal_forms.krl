# Quotients in lowest terms: common factors go, the rest stays in factors.
normal((x^2 - 1)/(x - 1)), normal(1/x + 1/y), normal(1/(x - 1) - 1/(x + 1)), normal((x^2 - y^2)/(x - y)^3), normal((x^2 - y^2)/(x - y)^3, expanded), normal(1/(x - 1) + 1/(1 - x)), normal((x*(x + 1) - x^2 - x)/y), normal(x/2 + 1/3), normal((2*x + 2)/(4*x - 4)), normal((x + 1)^3/(x + 1)), normal((x^2 + x)/x), normal(x^3/(x^2*y + x^3)), normal((x*y + y)^2/(y^2*(x + 1))), normal(0), normal((x^4 - 1)*(x + 2)/((x^2 - 1)*(x + 3))), normal(1.5*x/(x*y)), normal((I*x + I)/(x + 1));
numer(x/y + 1/2), denom(x/y + 1/2), numer(2/3), denom(2/3), numer(1/x + 1/y), denom(1/x + 1/y), numer(I/2 + 1/3), denom(I/2 + 1/3), numer((x^2 - 1)/(x - 1)), denom((x^2 - 1)/(x - 1)), denom(x^(-2)*y^3), denom((x + 1)^2/(2*x + 6)^3), numer(x^(-1/2)), denom(x^(-1/2)), numer(2.5), denom(2.5), numer(x), denom(x), numer(1/(1/x + 1)), denom(1/(1/x + 1));
# What is no rational expression stands for itself.
normal((sin(x)^2 - 1)/(sin(x) - 1)), normal(sin((x^2 - 1)/(x - 1))), normal((x^(1/2) + x^(3/2))/x^(1/2) - 1), normal((2^n - 2^n)/x + 1/2^n - 1/2^n), numer(sin(x)/cos(x) + 1), denom(sin(x)/cos(x) + 1), normal((g(1/x + 1/y) - 1)/(g(1/x + 1/y)^2 - 1));
normal([(x^2 - 1)/(x - 1), {1/x - 1/x^2}]), normal(1/x + 1/y = (x^2 - 4)/(x + 2)), normal(((x + 1)^2 - 1)/x .. 2);
normal(x, 5); normal(); numer([x]); denom(x, y); normal(Array(1 .. 2, [x, y])); numer(1 = x);
frontend(proc(a) a^2 end proc, [sin(x) + 1]), frontend(degree, [sin(x)^3 + x, sin(x)]), evalb(frontend(indets, [sin(x) + exp(y)*z + 1], [{`+`, `*`, function}]) = {x, y, z, sin(x), exp(y)}), frontend(coeff, [sin(x)^2*y + cos(x), sin(x), 2]), frontend(proc(a, b) [a, b, a = b] end proc, [exp(x), exp(x)]), frontend(nops, [sin(x) + cos(x) + sin(x)*y], [{`+`}, {sin(x)}]);
frontend(degree); frontend(degree, x);
# What is left below the bar after a common factor has a positive leading coefficient.
normal((y - x)/(x^2 - y^2)) + 1/(x + y), normal((1 - x)/(x^2 - 1)), normal((1 - x)^2/(x^2 - 1)^3), denom((sin(x) - 1)/(1 - sin(x)^2));
# Long sums of fractions: the second route goes from the left, with one common factor taken out at the end.
seed := 99: rnd := proc(n) global seed; seed := irem(seed*16807, 2147483647); irem(seed, n) - iquo(n, 2) end proc:
for form in [k -> x + k, k -> 2*x + 3*k, k -> x + k*y, k -> x^2 + k*x*y + 1, k -> (x + k)*(x + k + 1), k -> (x + irem(k, 3))^2*(y - k), k -> (sin(x) - k)*(x + irem(k, 2)), k -> 10^30*x + k] do
  terms := [seq((rnd(9)*x + rnd(5))/form(k), k = 1 .. 9)]:
  n := 0: d := 1: for t in terms do n := expand(n*denom(t) + d*numer(t)); d := expand(d*denom(t)) end do:
  s := normal(add(t, t = terms)): g := gcd(n, d):
  lprint(evalb(expand(numer(s)*d - denom(s)*n) = 0), gcd(expand(numer(s)), expand(denom(s))), degree(expand(denom(s)), x) = degree(d, x) - degree(g, x))
end do:
evalb(normal(add(1/((x + k)*(x + k + 1)), k = 1 .. 40)) = 40/(x + 1)/(x + 41)), normal(add(1/(x + k), k = 1 .. 30) - add(1/(x + k), k = 2 .. 30)), degree(numer(add(k/(x + k), k = 1 .. 60)), x), evalb(normal(add(1.5/(x + k), k = 1 .. 3)) = (4.5*x^2 + 18.0*x + 16.5)/(x + 1)/(x + 2)/(x + 3));
