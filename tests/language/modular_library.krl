# Division and greatest common divisors over a prime field; what is assigned comes as `mod` is set.
Gcd(x^2 - 1, x^2 + 2*x + 1) mod 7, mods(Gcd(x^2 - 1, 3*x - 3), 7), Gcd(x^2 - 1, x^3 - 1, 'u', 'v') mod 7; u, v; Gcd(x/2 + 1, 0) mod 7, Gcd(0, 0) mod 7, Gcd(x, 3) mod 7;
Gcdex(x^2 + 1, x + 3, x, 's', 't') mod 7; s, t; Lcm(2*x - 2, x^2 - 1) mod 7;
Quo(x^3 + 1, x + 3, x, 'r') mod 7; r; Rem(x^3 + 1, x + 3, x, 'q') mod 7; q; Divide(x^2 - 1, x - 1, 'q') mod 7; q; Divide(x^2 + 1, x - 1) mod 7, mods(Quo(4*x^2 + 1, x + 3, x), 5);
Quo(x, 0, x) mod 7; Gcd(2*x + 1, 3*x^2) mod 6; Gcdex(x*y, x, x) mod 7;
Resultant(x^3 + 2*x + 1, 3*x^2 + 5, x) mod 101, Discrim(x^3 + 2*x + 1, x) mod 101, -4*2^3 - 27 mod 101, Discrim(3*x^2 + x + 5, x) mod 101, 1 - 60 mod 101, Discrim(x^7 + 2*x + 1, x) mod 7;
# Powers, values, normal forms.
Power(x + 1, 7) mod 7, Powmod(x, 100, x^3 + x + 1) mod 7, Powmod(x, -1, x^3 + x + 1) mod 7, Expand((x + 1)^3*(2*x + 3)) mod 7, Expand((x + y)^7) mod 7, Expand((3*x + 5)^2) mod 10;
Normal((x^2 - 1)/(3*x^2 + 6*x + 3)) mod 7, Normal(1/x + 1/(x + 1)) mod 2, Normal(x + x^(-2)) mod 7, Normal(0/x + 0) mod 7; Normal(1/(x^7 - x - (x^7 - x))) mod 7;
Eval(x^3 + x, x = 3) mod 7, Interp([1, 2, 3], [4, 5, 6], x) mod 7, degree(Randpoly(4, x) mod 101, x), Irreduc(Randprime(5, x) mod 3) mod 3;
Powmod(x + 1, -1, x^2 - 1) mod 7;
# Factors: they multiply back, are irreducible, and come in order.
Factors(x^6 - 1) mod 7, Factor(3*x^6 - 3) mod 7, Factor(x^4 + 1) mod 2, mods(Factor(x^2 - 1), 7), Factors(3) mod 7, Factors(0) mod 7, Factor(x^9 + 1) mod 3;
Sqrfree(x^3 + 3*x^2 + 3*x + 1) mod 7, Sqrfree((x^2 + x)^14*(x + 3)) mod 7, DistDeg(x^4 - 1, x) mod 7, Roots(x^3 - 1) mod 7, Roots((x - 3)^4*x) mod 7, Roots(5) mod 7, Irreduc(x^2 + 1) mod 7, Irreduc(x^2 + 1) mod 5, Irreduc(3) mod 7;
Factors(x^2 + 1) mod 8; Roots(x*y) mod 7;
check := proc(p, n)
  local f, F, q, t, i;
  f := modp1(Randpoly(x, n), p): F := modp1(Factors(f), p); q := modp1(Constant(F[1], x), p);
  for t in F[2] do
    if not modp1(Irreduc(t[1]), p) then return t end if;
    # The test of Rabin: x^(p^n) is x, and no smaller power has a factor in common.
    if not modp1(IsZero(Rem(Subtract(Powmod(Shift(One(x), 1), p^modp1(Degree(t[1]), p), t[1]), Shift(One(x), 1)), t[1])), p) and modp1(Degree(t[1]), p) > 1 then return [rabin, t] end if;
    for i to t[2] do q := modp1(Multiply(q, t[1]), p) end do
  end do;
  evalb(q = f)
end proc:
{seq(seq(check(p, n), n = 1 .. 12), p = [2, 3, 5, 101, 46327, 46337, 10^20 + 39])}, {seq(check(p, 60), p = [2, 3, 46327])};
Primitive(x^4 + x + 1) mod 2, Primitive(x^4 + x^3 + x^2 + x + 1) mod 2, Primitive(x^2 + x + 3) mod 7, Primitive(x^2 - 1) mod 7;
Det([[1, 2], [3, 4]]) mod 7, Det([[0, 2, 1], [3, 4, 1], [1, 1, 1]]) mod 101, Det(array(1 .. 2, 1 .. 2, [[1, 2], [3, 4]])) mod 7, Det([[1, 2], [2, 4]]) mod 7, mods(Det([[1, 2], [3, 4]]), 7);
Det([[1, 2]]) mod 7;
# Over GF(4) and GF(49).
alias(a = RootOf(_Z^2 + _Z + 1)):
Factor(x^2 + x + 1, a) mod 2, Factor(x^4 + x + 1, a) mod 2, Factor(x^15 - 1, a) mod 2, Factors(x^2 + 1, RootOf(y^2 + 1)) mod 7, Factors(x^2 + 1) mod 7;
Gcd(x^2 + x + 1, x + a) mod 2, Expand((x + a)^2*(a*x + 1)) mod 2, Rem(x^3, x^2 + a*x + 1, x) mod 2, Expand(a^3) mod 2, Divide(x^2 + x + 1, x + a) mod 2; Quo(x^3, x^2 + a*x + 1, x, 'r') mod 2; r;
Gcdex(x + a, x + 1, x, 's', 't') mod 2; s, t; Expand(s*(x + a) + t*(x + 1)) mod 2;
Roots(x^2 + x + 1, a) mod 2, Roots(x^3 - 1, a) mod 2, Roots(x^3 - a) mod 2, Irreduc(x^3 + a) mod 2, Powmod(x, 100, x^3 + a*x + 1) mod 2, Resultant(x + a, x^2 + 1, x) mod 2, Eval(x^2 + x, x = a) mod 2;
Sqrfree((x + a)^4*(x + 1)) mod 2, Power(x + a, 4) mod 2, Normal((x^2 + x + 1)/(x + a)) mod 2, DistDeg(x^3 - 1, x, a) mod 2;
b := RootOf(_Z^3 + _Z + 4): f := Expand((x^2 + b*x + 3)^2*(x + b)*(x^3 + 2)) mod 5: F := Factors(f) mod 5: map(proc(t) [degree(t[1], x), t[2]] end, F[2]), Expand(f - F[1]*mul(t[1]^t[2], t = F[2])) mod 5;
# Random integers.
type(rand(), integer), {seq(rand(3)(), k = 1 .. 100)}, {seq(rand(5 .. 7)(), k = 1 .. 100)}, modp1(Degree(Randpoly(x, 3)), 10^20);
rand(0);
# Dense polynomials over GF(9) and in two indeterminates.
e := modp1(ConvertIn(y^2 + 1, y), 3): A := evalgf1(ConvertIn(x^2 + y*x + 2, x, y), 3): B := evalgf1(ConvertIn((y + 1)*x + 1, x, y), 3):
evalgf1(Add(A, B, e), 3), evalgf1(Subtract(A, B, e), 3), evalgf1(Multiply(A, B, e), 3), evalgf1(Quo(A, B, e, 'r'), 3); r, evalgf1(Rem(A, B, e, 'q'), 3); q, evalgf1(Gcd(Multiply(A, B, e), Multiply(B, B, e), e), 3);
evalgf1(Gcdex(A, B, e, 's', 't'), 3); evalgf1(Add(Multiply(s, A, e), Multiply(t, B, e), e), 3), evalgf1(Powmod(B, 81, A, e), 3), evalgf1(Resultant(A, B, e), 3), evalgf1(Eval(A, 2, e), 3), evalgf1(Eval(A, e, e), 3);
evalgf1(Factors(Multiply(A, Multiply(B, B, e), e), e), 3), evalgf1(Irreduc(A, e), 3), evalgf1(Roots(Multiply(B, B, e), e), 3), evalgf1(Sqrfree(Multiply(B, B, e), e), 3), evalgf1(DistDeg(B, e), 3);
evalgf1(Gcd(A, B), 3); evalgf1(Gcd(A, e, e), 3); evalgf1(Factors(Zero(x, y), e), 3); evalgf1(Powmod(A, -1, B, e), 3); evalgf1(Quo(A, Zero(x, y), e), 3);
modp2(Add(A, B, A), 3), modp2(Subtract(A), 3), modp2(Subtract(A, B), 3), modp2(Multiply(A, B), 3), expand(modp2(ConvertOut(A), 3)*modp2(ConvertOut(B), 3)) mod 3, modp2(Multiply(A, Zero(x, y)), 3);
modp1(ChremPoly([modp1(ConvertIn(x^2 + 1, x), 3), modp1(ConvertIn(2*x + 4, x), 5)], [3, 5]), 7); modp1(ChremPoly([], []), 7);
# Discriminants and primitive polynomials over a field that is given by a root.
r := RootOf(_Z^2 + 2): Discrim(x^2 + r*x + 1, x) mod 5, Discrim(r*x^3 + x + 1, x) mod 5, Discrim(x^5 + r*x + r, x) mod 5, Discrim(x + r, x) mod 5;
a := RootOf(_Z^2 + _Z + 1): Primitive(x^2 + x + a) mod 2, Primitive(x^2 + a*x + a) mod 2, Primitive(x + a) mod 2, Primitive(x + r) mod 5, Primitive(x^2 + a) mod 2;
