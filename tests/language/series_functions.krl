# Expansions of functions, against their known coefficients to order 50.
coefficients := proc(s, n) local a, i; a := [seq(0, i = 0..n)]; for i to nops(s)/2 do if op(2*i, s) <= n then a := subsop(op(2*i, s) + 1 = op(2*i - 1, s), a) end if end do; a end:
bernoulli := proc(n) option remember; local k; if n = 0 then 1 else -add(binomials(n + 1, k)*bernoulli(k), k = 0..n - 1)/(n + 1) end if end:
binomials := proc(n, k) local i; mul((n - i + 1)/i, i = 1..k) end:
# x/(exp(x) - 1) gives the Bernoulli numbers, 1/cosh(x) the Euler numbers, (1 - sqrt(1 - 4*x))/(2*x) the Catalan numbers.
evalb(coefficients(series(z/(exp(z) - 1), z, 52), 50) = [seq(bernoulli(n)/n!, n = 0..50)]);
euler := proc(n) option remember; local k; if n = 0 then 1 elif irem(n, 2) = 1 then 0 else -add(binomials(n, 2*k)*euler(2*k), k = 0..n/2 - 1) end if end:
evalb(coefficients(series(sech(z), z, 51), 50) = [seq(euler(n)/n!, n = 0..50)]);
evalb(coefficients(series((1 - sqrt(1 - 4*z))/(2*z), z, 52), 50) = [seq(binomials(2*n, n)/(n + 1), n = 0..50)]);
evalb(coefficients(series(exp(z), z, 51), 50) = [seq(1/n!, n = 0..50)]), evalb(coefficients(series(ln(1 + z), z, 51), 50) = [0, seq((-1)^(n + 1)/n, n = 1..50)]), evalb(coefficients(series((1 + z)^(2/3), z, 51), 50) = [seq(binomials(2/3, n), n = 0..50)]);
# The list of Stirling numbers of the second kind, n! * [x^n] (exp(x) - 1)^k/k!.
stirling := proc(n, k) option remember; if n = k then 1 elif k < 1 or n < k then 0 else k*stirling(n - 1, k) + stirling(n - 1, k - 1) end if end:
evalb(coefficients(series((exp(z) - 1)^7/7!, z, 31), 30) = [seq(stirling(n, 7)/n!, n = 0..30)]);
# Products, quotients and powers against exact arithmetic on lists of rational numbers.
product := proc(a, b) local i, k; [seq(add(a[i]*b[k + 1 - i], i = 1..k), k = 1..nops(a))] end:
asseries := proc(a) local i; series(add(a[i]*x^(i - 1), i = 1..nops(a)) + O(x^nops(a)), x, nops(a)) end:
state := 20240229: random := proc() global state; state := irem(state*1103515245 + 12345, 2^31); iquo(state, 2^12) end:
rationals := proc(n, gap) local i; [1 + irem(random(), 7), seq(`if`(irem(random(), gap) = 0, (irem(random(), 41) - 20)/(1 + irem(random(), 12)), 0), i = 2..n)] end:
checked := proc(n, gap) local a, b, p, c;
  a, b := rationals(n, gap), rationals(n, gap); p := product(a, b);
  c := a; to 6 do c := product(c, a) end do;
  evalb(coefficients(series(asseries(a)*asseries(b), x, n), n - 1) = p and coefficients(series(asseries(p)/asseries(b), x, n), n - 1) = a
    and coefficients(series(asseries(a)^7, x, n), n - 1) = c and coefficients(series(series(asseries(a)^(3/5), x, n)^5/asseries(a)^2, x, n), n - 1) = a)
end:
[seq(checked(12, 1), i = 1..5), seq(checked(30, 4), i = 1..3), checked(60, 20), checked(2, 1), checked(1, 1)];
# Identities, and derivatives: of the expansion, and the expansion of the derivative.
iszero := proc(e) local s, i; s := series(e, z, 14); evalb(nops(s) = 0 or nops(s) = 2 and op(2, s) >= 12) end:
commutes := proc(e) local s; s := series(diff(series(e, z, 9), z) - series(diff(e, z), z, 8), z, 12); evalb(nops(s) = 0 or nops(s) = 2 and op(1, s) = O(1) and op(2, s) >= 4) end:
map(commutes, [sin(z)*exp(z), exp(sin(z)), ln(2 + z), (1 + z)^(1/3), tan(z), arcsin(z), 1/(1 - z)^3, erf(z), sinh(z)/z, cos(z)/z^2, z^5, arctan(z)]);
# Other points, symbols and floats in coefficients.
series(sin(1.5*x), x, 6), series(exp(0.5 + x), x, 3), series(x^2.0, x), series((1 + x)^n, x, 4), series((1 + x)^10, x, 20), series((1 + x)^10, x, 4), series((1 + x)^10, x, infinity);
series(exp(x), x, infinity);
# Fractional and symbolic powers come as sums.
series(sqrt(x), x), series(sqrt(sin(x)), x), series(sqrt(1 + sqrt(x)), x, 3), series(x^(1/2) + x^(1/3), x, 2), series(x^a*sin(x), x), series((x + x^2)^a, x, 3), series(x^a + x, x), series(1/sqrt(x), x = 0, 3), series((x - 1)^(3/2), x = 1), series(exp(sqrt(x)), x, 2);
# At infinity.
series(1/(1 + x), x = infinity), series(sqrt(x^2 + x), x = infinity, 3), series(ln(x + 1), x = infinity, 3), series(arctan(x), x = infinity, 4), series(x/(x - 1), x = -infinity, 3); series(x, x = y*infinity); series(sin(x), x = infinity);
# Special functions and their poles, sizes, calls that stay.
series(abs(x - 1), x), series(abs(x), x), series(abs(a + x), x), series(signum(x - 3), x), series(signum(x^2), x), series(arctan(1/x), x, 4), series(arccoth(1/x), x);
series(f(x), x, 4), series(f(x^2), x), series(f(y, x), x, 3), series(f(x, x), x, 3), series(f(1/x), x); series(int(sin(x), x), x), series(int(f(y)*x, y), x), series(diff(f(x), x), x, 3), series(diff(f(x, y), y), x, 2);
series(O(x^3) + sin(x), x), series(O(y), x), series(O(x*sin(x)), x), series(exp(1/x), x = 1, 2); series(sin(1/x), x); series(ln(x - x), x); series(ln(O(x)), x); series(1/O(x), x);
# Arithmetic of the library: composition, inverse, conversion.
convert(series(sin(x), x), polynom), convert(series(x^2, x = 1), polynom), convert(series(sqrt(x), x, 2) + O(x^3), polynom), convert(x + y, polynom), convert(O(x), polynom), convert([series(exp(x), x, 3)*series(1/x, x), series(x^2 + x, x) = O(x)], polynom);
composeseries(series(exp(x), x, 5), series(sin(y), y, 5)), composeseries(series(1/x + x, x), series(y + y^2, y, 4)), composeseries(series(x^2 + 1, x), series(y^3, y)), composeseries(series(0, x), series(y, y)); composeseries(series(x, x), series(1 + y, y)); composeseries(x, x);
reverseseries(series(sin(x), x, 8)), reverseseries(series(x*exp(x), x, 5)), reverseseries(series(2*x + x^2, x, 4)); reverseseries(series(1 + x, x)); iszero(composeseries(series(tan(z), z, 14), reverseseries(series(tan(z), z, 14))) - z);
try timelimit(0.3, series(1/(1 - x - x^2), x, 200000)) catch: lasterror end try; series(1/(1 - x^1000 - x^3000), x, 20000): nops(%), op(nops(%) - 1, %), op(nops(%), %);
