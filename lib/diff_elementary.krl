# Derivatives of the elementary functions. The kernel asks for diff/f(u, x) in diff(f(u), x). A call with other
# arguments than the function has stays.

`diff/aid/staying` := proc(f, x)
  description "diff/aid/staying(f, x): the call diff(f, x), not evaluated";
  'diff'(f, x)
end proc:
`diff/exp` := proc(u, x)
  description "diff/exp(u, x): the derivative of the exponential of u";
  if nargs = 2 then exp(u)*diff(u, x) else `diff/aid/staying`('exp'(args[1..-2]), args[-1]) end if
end proc:
`diff/ln` := proc(u, x)
  description "diff/ln(u, x): the derivative of the natural logarithm of u";
  if nargs = 2 then 1/u*diff(u, x) else `diff/aid/staying`('ln'(args[1..-2]), args[-1]) end if
end proc:
`diff/sqrt` := proc(u, x)
  description "diff/sqrt(u, x): the derivative of the square root of u";
  if nargs = 2 then 1/2/sqrt(u)*diff(u, x) else `diff/aid/staying`('sqrt'(args[1..-2]), args[-1]) end if
end proc:
`diff/sin` := proc(u, x)
  description "diff/sin(u, x): the derivative of the sine of u";
  if nargs = 2 then cos(u)*diff(u, x) else `diff/aid/staying`('sin'(args[1..-2]), args[-1]) end if
end proc:
`diff/cos` := proc(u, x)
  description "diff/cos(u, x): the derivative of the cosine of u";
  if nargs = 2 then -sin(u)*diff(u, x) else `diff/aid/staying`('cos'(args[1..-2]), args[-1]) end if
end proc:
`diff/tan` := proc(u, x)
  description "diff/tan(u, x): the derivative of the tangent of u";
  if nargs = 2 then (1 + tan(u)^2)*diff(u, x) else `diff/aid/staying`('tan'(args[1..-2]), args[-1]) end if
end proc:
`diff/cot` := proc(u, x)
  description "diff/cot(u, x): the derivative of the cotangent of u";
  if nargs = 2 then (-1 - cot(u)^2)*diff(u, x) else `diff/aid/staying`('cot'(args[1..-2]), args[-1]) end if
end proc:
`diff/sec` := proc(u, x)
  description "diff/sec(u, x): the derivative of the secant of u";
  if nargs = 2 then sec(u)*tan(u)*diff(u, x) else `diff/aid/staying`('sec'(args[1..-2]), args[-1]) end if
end proc:
`diff/csc` := proc(u, x)
  description "diff/csc(u, x): the derivative of the cosecant of u";
  if nargs = 2 then -csc(u)*cot(u)*diff(u, x) else `diff/aid/staying`('csc'(args[1..-2]), args[-1]) end if
end proc:
`diff/sinh` := proc(u, x)
  description "diff/sinh(u, x): the derivative of the hyperbolic sine of u";
  if nargs = 2 then cosh(u)*diff(u, x) else `diff/aid/staying`('sinh'(args[1..-2]), args[-1]) end if
end proc:
`diff/cosh` := proc(u, x)
  description "diff/cosh(u, x): the derivative of the hyperbolic cosine of u";
  if nargs = 2 then sinh(u)*diff(u, x) else `diff/aid/staying`('cosh'(args[1..-2]), args[-1]) end if
end proc:
`diff/tanh` := proc(u, x)
  description "diff/tanh(u, x): the derivative of the hyperbolic tangent of u";
  if nargs = 2 then (1 - tanh(u)^2)*diff(u, x) else `diff/aid/staying`('tanh'(args[1..-2]), args[-1]) end if
end proc:
`diff/coth` := proc(u, x)
  description "diff/coth(u, x): the derivative of the hyperbolic cotangent of u";
  if nargs = 2 then (1 - coth(u)^2)*diff(u, x) else `diff/aid/staying`('coth'(args[1..-2]), args[-1]) end if
end proc:
`diff/sech` := proc(u, x)
  description "diff/sech(u, x): the derivative of the hyperbolic secant of u";
  if nargs = 2 then -sech(u)*tanh(u)*diff(u, x) else `diff/aid/staying`('sech'(args[1..-2]), args[-1]) end if
end proc:
`diff/csch` := proc(u, x)
  description "diff/csch(u, x): the derivative of the hyperbolic cosecant of u";
  if nargs = 2 then -csch(u)*coth(u)*diff(u, x) else `diff/aid/staying`('csch'(args[1..-2]), args[-1]) end if
end proc:
`diff/arcsin` := proc(u, x)
  description "diff/arcsin(u, x): the derivative of the arc sine of u";
  if nargs = 2 then (1 - u^2)^(-1/2)*diff(u, x) else `diff/aid/staying`('arcsin'(args[1..-2]), args[-1]) end if
end proc:
`diff/arccos` := proc(u, x)
  description "diff/arccos(u, x): the derivative of the arc cosine of u";
  if nargs = 2 then -(1 - u^2)^(-1/2)*diff(u, x) else `diff/aid/staying`('arccos'(args[1..-2]), args[-1]) end if
end proc:
`diff/arccot` := proc(u, x)
  description "diff/arccot(u, x): the derivative of the arc cotangent of u";
  if nargs = 2 then -1/(1 + u^2)*diff(u, x) else `diff/aid/staying`('arccot'(args[1..-2]), args[-1]) end if
