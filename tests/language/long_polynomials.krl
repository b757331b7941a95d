# Long products and powers are those of the values.
at := [x = 3, y = -2, z = 5/7, u = 11, a = 2]:
for p in [(1 + x + y + z)^9*(x - y + 2*z + 3)^8, (x/2 - y/3 + z*u)^11, (x^(1/2) + y)^20, (a^3*x - 7)^30, (x + 1)^120, (10^40*x + y - 3)^9*(x*y + 10^35)^7, (x*y*z*u + 1)^14*(x^1000 - y^2)^3, (g(x) + 2*h(x, y) - 1)^12, (1/x + y + 2/z)^13, (x - 1)^40*(x + 1)^40 - (x^2 - 1)^40, (x + y)^14*(x - y)^14] do
  e := expand(p); lprint(nops(e), evalb(normal(subs(at, e) - subs(at, p)) = 0))
end do:
expand((1 + x + y)^30*(1 - x - y)^30) - expand((1 - (x + y)^2)^30), nops(expand((x + y + z + u + 1)^16)), expand((x - y)^12*(x + y)^12 - (x^2 - y^2)^12);
evalf(subs(x = 1/3, expand((x + 0.5)^25)) - (1/3 + 0.5)^25, 5);
# What no memory holds is refused before it is begun.
expand((x + 1)^(10^9)); expand((x + 1)^(10^20)); expand((a + b + c + d + e + f + g1 + h1)^40);
expand(mul(v[i] + w[i], i = 1 .. 40)); expand(z^3*mul(add(v[i, j], j = 1 .. 10) + 1.5, i = 1 .. 12)/(y + 1)); expand((a + b + 1.5)^(10^6)); expand((a + I*b + c + d + u + v + w + x)^60); expand(add(v[i], i = 1 .. 1000)^3); expand(mul(v[i]^2 + v[i] + 1, i = 1 .. 30)*(y + 1)^5*(y - 1)); expand((x + 1)^400000);
nops(expand(mul(v[i] + w[i], i = 1 .. 12))), nops(expand(mul(v[1] + v[i], i = 2 .. 8)*mul(v[2] - v[i], i = 3 .. 8))), nops(expand((x - 1)*add(x^k, k = 0 .. 999))), nops(expand(mul((x - k)*(y + k), k = 1 .. 30)));
# Factors with variables in common, and positive coefficients: the first is too much, the others have as many terms as there are monomials.
expand((a + b + c + d + u)^60*(a + b + c + d + v)^60); expand((x + y + z + t)^100*(x + u + v + w)^100);
nops(expand((x + y + z + 1)^20*(x + y + t + 3)^20)), add(add(binomial(40 - i - j + 2, 2), i = 0..20), j = 0..20), nops(expand((x + y + z)^25*(x + y + z + t)^10)), nops(expand((x + y + 1)^60*(x - y + 1)^60));
# Coefficients too long for machine words.
wide := expand((x + y + 10^24)^62*(x - y + 10^24)^62): nops(wide), evalb(eval(wide, [x = 2, y = -5]) = (10^24 - 3)^62*(10^24 + 7)^62); wide := 'wide':
# A limit of time reaches into a product; the session goes on.
p := expand((a + b + c + d + u)^30):
try timelimit(0.3, expand(p*(p + 1))) catch: lasterror end try; nops(expand((x + 2)^3));
# What is remembered: results, but none with floats.
expand((x + 7)^2): expand((x + 7.5)^2): has([entries(op(4, eval(expand)))], 14*x), hastype([entries(op(4, eval(expand)))], float); divide((x + 1.5)*(x - 2.5), x - 2.5): hastype([entries(op(4, eval(expand)))], float);
# The long way gives what the short one gives.
f := expand((1 + x + y + z)^12): g := expand((x - 2*y + 3*z + 5)^11): h := expand((x^3*y - z^2 + 7)^6 + x):
for a in [f, g, h] do for b in [f, g, h, 2*f, f + 1, x*y - z] do
  p := expand(a*b): lprint(nops(p), divide(p, a, 'q'), evalb(q = b), divide(p + 1, a), divide(p, 2*a), divide(expand(3*p + a*z^20), a))
end do end do:
divide(expand((x - y)^40*(10^50*x + 3)^20), expand((x - y)^20), 'q'), evalb(expand(q*(x - y)^20) = expand((x - y)^40*(10^50*x + 3)^20));
p := expand((1 + x^3 + y^2 + z + u + v)^11): p2 := expand(p*(p + 3)): try timelimit(0.3, divide(p2, p)) catch: lasterror end try; divide(x^2 - 4, x + 2);
# Divisors of products with a factor in common.
seed := 4711: rnd := proc(n) global seed; seed := irem(seed*16807, 2147483647); irem(seed, n) end proc:
poly := proc(vars, terms, degree) local k, v; add((rnd(199) - 99)*mul(v^rnd(degree + 1), v = vars), k = 1 .. terms) end proc:
count := 0:
for k to 60 do
  vars := [x, y, z, u, v][1 .. 1 + irem(k, 3)];
  a, b, c := poly(vars, 6, 4), poly(vars, 5, 4), poly(vars, 4, 3);
  g := gcd(expand(a*c), expand(b*c));
  if not divide(g, c/icontent(c)) and c <> 0 or not divide(expand(a*c), g) or not divide(expand(b*c), g) then lprint("gcd", a, b, c, g) else count := count + 1 end if
end do: count;
# Sparse ones in six variables, with coefficients of up to 16 digits; and with two common factors.
count := 0:
for k to 24 do
  vars := [x, y, z, u, v, w]; size := 10^(1 + irem(k, 16));
  a, b, c := 1 + poly(vars, 12, 8), 1 + poly(vars, 10, 8), 1 + size*poly(vars, 8, 7);
  p, q := expand(a*c*(x + y + size)), expand(b*c*(x + y + size));
  g := gcd(p, q);
  if not divide(g, expand(c*(x + y + size))) or not divide(p, g) or not divide(q, g) then lprint("gcd", a, b, c, g) else count := count + 1 end if
end do: count;
# A sum of many fractions has the value that it had.
at := [x = 7, y = -3/2, z = 11]:
for s in [add(1/(x + k), k = 1 .. 40), add((x - k)/((y + k)*(x + y)), k = 1 .. 12), add(k*x^k/(x*y - k)^2, k = 1 .. 8), add(1/((x + k)*(x + k + 1)), k = 1 .. 60), add(1/(x^k - 1), k = 1 .. 12), (x/y + y/z + z/x)^3 - 1/(x*y*z), 1/(1 + 1/(1 + 1/(1 + 1/(x + y))))] do
  n := normal(s): e := normal(s, expanded): lprint(evalb(subs(at, n) = subs(at, s)), evalb(subs(at, e) = subs(at, s)), evalb(subs(at, numer(s)/denom(s)) = subs(at, s)), gcd(expand(numer(s)), expand(denom(s))))
end do:
evalb(normal(add(1/((x + k)*(x + k + 1)), k = 0 .. 99)) = 100/(x*(x + 100))), normal((x^60 - 1)/(x^45 - 1)), normal(add(1/(x + k), k = 1 .. 5) - add(1/(x + k), k = 1 .. 5));
# Divisors with coefficients of hundreds of digits.
c := expand((3 + x)^200 - 5): evalb(gcd(expand(((1 + x)^200 + 3)*c), expand(((2 - x)^200 + x)*c)) = c);
c := expand((x + 10^10*y)^6 + z^6): evalb(gcd(expand(((10^30*x + y + z)^8 + 3)*c), expand(((2 - x + 2*y - 10^20*z)^8 + x)*c)) = c);
c := expand((3 + x*y - z)^8 - 5*10^100): d := expand((10^50 + x - y*z)^8 + 3): p := expand(c*d): evalb(gcd(p, c) = c), evalb(normal(p/c) = d), divide(p + 1, c);
# Digits of long numbers.
p := genpoly(3^20000, 10, x): nops(p), evalb(subs(x = 10, p) = 3^20000);
