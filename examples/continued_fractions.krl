# Continued fractions: of rationals, of square roots, of e; convergents, and Pell's equation.

# A rational is a finite one, by Euclid's algorithm. Floors are towards minus infinity.
floorOf := q -> `if`(type(q, integer), q,
                     iquo(op(1, q), op(2, q)) - `if`(q < 0, 1, 0)):
expansion := proc(q::rational)
  local x, terms, a;
  x := q; terms := NULL;
  do
    a := floorOf(x); terms := terms, a;
    if x = a then break end if;
    x := 1/(x - a)
  end do;
  [terms]
end proc:
value := proc(terms::list)
  local x, i;
  x := terms[-1];
  for i from nops(terms) - 1 by -1 to 1 do x := terms[i] + 1/x end do;
  x
end proc:

expansion(415/93);                            # 4, 2, 6, 7
expansion(-7/3), value(expansion(-7/3));
expansion(3141592653589793/10^15)[1..5];      # 3, 7, 15, 1, 292
evalb({seq(seq(evalb(value(expansion(p/q)) = p/q), p = -10..10), q = 1..10)} = {true});

# The convergents: p[k] = a[k]*p[k-1] + p[k-2], and the same for q.
convergents := proc(terms::list)
  local p, q, p0, q0, a, found;
  p0, q0 := 1, 0; p, q := terms[1], 1; found := p/q;
  for a in terms[2..-1] do
    p, p0 := a*p + p0, p;
    q, q0 := a*q + q0, q;
    found := found, p/q
  end do;
  [found]
end proc:
convergents([3, 7, 15, 1, 292]);              # 22/7 and 355/113 among them
# Neighbours differ by 1 over the product of their denominators.
c := convergents([1, seq(2, i = 1..10)]):
{seq(abs(c[i + 1] - c[i])*op(2, c[i + 1])*`if`(i = 1, 1, op(2, c[i])), i = 1..9)};

# The root of n, not a square, has a period: the state (m + sqrt(n))/d comes back.
root := proc(n::posint)
  local whole, m, d, a, period;
  whole := isqrt(n); if whole^2 > n then whole := whole - 1 end if;
  if whole^2 = n then return [whole, []] end if;
  m := 0; d := 1; a := whole; period := NULL;
  do
    m := d*a - m; d := (n - m^2)/d; a := iquo(whole + m, d);
    period := period, a;
    if a = 2*whole then return [whole, [period]] end if
  end do
end proc:
root(2), root(7), root(16), root(23);
nops(root(94)[2]), root(94)[2][8];            # a period of 16
# How many roots up to 50 have a period of odd length?
add(irem(nops(root(n)[2]), 2), n = 1..50);

# Pell: the least x, y > 0 with x^2 - n*y^2 = 1 is the convergent before the end of the first or, when the
# period is odd, the second period.
pell := proc(n::posint)
  local r, period, terms, best;
  r := root(n); period := r[2];
  if period = [] then error "%1 is a square", n end if;
  terms := [r[1], op(period[1..-2])];
  if irem(nops(period), 2) = 1 then terms := [r[1], op(period), op(period[1..-2])] end if;
  best := convergents(terms)[-1];
  `if`(type(best, integer), [best, 1], [op(1, best), op(2, best)])
end proc:
pell(2), pell(3), pell(7);
pell(61);                                     # Fermat's challenge: 1766319049, 226153980
pell(109);
evalb({seq(`if`(root(n)[2] = [], 1, pell(n)[1]^2 - n*pell(n)[2]^2), n = 2..60)} = {1});
pell(49);

# e = [2; 1, 2, 1, 1, 4, 1, 1, 6, ...]: twenty digits from thirty terms.
e := value([2, seq(op([1, 2*k, 1]), k = 1..10)]):
evalf(e, 20);                                 # 2.7182818284590452354
# The golden ratio's convergents are quotients of Fibonacci numbers.
convergents([1 $ 12]);
