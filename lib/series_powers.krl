# Powers of any exponent, expansions in fractional powers, at infinity, and of what is not a function.

`series/power` := proc(p, x)
  description "series/power(a^b, x): the series of a power; FAIL where its exponents are no integers";
  local b, n, s, c, v, terms;
  if not type(p, `^`) then
    return `series/aid/argument`(p, x)
  end if;
  b, n := op(p);
  if has(n, x) then
    return `series/exp`(n*ln(b), x)
  end if;
  s := `series/aid/argument`(b, x);
  if s = FAIL then return FAIL end if;
  if nops(s) = 0 then error "division by zero series" end if;
  c, v := op(1..2, s);
  if not type(v*n, integer) then return FAIL end if;
  if `series/aid/isorder`(c) then
    if not type(n, positive) then error "division by zero series" end if;
    return `series/aid/fromterms`(x, [O(1), v*n])
  end if;
  terms := `if`(Order = infinity and type(n, nonnegint) and order(s) = infinity, infinity, max(0, `series/aid/terms`() - v*n));
  if terms = 0 then return `series/aid/fromterms`(x, [O(1), v*n]) end if;
  `kernel/native`("series/power", s, n, `series/aid/root`(c, n), v*n, terms)
end proc:
# c^n, without the perfect powers that numerator and denominator of c may be.
`series/aid/root` := proc(c, n)
  description "series/aid/root(c, n): c^n, where the numerator or denominator of c is a perfect power a rational number";
  if type(c, rational) and type(n, fraction) and type(c, positive) then
    `series/aid/integerroot`(`series/aid/numerator`(c), n)/`series/aid/integerroot`(`series/aid/denominator`(c), n)
  else c^n
  end if
end proc:
# Newton's iteration from above.
`series/aid/integerroot` := proc(m, n)
  description "series/aid/integerroot(m, n): m^n for a natural number m, as a rational number when it is one";
  local q, r, t;
  q := op(2, n);
  r := 2^iquo(ilog2(m) + q, q);
  do
    t := iquo((q - 1)*r + iquo(m, r^(q - 1)), q);
    if t >= r then break end if;
    r := t
  end do;
  if r^q = m then r^op(1, n) else m^n end if
end proc:

# ---- what has no series in integral powers

`series/fracpower` := proc(p, x)
  description "series/fracpower(p, x): the expansion of p in fractional or symbolic powers of x, as a sum; an error where there is none";
  local q, k, s;
  if _EnvSeriesDirect = true then return FAIL end if;
  # x = t^k for the denominators of exponents in p, and for their products where one power stands in another.
  q := `series/aid/denominators`(p, x);
  if q > 1 then
    for k in [q, q^2, q^3] do
      if k > 1000 then break end if;
      s := `series/aid/ramified`(p, x, k);
      if s <> FAIL then return s end if
    end do
  end if;
  s := `series/aid/powersum`(p, x);
  if s <> FAIL then return s end if;
  error "no series of %1 in powers of %2", p, x
end proc:
`series/aid/ramified` := proc(p, x, k)
  description "series/aid/ramified(p, x, k): the expansion of p in powers of x^(1/k), as a sum, or FAIL";
  local t, s;
  Order := k*`series/aid/terms`();
  s := `series/aid/argument`(subs(x = t^k, p), t);
  if s = FAIL then FAIL else subs(ln(t) = ln(x)/k, t = x^(1/k), `series/aid/sum`(s, x, 0, 1/k)) end if
end proc:
`series/aid/denominators` := proc(p, x)
  description "series/aid/denominators(p, x): the least common multiple of the denominators of exponents in p above what holds x";
  local t, q, d;
  if type(p, {name, numeric}) or not has(p, x) then return 1 end if;
  q := 1;
  for t in [op(p)] do
    d := `series/aid/denominators`(t, x);
    q := q*d/igcd(q, d)
  end do;
  if type(p, `^`) then d := `series/aid/denominator`(op(2, p))
  elif type(p, function) and op(0, p) = 'sqrt' then d := 2
  else d := 1
  end if;
  q*d/igcd(q, d)
end proc:
`series/aid/sum` := proc(s, x, a, b)
  description "series/aid/sum(s, x, a, b): the sum that the series s comes to with x^b for its variable, times x^a";
  local i;
  add(`if`(`series/aid/isorder`(op(2*i - 1, s)), O(x^(a + b*op(2*i, s))), op(2*i - 1, s)*x^(a + b*op(2*i, s))), i = 1..nops(s)/2)
end proc:
# A power of x with any exponent, times a series.
`series/aid/general` := proc(p, x)
  description "series/aid/general(p, x): [a, s] with p = x^a*s, s being a series; FAIL where there are no such";
  local s, g, h, t, n, v;
  s := `series/aid/argument`(p, x);
  if s <> FAIL then return [0, s] end if;
  if type(p, `^`) and not has(op(2, p), x) then
    n := op(2, p);
    g := `series/aid/general`(op(1, p), x);
    if g = FAIL then return FAIL end if;
    s := g[2];
    if nops(s) = 0 or `series/aid/isorder`(op(1, s)) then return FAIL end if;
    v := op(2, s);
    s := `series/aid/argument`(`series/aid/shifted`(s, -v)^n, x);
    if s = FAIL then FAIL else [n*(g[1] + v), s] end if
  elif type(p, `*`) then
    g := [0, `series/aid/fromterms`(x, [1, 0])];
    for t in [op(p)] do
      h := `series/aid/general`(t, x);
      if h = FAIL then return FAIL end if;
      s := `series/aid/argument`(g[2]*h[2], x);
      if s = FAIL then return FAIL end if;
      g := [g[1] + h[1], s]
    end do;
    g
  else FAIL
  end if
end proc:
`series/aid/powersum` := proc(p, x)
  description "series/aid/powersum(p, x): the expansion of p, or of each term of it, as a sum of powers of x times series; or FAIL";
  local g, a;
  if type(p, `+`) then
    a := map(`series/aid/powersum`, [op(p)], x);
    if member(FAIL, a) then FAIL else `+`(op(a)) end if
  else
    g := `series/aid/general`(p, x);
    if g = FAIL then FAIL else `series/aid/sum`(g[2], x, g[1], 1) end if
  end if
end proc:

# ---- at infinity
`series/infinity` := proc(p, point, n)
  description "series/infinity(p, x = infinity), series/infinity(p, x = infinity, n): the expansion of p in powers of 1/x, as a sum";
  local x, t, s;
  x := lhs(point);
  if rhs(point) <> infinity and rhs(point) <> -infinity then error "%1 is no point of expansion", rhs(point) end if;
  if nargs = 3 then
    if not type(n, integer) then error "Order can only be assigned an integer" end if;
    Order := n
  end if;
  t := `if`(rhs(point) = infinity, 1/x, -1/x);
  s := series(subs(x = t, p), x);
  if type(s, series) then s := `series/aid/sum`(s, x, 0, 1) end if;
  `series/aid/reciprocal`(s, x, t)
end proc:
`series/aid/reciprocal` := proc(s, x, t)
  description "series/aid/reciprocal(s, x, t): the sum s with t in the place of x, and ln(t) as -ln(1/t)";
  subs(ln(x) = -ln(1/t), signum(x) = 1, x = t, s)
end proc:

# ---- what is no function of one argument
`series/O` := proc(u, x)
  description "series/O(u, x): the order term O(u), at the lowest exponent of u";
  local s;
  s := `if`(nargs = 2 and has(u, x), `series/aid/argument`(u, x), FAIL);
  if s = FAIL or nops(s) = 0 then 'O'(args[1..-2]) else `series/aid/fromterms`(x, [O(1), op(2, s)]) end if
end proc:
`series/diff` := proc(u, y, x)
  description "series/diff(u, y, x): the series of a derivative that stays as a call";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL else diff(s, y) end if
end proc:
`series/int` := proc(u, y, x)
  description "series/int(u, y, x): the series of an integral that stays as a call, by the variable of the expansion or another";
  local s;
  if type(y, `=`) and (lhs(y) = x or has(rhs(y), x)) then return FAIL end if;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif y = x then `int/series`(s, x)
  else map(t -> `if`(`series/aid/isorder`(t), t, int(t, y)), s)
  end if
end proc:

# Functions without a rule of their own: Taylor's series, from derivatives.
`series/function` := proc(p, x)
  description "series/function(f(u, v, ...), x): the series of a call, from the derivatives of f at the constant terms of its arguments";
  local f, a, i, s, c, w, n, t, e, k, values;
  f := op(0, p);
  a := [op(p)];
  i := select(j -> has(a[j], x), [$1..nops(a)]);
  if nops(i) <> 1 then return `series/aid/derivatives`(p, x) end if;
  i := i[1];
  s := `series/aid/argument`(a[i], x);
  if s = FAIL or `series/aid/lowest`(s) < 0 or `series/aid/onlyorder`(s) then return FAIL end if;
  c, w := `series/aid/constant`(s), `series/aid/withoutconstant`(s);
  if has(c, x) then return FAIL end if;
  n := `series/aid/powersneeded`(w);
  e := f(op(subsop(i = t, a)));
  values := [`if`(nops(a) = 1, `series/aid/value`(f, c), f(op(subsop(i = c, a))))];
  for k to n do
    if e <> FAIL then
      e := diff(e, t);
      if has(e, 'diff') then e := FAIL end if
    end if;
    values := [op(values), `if`(e = FAIL, `series/aid/slope`(f, i, nops(a), k)(op(subsop(i = c, a))), eval(subs(t = c, e)))/k!]
  end do;
  `series/aid/composed`(values, w, true)
end proc:
`series/aid/slope` := proc(f, i, n, k)
  description "series/aid/slope(f, i, n, k): the k-th derivative by the i-th argument of f, a function of n, in the notation of D";
  if n > 1 then 'D'[i$k](f) elif k = 1 then 'D'(f) else ('D'@@k)(f) end if
end proc:
`series/aid/derivatives` := proc(p, x)
  description "series/aid/derivatives(p, x): the series of p from its derivatives by x at 0";
  local e, k, values;
  e := p;
  values := [eval(subs(x = 0, e))];
  for k to `series/aid/terms`() - 1 do
    e := diff(e, x);
    if has(e, 'diff') then return FAIL end if;
    values := [op(values), eval(subs(x = 0, e))/k!]
  end do;
  `series/aid/composed`(values, `series/aid/fromterms`(x, [1, 1]), true)
end proc:
