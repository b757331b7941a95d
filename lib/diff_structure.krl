# Derivatives of what binds variables, of case distinctions, and of functions that nothing is known of.

# Integrals and sums: (e, y, x), or (e, y = a..b, x).
`diff/int` := proc(e, range, x)
  description "diff/int(e, y, x), diff/int(e, y = a..b, x): the derivative of an integral, by its variable, a parameter or its bounds";
  `diff/aid/integral`('int', args)
end proc:
`diff/Int` := proc(e, range, x)
  description "diff/Int(e, y, x), diff/Int(e, y = a..b, x): the derivative of an integral that is not evaluated";
  `diff/aid/integral`('Int', args)
end proc:
`diff/aid/integral` := proc(f, e, range, x)
  description "diff/aid/integral(f, e, y, x), diff/aid/integral(f, e, y = a..b, x): the derivative of f(e, ...), an integral (Leibniz)";
  local y, inner;
  if nargs <> 4 then return `diff/aid/staying`('f'(op(2..nargs - 1, [args])), args[nargs]) end if;
  if range = x then return e end if;
  y := `if`(type(range, `=`), lhs(range), range);
  # The variable of integration hides an x of the same name.
  inner := `if`(y = x, 0, diff(e, x));
  if inner <> 0 then inner := f(inner, range) end if;
  if not type(range, `=`) then inner
  elif not type(rhs(range), `..`) then `diff/aid/staying`('f'(e, range), x)
  else inner + `diff/aid/bound`(e, y, op(2, rhs(range)), x) - `diff/aid/bound`(e, y, op(1, rhs(range)), x)
  end if
end proc:
`diff/aid/bound` := proc(e, y, a, x)
  description "diff/aid/bound(e, y, a, x): what a bound a of an integral over y adds to its derivative";
  local slope;
  slope := diff(a, x);
  if slope = 0 then 0 else eval(subs(y = a, e))*slope end if
end proc:

`diff/sum` := proc(e, range, x)
  description "diff/sum(e, k, x), diff/sum(e, k = a..b, x): the derivative of a sum, term by term; it stays where x bounds it";
  `diff/aid/termwise`('sum', args)
end proc:
`diff/Sum` := proc(e, range, x)
  description "diff/Sum(e, k, x), diff/Sum(e, k = a..b, x): the derivative of a sum that is not evaluated";
  `diff/aid/termwise`('Sum', args)
end proc:
`diff/aid/termwise` := proc(f, e, range, x)
  description "diff/aid/termwise(f, e, k, x), diff/aid/termwise(f, e, k = a..b, x): the derivative of f(e, ...), a sum";
  local inner;
  if nargs <> 4 or range = x or type(range, `=`) and (lhs(range) = x or has(rhs(range), x)) then
    return `diff/aid/staying`('f'(op(2..nargs - 1, [args])), args[nargs])
  end if;
  inner := diff(e, x);
  if inner = 0 then 0 else f(inner, range) end if
end proc:
`diff/product` := proc(e, range, x)
  description "diff/product(e, k = a..b, x): the derivative of a product of factors that depend on x";
  `diff/aid/factorwise`('product', 'sum', args)
end proc:
`diff/Product` := proc(e, range, x)
  description "diff/Product(e, k = a..b, x): the derivative of a product that is not evaluated";
  `diff/aid/factorwise`('Product', 'Sum', args)
end proc:
`diff/aid/factorwise` := proc(f, g, e, range, x)
  description "diff/aid/factorwise(f, g, e, k = a..b, x): the derivative of the product f(e, ...) by way of the sum g of logarithmic derivatives";
  local inner;
  if nargs <> 5 or range = x or type(range, `=`) and (lhs(range) = x or has(rhs(range), x)) then
    return `diff/aid/staying`('f'(op(3..nargs - 1, [args])), args[nargs])
  end if;
  inner := diff(e, x);
  if inner = 0 then 0 else f(e, range)*g(inner/e, range) end if
end proc:

# The derivative goes inside; it stays where x is the variable or in the point.
`diff/limit` := proc(e, point, x)
  description "diff/limit(e, y = a, x): the derivative of a limit";
  `diff/aid/limit`('limit', args)
end proc:
`diff/Limit` := proc(e, point, x)
  description "diff/Limit(e, y = a, x): the derivative of a limit that is not evaluated";
  `diff/aid/limit`('Limit', args)
end proc:
`diff/aid/limit` := proc(f, e, point)
  description "diff/aid/limit(f, e, y = a, ..., x): the derivative of f(e, y = a, ...), a limit";
  local x;
  x := args[nargs];
  if nargs < 4 or has([args[3..nargs - 1]], x) then `diff/aid/staying`('f'(args[2..nargs - 1]), x)
  else f(diff(e, x), args[3..nargs - 1])
  end if
end proc:
`diff/Diff` := proc(e, y, x)
  description "diff/Diff(e, y, ..., x): the derivative of a derivative that is not evaluated";
  'Diff'(args)
end proc:

# Conditions and values in turn; the value for all else, if any, stands last.
`diff/piecewise` := proc()
  description "diff/piecewise(c1, v1, c2, v2, ..., x): the derivative of a case distinction, case by case, away from where it changes";
  local i, n, x;
  n := nargs - 1;
  x := args[nargs];
  piecewise(seq(`if`(irem(i, 2) = 1 and i < n, args[i], diff(args[i], x)), i = 1..n))
end proc:
`diff/max` := proc()
  description "diff/max(a, b, ..., x): the derivative of the largest of expressions, a case distinction";
  `diff/aid/extreme`(max, (a, b) -> b <= a, [op(1..nargs - 1, [args])], args[nargs])
end proc:
`diff/min` := proc()
  description "diff/min(a, b, ..., x): the derivative of the least of expressions, a case distinction";
  `diff/aid/extreme`(min, (a, b) -> a <= b, [op(1..nargs - 1, [args])], args[nargs])
end proc:
`diff/aid/extreme` := proc(f, before, a::list, x)
  description "diff/aid/extreme(f, before, [a, b, ...], x): the derivative of the first member by the order before, f being that member";
  local rest;
  if nops(a) = 1 then return diff(a[1], x) end if;
  rest := [op(2..nops(a), a)];
  piecewise(before(a[1], f(op(rest))), diff(a[1], x), `diff/aid/extreme`(f, before, rest, x))
end proc:

# f(y, x) = 0 gives y' = -f_x/f_y.
`diff/RootOf` := proc(e, x)
  description "diff/RootOf(e, x): the derivative of a root of e in _Z";
  local root;
  if nargs <> 2 then return `diff/aid/staying`('RootOf'(op(1..nargs - 1, [args])), args[nargs]) end if;
  root := RootOf(e);
  -subs(_Z = root, diff(e, x)/diff(e, _Z))
end proc:

# An order term in a power of x - a loses one order.
`diff/O` := proc(u, x)
  description "diff/O(u, x): the derivative of O(u), for a power u of x - a";
  local b, n;
  if type(u, `^`) then b, n := op(u) else b := u; n := 1 end if;
  if nargs = 2 and type(n, rational) and degree(b, x) = 1 and coeff(b, x, 1) = 1 then 'O'(b^(n - 1))
  else `diff/aid/staying`('O'(args[1..nargs - 1]), args[nargs])
  end if
end proc:

# Functions without a rule of their own. D(f) is the derivative of f, D[i](f) the one by its i-th argument.
`diff/function` := proc()
  description "diff/function(u, v, ..., x, f): the derivative of f(u, v, ...) by the chain rule, with D(f); FAIL where f(..., x, ...) is the last word";
  local i, n, f, x, inner, held;
  n := nargs - 2;
  x := args[n + 1];
  f := args[n + 2];
  if f = 'diff' or f = 'D' then return FAIL end if;
  held := select(has, [seq(i = args[i], i = 1..n)], x);
  if nops(held) = 1 and rhs(held[1]) = x then return FAIL end if;
  add(`diff/aid/partial`(f, lhs(i), n)(args[1..n])*diff(rhs(i), x), i = held)
end proc:
`diff/aid/partial` := proc(f, i, n)
  description "diff/aid/partial(f, i, n): the derivative of the function f of n arguments by the i-th, in the notation of D";
  if n > 1 then 'D'[i](f) else 'D'(f) end if
end proc:

# (f@@n)(u): the product of the slopes on the way; for n below 0, of the inverse function.
`diff/@@` := proc(e, x)
  description "diff/@@(e, x): the derivative of e, a call (f@@n)(u) of a function repeated n times";
  local f, n, u;
  f, n := op(op(0, e));
  if nops(e) <> 1 or not type(n, integer) then return `diff/aid/staying`(e, x) end if;
  u := op(e);
  `diff/aid/repeated`(f, n, u)*diff(u, x)
end proc:
`diff/aid/repeated` := proc(f, n, u)
  description "diff/aid/repeated(f, n, u): the derivative at u of f applied n times";
  local k, t;
  t := u;
  if n >= 0 then
    k := 1;
    to n do
      k := k*`diff/aid/at`(f, t);
      t := f(t)
    end do
  else
    k := 1;
    for t from -1 to n by -1 do k := k/`diff/aid/at`(f, (f@@t)(u)) end do
  end if;
  k
end proc:
`diff/aid/at` := proc(f, u)
  description "diff/aid/at(f, u): the value at u of the derivative of the function f";
  local t, slope;
  slope := diff(f(t), t);
  if has(slope, 'diff') then `diff/aid/partial`(f, 1, 1)(u) else eval(subs(t = u, slope)) end if
end proc:

# Coefficients that hold x, and whose derivatives do: x times such a derivative weighs as much as the coefficient.
`diff/series` := proc(s, x)
  description "diff/series(s, x): the derivative of a series with coefficients that depend on its variable x";
  local i, v, shift;
  v := op(0, s);
  shift := v - x;
  if has(shift, x) then error "cannot differentiate series" end if;
  `series/aid/fromterms`(v, [seq(op([`if`(op(2*i - 1, s) = O(1), O(1),
    op(2*i, s)*op(2*i - 1, s) + v*diff(op(2*i - 1, s), x)), op(2*i, s) - 1]), i = 1..nops(s)/2)])
end proc:
