# What the special functions have in common. The values are computed by the kernel, in numbers that know their error
# (src/library/native/special): to within 0.51 units of the last digit of each part, near zeros and poles too.

`special/float` := proc(f, a::list)
  description "special/float(f, [x, ...]): the float f(x, ...); the call where it has no value";
  local y, r, known;
  known := type(a, list(complex(numeric)));
  y := `if`(known, a, map(`special/argument`, a));
  if known or type(y, list(complex(numeric))) then
    r := `kernel/native`("special/value", f, op(y));
    if r <> FAIL then return r end if
  elif has(y, Float(undefined)) then return Float(undefined)
  else
    # The value at infinity is an exact one.
    r := map(`special/exactinfinity`, y);
    if has(r, infinity) then
      r := f(op(r));
      if not has(r, f) then return `if`(r = 0, 0., evalf(r)) end if
    end if
  end if;
  `special/call`(f, y)
end proc:
`special/exactinfinity` := proc(x)
  description "special/exactinfinity(x): the exact infinity for a float one, x else";
  if x = Float(infinity) then infinity elif x = -Float(infinity) then -infinity else x end if
end proc:
`special/isfloat` := proc(a::list)
  description "special/isfloat([x, ...]): whether all are numbers, floats among them, or a float that is none";
  hastype(a, float) and (type(a, list(complex(numeric))) or has(map(`special/exactinfinity`, a), {infinity, Float(undefined)}))
end proc:
# Reached by whatever isn't simplified: the last test of all.
`special/standing` := proc(f, a::list)
  description "special/standing(f, [x, ...]): the call as it stands; an error for operands that no function of numbers has";
  `special/check`(f, a);
  subsop(0 = f, 'f'(op(a)))
end proc:
`special/check` := proc(f, a::list)
  description "special/check(f, [x, ...]): an error of the procedure f for operands that no function of numbers has";
  `kernel/native`("expectalgebraic", f, op(a))
end proc:
`special/negative` := proc(x)
  description "special/negative(x): whether x is written with a minus sign: a negative number, a product with one, a sum of such";
  local t;
  if type(x, numeric) then type(x, negative)
  elif type(x, `*`) then type(op(1, x), negative)
  elif type(x, `+`) then for t in x do if not `special/negative`(t) then return false end if end do; true
  elif type(x, complex(numeric)) then type(Re(x), negative) or Re(x) = 0 and type(Im(x), negative)
  else false
  end if
end proc:
# What stands before the point costs as many digits behind it.
`special/argument` := proc(x)
  description "special/argument(x): x itself where it is a number, else its numeric value with guard digits";
  local y;
  if type(x, complex(numeric)) then return x end if;
  y := evalf(x);
  if y <> x and type(y, complex(numeric)) then evalf(x, Digits + 10 + max(0, ilog10(Re(y)), ilog10(Im(y)))) else y end if
end proc:
`special/exact` := proc(y)
  description "special/exact(y): the rational number equal to a real number";
  if type(y, rational) then y else SFloatMantissa(y)*10^SFloatExponent(y) end if
end proc:
`special/call` := proc(f, a::list)
  description "special/call(f, [x, ...]): the call f(x, ...), not evaluated";
  subsop(0 = f, 'f'(op(a)))
end proc:
