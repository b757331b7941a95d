# Long series of rational numbers, with denominators of small primes, of large ones and without any: known coefficients.
coefficients := s -> [seq(coeff(convert(s, polynom), x, k), k = 0 .. order(s) - 1)]:
for q in [1, -2/3, 10007/5, 1/10007, 10^20, 7/6] do for a in [1/3, -7/2, -1, -12, 50, 5/10007, 10^8/3] do
  if coefficients(series((1 + q*x)^a, x, 45)) <> [seq(mul((a - i)*q/(i + 1), i = 0 .. k - 1), k = 0 .. 44)] then lprint("power", q, a) end if
end do; if coefficients(series(exp(q*x), x, 60)) <> [seq(q^k/k!, k = 0 .. 59)] or coefficients(series(ln(1 + q*x), x, 60)) <> [0, seq(-(-q)^k/k, k = 1 .. 59)] or coefficients(series(sinh(q*x), x, 60)) <> [seq(op([0, q^(2*k + 1)/(2*k + 1)!]), k = 0 .. 29)] or coefficients(series(1/(1 - q*x), x, 300)) <> [seq(q^k, k = 0 .. 299)] then lprint("function", q) end if end do:
f := [1, 1]: for k from 3 to 500 do f := [op(f), f[-1] + f[-2]] end do: evalb(coefficients(series(1/(1 - x - x^2), x, 500)) = f), coefficients(series((3 - 2*x)/(2 + x^3/7), x, 8)), coefficients(series(x/(exp(x) - 1), x, 25))[23];
# Products against sums of products, short and long, sparse and dense, cut off within and beyond.
seed := 4: rnd := proc(n) global seed; seed := irem(seed*16807, 2147483647); irem(seed, n) end proc:
for form in [[30, 1, k -> k!], [90, 1, k -> 1], [150, 3, k -> k + 1], [120, 1, k -> (k + 1)*3^k], [60, 2, k -> 10007^irem(k, 2)], [100, 1, k -> lcm(seq(i, i = 1 .. k + 1))*7^100]] do
  n, step := form[1], form[2]; a, b := seq([seq(`if`(irem(k, step) = 0, (rnd(2*10^9) - 10^9)/form[3](k), 0), k = 0 .. n)], j = 1 .. 2);
  p, q := seq(series(add(c[k + 1]*x^k, k = 0 .. n), x, infinity), c = [a, b]); want := [seq(add(a[i + 1]*b[k - i + 1], i = 0 .. k), k = 0 .. n)];
  lprint(evalb(coefficients(series(p*q, x, n + 1))[1 .. n + 1] = want), evalb(coefficients(series(p*q, x, 12))[1 .. 12] = want[1 .. 12]), evalb(series(p^2*q, x, n) = series(p*(p*q), x, n)), evalb(convert(series(p*q, x, infinity), polynom) = expand(convert(p, polynom)*convert(q, polynom))), series(series(p*q, x, n)/p - q, x, n))
end do:
# Differential equations: of the tangent, of exponentials of sums and of powers of series.
t := series(tan(x), x, 50): e := series(exp(sin(x) + cos(x) - 1), x, 50): h := series((8 + x - x^3/5)^(-7/3), x, 50): w := series(sin(x/3 + x^2/10007), x, 40): v := series(cos(x/3 + x^2/10007), x, 40):
series(diff(t, x) - 1 - t^2, x, 49), series(diff(e, x) - (cos(x) - sin(x))*e, x, 49), series(diff(h, x)*(8 + x - x^3/5) + 7/3*(1 - 3*x^2/5)*h, x, 40), series(w^2 + v^2, x, 40), series(diff(w, x) - (1/3 + 2*x/10007)*v, x, 39), series(ln(e), x, 20) - series(sin(x) + cos(x) - 1, x, 20);
# The shortest ones.
for n to 2 do series(exp(2*x), x, n), series(sin(x + x^2), x, n), series((1 - x)^(1/2), x, n), series(1/(2 - x), x, n), series(exp(x)*ln(1 + x), x, n) end do;
