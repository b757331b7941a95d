# Numeric values of constants, elementary functions and powers, all computed by the kernel to within 0.51 units of the last
# digit of each part.

`evalf/constant/Pi` := proc()
  description "evalf/constant/Pi(): the number Pi as a float";
  `kernel/native`("evalf/constant/Pi")
end proc:
`evalf/constant/gamma` := proc()
  description "evalf/constant/gamma(): Euler's constant as a float";
  `kernel/native`("evalf/constant/gamma")
end proc:
`evalf/constant/Catalan` := proc()
  description "evalf/constant/Catalan(): Catalan's constant as a float";
  `kernel/native`("evalf/constant/Catalan")
end proc:

# What stands before the point costs as many digits behind it.
`evalf/aid/argument` := proc(x)
  description "evalf/aid/argument(x): x itself where it is a number, else its numeric value with guard digits";
  local y;
  if type(x, complex(numeric)) then return x end if;
  y := evalf(x);
  if y <> x and type(y, complex(numeric)) then evalf(x, Digits + 10 + `evalf/aid/size`(y)) else y end if
end proc:
`evalf/aid/size` := proc(y)
  description "evalf/aid/size(y): the decimal digits before the point of a complex number, 0 where there are none";
  local t;
  max(0, seq(`if`(t = 0, 0, ilog10(t) + 1), t = [Re(y), Im(y)]))
end proc:
`evalf/aid/smallness` := proc(y)
  description "evalf/aid/smallness(y): the zeros behind the point in front of a real number's first digit";
  max(0, -ilog10(y))
end proc:
`evalf/aid/exact` := proc(y)
  description "evalf/aid/exact(y): the rational number equal to a real number";
  if type(y, rational) then y else SFloatMantissa(y)*10^SFloatExponent(y) end if
end proc:
# Arithmetic and comparison of floats round at Digits, which a longer argument doesn't bear.
`evalf/aid/againstone` := proc(y)
  description "evalf/aid/againstone(y): the sign of |y| - 1";
  if y = 0 or ilog10(y) < -1 then -1 elif ilog10(y) > 0 then 1 else `simpl/signum`(abs(`evalf/aid/exact`(y)) - 1) end if
end proc:

# The elementary functions: the kernel works out floats and complex floats (src/library/native/elementary_floats.cpp).

`evalf/exp` := proc() description "evalf/exp(x): exp(x) as a float"; `kernel/native`("evalf/exp", args) end proc:
`evalf/ln` := proc() description "evalf/ln(x): ln(x) as a float"; `kernel/native`("evalf/ln", args) end proc:
`evalf/sqrt` := proc() description "evalf/sqrt(x): sqrt(x) as a float"; `kernel/native`("evalf/sqrt", args) end proc:
`evalf/sin` := proc() description "evalf/sin(x): sin(x) as a float"; `kernel/native`("evalf/sin", args) end proc:
`evalf/cos` := proc() description "evalf/cos(x): cos(x) as a float"; `kernel/native`("evalf/cos", args) end proc:
`evalf/tan` := proc() description "evalf/tan(x): tan(x) as a float"; `kernel/native`("evalf/tan", args) end proc:
`evalf/cot` := proc() description "evalf/cot(x): cot(x) as a float"; `kernel/native`("evalf/cot", args) end proc:
`evalf/sec` := proc() description "evalf/sec(x): sec(x) as a float"; `kernel/native`("evalf/sec", args) end proc:
`evalf/csc` := proc() description "evalf/csc(x): csc(x) as a float"; `kernel/native`("evalf/csc", args) end proc:
`evalf/sinh` := proc() description "evalf/sinh(x): sinh(x) as a float"; `kernel/native`("evalf/sinh", args) end proc:
`evalf/cosh` := proc() description "evalf/cosh(x): cosh(x) as a float"; `kernel/native`("evalf/cosh", args) end proc:
`evalf/tanh` := proc() description "evalf/tanh(x): tanh(x) as a float"; `kernel/native`("evalf/tanh", args) end proc:
`evalf/coth` := proc() description "evalf/coth(x): coth(x) as a float"; `kernel/native`("evalf/coth", args) end proc:
`evalf/sech` := proc() description "evalf/sech(x): sech(x) as a float"; `kernel/native`("evalf/sech", args) end proc:
`evalf/csch` := proc() description "evalf/csch(x): csch(x) as a float"; `kernel/native`("evalf/csch", args) end proc:
`evalf/arcsin` := proc() description "evalf/arcsin(x): arcsin(x) as a float"; `kernel/native`("evalf/arcsin", args) end proc:
`evalf/arccos` := proc() description "evalf/arccos(x): arccos(x) as a float"; `kernel/native`("evalf/arccos", args) end proc:
`evalf/arctan` := proc() description "evalf/arctan(x): arctan(x), or arctan(y, x), as a float"; `kernel/native`("evalf/arctan", args) end proc:
`evalf/arccot` := proc() description "evalf/arccot(x): arccot(x) as a float"; `kernel/native`("evalf/arccot", args) end proc:
`evalf/arcsec` := proc() description "evalf/arcsec(x): arcsec(x) as a float"; `kernel/native`("evalf/arcsec", args) end proc:
`evalf/arccsc` := proc() description "evalf/arccsc(x): arccsc(x) as a float"; `kernel/native`("evalf/arccsc", args) end proc:
`evalf/arcsinh` := proc() description "evalf/arcsinh(x): arcsinh(x) as a float"; `kernel/native`("evalf/arcsinh", args) end proc:
`evalf/arccosh` := proc() description "evalf/arccosh(x): arccosh(x) as a float"; `kernel/native`("evalf/arccosh", args) end proc:
`evalf/arctanh` := proc() description "evalf/arctanh(x): arctanh(x) as a float"; `kernel/native`("evalf/arctanh", args) end proc:
`evalf/arccoth` := proc() description "evalf/arccoth(x): arccoth(x) as a float"; `kernel/native`("evalf/arccoth", args) end proc:
`evalf/arcsech` := proc() description "evalf/arcsech(x): arcsech(x) as a float"; `kernel/native`("evalf/arcsech", args) end proc:
`evalf/arccsch` := proc() description "evalf/arccsch(x): arccsch(x) as a float"; `kernel/native`("evalf/arccsch", args) end proc:
`evalf/log` := proc() description "evalf/log(x): log(x), or log[b](x), as a float"; `kernel/native`("evalf/log", args) end proc:
`evalf/log10` := proc() description "evalf/log10(x): log10(x) as a float"; `kernel/native`("evalf/log10", args) end proc:
`evalf/surd` := proc() description "evalf/surd(x): surd(x, n) as a float"; `kernel/native`("evalf/surd", args) end proc:
`evalf/signum` := proc() description "evalf/signum(x): signum of the float of x"; signum(evalf(args)) end proc:
`evalf/csgn` := proc() description "evalf/csgn(x): csgn of the float of x"; csgn(evalf(args)) end proc:
`evalf/argument` := proc() description "evalf/argument(x): argument of the float of x"; argument(evalf(args)) end proc:
`evalf/Heaviside` := proc() description "evalf/Heaviside(x): Heaviside of the float of x"; Heaviside(evalf(args)) end proc:

# Powers that the kernel doesn't work out itself: floats, negative and complex numbers to fractional and complex powers.
`evalf/power` := proc(x, y)
  description "evalf/power(x, y): the float x^y";
  local base, exponent;
  base, exponent := `evalf/aid/argument`(x), `evalf/aid/argument`(y);
  if type(base, numeric) and type(exponent, numeric) then
    if base = 0 then
      if exponent = 0 then 1. elif type(exponent, positive) then 0.
      else NumericEvent(division_by_zero, `^`, [x, y], Float(infinity)) end if
    else `kernel/native`("evalf/power", base, exponent)
    end if
  elif type(base, complex(numeric)) and type(exponent, complex(numeric)) then
    if base = 0 then `if`(type(Re(exponent), positive), 0., Float(undefined))
    else `kernel/native`("evalf/power", base, exponent)
    end if
  elif type(base, identical(Float(undefined))) or type(exponent, identical(Float(undefined))) then Float(undefined)
  elif base = -Float(infinity) and type(exponent, positive) then Float(infinity)*I^(2*exponent)
  elif base = -Float(infinity) and type(exponent, negative) then 0.
  else x^y
  end if
end proc:

# The absolute value of what is no number but has a numeric value, also where that is complex.
`evalf/abs` := proc(x)
  description "evalf/abs(x): abs(x) as a float";
  local y;
  if nargs <> 1 then return 'abs'(args) end if;
  y := `evalf/aid/argument`(x);
  if type(y, complex(numeric)) then evalf(abs(y)) else 'abs'(y) end if
end proc:
