# How `expand` takes the elementary functions apart: over sums, and over integer multiples of one argument. A result of
# NULL leaves the call as it is.

`expand/aid/argument` := proc(x)
  description "expand/aid/argument(x): the expanded argument as [a, b] for a sum a + b, [a, n] for a multiple n*a, or [a]";
  local y, n;
  y := expand(x);
  if type(y, `+`) then return ["sum", op(1, y), y - op(1, y)] end if;
  if type(y, `*`) and type(op(1, y), integer) and abs(op(1, y)) <= 500 then
    n := op(1, y);
    return ["multiple", y/n, n]
  end if;
  ["other", y]
end proc:

`expand/aid/chebyshev` := proc(first, second, n::nonnegint, c)
  description "expand/aid/chebyshev(p, q, n, c): the n-th of the polynomials p, q, 2*t*q - p, ... at t = c";
  local p, q, k, t;
  p, q := first, subs(_X = t, second);
  for k to n do p, q := q, expand(2*t*q - p) end do;
  subs(t = c, p)
end proc:

`expand/aid/tangent` := proc(n::posint, s, c)
  description "expand/aid/tangent(n, s, c): the tangent of n angles of tangent c; s = 1 for the hyperbolic one, else -1";
  local above, below, k, t;
  above, below := 0, 1;
  for k to n do above, below := expand(above + below*t), expand(below + s*above*t) end do;
  subs(t = c, above)/subs(t = c, below)
end proc:

`expand/sin` := proc(x)
  description "expand/sin(x): sin over sums and integer multiples";
  local y, a, b;
  y := `expand/aid/argument`(x);
  a := op(2, y);
  if y[1] = "sum" then b := op(3, y); expand(sin(a)*cos(b) + cos(a)*sin(b))
  elif y[1] = "multiple" then
    b := op(3, y);
    if b < 0 then -expand(sin(-b*a)) else expand(sin(a)*`expand/aid/chebyshev`(1, 2*_X, b - 1, cos(a))) end if
  elif a <> x then sin(a)
  end if
end proc:

`expand/cos` := proc(x)
  description "expand/cos(x): cos over sums and integer multiples";
  local y, a, b;
  y := `expand/aid/argument`(x);
  a := op(2, y);
  if y[1] = "sum" then b := op(3, y); expand(cos(a)*cos(b) - sin(a)*sin(b))
  elif y[1] = "multiple" then b := op(3, y); `expand/aid/chebyshev`(1, _X, abs(b), cos(a))
  elif a <> x then cos(a)
  end if
end proc:

`expand/tan` := proc(x)
  description "expand/tan(x): tan over sums and integer multiples";
  local y, a, b;
  y := `expand/aid/argument`(x);
  a := op(2, y);
  if y[1] = "sum" then
    a, b := expand(tan(a)), expand(tan(op(3, y)));
    (a + b)/(1 - a*b)
  elif y[1] = "multiple" then b := op(3, y); sign(b)*`expand/aid/tangent`(abs(b), -1, tan(a))
  elif a <> x then tan(a)
  end if
end proc:

`expand/sinh` := proc(x)
  description "expand/sinh(x): sinh over sums and integer multiples";
  local y, a, b;
  y := `expand/aid/argument`(x);
  a := op(2, y);
  if y[1] = "sum" then b := op(3, y); expand(sinh(a)*cosh(b) + cosh(a)*sinh(b))
  elif y[1] = "multiple" then
    b := op(3, y);
    if b < 0 then -expand(sinh(-b*a)) else expand(sinh(a)*`expand/aid/chebyshev`(1, 2*_X, b - 1, cosh(a))) end if
  elif a <> x then sinh(a)
  end if
end proc:

`expand/cosh` := proc(x)
  description "expand/cosh(x): cosh over sums and integer multiples";
  local y, a, b;
  y := `expand/aid/argument`(x);
  a := op(2, y);
  if y[1] = "sum" then b := op(3, y); expand(cosh(a)*cosh(b) + sinh(a)*sinh(b))
  elif y[1] = "multiple" then b := op(3, y); `expand/aid/chebyshev`(1, _X, abs(b), cosh(a))
  elif a <> x then cosh(a)
  end if
end proc:

`expand/tanh` := proc(x)
  description "expand/tanh(x): tanh over sums and integer multiples";
  local y, a, b;
  y := `expand/aid/argument`(x);
  a := op(2, y);
  if y[1] = "sum" then
    a, b := expand(tanh(a)), expand(tanh(op(3, y)));
    (a + b)/(1 + a*b)
  elif y[1] = "multiple" then b := op(3, y); sign(b)*`expand/aid/tangent`(abs(b), 1, tanh(a))
  elif a <> x then tanh(a)
  end if
end proc:

`expand/aid/reciprocal` := proc(f, g, x)
  description "expand/aid/reciprocal(f, g, x): f(x) = 1/g(x), where the expansion of g(x) has another form";
  local y;
  y := g(x);
  if expand(y) <> y then 1/expand(y) else f(x) end if
end proc:

`expand/sec` := proc(x) description "expand/sec(x): by cos"; `expand/aid/reciprocal`(sec, cos, x) end proc:
`expand/csc` := proc(x) description "expand/csc(x): by sin"; `expand/aid/reciprocal`(csc, sin, x) end proc:
`expand/cot` := proc(x) description "expand/cot(x): by tan"; `expand/aid/reciprocal`(cot, tan, x) end proc:
`expand/sech` := proc(x) description "expand/sech(x): by cosh"; `expand/aid/reciprocal`(sech, cosh, x) end proc:
`expand/csch` := proc(x) description "expand/csch(x): by sinh"; `expand/aid/reciprocal`(csch, sinh, x) end proc:
`expand/coth` := proc(x) description "expand/coth(x): by tanh"; `expand/aid/reciprocal`(coth, tanh, x) end proc:

`expand/exp` := proc(x)
  description "expand/exp(x): a product over the terms, and powers for integer multiples";
  local y, t;
  y := expand(x);
  if type(y, `+`) then mul(expand(exp(t)), t = [op(y)])
  elif type(y, `*`) and type(op(1, y), integer) and op(1, y) <> 1 then expand(exp(y/op(1, y)))^op(1, y)
  elif y <> x then exp(y)
  end if
end proc:

`expand/ln` := proc(x)
  description "expand/ln(x): positive factors apart, and exponents of positive bases as factors";
  local y, positive, factor;
  y := expand(x);
  if type(y, `*`) then
    positive := 1;
    for factor in [op(y)] do
      if `simpl/signum`(factor) = 1 then positive := positive*factor end if
    end do;
    if positive <> 1 and positive <> y then return expand(ln(positive)) + ln(y/positive) end if;
    if positive = y then return add(expand(ln(factor)), factor = [op(y)]) end if
  elif type(y, `^`) and `simpl/signum`(op(1, y)) = 1 and (type(op(2, y), numeric) or `simpl/signum`(op(2, y)) <> FAIL) then
    return op(2, y)*expand(ln(op(1, y)))
  elif type(y, fraction) and y > 0 then
    return ln(op(1, y)) - ln(op(2, y))
  end if;
  if y <> x then ln(y) end if
end proc:
