# Numeric values of constants and elementary functions. The real ones are computed by the kernel, to within 0.51 units
# of the last digit; functions of complex numbers, and those made from others, carry guard digits.

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

# The parts of each function: its value at a real number, at a complex one, and at both ends.
`evalf/aid/function` := proc(f, a::list, upper, lower)
  description "evalf/aid/function(f, [x], upper, lower): the float f(x), with the values at infinity and -infinity";
  local y;
  if nops(a) <> 1 then return `evalf/aid/standing`(f, a) end if;
  y := `evalf/aid/argument`(a[1]);
  if type(y, numeric) then evalf(cat(`evalf/real/`, f)(y))
  elif type(y, complex(numeric)) then evalf(cat(`evalf/complex/`, f)(y))
  elif y = Float(infinity) or y = infinity then evalf(upper)
  elif y = -Float(infinity) or y = -infinity then evalf(lower)
  elif type(y, identical(Float(undefined))) then y
  else `evalf/aid/standing`(f, [y])
  end if
end proc:
`evalf/aid/standing` := proc(f, a::list)
  description "evalf/aid/standing(f, [x, ...]): the call f(x, ...), not evaluated";
  subsop(0 = f, 'f'(op(a)))
end proc:

`evalf/exp` := proc()
  description "evalf/exp(x): the exponential of x as a float";
  `evalf/aid/function`('exp', [args], Float(infinity), 0.)
end proc:
`evalf/real/exp` := proc(y)
  description "evalf/real/exp(y): the exponential of a real number";
  `kernel/native`("evalf/exp", y)
end proc:
`evalf/complex/exp` := proc(y)
  description "evalf/complex/exp(y): the exponential of a complex number";
  Digits := Digits + 10;
  `evalf/real/exp`(Re(y))*(`evalf/real/cos`(Im(y)) + I*`evalf/real/sin`(Im(y)))
end proc:

`evalf/ln` := proc()
  description "evalf/ln(x): the natural logarithm of x as a float";
  `evalf/aid/function`('ln', [args], Float(infinity), Float(infinity))
end proc:
`evalf/real/ln` := proc(y)
  description "evalf/real/ln(y): the natural logarithm of a real number";
  if y = 0 then NumericEvent(division_by_zero, 'ln', [y], -Float(infinity))
  elif type(y, negative) then `kernel/native`("evalf/ln", y) + I*evalf(Pi)
  else `kernel/native`("evalf/ln", y)
  end if
end proc:
`evalf/complex/ln` := proc(y)
  description "evalf/complex/ln(y): the natural logarithm of a complex number";
  local square;
  square := `evalf/aid/square`(Re(y), Im(y));
  Digits := Digits + 10;
  `kernel/native`("evalf/ln", square)/2 + I*`kernel/native`("evalf/arctan", Im(y), Re(y))
end proc:

`evalf/sin` := proc()
  description "evalf/sin(x): the sine of x as a float";
  `evalf/aid/function`('sin', [args], Float(undefined), Float(undefined))
end proc:
`evalf/real/sin` := proc(y)
  description "evalf/real/sin(y): the sine of a real number";
  `kernel/native`("evalf/sin", y)
end proc:
`evalf/complex/sin` := proc(y)
  description "evalf/complex/sin(y): the sine of a complex number";
  Digits := Digits + 10;
  `evalf/real/sin`(Re(y))*`evalf/real/cosh`(Im(y)) + I*`evalf/real/cos`(Re(y))*`evalf/real/sinh`(Im(y))
end proc:

`evalf/cos` := proc()
  description "evalf/cos(x): the cosine of x as a float";
  `evalf/aid/function`('cos', [args], Float(undefined), Float(undefined))
end proc:
`evalf/real/cos` := proc(y)
  description "evalf/real/cos(y): the cosine of a real number";
  `kernel/native`("evalf/cos", y)
end proc:
`evalf/complex/cos` := proc(y)
  description "evalf/complex/cos(y): the cosine of a complex number";
  Digits := Digits + 10;
  `evalf/real/cos`(Re(y))*`evalf/real/cosh`(Im(y)) - I*`evalf/real/sin`(Re(y))*`evalf/real/sinh`(Im(y))
end proc:

`evalf/tan` := proc()
  description "evalf/tan(x): the tangent of x as a float";
  `evalf/aid/function`('tan', [args], Float(undefined), Float(undefined))
end proc:
`evalf/real/tan` := proc(y)
  description "evalf/real/tan(y): the tangent of a real number";
  `kernel/native`("evalf/tan", y)
end proc:
`evalf/complex/tan` := proc(y)
  description "evalf/complex/tan(y): the tangent of a complex number";
  Digits := Digits + 10;
  `evalf/complex/sin`(y)/`evalf/complex/cos`(y)
end proc:

`evalf/arctan` := proc()
  description "evalf/arctan(x), evalf/arctan(y, x): the arc tangent of x, or the angle of the point (x, y), as a float";
  local y, x;
  if nargs = 2 then
    y, x := `evalf/aid/argument`(args[1]), `evalf/aid/argument`(args[2]);
    if not type([y, x], list(numeric)) then return `evalf/aid/standing`('arctan', [y, x]) end if;
    return `if`(y = 0 and x = 0, 0., `kernel/native`("evalf/arctan", y, x))
  end if;
  `evalf/aid/function`('arctan', [args], Pi/2, -Pi/2)
end proc:
`evalf/real/arctan` := proc(y)
  description "evalf/real/arctan(y): the arc tangent of a real number";
  `kernel/native`("evalf/arctan", y)
end proc:
`evalf/complex/arctan` := proc(y)
  description "evalf/complex/arctan(y): the arc tangent of a complex number";
  Digits := Digits + 10;
  I/2*(evalf('ln'(1 - I*y)) - evalf('ln'(1 + I*y)))
end proc:

`evalf/arcsin` := proc()
  description "evalf/arcsin(x): the arc sine of x as a float";
  `evalf/aid/function`('arcsin', [args], Float(undefined), Float(undefined))
end proc:
`evalf/real/arcsin` := proc(y)
  description "evalf/real/arcsin(y): the arc sine of a real number";
  if `evalf/aid/againstone`(y) > 0 then `evalf/complex/arcsin`(y) else `kernel/native`("evalf/arcsin", y) end if
end proc:
`evalf/complex/arcsin` := proc(y)
  description "evalf/complex/arcsin(y): the arc sine of a complex number";
  Digits := Digits + 10 + 2*`evalf/aid/size`(y);
  -I*evalf('ln'(I*y + (1 - y^2)^(1/2)))
end proc:

`evalf/arccos` := proc()
  description "evalf/arccos(x): the arc cosine of x as a float";
  `evalf/aid/function`('arccos', [args], Float(undefined), Float(undefined))
end proc:
`evalf/real/arccos` := proc(y)
  description "evalf/real/arccos(y): the arc cosine of a real number";
  if `evalf/aid/againstone`(y) > 0 then `evalf/complex/arccos`(y) else `kernel/native`("evalf/arccos", y) end if
end proc:
`evalf/complex/arccos` := proc(y)
  description "evalf/complex/arccos(y): the arc cosine of a complex number";
  Digits := Digits + 10;
  evalf(Pi)/2 - `evalf/complex/arcsin`(y)
end proc:

`evalf/sinh` := proc()
  description "evalf/sinh(x): the hyperbolic sine of x as a float";
  `evalf/aid/function`('sinh', [args], Float(infinity), -Float(infinity))
end proc:
`evalf/real/sinh` := proc(y)
  description "evalf/real/sinh(y): the hyperbolic sine of a real number";
  local e;
  if y = 0 or ilog10(y) < -Digits - 10 then return evalf(y) end if;
  Digits := Digits + 10 + `evalf/aid/smallness`(y);
  e := `kernel/native`("evalf/exp", y);
  (e - 1/e)/2
end proc:
`evalf/complex/sinh` := proc(y)
  description "evalf/complex/sinh(y): the hyperbolic sine of a complex number";
  -I*`evalf/complex/sin`(I*y)
end proc:

`evalf/cosh` := proc()
  description "evalf/cosh(x): the hyperbolic cosine of x as a float";
  `evalf/aid/function`('cosh', [args], Float(infinity), Float(infinity))
end proc:
`evalf/real/cosh` := proc(y)
  description "evalf/real/cosh(y): the hyperbolic cosine of a real number";
  local e;
  Digits := Digits + 10;
  e := `kernel/native`("evalf/exp", y);
  (e + 1/e)/2
end proc:
`evalf/complex/cosh` := proc(y)
  description "evalf/complex/cosh(y): the hyperbolic cosine of a complex number";
  `evalf/complex/cos`(I*y)
end proc:

`evalf/tanh` := proc()
  description "evalf/tanh(x): the hyperbolic tangent of x as a float";
  `evalf/aid/function`('tanh', [args], 1., -1.)
end proc:
`evalf/real/tanh` := proc(y)
  description "evalf/real/tanh(y): the hyperbolic tangent of a real number";
  local e;
  if y = 0 or ilog10(y) < -Digits - 10 then return evalf(y) end if;
  if abs(y) > 2*Digits + 20 then return `if`(type(y, negative), -1., 1.) end if;
  Digits := Digits + 10 + `evalf/aid/smallness`(y);
  e := `kernel/native`("evalf/exp", 2*y);
  (e - 1)/(e + 1)
end proc:
`evalf/complex/tanh` := proc(y)
  description "evalf/complex/tanh(y): the hyperbolic tangent of a complex number";
  -I*`evalf/complex/tan`(I*y)
end proc:

`evalf/arcsinh` := proc()
  description "evalf/arcsinh(x): the area hyperbolic sine of x as a float";
  `evalf/aid/function`('arcsinh', [args], Float(infinity), -Float(infinity))
end proc:
`evalf/real/arcsinh` := proc(y)
  description "evalf/real/arcsinh(y): the area hyperbolic sine of a real number";
  if type(y, negative) then return -procname(-y) end if;
  if y = 0 or ilog10(y) < -Digits - 10 then return evalf(y) end if;
  Digits := Digits + 10 + 2*`evalf/aid/smallness`(y);
  `kernel/native`("evalf/ln", y + evalf(y^2 + 1)^(1/2))
end proc:
`evalf/complex/arcsinh` := proc(y)
  description "evalf/complex/arcsinh(y): the area hyperbolic sine of a complex number";
  I*`evalf/complex/arcsin`(-I*y)
end proc:

`evalf/arccosh` := proc()
  description "evalf/arccosh(x): the area hyperbolic cosine of x as a float";
  `evalf/aid/function`('arccosh', [args], Float(infinity), Float(undefined))
end proc:
`evalf/real/arccosh` := proc(y)
  description "evalf/real/arccosh(y): the area hyperbolic cosine of a real number";
  local more;
  if `evalf/aid/againstone`(y) < 0 then return I*`kernel/native`("evalf/arccos", y) end if;
  if type(y, negative) then return `evalf/complex/arccosh`(y) end if;
  # Beside 1 what counts is how much larger y is.
  more := `if`(ilog10(y) > 10, y, `evalf/aid/exact`(y) - 1);
  if more = 0 then return 0. end if;
  Digits := Digits + 20 + 2*`evalf/aid/smallness`(more);
  if ilog10(y) > 10 then `kernel/native`("evalf/ln", y + evalf((y - 1)*(y + 1))^(1/2))
  else `kernel/native`("evalf/ln", 1 + more + evalf(more*(more + 2))^(1/2))
  end if
end proc:
`evalf/complex/arccosh` := proc(y)
  description "evalf/complex/arccosh(y): the area hyperbolic cosine of a complex number";
  Digits := Digits + 10 + 2*`evalf/aid/size`(y);
  evalf('ln'(y + (y - 1)^(1/2)*(y + 1)^(1/2)))
end proc:

`evalf/arctanh` := proc()
  description "evalf/arctanh(x): the area hyperbolic tangent of x as a float";
  `evalf/aid/function`('arctanh', [args], Float(undefined), Float(undefined))
end proc:
`evalf/real/arctanh` := proc(y)
  description "evalf/real/arctanh(y): the area hyperbolic tangent of a real number";
  if `evalf/aid/againstone`(y) = 0 then return NumericEvent(division_by_zero, 'arctanh', [y], y*Float(infinity)) end if;
  if `evalf/aid/againstone`(y) > 0 then return `evalf/complex/arctanh`(y) end if;
  if y = 0 or ilog10(y) < -Digits - 10 then return evalf(y) end if;
  Digits := Digits + 10;
  `kernel/native`("evalf/ln", (1 + `evalf/aid/exact`(y))/(1 - `evalf/aid/exact`(y)))/2
end proc:
`evalf/complex/arctanh` := proc(y)
  description "evalf/complex/arctanh(y): the area hyperbolic tangent of a complex number";
  Digits := Digits + 10;
  (evalf('ln'(1 + y)) - evalf('ln'(1 - y)))/2
end proc:

`evalf/cot` := proc(x)
  description "evalf/cot(x): the cotangent of x as a float";
  `evalf/aid/reciprocal`('cot', 'tan', [args])
end proc:
`evalf/sec` := proc(x)
  description "evalf/sec(x): the secant of x as a float";
  `evalf/aid/reciprocal`('sec', 'cos', [args])
end proc:
`evalf/csc` := proc(x)
  description "evalf/csc(x): the cosecant of x as a float";
  `evalf/aid/reciprocal`('csc', 'sin', [args])
end proc:
`evalf/coth` := proc(x)
  description "evalf/coth(x): the hyperbolic cotangent of x as a float";
  `evalf/aid/reciprocal`('coth', 'tanh', [args])
end proc:
`evalf/sech` := proc(x)
  description "evalf/sech(x): the hyperbolic secant of x as a float";
  `evalf/aid/reciprocal`('sech', 'cosh', [args])
end proc:
`evalf/csch` := proc(x)
  description "evalf/csch(x): the hyperbolic cosecant of x as a float";
  `evalf/aid/reciprocal`('csch', 'sinh', [args])
end proc:
`evalf/aid/reciprocal` := proc(f, g, a::list)
  description "evalf/aid/reciprocal(f, g, [x]): the float f(x), f being 1/g";
  local y;
  if nops(a) <> 1 then return `evalf/aid/standing`(f, a) end if;
  y := `evalf/aid/argument`(a[1]);
  if type(y, {float, numeric, complex(numeric)}) then evalf(`evalf/aid/guarded`(cat(`evalf/`, g), y, -1)) else `evalf/aid/standing`(f, [y]) end if
end proc:
`evalf/aid/guarded` := proc(f, y, n)
  description "evalf/aid/guarded(f, y, n): f(y)^n with guard digits";
  Digits := Digits + 10;
  f(y)^n
end proc:

`evalf/sqrt` := proc(x)
  description "evalf/sqrt(x): the square root of x as a float";
  local y;
  if nargs <> 1 then return `evalf/aid/standing`('sqrt', [args]) end if;
  y := `evalf/aid/argument`(x);
  if type(y, {float, numeric, complex(numeric)}) then evalf(`evalf/aid/guarded`(evalf, y, 1/2)) else `evalf/aid/standing`('sqrt', [y]) end if
end proc:
# Near the unit circle the logarithm needs the whole of it.
`evalf/aid/square` := proc(a, b)
  description "evalf/aid/square(a, b): a^2 + b^2, all of its places where a and b are of like size";
  local apart;
  apart := `if`(a = 0 or b = 0, 0, abs(ilog10(a) - ilog10(b)));
  Digits := 2*(Digits + 10 + length(op(1, evalf(a))) + length(op(1, evalf(b)))) + min(2*apart, 2*Digits + 20);
  evalf(a)^2 + evalf(b)^2
end proc:

# Powers that the kernel doesn't work out itself: floats, negative and complex numbers to fractional and complex powers.
`evalf/power` := proc(x, y)
  description "evalf/power(x, y): the float x^y";
  local base, exponent;
  base, exponent := `evalf/aid/argument`(x), `evalf/aid/argument`(y);
  if type(base, numeric) and type(exponent, numeric) then
    if base = 0 then
      if exponent = 0 then 1. elif type(exponent, positive) then 0.
      else NumericEvent(division_by_zero, `^`, [x, y], Float(infinity)) end if
    elif type(base, positive) then `kernel/native`("evalf/power", base, exponent)
    else evalf(`evalf/aid/turned`(base, exponent))
    end if
  elif type(base, complex(numeric)) and type(exponent, complex(numeric)) then evalf(`evalf/complex/power`(base, exponent))
  elif type(base, identical(Float(undefined))) or type(exponent, identical(Float(undefined))) then Float(undefined)
  elif base = -Float(infinity) and type(exponent, positive) then Float(infinity)*I^(2*exponent)
  elif base = -Float(infinity) and type(exponent, negative) then 0.
  else x^y
  end if
end proc:
`evalf/aid/turned` := proc(x, y)
  description "evalf/aid/turned(x, y): the principal value of x^y for a number x below 0";
  local size, turns;
  # An exact exponent is reduced exactly: the value turns by half a circle for each whole number.
  turns := `evalf/aid/exact`(y);
  Digits := Digits + 10;
  size := `kernel/native`("evalf/power", x, y);
  turns := turns - 2*trunc(turns/2);
  if type(2*turns, integer) then size*I^(2*turns)
  else size*(evalf('cos'(Pi*turns)) + I*evalf('sin'(Pi*turns)))
  end if
end proc:
`evalf/complex/power` := proc(x, y)
  description "evalf/complex/power(x, y): the principal value of x^y for complex numbers";
  local product;
  if x = 0 then return `if`(type(Re(y), positive), 0., Float(undefined)) end if;
  product := y*evalf('ln'(x));
  Digits := Digits + 10 + `evalf/aid/size`(product);
  evalf('exp'(y*evalf('ln'(x))))
end proc:
