# Expansions of the elementary functions: series/f(u, x) in series(f(u), x). A constant c in front of the argument's powers
# leaves by the addition theorems; a branch point or an essential singularity has no such series: FAIL.

`series/exp` := proc(u, x)
  description "series/exp(u, x): the series of the exponential of u";
  local s, c, e, k;
  s := `series/aid/argument`(u, x);
  if s = FAIL or `series/aid/lowest`(s) < 0 or `series/aid/onlyorder`(s) then return FAIL end if;
  c := `series/aid/constant`(s);
  e := `kernel/native`("series/exp", `series/aid/withoutconstant`(s), `series/aid/terms`());
  if not has(c, x) then return `series/aid/times`(`series/aid/value`('exp', c), e) end if;
  # exp(k*ln(x) + c) is x^k times exp(c).
  k := `series/aid/logarithms`(c, x);
  if k = FAIL then return FAIL end if;
  `series/aid/shifted`(`series/aid/times`(`series/aid/value`('exp', c - k*ln(x)), e), k)
end proc:
`series/aid/logarithms` := proc(c, x)
  description "series/aid/logarithms(c, x): the integer k for which c - k*ln(x) is free of x, or FAIL";
  local t, k;
  k := 0;
  for t in `if`(type(c, `+`), [op(c)], [c]) do
    if not has(t, x) then next end if;
    t := t/ln(x);
    if not type(t, integer) then return FAIL end if;
    k := k + t
  end do;
  k
end proc:

# c*x^v*(1 + ...): the integral of s'/s, whose term in 1/x becomes the logarithm.
`series/ln` := proc(u, x)
  description "series/ln(u, x): the series of the natural logarithm of u; a zero or pole of u gives a coefficient in ln(x)";
  local s, c, v, q;
  s := `series/aid/argument`(u, x);
  if s = FAIL then return FAIL end if;
  if nops(s) = 0 or `series/aid/isorder`(op(1, s)) then error "no series of %1: the expansion of its argument gives no term", 'ln'(u) end if;
  c, v := op(1..2, s);
  q := `series/aid/argument`(`kernel/native`("series/aid/derivative", s)/s, x);
  if not type(q, series) then return FAIL end if;
  if v <> 0 then q := `series/aid/argument`(q - v/x, x) end if;
  `kernel/native`("series/aid/integral", q, `series/aid/value`('ln', c) + v*ln(x))
end proc:
`series/log` := proc(u, x)
  description "series/log(u, x), series/log[b](u, x): the series of the logarithm of u, to the base b";
  if type(procname, indexed) then `series/aid/argument`(ln(u)/ln(op(procname)), x) else `series/aid/argument`(ln(u), x) end if
end proc:
`series/log10` := proc(u, x)
  description "series/log10(u, x): the series of the common logarithm of u";
  `series/aid/argument`(ln(u)/ln(10), x)
end proc:
`series/sqrt` := proc(u, x)
  description "series/sqrt(u, x): the series of the square root of u";
  `series/power`(u^(1/2), x)
end proc:

# ---- circular and hyperbolic functions
`series/aid/sincos` := proc(u, x, t)
  description "series/aid/sincos(u, x, t): [c, sin(w), cos(w)] with u = c + w for t = -1, [c, sinh(w), cosh(w)] for t = 1; FAIL at a pole";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL or `series/aid/lowest`(s) < 0 or `series/aid/onlyorder`(s) then return FAIL end if;
  if has(`series/aid/constant`(s), x) then return FAIL end if;
  [`series/aid/constant`(s), `kernel/native`("series/aid/sincos", `series/aid/withoutconstant`(s), `series/aid/terms`(), t)]
end proc:
`series/sin` := proc(u, x)
  description "series/sin(u, x): the series of the sine of u";
  local p;
  p := `series/aid/sincos`(u, x, -1);
  if p = FAIL then FAIL elif p[1] = 0 then p[2]
  else `series/aid/argument`(`series/aid/value`('sin', p[1])*p[3] + `series/aid/value`('cos', p[1])*p[2], x)
  end if
end proc:
`series/cos` := proc(u, x)
  description "series/cos(u, x): the series of the cosine of u";
  local p;
  p := `series/aid/sincos`(u, x, -1);
  if p = FAIL then FAIL elif p[1] = 0 then p[3]
  else `series/aid/argument`(`series/aid/value`('cos', p[1])*p[3] - `series/aid/value`('sin', p[1])*p[2], x)
  end if
end proc:
`series/sinh` := proc(u, x)
  description "series/sinh(u, x): the series of the hyperbolic sine of u";
  local p;
  p := `series/aid/sincos`(u, x, 1);
  if p = FAIL then FAIL elif p[1] = 0 then p[2]
  else `series/aid/argument`(`series/aid/value`('sinh', p[1])*p[3] + `series/aid/value`('cosh', p[1])*p[2], x)
  end if
end proc:
`series/cosh` := proc(u, x)
  description "series/cosh(u, x): the series of the hyperbolic cosine of u";
  local p;
  p := `series/aid/sincos`(u, x, 1);
  if p = FAIL then FAIL elif p[1] = 0 then p[3]
  else `series/aid/argument`(`series/aid/value`('cosh', p[1])*p[3] + `series/aid/value`('sinh', p[1])*p[2], x)
  end if
end proc:
# (t + tan(w))/(1 - t*tan(w)) with t = tan(c); where sin(c) and cos(c) are numbers, the quotient of the two.
`series/tan` := proc(u, x)
  description "series/tan(u, x): the series of the tangent of u";
  `series/aid/tangent`(u, x, -1, 'tan', 'sin', 'cos')
end proc:
`series/tanh` := proc(u, x)
  description "series/tanh(u, x): the series of the hyperbolic tangent of u";
  `series/aid/tangent`(u, x, 1, 'tanh', 'sinh', 'cosh')
end proc:
`series/aid/tangent` := proc(u, x, t, f, g, h)
  description "series/aid/tangent(u, x, t, f, g, h): the series of f(u) = g(u)/h(u), with f the tangent of the kind t, -1 or 1";
  local p, a, b;
  p := `series/aid/sincos`(u, x, t);
  if p = FAIL then return FAIL end if;
  if p[1] = 0 then return `series/aid/argument`(p[2]/p[3], x) end if;
  a, b := `series/aid/value`(g, p[1]), `series/aid/value`(h, p[1]);
  if has([a, b], g) or has([a, b], h) then
    a := f(p[1]);
    `series/aid/argument`((a*p[3] + p[2])/(p[3] + t*a*p[2]), x)
  else `series/aid/argument`((a*p[3] + b*p[2])/(b*p[3] + t*a*p[2]), x)
  end if
end proc:
`series/cot` := proc(u, x)
  description "series/cot(u, x): the series of the cotangent of u";
  `series/aid/argument`(1/tan(u), x)
end proc:
`series/sec` := proc(u, x)
  description "series/sec(u, x): the series of the secant of u";
  `series/aid/argument`(1/cos(u), x)
end proc:
`series/csc` := proc(u, x)
  description "series/csc(u, x): the series of the cosecant of u";
  `series/aid/argument`(1/sin(u), x)
end proc:
`series/coth` := proc(u, x)
  description "series/coth(u, x): the series of the hyperbolic cotangent of u";
  `series/aid/argument`(1/tanh(u), x)
end proc:
`series/sech` := proc(u, x)
  description "series/sech(u, x): the series of the hyperbolic secant of u";
  `series/aid/argument`(1/cosh(u), x)
end proc:
`series/csch` := proc(u, x)
  description "series/csch(u, x): the series of the hyperbolic cosecant of u";
  `series/aid/argument`(1/sinh(u), x)
end proc:

# ---- their inverses: integrals of algebraic functions
`series/aid/integrated` := proc(f, s, slope)
  description "series/aid/integrated(f, s, slope): the series of f(s), whose derivative is slope(s)*s', for a series s; FAIL where the slope has a pole";
  local c, q, x;
  x := op(0, s);
  c := `series/aid/constant`(s);
  if `series/aid/lowest`(s) < 0 or `series/aid/onlyorder`(s) or has(c, x) then return FAIL end if;
  q := `series/aid/argument`(slope(s)*`kernel/native`("series/aid/derivative", s), x);
  if not type(q, series) or `series/aid/lowest`(q) < 0 then return FAIL end if;
  `kernel/native`("series/aid/integral", q, `series/aid/value`(f, c))
end proc:
`series/aid/inverse` := proc(f, u, x, slope)
  description "series/aid/inverse(f, u, x, slope): the series in x of f(u), whose derivative is slope(u)*u'; FAIL where there is none";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL else `series/aid/integrated`(f, s, slope) end if
end proc:
# At a pole of the argument s, arcsinh(s) is ln(s*(1 + (1 + 1/s^2)^(1/2))), and arccosh(s) the same with 1 - 1/s^2.
`series/aid/inversepole` := proc(s, x, t)
  description "series/aid/inversepole(s, x, t): the series at a pole of s of arcsinh(s), s in the right half-plane, for t = 1, of arccosh(s) for t = -1";
  `series/aid/argument`(ln(s*(1 + (1 + t/s^2)^(1/2))), x)
end proc:
`series/aid/isnegative` := proc(s)
  description "series/aid/isnegative(s): whether the first coefficient of the series s is a negative number";
  type(evalf(op(1, s)), negative)
end proc:
`series/arcsin` := proc(u, x)
  description "series/arcsin(u, x): the series of the arc sine of u";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif `series/aid/lowest`(s) >= 0 then `series/aid/integrated`('arcsin', s, t -> (1 - t^2)^(-1/2))
  elif `series/aid/isnegative`(s) then `series/aid/argument`(-arcsin(-s), x)
  else `series/aid/argument`(Pi/2 - I*`series/aid/inversepole`(s, x, -1), x)
  end if
end proc:
`series/arccos` := proc(u, x)
  description "series/arccos(u, x): the series of the arc cosine of u";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif `series/aid/lowest`(s) >= 0 then `series/aid/integrated`('arccos', s, t -> -(1 - t^2)^(-1/2))
  else `series/aid/argument`(Pi/2 - arcsin(s), x)
  end if
end proc:
`series/arcsinh` := proc(u, x)
  description "series/arcsinh(u, x): the series of the area hyperbolic sine of u";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif `series/aid/lowest`(s) >= 0 then `series/aid/integrated`('arcsinh', s, t -> (1 + t^2)^(-1/2))
  elif `series/aid/isnegative`(s) then `series/aid/argument`(-arcsinh(-s), x)
  else `series/aid/inversepole`(s, x, 1)
  end if
end proc:
`series/arccosh` := proc(u, x)
  description "series/arccosh(u, x): the series of the area hyperbolic cosine of u";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif `series/aid/lowest`(s) < 0 then `series/aid/inversepole`(s, x, -1)
  else `series/aid/integrated`('arccosh', s, t -> (t - 1)^(-1/2)*(t + 1)^(-1/2))
  end if
end proc:
# At the logarithmic points of arctanh and arctan, 1 and -1 or I and -I, the difference of logarithms that they are.
`series/arctanh` := proc(u, x)
  description "series/arctanh(u, x): the series of the area hyperbolic tangent of u";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif `series/aid/lowest`(s) < 0 or member(`series/aid/constant`(s), {1, -1}) then `series/aid/argument`((ln(1 + s) - ln(1 - s))/2, x)
  else `series/aid/integrated`('arctanh', s, t -> 1/(1 - t^2))
  end if
end proc:
# At a pole the functions of the reciprocal, which is 0 there.
`series/arctan` := proc(u, v, x)
  description "series/arctan(u, x), series/arctan(u, v, x): the series of the arc tangent of u, or of the angle of (v, u) where v > 0";
  local s;
  if nargs = 3 then return `series/aid/argument`(arctan(u/v), x) end if;
  s := `series/aid/argument`(u, v);
  if s = FAIL then FAIL
  elif `series/aid/lowest`(s) < 0 then `series/aid/argument`(`series/aid/value`('signum', op(1, s))*Pi/2 - arctan(1/s), v)
  elif member(`series/aid/constant`(s), {I, -I}) then `series/aid/argument`(I/2*(ln(1 - I*s) - ln(1 + I*s)), v)
  else `series/aid/integrated`('arctan', s, t -> 1/(1 + t^2))
  end if
end proc:
`series/arccot` := proc(u, x)
  description "series/arccot(u, x): the series of the arc cotangent of u";
  `series/aid/argument`(Pi/2 - arctan(u), x)
end proc:
`series/arccoth` := proc(u, x)
  description "series/arccoth(u, x): the series of the area hyperbolic cotangent of u";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif `series/aid/lowest`(s) < 0 or member(`series/aid/constant`(s), {1, -1}) then `series/aid/argument`(arctanh(1/s), x)
  else `series/aid/integrated`('arccoth', s, t -> 1/(1 - t^2))
  end if
end proc:
`series/arcsec` := proc(u, x)
  description "series/arcsec(u, x): the series of the arc secant of u";
  `series/aid/argument`(arccos(1/u), x)
end proc:
`series/arccsc` := proc(u, x)
  description "series/arccsc(u, x): the series of the arc cosecant of u";
  `series/aid/argument`(arcsin(1/u), x)
end proc:
`series/arcsech` := proc(u, x)
  description "series/arcsech(u, x): the series of the area hyperbolic secant of u";
  `series/aid/argument`(arccosh(1/u), x)
end proc:
`series/arccsch` := proc(u, x)
  description "series/arccsch(u, x): the series of the area hyperbolic cosecant of u";
  `series/aid/argument`(arcsinh(1/u), x)
end proc:

# ---- sizes, of real variables
`series/aid/signof` := proc(s)
  description "series/aid/signof(s): the sign of the series s beside 0, which holds signum of its variable when the leading exponent is odd";
  local c, k;
  c := op(1, s);
  k := `simpl/signum`(c);
  if k = FAIL then k := signum(c) end if;
  if irem(op(2, s), 2) = 0 then k else k*signum(op(0, s)) end if
end proc:
`series/abs` := proc(u, x)
  description "series/abs(u, x): the series of the absolute value of u, real for real x";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL or nops(s) = 0 or `series/aid/isorder`(op(1, s)) then s else `series/aid/times`(`series/aid/signof`(s), s) end if
end proc:
`series/signum` := proc(u, x)
  description "series/signum(u, x): the sign of u beside 0";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL or nops(s) = 0 or `series/aid/isorder`(op(1, s)) then FAIL else `series/aid/fromterms`(x, [`series/aid/signof`(s), 0]) end if
end proc:
