# Sequences against tables that come from other routes: recurrences, counts by brute force, sums over divisors.
same := proc(name, a, b) local i; for i to max(nops(a), nops(b)) do if a[i] <> b[i] then return name, i, a[i], b[i] end if end do; name, nops(a) end proc:
# Fibonacci and Lucas by their sums of neighbours; negative places by the same rule.
fib := [0, 1]: for i to 398 do fib := [op(fib), fib[-1] + fib[-2]] end do: same("fibonacci", [seq(fibonacci(n), n = 0..399)], fib);
luc := [2, 1]: for i to 298 do luc := [op(luc), luc[-1] + luc[-2]] end do: same("lucas", [seq(lucas(n), n = 0..299)], luc);
{seq(fibonacci(n + 1) - fibonacci(n) - fibonacci(n - 1), n = -40..40)};
# Bernoulli: sum(binomial(n + 1, k)*B[k], k = 0..n) = 0.
b := [1]: for n to 300 do b := [op(b), `if`(n > 1 and irem(n, 2) = 1, 0, -add(binomial(n + 1, k)*b[k + 1], k = 0..n - 1)/(n + 1))] end do:
same("bernoulli", [seq(bernoulli(n), n = 0..300)], b);
# Larger ones by tangent numbers, whose recurrence adds and multiplies by small numbers, and by Kummer's congruence.
tangent := proc(n) local t, k, j;
  t := table([1 = 1]); for k from 2 to n do t[k] := (k - 1)*t[k - 1] end do;
  for k from 2 to n do for j from k to n do t[j] := (j - k)*t[j - 1] + (j - k + 2)*t[j] end do end do; t[n]
end proc:
{seq(bernoulli(2*k) - (-1)^(k - 1)*2*k*tangent(k)/(4^k*(4^k - 1)), k = [200, 251])}, sign(bernoulli(2002)), length(numer(bernoulli(1000)));
{seq(modp(bernoulli(1000)/1000 - bernoulli(1000 + p - 1)/(1000 + p - 1), p), p = [7, 13, 17, 19, 23, 29])};
# Euler: sum(binomial(2*n, 2*k)*E[2*k], k = 0..n) = 0.
e := [1]: for n to 110 do e := [op(e), -add(binomial(2*n, 2*k)*e[k + 1], k = 0..n - 1)] end do:
same("eulernumber", [seq(eulernumber(2*n), n = 0..110)], e);
# Stirling's triangles by their rules, Bell by the rows' sums and by binomials.
s1 := table([(0, 0) = 1]): s2 := table([(0, 0) = 1]):
for n to 45 do for k from 0 to n do
  s1[n, k] := `if`(k = 0, 0, s1[n - 1, k - 1]) - `if`(k = n, 0, (n - 1)*s1[n - 1, k]);
  s2[n, k] := `if`(k = 0, 0, s2[n - 1, k - 1]) + `if`(k = n, 0, k*s2[n - 1, k])
end do end do:
{seq(seq(stirling1(n, k) - s1[n, k], k = 0..n), n = 0..45)}, {seq(seq(stirling2(n, k) - s2[n, k], k = 0..n), n = 0..45)};
same("bell", [seq(bell(n), n = 0..45)], [seq(add(s2[n, k], k = 0..n), n = 0..45)]);
# Catalan by convolution, partitions by counting the largest part.
c := [1]: for n to 120 do c := [op(c), add(c[i]*c[n + 1 - i], i = 1..n)] end do: same("catalannumber", [seq(catalannumber(n), n = 0..120)], c);
q := array(1..201, [1, seq(0, i = 1..200)]): for m to 200 do for n from m to 200 do q[n + 1] := q[n + 1] + q[n - m + 1] end do end do:
same("partitioncount", [seq(partitioncount(n), n = 0..200)], convert(q, list)); {seq(nops(partitions(n)) - q[n + 1], n = 0..18)};
# Of more by congruences of Ramanujan, and by the pentagonal numbers once.
p := table([0 = 1]):
for m to 1501 do
  s := 0; for k while k*(3*k - 1)/2 <= m do
    s := s - (-1)^k*(p[m - k*(3*k - 1)/2] + `if`(k*(3*k + 1)/2 <= m, p[m - k*(3*k + 1)/2], 0))
  end do; p[m] := s
end do:
{seq(modp(partitioncount(5*n + 4), 5), n = 30..90), seq(modp(partitioncount(7*n + 5), 7), n = 30..90), seq(modp(partitioncount(11*n + 6), 11), n = 100..150)}, {seq(partitioncount(n) - p[n], n = 200..1501)}, modp(partitioncount(10^5), 10^10);
# Functions of divisors by brute force.
count := proc(n) local k; add(`if`(igcd(k, n) = 1, 1, 0), k = 1..n) end proc:
same("totient", [seq(totient(n), n = 1..250)], [seq(count(n), n = 1..250)]);
sigma := proc(n, j) local d; add(`if`(irem(n, d) = 0, d^j, 0), d = 1..n) end proc:
same("divisorsum", [seq(divisorsum(n), n = 1..200)], [seq(sigma(n, 1), n = 1..200)]);
same("divisorsum 0", [seq(divisorsum(n, 0), n = 1..200)], [seq(sigma(n, 0), n = 1..200)]);
same("divisorsum 3", [seq(divisorsum(n, 3), n = 1..100)], [seq(sigma(n, 3), n = 1..100)]);
{seq(add(moebius(d), d = divisors(n)), n = 2..400)}, {seq(add(totient(d), d = divisors(n)) - n, n = 1..400)};
# Primes by the sieve.
N := 3000: sieve := array(1..N, [seq(true, i = 1..N)]): sieve[1] := false:
for i from 2 to 54 do if sieve[i] then for j from i*i by i to N do sieve[j] := false end do end if end do:
primes := [seq(`if`(sieve[i], i, NULL), i = 1..N)]: same("ithprime", [seq(ithprime(i), i = 1..nops(primes))], primes);
same("nextprime", [seq(nextprime(n), n = primes)], [op(2..-1, primes), 3001]), primecount(3000) - nops(primes), {seq(evalb(isprime(n) = sieve[n]), n = 1..N)};
# Residues: symbols by Euler's criterion and by multiplication, roots, orders, logarithms by trial.
{seq(seq(jacobi(a, 35) - jacobi(a, 5)*jacobi(a, 7), a = 0..34), i = 1..1)}, {seq(jacobi(a, 101) - mods(a^50, 101), a = 0..100)};
{seq(seq(evalb(evalb(sqrtmod(a, m) = FAIL) = evalb(not member(a, {seq(x^2 mod m, x = 0..m - 1)}))), a = 0..m - 1), m = 2..40)};
{seq(seq(`if`(sqrtmod(a, m) = FAIL, 0, modp(sqrtmod(a, m)^2 - a, m)), a = 0..m - 1), m = 2..40)};
order := proc(a, n) local k, x; x := modp(a, n); for k while x <> 1 do x := x*a mod n end do; k end proc:
{seq(seq(`if`(igcd(a, n) = 1, ordermod(a, n) - order(a, n), 0), a = 1..n - 1), n = 3..60)};
{seq(primitiveroot(p) - proc(p) local g; for g while order(g, p) < p - 1 do end do; g end proc(p), p = primes[3..60])};
{seq(powermod(3, discretelog(b, 3, 1009), 1009) - b, b = [seq(powermod(3, 17*k, 1009), k = 1..30)])};
# Inverses and cofactors.
{seq(seq(proc(c) [c[1] - igcd(x, y), c[2]*x + c[3]*y - c[1]] end proc(gcdex(x, y)), x = -15..15), y = -15..15)};
x := 3^400 + 1: y := 5^300 - 2: g := gcdex(x, y): g[1] - igcd(x, y), g[2]*x + g[3]*y - g[1], invmod(x, 2^607 - 1)*x mod (2^607 - 1);
# Hard ones.
factorint(2^101 - 1), factorint(nextprime(10^24)*nextprime(3*10^24));
unassign('x', 'n', 'k'): binomial(1/2, 5), binomial(0.5, 5), binomial(n, 0), binomial(n, 1), binomial(n, n), binomial(n, n - 1), binomial(x, 3), binomial(1 + I, 2), binomial(-7/3, 2), binomial(1/2, -1), binomial(-3, -5);
{seq(seq(`if`(n = 0 and k = 0, 0, binomial(n, k) - binomial(n - 1, k) - binomial(n - 1, k - 1)), k = -8..8), n = -8..8)};
contfrac(sqrt(2), 12), convergents(contfrac(649/200)), iroot(2*10^60, 5);
