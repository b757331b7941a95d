# Exact division over the integers.
test := proc(a, b) local q; q := 'none'; [divide(a, b, 'q'), q] end proc:
test(x^2 - 1, x - 1), test(x, 2*x), test(2*x, 2), test(x, 2), test(6, 3), test(6, 4), test(0, x), test(x^2 + 1, x - 1), test(6*x^2 - 6, 4*x - 4), test(4*x^2 - 4, 6*x - 6), test(x^2/2 - 1/2, x - 1), test(x*y + y, y), test(x*y + 1, y), test(x, x), test(7*y, 1), test(x + 1, x + y);
test((x - 1)*(10^30*x + 1), x - 1), test(x^100 - y^100, x^5 - y^5)[1], test(expand((x + y)^3*(x - 2*y)), x + y), test(2*x^2 + x/2, x), test(x^(-1), x), test((x + 1)^5*y, (x + 1)^2)[1], test(x^2*a[1]^3, x^2*a[1]), test(x^2 - 2.25, x - 1.5), test(-x - 1, x + 1);
divide(x, 0); divide(x + 1, 1/2); divide(sin(x)^2 - 1, sin(x) - 1); divide(x^y, x + 1); divide(x); divide(x, x, 3);
frontend(divide, [sin(x)^2 - 1, sin(x) - 1]);
# Greatest common divisors and least common multiples.
gcd(12, 18), gcd(0, x), gcd(4*x + 4, 6*x + 6), gcd(x/2 + 1/2, x + 1), gcd(x^2 - 1, (x + 1)^2, 'u1', 'u2'), u1, u2, gcd(x, y), gcd(x^3*y, x*y^2), gcd(x^2*y - y, y*z), gcd(sin(x)^2 - 1, sin(x) + 1), gcd(1.5*x, x);
lcm(x^2 - 1, x + 1), lcm(4, 6), lcm(x, y, x*y), lcm(), gcd(10^50*x - 10^50, 3*x^2 - 3), gcd(x^60 - 1, x^45 - 1), gcd(x^2 + 2*x + 2, x^2 + 4);
gcd(1/x, x); gcd(x);