end proc:
`diff/arcsec` := proc(u, x)
  description "diff/arcsec(u, x): the derivative of the arc secant of u";
  if nargs = 2 then (1 - 1/u^2)^(-1/2)/u^2*diff(u, x) else `diff/aid/staying`('arcsec'(args[1..-2]), args[-1]) end if
end proc:
`diff/arccsc` := proc(u, x)
  description "diff/arccsc(u, x): the derivative of the arc cosecant of u";
  if nargs = 2 then -(1 - 1/u^2)^(-1/2)/u^2*diff(u, x) else `diff/aid/staying`('arccsc'(args[1..-2]), args[-1]) end if
end proc:
`diff/arcsinh` := proc(u, x)
  description "diff/arcsinh(u, x): the derivative of the area hyperbolic sine of u";
  if nargs = 2 then (1 + u^2)^(-1/2)*diff(u, x) else `diff/aid/staying`('arcsinh'(args[1..-2]), args[-1]) end if
end proc:
`diff/arccosh` := proc(u, x)
  description "diff/arccosh(u, x): the derivative of the area hyperbolic cosine of u";
  if nargs = 2 then (u - 1)^(-1/2)*(u + 1)^(-1/2)*diff(u, x) else `diff/aid/staying`('arccosh'(args[1..-2]), args[-1]) end if
end proc:
`diff/arctanh` := proc(u, x)
  description "diff/arctanh(u, x): the derivative of the area hyperbolic tangent of u";
  if nargs = 2 then 1/(1 - u^2)*diff(u, x) else `diff/aid/staying`('arctanh'(args[1..-2]), args[-1]) end if
end proc:
`diff/arccoth` := proc(u, x)
  description "diff/arccoth(u, x): the derivative of the area hyperbolic cotangent of u";
  if nargs = 2 then 1/(1 - u^2)*diff(u, x) else `diff/aid/staying`('arccoth'(args[1..-2]), args[-1]) end if
end proc:
`diff/arcsech` := proc(u, x)
  description "diff/arcsech(u, x): the derivative of the area hyperbolic secant of u";
  if nargs = 2 then -(1/u - 1)^(-1/2)*(1/u + 1)^(-1/2)/u^2*diff(u, x) else `diff/aid/staying`('arcsech'(args[1..-2]), args[-1]) end if
end proc:
`diff/arccsch` := proc(u, x)
  description "diff/arccsch(u, x): the derivative of the area hyperbolic cosecant of u";
  if nargs = 2 then -(1 + 1/u^2)^(-1/2)/u^2*diff(u, x) else `diff/aid/staying`('arccsch'(args[1..-2]), args[-1]) end if
end proc:
`diff/arctan` := proc(u, v, x)
  description "diff/arctan(u, x), diff/arctan(u, v, x): the derivative of the arc tangent of u, or of the angle of the point (v, u)";
  if nargs = 2 then diff(u, v)/(1 + u^2)
  else (v*diff(u, x) - u*diff(v, x))/(u^2 + v^2)
  end if
end proc:
# The base of a logarithm is its index.
`diff/log` := proc(u, x)
  description "diff/log(u, x), diff/log[b](u, x): the derivative of the logarithm of u, to the base b";
  if not type(procname, indexed) then diff(u, x)/u
  elif has(op(procname), x) then diff(ln(u)/ln(op(procname)), x)
  else diff(u, x)/(u*ln(op(procname)))
  end if
end proc:
`diff/log10` := proc(u, x)
  description "diff/log10(u, x): the derivative of the common logarithm of u";
  diff(u, x)/(u*ln(10))
end proc:

# Sizes and parts, of real variables. What steps has the derivative 0 beside its steps.
`diff/abs` := proc(u, x)
  description "diff/abs(u, x): the derivative of the absolute value of u, a real expression";
  signum(u)*diff(u, x)
end proc:
`diff/signum` := proc(u, x)
  description "diff/signum(u, x): the derivative of the sign of u, 0 away from its steps";
  0
end proc:
`diff/csgn` := proc(u, x)
  description "diff/csgn(u, x): the derivative of the half-plane of u, 0 away from the imaginary axis";
  0
end proc:
`diff/floor` := proc(u, x)
  description "diff/floor(u, x): the derivative of the integer below u, 0 away from its steps";
  0
end proc:
`diff/ceil` := proc(u, x)
  description "diff/ceil(u, x): the derivative of the integer above u, 0 away from its steps";
  0
end proc:
`diff/round` := proc(u, x)
  description "diff/round(u, x): the derivative of the integer next to u, 0 away from its steps";
  0
end proc:
`diff/trunc` := proc(u, x)
  description "diff/trunc(u, x): the derivative of the integer part of u, 0 away from its steps";
  0
end proc:
`diff/frac` := proc(u, x)
  description "diff/frac(u, x): the derivative of the fractional part of u, away from its steps";
  diff(u, x)
end proc:
`diff/Re` := proc(u, x)
  description "diff/Re(u, x): the derivative of the real part of u by a real x";
  Re(diff(u, x))
end proc:
`diff/Im` := proc(u, x)
  description "diff/Im(u, x): the derivative of the imaginary part of u by a real x";
  Im(diff(u, x))
end proc:
`diff/conjugate` := proc(u, x)
  description "diff/conjugate(u, x): the derivative of the conjugate of u by a real x";
  conjugate(diff(u, x))
end proc:
