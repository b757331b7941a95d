# What the expansions of functions have in common. The kernel asks for series/f(u, x) in series(f(u), x); the number of
# terms is `Order`.

`series/aid/fromterms` := proc(x, a::list)
  description "series/aid/fromterms(x, [c0, e0, c1, e1, ...]): the series c0*x^e0 + c1*x^e1 + ...; O(1) as a coefficient makes the order term";
  `kernel/native`("series/aid/object", args)
end proc:
`series/aid/argument` := proc(u, x)
  description "series/aid/argument(u, x): the series of u, the argument of a function; FAIL where there is none in integral powers";
  local s;
  # The kernel then leaves out the search for fractional powers, which is the business of the whole expression.
  _EnvSeriesDirect := true;
  s := series(u, x);
  if type(s, series) then s else FAIL end if
end proc:
`series/aid/isorder` := proc(c)
  description "series/aid/isorder(c): true for the coefficient O(1) of an order term";
  type(c, function) and nops(c) = 1 and op(0, c) = 'O'
end proc:
`series/aid/lowest` := proc(s)
  description "series/aid/lowest(s): the lowest exponent of a series, infinity for 0";
  if nops(s) = 0 then infinity else op(2, s) end if
end proc:
`series/aid/constant` := proc(s)
  description "series/aid/constant(s): the coefficient of s at the exponent 0, when no lower one has one";
  if nops(s) > 0 and op(2, s) = 0 then op(1, s) else 0 end if
end proc:
`series/aid/withoutconstant` := proc(s)
  description "series/aid/withoutconstant(s): the series s without its first term, when that has the exponent 0";
  if nops(s) > 0 and op(2, s) = 0 then `series/aid/fromterms`(op(0, s), [op(3..nops(s), s)]) else s end if
end proc:
# Poles take terms away: the work is done with more of them.
`series/aid/moreterms` := proc(f, n, x)
  description "series/aid/moreterms(f, n, x, a, ...): the series f(a, ...), found with Order + n terms and cut off at Order";
  local terms, s;
  terms := `series/aid/terms`();
  Order := terms + n;
  s := f(args[4..-1]);
  if s = FAIL then FAIL else series(s, x, terms) end if
end proc:
`series/aid/times` := proc(c, s)
  description "series/aid/times(c, s): each coefficient of the series s times c";
  local i;
  if c = 1 then s
  elif c = 0 then `series/aid/fromterms`(op(0, s), [])
  else
    `series/aid/fromterms`(op(0, s), [seq(op([`if`(`series/aid/isorder`(op(2*i - 1, s)), op(2*i - 1, s), c*op(2*i - 1, s)), op(2*i, s)]), i = 1..nops(s)/2)])
  end if
end proc:
`series/aid/shifted` := proc(s, n::integer)
  description "series/aid/shifted(s, n): the series s times x^n";
  local i;
  if n = 0 then s
  else `series/aid/fromterms`(op(0, s), [seq(op([op(2*i - 1, s), op(2*i, s) + n]), i = 1..nops(s)/2)])
  end if
end proc:
`series/aid/terms` := proc()
  description "series/aid/terms(): Order, for expansions that don't end: they need a finite one";
  if Order = infinity then error "an expansion that does not end needs a finite Order" end if;
  Order
end proc:
`series/aid/onlyorder` := proc(s)
  description "series/aid/onlyorder(s): true when nothing is known of the series s but its order, and that is 0 or less";
  nops(s) > 0 and op(2, s) <= 0 and `series/aid/isorder`(op(1, s))
end proc:

# a0 + a1 w + a2 w^2 + ... by Horner's rule, for a series w without constant term.
`series/aid/composed` := proc(a::list, w, truncated)
  description "series/aid/composed([a0, a1, ...], w, truncated): a0 + a1*w + a2*w^2 + ..., with an order term behind the last power for truncated = true";
  local k, x, s;
  x := op(0, w);
  if nops(w) = 0 then return `series/aid/fromterms`(x, [a[1], 0]) end if;
  s := `if`(truncated, `series/aid/fromterms`(x, [a[-1], 0, O(1), op(2, w)]), a[-1]);
  for k from nops(a) - 1 to 1 by -1 do s := `series/aid/argument`(s*w + a[k], x) end do;
  if type(s, series) then s else `series/aid/fromterms`(x, [s, 0]) end if
end proc:
`series/aid/powersneeded` := proc(w)
  description "series/aid/powersneeded(w): the powers of the series w, which has no constant term, that Order terms need";
  local n;
  n := min(`series/aid/terms`(), order(w));
  if nops(w) = 0 then 0 else iquo(n - 1, op(2, w)) end if
end proc:

# Values at numbers, where they are simpler than the call.
`series/aid/value` := proc(f, c)
  description "series/aid/value(f, c): f(c), evaluated where c is a float or a point with a known value";
  local q;
  if type(c, complex(float)) then return evalf(f(c)) end if;
  if f = 'GAMMA' and type(c, posint) then return (c - 1)! end if;
  q := `series/aid/valuetable`[f, c];
  if type(q, indexed) then
    q := c/Pi;
    if type(q, rational) and member(f, ['sin', 'cos']) then return `series/aid/circle`(f, q) end if;
    if f = 'exp' and type(c, function) and op(0, c) = 'ln' and nops(c) = 1 then return op(c) end if;
    if f = 'ln' and type(c, function) and op(0, c) = 'exp' and nops(c) = 1 and type(evalf(op(c)), numeric) then return op(c) end if;
    f(c)
  else q
  end if
end proc:
`series/aid/valuetable` := table([
  ('exp', 0) = 1, ('exp', 1) = exp(1), ('ln', 1) = 0, ('ln', exp(1)) = 1, ('ln', -1) = I*Pi, ('ln', I) = I*Pi/2, ('ln', -I) = -I*Pi/2,
  ('sin', 0) = 0, ('cos', 0) = 1, ('sinh', 0) = 0, ('cosh', 0) = 1,
  ('arcsin', 0) = 0, ('arcsin', 1) = Pi/2, ('arcsin', -1) = -Pi/2, ('arcsin', 1/2) = Pi/6, ('arcsin', -1/2) = -Pi/6,
  ('arccos', 0) = Pi/2, ('arccos', 1) = 0, ('arccos', -1) = Pi, ('arccos', 1/2) = Pi/3, ('arccos', -1/2) = 2*Pi/3,
  ('arctan', 0) = 0, ('arctan', 1) = Pi/4, ('arctan', -1) = -Pi/4,
  ('arccot', 0) = Pi/2, ('arccot', 1) = Pi/4, ('arccot', -1) = 3*Pi/4,
  ('arcsinh', 0) = 0, ('arccosh', 1) = 0, ('arccosh', 0) = I*Pi/2, ('arctanh', 0) = 0, ('arccoth', 0) = I*Pi/2,
  ('erf', 0) = 0, ('erfc', 0) = 1, ('erfi', 0) = 0, ('GAMMA', 1/2) = Pi^(1/2),
  ('Psi', 1) = -gamma, ('lnGAMMA', 1) = 0, ('lnGAMMA', 2) = 0, ('factorial', 0) = 1, ('factorial', 1) = 1,
  ('Si', 0) = 0, ('dilog', 1) = 0, ('LambertW', 0) = 0, ('signum', 1) = 1, ('signum', -1) = -1, ('signum', 0) = 0, ('abs', 0) = 0]):
`series/aid/numerator` := proc(q)
  description "series/aid/numerator(q): the numerator of a rational number";
  if type(q, fraction) then op(1, q) else q end if
end proc:
`series/aid/denominator` := proc(q)
  description "series/aid/denominator(q): the denominator of a rational number";
  if type(q, fraction) then op(2, q) else 1 end if
end proc:
# sin and cos of q*Pi for the denominators 1, 2, 3, 4 and 6.
`series/aid/circle` := proc(f, q)
  description "series/aid/circle(f, q): f(q*Pi) for f = sin or cos, in closed form where the denominator of q is 1, 2, 3, 4 or 6";
  local t, n;
  t := `if`(f = 'cos', q + 1/2, q);
  n := `series/aid/denominator`(t);
  t := irem(n*t, 2*n)/n;
  if t < 0 then t := t + 2 end if;
  if t >= 1 then return -`series/aid/circle`('sin', t - 1) end if;
  if t > 1/2 then t := 1 - t end if;
  if t = 0 then 0
  elif t = 1/6 then 1/2
  elif t = 1/4 then 2^(1/2)/2
  elif t = 1/3 then 3^(1/2)/2
  elif t = 1/2 then 1
  else sin(t*Pi)
  end if
end proc:
