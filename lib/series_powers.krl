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
  # x = t^k for the denominators of exponents in p, and for their products where one power stands in another; for square
  # roots at branch points too.
  q := `series/aid/denominators`(p, x);
  for k in `if`(q > 1, [q, q^2, q^3], `if`(has(p, `series/aid/branching`), [2], [])) do
    if k > 1000 then break end if;
    s := `series/aid/ramified`(p, x, k);
    if s <> FAIL then return s end if
  end do;
  s := `series/aid/powersum`(p, x);
  if s <> FAIL then return s end if;
  q := `series/aid/rewritten`(p, x);
  if q <> p then q := frontend(expand, [q]) end if;
  s := `if`(q = p, FAIL, `series/aid/powersum`(q, x));
  if s <> FAIL then return s end if;
  error "no series of %1 in powers of %2", p, x
end proc:
`series/aid/branching` := {'arcsin', 'arccos', 'arcsec', 'arccsc', 'arcsinh', 'arccosh', 'arcsech', 'arccsch', 'LambertW'}:
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
  `series/aid/turned`(subs(ln(x) = -ln(1/t), signum(x) = 1, x = t, s), t)
end proc:
`series/aid/turned` := proc(s, t)
  description "series/aid/turned(s, t): s with powers of 1/t in the place of those of t";
  if not has(s, t) or type(s, {name, numeric}) then s
  elif type(s, `^`) and op(1, s) = t then (1/t)^(-op(2, s))
  else map(`series/aid/turned`, s, t)
  end if
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
  description "series/int(u, y, x): the series of an integral that stays as a call, by the variable of the expansion or another, or with bounds that depend on it";
  `series/aid/integralcall`('int', args)
end proc:
`series/Int` := proc(u, y, x)
  description "series/Int(u, y, x): the series of an integral that is not evaluated";
  `series/aid/integralcall`('Int', args)
end proc:
`series/aid/integralcall` := proc(f, u, y, x)
  description "series/aid/integralcall(f, u, y, x): the series of f(u, y), an integral";
  local s;
  if nargs <> 4 then return `series/function`('f'(args[2..-2]), args[-1]) end if;
  if type(y, `=`) and (lhs(y) = x or not type(rhs(y), `..`)) then return FAIL end if;
  if type(y, `=`) and has(rhs(y), x) then
    return `if`(has(u, x), `series/aid/derivatives`('f'(u, y), x), `series/aid/bounded`(f, u, lhs(y), op(rhs(y)), x))
  end if;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif y = x then `int/series`(s, x)
  else map(t -> `if`(`series/aid/isorder`(t), t, f(t, y)), s)
  end if
end proc:
`series/aid/bounded` := proc(f, u, y, a, b, x)
  description "series/aid/bounded(f, u, y, a, b, x): the series of f(u, y = a..b), the integral of u over y from a to b, bounds that depend on x";
  local s, t, q, c;
  s, t := `series/aid/argument`(a, x), `series/aid/argument`(b, x);
  if s = FAIL or t = FAIL then return FAIL end if;
  if `series/aid/lowest`(s) < 0 or `series/aid/lowest`(t) < 0 or `series/aid/onlyorder`(s) or `series/aid/onlyorder`(t) then return FAIL end if;
  c := `series/aid/constant`(s), `series/aid/constant`(t);
  if has([c], x) then return FAIL end if;
  q := `series/aid/argument`(`series/aid/slopeat`(u, y, t) - `series/aid/slopeat`(u, y, s), x);
  if q = FAIL or `series/aid/lowest`(q) < 0 or has(`series/aid/polynomterms`(`series/aid/times`(1, q)), ln(x)) then return FAIL end if;
  `kernel/native`("series/aid/integral", q, `if`(c[1] = c[2], 0, f(u, y = c[1]..c[2])))
end proc:
`series/aid/slopeat` := proc(u, y, s)
  description "series/aid/slopeat(u, y, s): u with the series s for y, times the derivative of s";
  if nops(s) = 0 or nops(s) = 2 and op(2, s) = 0 then 0 else subs(y = s, u)*`kernel/native`("series/aid/derivative", s) end if
end proc:
`series/sum` := proc(u, y, x)
  description "series/sum(u, k, x), series/sum(u, k = a..b, x): the series of a sum that stays as a call, term by term";
  `series/aid/sumcall`('sum', args)
end proc:
`series/Sum` := proc(u, y, x)
  description "series/Sum(u, k, x), series/Sum(u, k = a..b, x): the series of a sum that is not evaluated";
  `series/aid/sumcall`('Sum', args)
end proc:
`series/aid/sumcall` := proc(f, u, y, x)
  description "series/aid/sumcall(f, u, y, x): the series of f(u, y), a sum";
  local s, a, b, k;
  if nargs <> 4 then return `series/function`('f'(args[2..-2]), args[-1]) end if;
  if type(y, `=`) and (has(y, x) or not type(rhs(y), `..`)) then return FAIL end if;
  s := `series/aid/argument`(u, x);
  if s <> FAIL then return map(t -> `if`(`series/aid/isorder`(t), t, f(t, y)), s) end if;
  if not type(y, `=`) then return FAIL end if;
  a, b := op(rhs(y));
  if type([a, b], list(integer)) and b - a < 1000 then `series/aid/argument`(add(eval(subs(lhs(y) = k, u)), k = a..b), x) else FAIL end if
end proc:
`series/product` := proc(u, y, x)
  description "series/product(u, k = a..b, x): the series of a product that stays as a call";
  `series/aid/productcall`('product', 'sum', args)
end proc:
`series/Product` := proc(u, y, x)
  description "series/Product(u, k = a..b, x): the series of a product that is not evaluated";
  `series/aid/productcall`('Product', 'Sum', args)
end proc:
`series/aid/productcall` := proc(f, g, u, y, x)
  description "series/aid/productcall(f, g, u, y, x): the series of f(u, y), a product, by way of the sum g of logarithms";
  local s, a, b, c, k;
  if nargs <> 5 then return `series/function`('f'(args[3..-2]), args[-1]) end if;
  if not type(y, `=`) or has(y, x) or not type(rhs(y), `..`) then return FAIL end if;
  a, b := op(rhs(y));
  if type([a, b], list(integer)) and b - a < 1000 then return `series/aid/argument`(mul(eval(subs(lhs(y) = k, u)), k = a..b), x) end if;
  s := `series/aid/argument`(u, x);
  if s = FAIL then return FAIL end if;
  c := `series/aid/constant`(s);
  if c = 0 or has(c, x) then return FAIL end if;
  s := `series/aid/argument`(ln(`series/aid/times`(1/c, s)), x);
  `series/aid/argument`(f(c, y)*exp(map(t -> `if`(`series/aid/isorder`(t), t, g(t, y)), s)), x)
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
  # What binds a variable, as in f(x, k = 1..n), is no function of its first argument alone.
  if type(a[i], {range, list, set}) or select(type, a, relation) <> [] then return FAIL end if;
  s := `series/aid/argument`(a[i], x);
  if s = FAIL or `series/aid/lowest`(s) < 0 or `series/aid/onlyorder`(s) then return FAIL end if;
  c, w := `series/aid/constant`(s), `series/aid/withoutconstant`(s);
  if has(c, x) then return FAIL end if;
  n := `series/aid/powersneeded`(w);
  e := f(op(subsop(i = t, a)));
  # A function that isn't regular at c has no such derivatives.
  try
    values := [`if`(nops(a) = 1, `series/aid/value`(f, c), f(op(subsop(i = c, a))))];
    for k to n do
      if e <> FAIL then
        e := diff(e, t);
        if has(e, 'diff') then e := FAIL end if
      end if;
      values := [op(values), `if`(e = FAIL, `series/aid/slope`(f, i, nops(a), k)(op(subsop(i = c, a))), eval(subs(t = c, e)))/k!]
    end do
  catch "numeric exception: division by zero": return FAIL
  end try;
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
  try
    values := [eval(subs(x = 0, e))];
    for k to `series/aid/terms`() - 1 do
      e := diff(e, x);
      if has(e, 'diff') then return FAIL end if;
      values := [op(values), eval(subs(x = 0, e))/k!]
    end do
  catch "numeric exception: division by zero": return FAIL
  end try;
  `series/aid/composed`(values, `series/aid/fromterms`(x, [1, 1]), true)
end proc:
