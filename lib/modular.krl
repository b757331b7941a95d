# Polynomials modulo a prime as expressions: Gcd(a, b) mod p and its kin, over a prime field or over the field that a
# RootOf of an irreducible polynomial makes of it. Values are reduced as `mod` is set. One indeterminate is the affair
# of dense polynomials; what holds several is handed to modular_several.krl, and a call that makes no sense for several
# stays as it is.

# [{x, ...}, [alpha]]: the indeterminates and the one RootOf, if there is one; NULL where there are more.
`mod/aid/field` := proc(a::list, given::list)
  local found, roots, inner;
  found := `kernel/native`("mod/aid/variables", op(a), op(given));
  roots := select(type, found, specfunc(anything, RootOf));
  if nops(roots) > 1 then return NULL end if;
  inner := `kernel/native`("mod/aid/variables", seq(op(t), t = roots));
  [remove(member, remove(type, found, specfunc(anything, RootOf)), inner), [op(roots)]]
end proc:

# [[x], [alpha]]: the one indeterminate and the one RootOf, each in a list that may be empty; NULL where there are more.
`mod/aid/setting` := proc(a::list, given::list)
  local names, roots;
  roots := `mod/aid/field`(a, given);
  if roots = NULL then return NULL end if;
  names, roots := op(roots);
  if given <> [] and type(given[1], name) then
    if names minus {given[1]} <> {} then return NULL end if;
    return [[given[1]], [op(roots)]]
  end if;
  if nops(names) > 1 then return NULL end if;
  [[op(names)], [op(roots)]]
end proc:

# The dense polynomial in y that RootOf(f) is a root of.
`mod/aid/minimal` := proc(alpha, y, p)
  local f, v;
  f := op(1, alpha);
  if type(f, equation) then f := op(1, f) - op(2, f) end if;
  v := `kernel/native`("mod/aid/variables", f);
  if nops(v) <> 1 then error "RootOf of a polynomial in one variable expected, but received %1", alpha end if;
  modp1(ConvertIn(subs(v[1] = y, f), y), p)
end proc:

# What came out of a selector, as an expression.
`mod/aid/shown` := proc(r, p)
  if type(r, list) then map(`mod/aid/shown`, r, p)
  elif type(r, modp2) then evalgf1(ConvertOut(r), p)
  elif type(r, zppoly) then modp1(ConvertOut(r), p)
  else r
  end if
end proc:

# The selector f on polynomials in x; `field` is the list of the RootOf, if there is one. An operand [n] is the integer n.
`mod/aid/run` := proc(f, a::list, x, field::list, p)
  local y, e, t, r;
  if field = [] then
    return `mod/aid/shown`(modp1(f(seq(`if`(type(t, list), op(t), ConvertIn(modp(t, p), x)), t = a)), p), p)
  end if;
  e := `mod/aid/minimal`(op(field), y, p);
  r := seq(`if`(type(t, list), op(t), evalgf1(ConvertIn(subs(op(field) = y, modp(t, p)), x, y), p)), t = a);
  subs(y = op(field), `mod/aid/shown`(`kernel/native`("evalgf1/aid/run", convert(f, string), r, e, p), p))
end proc:

# The same for calls that find their indeterminate, or several.
`mod/aid/ask` := proc(f, a::list, given::list, p)
  local s, x;
  s := `mod/aid/setting`(remove(type, a, list), given);
  if s = NULL then return `mod/aid/several`(f, a, given, p) end if;
  `mod/aid/run`(f, a, op(1, [op(s[1]), x]), s[2], p)
end proc:

# ---- division

`mod/Quo` := proc(a, b, x, r)
  description "Quo(a, b, x) mod p, Quo(a, b, x, 'r') mod p: the quotient of polynomials in x; the remainder is assigned";
  local p, q;
  p := args[nargs];
  q := `mod/aid/divided`(a, b, x, p);
  if q = NULL then return NULL end if;
  if nargs = 5 then r := q[2] mod p end if;
  q[1] mod p
end proc:

`mod/Rem` := proc(a, b, x, q)
  description "Rem(a, b, x) mod p, Rem(a, b, x, 'q') mod p: the remainder of polynomials in x; the quotient is assigned";
  local p, r;
  p := args[nargs];
  r := `mod/aid/divided`(a, b, x, p);
  if r = NULL then return NULL end if;
  if nargs = 5 then q := r[1] mod p end if;
  r[2] mod p
end proc:

`mod/Divide` := proc(a, b, q)
  description "Divide(a, b) mod p, Divide(a, b, 'q') mod p: whether b divides a; the quotient is assigned if it does";
  local p, r;
  p := args[nargs];
  r := `mod/aid/divided`(a, b, NULL, p);
  if r = NULL then return NULL end if;
  if r[2] <> 0 then return false end if;
  if nargs = 4 then q := r[1] mod p end if;
  true
end proc:

# [quotient, remainder]; [0, a] for polynomials in several indeterminates that don't divide.
`mod/aid/divided` := proc(a, b)
  local p, s, x, q, r;
  p := args[nargs];
  s := `mod/aid/setting`([a, b], [args[3 .. nargs - 1]]);
  if s = NULL then
    if nargs = 4 then return `mod/aid/longdivision`(args) end if;
    s := `mod/aid/several`('Divide', [a, b], [], p);
    if s = NULL then return NULL elif s = [] then return [0, a] else return [s[1], 0] end if
  end if;
  x := op(1, [op(s[1]), x]);
  if s[2] <> [] then return `mod/aid/run`('Divide', [a, b], x, s[2], p) end if;
  q := modp1(Quo(ConvertIn(modp(a, p), x), ConvertIn(modp(b, p), x), 'r'), p);
  `mod/aid/shown`([q, r], p)
end proc:

# ---- greatest common divisors and resultants

`mod/Gcd` := proc(a, b, u, v)
  description "Gcd(a, b) mod p, Gcd(a, b, 'u', 'v') mod p: the monic greatest common divisor; the cofactors are assigned";
  local p, g, over;
  p := args[nargs];
  g := `mod/aid/ask`('Gcd', [a, b], [], p);
  if g = NULL then return NULL end if;
  over := proc(c, g, p) `if`(g = 0, c, `mod/aid/divided`(c, g, p)[1]) mod p end;
  if nargs > 3 then u := over(a, g, p) end if;
  if nargs > 4 then v := over(b, g, p) end if;
  g mod p
end proc:

`mod/Lcm` := proc(a, b)
  description "Lcm(a, b) mod p: the monic least common multiple of polynomials";
  local p, g, q;
  p := args[nargs];
  g := `mod/aid/ask`('Gcd', [a, b], [], p);
  if g = NULL then return NULL end if;
  if g = 0 then return 0 end if;
  q := `mod/aid/divided`(a, g, p)[1];
  q := `mod/aid/ask`('Multiply', [q, b], [], p);
  `mod/aid/monic`(q, p) mod p
end proc:

# a divided by its leading coefficient: the greatest common divisor with zero.
`mod/aid/monic` := proc(a, p) `mod/aid/ask`('Gcd', [a, 0], [], p) end proc:

`mod/Gcdex` := proc(a, b, x, s, t)
  description "Gcdex(a, b, x, 's', 't') mod p: the monic greatest common divisor g; s*a + t*b = g";
  local p, c, g, u, v;
  p := args[nargs];
  c := `mod/aid/setting`([a, b], [x]);
  if c = NULL then return NULL end if;
  if c[2] = [] then
    g := modp1(Gcdex(ConvertIn(modp(a, p), x), ConvertIn(modp(b, p), x), 'u', 'v'), p);
    g := `mod/aid/shown`([g, u, v], p)
  else
    g := `mod/aid/run`('Gcdex', [a, b], x, c[2], p)
  end if;
  if nargs > 4 then s := g[2] mod p end if;
  if nargs > 5 then t := g[3] mod p end if;
  g[1] mod p
end proc:

`mod/Resultant` := proc(a, b, x, p)
  description "Resultant(a, b, x) mod p: the resultant of polynomials in x";
  local r;
  r := `mod/aid/ask`('Resultant', [a, b], [x], p);
  if r = NULL then NULL else r mod p end if
end proc:

`mod/Discrim` := proc(a, x, p)
  description "Discrim(a, x) mod p: the discriminant of a polynomial in x";
  local d, e, n, lead, r, excess;
  d := `mod/Expand`(a, p);
  if d = NULL then return NULL end if;
  n := degree(d, x);
  if n = FAIL then return NULL end if;
  if n < 1 then return 0 end if;
  e := `mod/Expand`(diff(d, x), p);
  if e = 0 then return 0 end if;
  r := `mod/aid/ask`('Resultant', [d, e], [x], p);
  # A derivative of lower degree than n - 1 leaves out powers of the leading coefficient.
  lead := coeff(d, x, n);
  excess := n - 2 - degree(e, x);
  if excess < 0 then r := `mod/aid/divided`(r, lead, p)[1]
  else to excess do r := `mod/aid/ask`('Multiply', [r, lead], [], p) end do
  end if;
  (-1)^(n*(n - 1)/2)*r mod p
end proc:

# ---- powers and values

`mod/Power` := proc(a, n::nonnegint, p)
  description "Power(a, n) mod p: the polynomial a^n, multiplied out";
  local result, square, k;
  result := 1; square := a; k := n;
  while k > 0 do
    if irem(k, 2) = 1 then result := `mod/aid/ask`('Multiply', [result, square], [], p) end if;
    if result = NULL then return NULL end if;
    k := iquo(k, 2);
    if k > 0 then square := `mod/aid/ask`('Multiply', [square, square], [], p) end if;
    if square = NULL then return NULL end if
  end do;
  result mod p
end proc:

`mod/Powmod` := proc(a, n::integer, b)
  description "Powmod(a, n, b) mod p, Powmod(a, n, b, x) mod p: a^n modulo b; a negative n asks for the inverse of a";
  local p, s, x, base, k;
  p := args[nargs];
  s := `mod/aid/setting`([a, b], [args[4 .. nargs - 1]]);
  if s = NULL then
    if n < 0 then return NULL else return `mod/aid/longpower`(args) end if
  end if;
  x := op(1, [op(s[1]), x]);
  base := a; k := n;
  if n < 0 then
    if `mod/Gcdex`(a, b, x, 'base', p) <> 1 then error "the modular inverse does not exist" end if;
    k := -n
  end if;
  `mod/aid/run`('Powmod', [base, [k], b], x, s[2], p) mod p
end proc:

`mod/Expand` := proc(a, p)
  description "Expand(a) mod p: the polynomial multiplied out, RootOf in it reduced";
  local s, x;
  s := `mod/aid/setting`([a], []);
  if s = NULL then
    s := `mod/aid/field`([a], []);
    if s = NULL or s[2] = [] then return expand(a) mod p end if;
    s := `mod/aid/several`('Expand', [a], [], p);
    if s = NULL then return NULL else return s mod p end if
  end if;
  x := op(1, [op(s[1]), x]);
  if s[2] <> [] then `mod/aid/run`('Add', [a, 0], x, s[2], p) mod p
  else modp1(ConvertOut(ConvertIn(modp(a, p), x)), p) mod p
  end if
end proc:

`mod/Normal` := proc(a, p)
  description "Normal(a) mod p: a rational function in lowest terms, its denominator monic";
  local f, n, d, g;
  f := `mod/aid/fraction`(a, p);
  if f = NULL then return NULL end if;
  n, d := op(f);
  if `mod/aid/setting`(f, []) = NULL then
    f := `mod/aid/several`('Normal', f, [], p);
    if f = NULL then return NULL else return (f[1] mod p)/(f[2] mod p) end if
  end if;
  g := `mod/aid/ask`('Gcd', [n, d], [], p);
  if d = 0 then error "division by zero" end if;
  n := `mod/aid/divided`(n, g, p)[1]; d := `mod/aid/divided`(d, g, p)[1];
  g := `mod/aid/monic`(d, p);
  n := `mod/aid/ask`('Multiply', [n, `mod/aid/divided`(g, d, p)[1]], [], p);
  (n mod p)/(g mod p)
end proc:

# [numerator, denominator] of a rational function, not in lowest terms.
`mod/aid/fraction` := proc(a, p)
  local r, t, f, one;
  one := proc(b, e, p)
    local f;
    f := `mod/aid/fraction`(b, p);
    if e < 0 then f := [f[2], f[1]] end if;
    map(`mod/Power`, f, abs(e), p)
  end;
  if `mod/aid/field`([a], []) = NULL then return NULL end if;
  if type(a, `+`) then
    r := [0, 1];
    for t in [op(a)] do
      f := `mod/aid/fraction`(t, p);
      r := [`mod/Expand`(r[1]*f[2] + r[2]*f[1], p), `mod/Expand`(r[2]*f[2], p)]
    end do;
    r
  elif type(a, `*`) then
    r := [1, 1];
    for t in [op(a)] do
      f := `mod/aid/fraction`(t, p);
      r := [`mod/Expand`(r[1]*f[1], p), `mod/Expand`(r[2]*f[2], p)]
    end do;
    r
  elif type(a, `^`) and type(op(2, a), integer) then one(op(1, a), op(2, a), p)
  else [modp(a, p), 1]
  end if
end proc:

`mod/Eval` := proc(a, e::equation, p)
  description "Eval(a, x = c) mod p: the value of a polynomial at c";
  local s, x, y, m, r;
  x := op(1, e);
  s := `mod/aid/setting`([a, op(2, e)], [x]);
  if s = NULL then return `mod/Expand`(subs(x = op(2, e), modp(a, p)), p) end if;
  if s[2] = [] then return modp1(Eval(ConvertIn(modp(a, p), x), modp(op(2, e), p)), p) mod p end if;
  `mod/aid/divided`(a, x - op(2, e), x, p)[2] mod p
end proc:

`mod/Interp` := proc(points::list, values::list, x::name, p)
  description "Interp([x1, ...], [y1, ...], x) mod p: the polynomial of least degree that takes the values at the points";
  modp1(ConvertOut(Interp(modp(points, p), modp(values, p), x)), p) mod p
end proc:

`mod/Randpoly` := proc(n::nonnegint, x::name, p)
  description "Randpoly(n, x) mod p: a random polynomial of degree n";
  modp1(ConvertOut(Randpoly(x, n)), p) mod p
end proc:

`mod/Randprime` := proc(n::posint, x::name, p)
  description "Randprime(n, x) mod p: a random monic irreducible polynomial of degree n";
  local a;
  do
    a := modp1(Randpoly(x, n), p);
    if modp1(Irreduc(a), p) then return modp1(ConvertOut(Gcd(a, Zero(x))), p) mod p end if
  end do
end proc:
