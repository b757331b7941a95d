# Sequences against their sums and recurrences.
[seq(bernoulli(n), n = 0 .. 12)], bernoulli(50), [seq(eulernumber(n), n = 0 .. 10)];
{seq(add(binomial(m + 1, k)*bernoulli(k), k = 0 .. m), m = 1 .. 30)}, {seq(add(binomial(2*m, 2*k)*eulernumber(2*k), k = 0 .. m), m = 1 .. 15)};
[seq(fibonacci(n), n = -4 .. 12)], fibonacci(300), [seq(lucas(n), n = 0 .. 8)];
[seq(stirling1(5, k), k = 0 .. 6)], [seq(stirling2(5, k), k = 0 .. 6)], stirling2(0, 0), {seq(bell(n) - add(stirling2(n, k), k = 0 .. n), n = 0 .. 12)};
[seq(catalannumber(n), n = 0 .. 9)], [seq(partitioncount(n), n = 0 .. 10)], partitioncount(200), {seq(nops(partitions(n)) - partitioncount(n), n = 0 .. 12)}, partitions(4);
binomial(10, 3), binomial(3, 5), binomial(3, -1), binomial(-3, 2), binomial(-3, -5), binomial(40000, 2), multinomial(2, 3, 4);
iroot(10^30 + 1, 3), iroot(-27, 3), iroot(0, 2), iroot(26, 3), iroot(2^200 - 1, 200), {seq(`if`(iroot(n, 3)^3 <= n and (iroot(n, 3) + 1)^3 > n, 0, n), n = 1 .. 1000)};
contfrac(415/93), contfrac(-7/3), contfrac(Pi), contfrac(Pi, 3), contfrac(2.5), contfrac(5), convergents([3, 7, 15, 1]), convergents([]);
fibonacci(x); bernoulli(-1); multinomial(-1); iroot(-4, 2); contfrac(x);
