# Derivatives of the elementary functions. The kernel asks for diff/f(u, x) in diff(f(u), x).

`diff/exp` := proc(u, x)
  description "diff/exp(u, x): the derivative of the exponential of u";
  exp(u)*diff(u, x)
end proc:
`diff/ln` := proc(u, x)
  description "diff/ln(u, x): the derivative of the natural logarithm of u";
  1/u*diff(u, x)
end proc:
`diff/sqrt` := proc(u, x)
  description "diff/sqrt(u, x): the derivative of the square root of u";
  1/2/sqrt(u)*diff(u, x)
end proc:
`diff/sin` := proc(u, x)
  description "diff/sin(u, x): the derivative of the sine of u";
  cos(u)*diff(u, x)
end proc:
`diff/cos` := proc(u, x)
  description "diff/cos(u, x): the derivative of the cosine of u";
  -sin(u)*diff(u, x)
end proc:
`diff/tan` := proc(u, x)
  description "diff/tan(u, x): the derivative of the tangent of u";
  (1 + tan(u)^2)*diff(u, x)
end proc:
`diff/cot` := proc(u, x)
  description "diff/cot(u, x): the derivative of the cotangent of u";
  (-1 - cot(u)^2)*diff(u, x)
end proc:
`diff/sec` := proc(u, x)
  description "diff/sec(u, x): the derivative of the secant of u";
  sec(u)*tan(u)*diff(u, x)
end proc:
`diff/csc` := proc(u, x)
  description "diff/csc(u, x): the derivative of the cosecant of u";
  -csc(u)*cot(u)*diff(u, x)
end proc:
`diff/sinh` := proc(u, x)
  description "diff/sinh(u, x): the derivative of the hyperbolic sine of u";
  cosh(u)*diff(u, x)
end proc:
`diff/cosh` := proc(u, x)
  description "diff/cosh(u, x): the derivative of the hyperbolic cosine of u";
  sinh(u)*diff(u, x)
end proc:
`diff/tanh` := proc(u, x)
  description "diff/tanh(u, x): the derivative of the hyperbolic tangent of u";
  (1 - tanh(u)^2)*diff(u, x)
end proc:
`diff/coth` := proc(u, x)
  description "diff/coth(u, x): the derivative of the hyperbolic cotangent of u";
  (1 - coth(u)^2)*diff(u, x)
end proc:
`diff/sech` := proc(u, x)
  description "diff/sech(u, x): the derivative of the hyperbolic secant of u";
  -sech(u)*tanh(u)*diff(u, x)
end proc:
`diff/csch` := proc(u, x)
  description "diff/csch(u, x): the derivative of the hyperbolic cosecant of u";
  -csch(u)*coth(u)*diff(u, x)
end proc:
`diff/arcsin` := proc(u, x)
  description "diff/arcsin(u, x): the derivative of the arc sine of u";
  (1 - u^2)^(-1/2)*diff(u, x)
end proc:
`diff/arccos` := proc(u, x)
  description "diff/arccos(u, x): the derivative of the arc cosine of u";
  -(1 - u^2)^(-1/2)*diff(u, x)
end proc:
`diff/arccot` := proc(u, x)
  description "diff/arccot(u, x): the derivative of the arc cotangent of u";
  -1/(1 + u^2)*diff(u, x)
end proc:
`diff/arcsec` := proc(u, x)
  description "diff/arcsec(u, x): the derivative of the arc secant of u";
  (1 - 1/u^2)^(-1/2)/u^2*diff(u, x)
end proc:
`diff/arccsc` := proc(u, x)
  description "diff/arccsc(u, x): the derivative of the arc cosecant of u";
  -(1 - 1/u^2)^(-1/2)/u^2*diff(u, x)
end proc:
`diff/arcsinh` := proc(u, x)
  description "diff/arcsinh(u, x): the derivative of the area hyperbolic sine of u";
  (1 + u^2)^(-1/2)*diff(u, x)
end proc:
`diff/arccosh` := proc(u, x)
  description "diff/arccosh(u, x): the derivative of the area hyperbolic cosine of u";
  (u - 1)^(-1/2)*(u + 1)^(-1/2)*diff(u, x)
end proc:
`diff/arctanh` := proc(u, x)
  description "diff/arctanh(u, x): the derivative of the area hyperbolic tangent of u";
  1/(1 - u^2)*diff(u, x)
end proc:
`diff/arccoth` := proc(u, x)
  description "diff/arccoth(u, x): the derivative of the area hyperbolic cotangent of u";
  1/(1 - u^2)*diff(u, x)
end proc:
`diff/arcsech` := proc(u, x)
  description "diff/arcsech(u, x): the derivative of the area hyperbolic secant of u";
  -(1/u - 1)^(-1/2)*(1/u + 1)^(-1/2)/u^2*diff(u, x)
end proc:
`diff/arccsch` := proc(u, x)
  description "diff/arccsch(u, x): the derivative of the area hyperbolic cosecant of u";
  -(1 + 1/u^2)^(-1/2)/u^2*diff(u, x)
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
