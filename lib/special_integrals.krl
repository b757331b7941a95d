# The error functions and the exponential, sine and cosine integrals: exact values, and floats at once.

# What all odd functions have: 0 at 0, the sign before, a limit at infinity.
`special/odd` := proc(f, a::list, limit)
  description "special/odd(f, [x], limit): f(x) for an odd function f with a limit at infinity";
  local x;
  x := op(a);
  if type(x, name) then `if`(x = infinity, limit, `special/standing`(f, a))
  elif `special/isfloat`(a) then `special/float`(f, a)
  elif x = 0 then 0
  elif `special/negative`(x) then -f(-x)
  else `special/standing`(f, a)
  end if
end proc:

erf := proc(x)
  description "erf(x): 2/Pi^(1/2) times the integral of exp(-t^2) from 0 to x";
  if nargs <> 1 then error "erf expects one argument, but received %1", nargs end if;
  if type(x, name) and x <> infinity then return 'erf'(x) end if;
  `special/odd`('erf', [args], 1)
end proc:
`evalf/erf` := proc()
  description "evalf/erf(x): the error function as a float";
  `special/float`('erf', [args])
end proc:
erfi := proc(x)
  description "erfi(x): 2/Pi^(1/2) times the integral of exp(t^2) from 0 to x";
  if nargs <> 1 then error "erfi expects one argument, but received %1", nargs end if;
  if type(x, name) and x <> infinity then return 'erfi'(x) end if;
  `special/odd`('erfi', [args], infinity)
end proc:
`evalf/erfi` := proc()
  description "evalf/erfi(x): the imaginary error function as a float";
  `special/float`('erfi', [args])
end proc:
Si := proc(x)
  description "Si(x): the integral of sin(t)/t from 0 to x";
  if nargs <> 1 then error "Si expects one argument, but received %1", nargs end if;
  if type(x, name) and x <> infinity then return 'Si'(x) end if;
  `special/odd`('Si', [args], Pi/2)
end proc:
`evalf/Si` := proc()
  description "evalf/Si(x): the sine integral as a float";
  `special/float`('Si', [args])
end proc:
Shi := proc(x)
  description "Shi(x): the integral of sinh(t)/t from 0 to x";
  if nargs <> 1 then error "Shi expects one argument, but received %1", nargs end if;
  if type(x, name) and x <> infinity then return 'Shi'(x) end if;
  `special/odd`('Shi', [args], infinity)
end proc:
`evalf/Shi` := proc()
  description "evalf/Shi(x): the hyperbolic sine integral as a float";
  `special/float`('Shi', [args])
end proc:

erfc := proc(x)
  description "erfc(x): 1 - erf(x)";
  if nargs <> 1 then error "erfc expects one argument, but received %1", nargs
  elif type(x, name) then return `if`(x = infinity, 0, 'erfc'(x))
  elif `special/isfloat`([x]) then return `special/float`('erfc', [x])
  elif x = 0 then return 1
  elif x = -infinity then return 2
  end if;
  `special/standing`('erfc', [x])
end proc:
`evalf/erfc` := proc()
  description "evalf/erfc(x): the complementary error function as a float";
  `special/float`('erfc', [args])
end proc:

# gamma + ln(x) and an integral that begins at 0: the value at infinity tells them apart.
`special/logarithmic` := proc(f, a::list, limit)
  description "special/logarithmic(f, [x], limit): f(x) for a function f like ln(x) at 0, with a limit at infinity";
  local x;
  x := op(a);
  if type(x, name) then `if`(x = infinity, limit, `special/standing`(f, a))
  elif `special/isfloat`(a) then `special/float`(f, a)
  elif x = 0 then NumericEvent(division_by_zero, f, a, -infinity)
  else `special/standing`(f, a)
  end if
end proc:
Ci := proc(x)
  description "Ci(x): gamma + ln(x) + the integral of (cos(t) - 1)/t from 0 to x";
  if nargs <> 1 then error "Ci expects one argument, but received %1", nargs end if;
  if type(x, name) and x <> infinity then return 'Ci'(x) end if;
  `special/logarithmic`('Ci', [args], 0)
end proc:
`evalf/Ci` := proc()
  description "evalf/Ci(x): the cosine integral as a float";
  `special/float`('Ci', [args])
end proc:
Chi := proc(x)
  description "Chi(x): gamma + ln(x) + the integral of (cosh(t) - 1)/t from 0 to x";
  if nargs <> 1 then error "Chi expects one argument, but received %1", nargs end if;
  if type(x, name) and x <> infinity then return 'Chi'(x) end if;
  `special/logarithmic`('Chi', [args], infinity)
end proc:
`evalf/Chi` := proc()
  description "evalf/Chi(x): the hyperbolic cosine integral as a float";
  `special/float`('Chi', [args])
end proc:

Ei := proc(n, x)
  description "Ei(x), Ei(n, x): the integral of exp(t)/t from -infinity to x, its principal value, or the integral of exp(-t*x)/t^n from 1 to infinity";
  if nargs = 1 then
    if n = -infinity and not type(n, float) then return 0 end if;
    return `special/logarithmic`('Ei', [n], infinity)
  elif nargs <> 2 then error "Ei expects one or two arguments, but received %1", nargs
  elif `special/isfloat`([n, x]) then return `special/float`('Ei', [n, x])
  elif x = infinity then return 0
  elif x = 0 and type(n, numeric) then return `if`(n > 1, 1/(n - 1), NumericEvent(division_by_zero, 'Ei', [n, x], infinity))
  elif n = 0 then return exp(-x)/x
  end if;
  `special/standing`('Ei', [n, x])
end proc:
`evalf/Ei` := proc()
  description "evalf/Ei(x), evalf/Ei(n, x): the exponential integrals as floats";
  `special/float`('Ei', [args])
end proc:

Li := proc(x)
  description "Li(x): the integral of 1/ln(t) from 0 to x, its principal value";
  if nargs <> 1 then error "Li expects one argument, but received %1", nargs
  elif type(x, name) then return `if`(x = infinity, infinity, 'Li'(x))
  elif `special/isfloat`([x]) then return `special/float`('Li', [x])
  elif x = 0 then return 0
  elif x = 1 then return NumericEvent(division_by_zero, 'Li', [x], -infinity)
  end if;
  `special/standing`('Li', [x])
end proc:
`evalf/Li` := proc()
  description "evalf/Li(x): the logarithmic integral as a float";
  `special/float`('Li', [args])
end proc:
