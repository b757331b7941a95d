# Truncated series: what the kernel expands by itself. The order term stands at the first exponent that is left out.
series(x, x), series(x, x, 0), series(x, x, 4), series(x^7 + x, x), series(5, x), series(0, x), series(y^2, x), series(x^2 + 2*x*y, x);
series(1 + x + O(x^3), x), series(O(x^2), x), series(O(1), x), series(x*y*3 + a*x*b + x^(-2), x), series(infinity*x, x), series(x::name, x);
series(1/(1 - x), x), series(1/(1 - x), x, 10), series(1/(1 - x), x, 1), series(x/(1 - x - x^2), x), series((1 + x)^2/x^3, x), series((1 + x)^4, x, 3), series((1 - x)^(-1)*(1 + x)^3, x, 4), series(x^(-3)/(2*x), x);
series((a + b*x)*(c + d*x), x), series((1 + x)/(1 - 2*x), x, 20);
# At other points.
series(x^2, x = 1), series(1/x, x = 2, 3), series(x^3, x = a), series(x^2, x = 0), series(x, x = -1), series(a[1]^2, a[1] = 1);
# Order, and what it refuses.
Order := 3: series(1/(1 + x), x); Order := infinity: series((1 + x)^3 + x^100, x); Order := 6:
Order := -1;
Order := x;
series(x, x, t);
series(x, x, 1/2);
series(x, x, -1);
series(1/(1 - x), x, 2), Order;
series(bad(x), x = 1, 3): `series/bad` := proc() error "bad luck" end: series(bad(x), x, 3); Order;
series(x, x, infinity);
# What has no series.
series(x);
series(x, 2);
series(x, x + y);
series(x, x, 1, 2);
series([x], x);
series(x = 1, x);
series(a[x], x);
series(1/(x^7 + x^8), x);
series(exp(1/x), x);
`series/power` := 'sp': sp := proc() 5 end: series((1 + x)^5, x);
unassign('`series/power`');
# Libraries of one's own: a series, FAIL, PuiseuxSeries, or a constant.
`series/h` := proc(u, x) `if`(u = x, series(1 + x^2, x), FAIL) end: series(h(x)*x, x);
`series/fracpower` := proc() ['args'] end: series(h(x^2), x), series(1 + h(x^2), x = 1);
`series/p` := proc(u, x) PuiseuxSeries(u^2) end: series(p(x), x), series(x*p(x), x);
`series/c` := proc(u, x) 3*u*x end: series(c(7) + c(x), x), series(c[2](x), x);
`series/infinity` := proc() ['infinity', args] end: series(x, x = infinity), series(x, x = -infinity, 3), series(x, x = y*infinity); taylor(x, x = -infinity, 3);
unassign('`series/fracpower`', '`series/infinity`');
# taylor wants powers 0, 1, 2, ... with coefficients free of x.
taylor(1/(1 - x), x, 3), taylor(x^2, x = 1);
taylor(1/x, x);
taylor(ln(x), x);
taylor(sqrt(x), x);
# The object: operands, map, subsop, types, printing.
s := series(1/(1 - x), x, 4); t := series(x^2 + y*x, x):
op(s); op(0, s), op(1, s), op(-1, s), nops(s), [op(t)], type(s, series), type(s, algebraic), has(s, x);
order(s), order(t), order(series(0, x)); order(x);
map(f, t), subsop(1 = 7, s), subsop(0 = z, s), subsop(1 = 0, s); subsop(2 = 7, s);
s = s, evalb(s = series(1/(1 - x), x, 4)), s + s, s - s, s*s, 2*s; evalf(series(1/3 + x/7, x)), lprint(series(-x^(-2) - 3*x, x)), eval(s, x = y);
series(1/2*x - 3*y*x^2 + (a + b)*x^3 - x^(-1), x, 3), series(1.5*x, x), series(x, x = y + 1), series(x, x = -3);
# A variable that becomes a number, a power or a multiple.
subs(x = 0, s), subs(x = y, s), subs(x = 2*x, s), subs(x = x^2, s), subs(x = -3*x^2, t), subs(x = 3, t), subs(x = 1.5, t), subs(x = 1/2, t), subs(x = I, t), subs(x = x + 1, series(x, x = 1)), subs(y = 0, t), subs(x = 1/x, t);
subs(x = 1, s);
subs(x = 1/x, s);
subs(x = 0, series(1/x + 3, x));
subs(x = 0, series(x + x^2, x)), subs(x = 0, series(1/x - 1/x + x, x)), subs(x = 2^(1/2), t);
p := series((1 + x)^3*(1 + x^2)^4 + x^15, x, 20): subs(x = 10, p), subs(x = -7, p), subs(x = 10^20, p);
# Derivatives and integrals of series.
diff(s, x), diff(s, y), diff(t, y), diff(series(y*x + z, x), y), diff(series(x^2 + 3*x, x = 1), x), diff(series(1/x, x), x), diff(series(O(1), x), x), diff(series(x^2, x), x);
diff(series(x^2, x = y), y); diff(subsop(0 = x^2, s), x);
diff(subsop(0 = x^2 + x, s), x);
diff(series(ln(x), x), x), diff(series(ln(x)*x + x^2, x), x), diff(subsop(1 = f(x), s), x);
`int/series`(s, x), `int/series`(t, x), `int/series`(series(2/x + 3 + x, x), x), `int/series`(series(1/(1 + x^2), x = 1, 2), x), `int/series`(t, y), `int/series`(series(ln(x)*x, x), x); `int/series`(x, x); `int/series`(s);
# Exponents at their limits.
series(x^4000000, x, infinity), series(x^4000001, x), series(x^(-4000000), x), series(x^(10^30), x), series(x^3000000*(1 + x)^2*(x^2000000 + 1)^2, x, 2500000);
series(x^4000001, x, infinity);
series(x^(-4000001), x);
series(x^3000000*(1 + x)^2*(x^2000000 + 1)^2, x, infinity);
# Remembered results of a higher degree serve for a lower one; floats are not kept.
`series/w` := proc(u, x) global count; count := count + 1; series(1 + u + u^2 + u^3 + u^4 + u^5 + u^6, x) end: count := 0:
series(w(x), x, 6): series(w(x), x, 6), series(w(x), x, 3), count; series(w(x), x, 9): count; series(1.5*w(y), y): series(1.5*w(y), y): count;
