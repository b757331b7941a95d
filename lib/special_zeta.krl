# The zeta functions, polylogarithms and Lambert's W: exact values, and floats at once.

Zeta := proc(n, s, a)
  description "Zeta(s), Zeta(n, s), Zeta(n, s, a): the sum of 1/k^s, its n-th derivative, or that of the sum of 1/(k + a)^s, k = 0, 1, ...";
  if nargs = 1 then
    if type(n, integer) then return `Zeta/integer`(n)
    elif type(n, name) then return `if`(n = infinity, 1, 'Zeta'(n))
    elif `special/isfloat`([n]) then return `special/float`('Zeta', [n])
    end if
  elif nargs = 2 or nargs = 3 then
    if `special/isfloat`([args]) then return `special/float`('Zeta', [args])
    elif s = 1 and type(n, nonnegint) then return NumericEvent(division_by_zero, 'Zeta', [args], infinity)
    elif nargs = 3 and a = 1 then return Zeta(n, s)
    elif n = 0 then
      if nargs = 2 then return Zeta(s)
      elif a = 1/2 then return (2^s - 1)*Zeta(s)
      elif type(s, nonposint) then return -`Zeta/bernoulli`(1 - s, a)/(1 - s)
      elif type(a, nonposint) and type(s, posint) then return NumericEvent(division_by_zero, 'Zeta', [args], infinity)
      elif type(a, posint) and type(s, integer) and a <= 1000 then return Zeta(s) - `Zeta/partial`(s, a - 1)
      end if
    elif n = 1 and nargs = 2 and s = 0 then return -ln(2*Pi)/2
    end if
  else error "Zeta expects one to three arguments, but received %1", nargs
  end if;
  `special/standing`('Zeta', [args])
end proc:
`Zeta/integer` := proc(n)
  description "Zeta/integer(n): Zeta at an integer; in closed form at the even ones and below 0 (Euler)";
  if n = 1 then NumericEvent(division_by_zero, 'Zeta', [1], infinity)
  elif n > 1 then `if`(irem(n, 2) = 0 and n <= 1000, abs(bernoulli(n))*2^(n - 1)/n!*Pi^n, 'Zeta'(n))
  elif n = 0 then -1/2
  elif irem(n, 2) = 0 then 0
  elif n >= -2000 then -bernoulli(1 - n)/(1 - n)
  else 'Zeta'(n)
  end if
end proc:
`Zeta/partial` := proc(s, n)
  description "Zeta/partial(s, n): the sum of 1/k^s for k to n";
  local k;
  add(1/k^s, k = 1..n)
end proc:
`Zeta/bernoulli` := proc(n, x)
  description "Zeta/bernoulli(n, x): the n-th polynomial of Bernoulli at x";
  local k;
  add(binomial(n, k)*bernoulli(k)*x^(n - k), k = 0..n - 1) + bernoulli(n)
end proc:
`evalf/Zeta` := proc()
  description "evalf/Zeta(s), evalf/Zeta(n, s), evalf/Zeta(n, s, a): the zeta functions as floats";
  `special/float`('Zeta', [args])
end proc:

# ---- polylogarithms
dilog := proc(x)
  description "dilog(x): the integral of ln(t)/(1 - t) from 1 to x, which is polylog(2, 1 - x)";
  if nargs <> 1 then error "dilog expects one argument, but received %1", nargs
  elif type(x, name) then return 'dilog'(x)
  elif `special/isfloat`([x]) then return `special/float`('dilog', [x])
  elif x = 1 then return 0
  elif x = 0 then return Pi^2/6
  elif x = 2 then return -Pi^2/12
  elif x = 1/2 then return Pi^2/12 - ln(2)^2/2
  elif x = -1 then return Pi^2/4 - I*Pi*ln(2)
  end if;
  `special/standing`('dilog', [x])
end proc:
`evalf/dilog` := proc()
  description "evalf/dilog(x): the dilogarithm as a float";
  `special/float`('dilog', [args])
end proc:

polylog := proc(n, x)
  description "polylog(n, x): the sum of x^k/k^n for k = 1, 2, ..., continued";
  local k;
  if nargs <> 2 then error "polylog expects two arguments, but received %1", nargs
  elif `special/isfloat`([n, x]) then return `special/float`('polylog', [n, x])
  elif x = 0 then return 0
  elif x = 1 then
    return `if`(type(n, numeric) and n <= 1, NumericEvent(division_by_zero, 'polylog', [n, x], infinity), Zeta(n))
  elif x = -1 then return `if`(n = 1, -ln(2), (2^(1 - n) - 1)*Zeta(n))
  elif n = 1 then return -ln(1 - x)
  elif n = 0 then return x/(1 - x)
  elif n = 2 and x = 1/2 then return Pi^2/12 - ln(2)^2/2
  elif type(n, negint) and n >= -20 then
    return add(k!*stirling2(1 - n, k + 1)*(x/(1 - x))^(k + 1), k = 0..-n)
  end if;
  `special/standing`('polylog', [n, x])
end proc:
`evalf/polylog` := proc()
  description "evalf/polylog(n, x): the polylogarithm as a float";
  `special/float`('polylog', [args])
end proc:

# ---- Lambert's W
LambertW := proc(k, x)
  description "LambertW(x), LambertW(k, x): the solution w of w*exp(w) = x, on the principal branch or on branch k";
  local v;
  if nargs = 1 then
    if type(k, name) then return `if`(k = infinity, infinity, 'LambertW'(k))
    elif `special/isfloat`([k]) then return `special/float`('LambertW', [k])
    elif k = 0 then return 0
    elif k = -Pi/2 then return I*Pi/2
    elif k = -ln(2)/2 then return -ln(2)
    elif k = 2*ln(2) then return ln(2)
    else
      # n*exp(n), n a number not below -1
      v := `LambertW/exponent`(k);
      if v <> FAIL and type(v, numeric) and v >= -1 then return v end if
    end if
  elif nargs = 2 then
    if `special/isfloat`([k, x]) then return `special/float`('LambertW', [k, x])
    elif k = 0 then return LambertW(x)
    elif type(k, integer) and x = 0 then return NumericEvent(division_by_zero, 'LambertW', [k, x], -infinity)
    elif k = -1 then
      if x = -ln(2)/2 then return -2*ln(2) end if;
      v := `LambertW/exponent`(x);
      if v <> FAIL and type(v, numeric) and v <= -1 then return v end if
    end if
  else error "LambertW expects one or two arguments, but received %1", nargs
  end if;
  `special/standing`('LambertW', [args])
end proc:
`LambertW/exponent` := proc(x)
  description "LambertW/exponent(x): the number v in x = v*exp(v), or FAIL";
  local e, v;
  e, v := x, 1;
  if type(x, `*`) and nops(x) = 2 then v, e := op(x) end if;
  if type(e, specfunc(anything, exp)) and op(1, e) = v then v else FAIL end if
end proc:
`evalf/LambertW` := proc()
  description "evalf/LambertW(x), evalf/LambertW(k, x): Lambert's W as a float";
  `special/float`('LambertW', [args])
end proc:

# Stieltjes' constants, gamma(n) = (-1)^n n! a[n] with Zeta(1 + z) = 1/z + a[0] + a[1]*z + ...: the rest is entire, so that the
# means of its values on a circle give the coefficients.
`evalf/gamma` := proc(n)
  description "evalf/gamma(n): Stieltjes' constant of index n as a float";
  local digits, points, r, k, z, s;
  if nargs <> 1 or not type(n, nonnegint) then return 'gamma'(args) end if;
  if n = 0 then return evalf(gamma) end if;
  digits := Digits;
  Digits := digits + n + 20;
  points, r := 2*(digits + n) + 30, 2.5;
  s := 0;
  for k to points do
    z := evalf(r*exp((2*k - 1)*I*Pi/points));
    s := s + (Zeta(1 + z) - 1/z)/z^n
  end do;
  evalf[digits]((-1)^n*n!*Re(s)/points)
end proc:
