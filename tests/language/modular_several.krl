# Terms come in an order that depends on what is met first: where that could show, results are compared.
# Divisors, quotients and normal forms of polynomials in several indeterminates.
Gcd(x^2*y - y, x*y + y) mod 7, Gcd((x + y)^2*(x - y*z), (x + y)*(z + 1), 'u', 'v') mod 7; u; v; Gcd(3*x*y + x, 0) mod 7, mods(Gcd(3*x*y + x, 0), 7), Gcd(x*y, 5) mod 7, Gcd(x/2 + y, x + 2*y) mod 5;
evalb(Gcd((x + y + 1)^2*(x*y + z), (x + y + 1)*(x*y + z)^2) mod 2 = expand((x + y + 1)*(x*y + z))), Lcm(x*y, 2*x*z) mod 7, Gcd(f(x)*y^2, f(x)*y) mod 7;
Divide(x^2 - y^2, x + y, 'q') mod 7; q; Divide(x^2 + y^2, x + y) mod 7, Divide(x^2 + y^2, x + y) mod 2;
Quo(x^2*y + x, x*y, x, 'r') mod 7; r; evalb(Quo(x^2*y + z, z*x + 1, x, 'r') mod 7 = y*x/z + 6*y/z^2); r; Rem(x^3 + y, x - y, x, 'q') mod 5; q; Rem(x^3 + y, (y + 1)*x - 1, x) mod 5;
Normal((x^2 - y^2)/(3*x + 3*y)) mod 7, Normal(1/x + 1/y) mod 7, Content(x^2*y + y^2*x, x, 'c') mod 5; c; Primpart(x^2*y + y^2*x, x, 'c') mod 5; c;
Powmod(x + y, 5, x^2 + 1, x) mod 7, Power(x + y, 3) mod 3, Eval(x^2 + y, x = y) mod 7, Content(0, x) mod 7, Primpart(5*x + 5, x) mod 7;
Gcd(x/5 + y, x + 2*y) mod 5; Gcd(x*y, x) mod 8; Quo(x*y, 0, x) mod 7; Divide(x*y, 0) mod 7; Gcd(x^a*y, x) mod 7, Gcd(sqrt(x)*y, y) mod 7, Gcd(1.5*x*y, y) mod 7;
# Exponents with a common divisor are as good as small ones.
evalb(Gcd(x^1000*y^1000 + 1, x^500*y^500 + 3) mod 2 = x^500*y^500 + 1), evalb(Resultant(x^2 + y^200, x*y^100 + z^50, x) mod 7 = z^100 + y^400), Divide(x^600*y^300 - z^900, x^200*y^100 - z^300) mod 7, evalb(Gcd(x^4*y^4, x^6*y^2) mod 5 = x^4*y^2), Gcd(x^3*y, y) mod 5;
# Resultants, discriminants, determinants, in small fields by values in an extension.
Resultant(x^2 + y, x*y + z, x) mod 7, Resultant(x^3*y + x + 1, x^2*z + y, x) mod 2, Discrim(x^2 + b*x + c, x) mod 7, Discrim(a*x^3 + b*x + d, x) mod 3, Discrim(a*x^3 + b*x + d, x) mod 101;
evalb(Det([[x, y], [z, t]]) mod 5 = x*t + 4*y*z), Det([[x, 1, 0], [y, x, 1], [0, y, x]]) mod 2, Det([[x, x], [1, 1]]) mod 2, Det(array(1 .. 2, 1 .. 2, [[x, 2], [3, y]])) mod 7;
# Factors.
[Sqrfree((x + y)^2*(x - y)^3*(x + 1)) mod 3, Sqrfree((x + y)^2*(x - y)^2*(x + 1)) mod 2, Factors(2*(x + y)^2*(x - y)^3*(x*y + 1)) mod 3, Factor(x^2 - y^2) mod 7, Factor(x^4 + y^4) mod 2]:
seq(evalb(%[k] = [[1, [[x + 1, 1], [x + y, 2], [x + 2*y, 3]]], [1, [[x + 1, 1], [x + y, 4]]], [2, [[x + y, 2], [x + 2*y, 3], [x*y + 1, 1]]], (x + y)*(x + 6*y), (x + y)^4][k]), k = 1 .. 5), Factors(3*x*y) mod 7;
 Factor(x^2 + y^2) mod 7, Factor(x^2 + y^2) mod 5, Irreduc(x^2 + y^2) mod 7, Irreduc(x^2 + y^2) mod 5, Irreduc(x*y) mod 7;
evalb(Factor(expand((x^2 + y*z + 1)*(x*y*z + x + 1)*(z^2 + y + x))) mod 5 = (x^2 + y*z + 1)*(x*y*z + x + 1)*(z^2 + y + x)), Roots(x*y) mod 7;
# Over the field of a root.
i := RootOf(_Z^2 + 1): Factor(x^2 + y^2, i) mod 7, Gcd(x^2 + y^2, x + i*y) mod 7, Expand((x + y*i)^2) mod 7, Resultant(x^2 + y, x - i*z, x) mod 7, Det([[i*x, 1], [y, i]]) mod 7;
w := RootOf(_Z^2 + _Z + 1): evalb(Gcd(Expand((x*y + w)^5*(x + y)) mod 2, Expand((x*y + w)^4*(x + w*y)) mod 2) mod 2 = x^4*y^4 + w), map2(op, 2, op(2, Factors((x^2 + x*y + y^2)*(x + w)^2) mod 2));
# Random ones: divisors have prime cofactors, resultants multiply, factors multiply back and are irreducible.
seed := 12345: random := proc(k) global seed; seed := irem(seed*48271, 2147483647); irem(iquo(seed, 8), k) end:
poly := proc(vars, terms, d, p) local k, v; add((1 + random(p - 1))*mul(v^random(d + 1), v = vars), k = 1 .. terms) end:
divisor := proc(p, vars, d)
  local a, b, g, u, v, s, t;
  a, b, g := seq(poly(vars, 3, d, p), s = 1 .. 3); u := Expand(a*g) mod p; v := Expand(b*g) mod p;
  if u = 0 or v = 0 then return true end if;
  g := [g, Gcd(u, v, 's', 't') mod p];
  if [Expand(g[2]*s - u) mod p, Expand(g[2]*t - v) mod p, Divide(g[2], g[1]) mod p, Gcd(s, t) mod p] = [0, 0, true, 1] then true else [p, u, v] end if
end proc:
resultant := proc(p, vars, d)
  local a, b, c, s, x;
  a, b, c := seq(poly(vars, 3, d, p), s = 1 .. 3); x := vars[1];
  s := Expand((Resultant(Expand(a*b) mod p, c, x) mod p) - (Resultant(a, c, x) mod p)*(Resultant(b, c, x) mod p)) mod p;
  if s = 0 then true else [p, a, b, c] end if
end proc:
factored := proc(p, vars, d)
  local f, t, F;
  f := Expand(mul(poly(vars, 2, d, p) + 1, t = 1 .. 3)) mod p;
  if f = 0 then return true end if;
  F := Factors(f) mod p;
  if (Expand(f - F[1]*mul(t[1]^t[2], t = F[2])) mod p) = 0 and {true, seq(Irreduc(t[1]) mod p, t = F[2])} = {true} then true else [p, f, F] end if
end proc:
for p in [2, 3, 46327, 10^20 + 39] do
  {seq(divisor(p, [x, y], 3), k = 1 .. 3), seq(divisor(p, [x, y, z], 2), k = 1 .. 3), seq(divisor(p, [x, y, z, t], 2), k = 1 .. 2), seq(resultant(p, [x, y], 2), k = 1 .. 3), seq(resultant(p, [x, y, z], 2), k = 1 .. 2), seq(factored(p, [x, y], 2), k = 1 .. 2), seq(factored(p, [x, y, z], 1), k = 1 .. 2)}
end do;
