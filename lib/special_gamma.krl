# The gamma function and its kin: exact values, and floats at once.

GAMMA := proc(a, z)
  description "GAMMA(a), GAMMA(a, z): the gamma function of a, or the upper incomplete one, the integral of exp(-t)*t^(a - 1) from z to infinity";
  local n;
  if nargs = 1 then
    if type(a, integer) then
      if a <= 0 then return NumericEvent(division_by_zero, 'GAMMA', [a], infinity) end if;
      return `if`(a <= 30000, factorial(a - 1), 'GAMMA'(a))
    elif type(a, name) then return `if`(a = infinity, infinity, 'GAMMA'(a))
    elif `special/isfloat`([a]) then return `special/float`('GAMMA', [a])
    elif type(2*a, integer) and abs(a) < 10000 then
      # GAMMA(n + 1/2) = (2*n)!/(4^n*n!)*Pi^(1/2)
      n := abs(a) - 1/2;
      n := `if`(a < 0, n + 1, n);
      return `if`(a > 0, (2*n)!/(4^n*n!), (-4)^n*n!/(2*n)!)*Pi^(1/2)
    end if
  elif nargs = 2 then
    if `special/isfloat`([a, z]) then return `special/float`('GAMMA', [a, z])
    elif z = 0 then return GAMMA(a)
    elif z = infinity then return 0
    elif a = 1 then return exp(-z)
    end if
  else error "GAMMA expects one or two arguments, but received %1", nargs
  end if;
  `special/standing`('GAMMA', [args])
end proc:
`evalf/GAMMA` := proc()
  description "evalf/GAMMA(a), evalf/GAMMA(a, z): the gamma function as a float";
  `special/float`('GAMMA', [args])
end proc:

lnGAMMA := proc(a)
  description "lnGAMMA(a): the logarithm of the gamma function, continuous off the negative axis";
  if nargs <> 1 then error "lnGAMMA expects one argument, but received %1", nargs
  elif type(a, integer) then
    if a <= 0 then return NumericEvent(division_by_zero, 'lnGAMMA', [a], infinity) end if;
    if a <= 2 then return 0 elif a <= 100 then return ln(factorial(a - 1)) end if
  elif type(a, name) then return `if`(a = infinity, infinity, 'lnGAMMA'(a))
  elif `special/isfloat`([a]) then return `special/float`('lnGAMMA', [a])
  elif a = 1/2 then return ln(Pi)/2
  end if;
  `special/standing`('lnGAMMA', [a])
end proc:
`evalf/lnGAMMA` := proc()
  description "evalf/lnGAMMA(a): the logarithm of the gamma function as a float";
  `special/float`('lnGAMMA', [args])
end proc:

Psi := proc(n, x)
  description "Psi(x), Psi(n, x): the logarithmic derivative of the gamma function, or its n-th derivative";
  if nargs = 1 then
    if type(n, name) then return `if`(n = infinity, infinity, 'Psi'(n))
    elif `special/isfloat`([n]) then return `special/float`('Psi', [n])
    elif type(n, rational) then return `Psi/rational`(n)
    end if
  elif nargs = 2 then
    if `special/isfloat`([n, x]) then return `special/float`('Psi', [n, x])
    elif n = 0 then return Psi(x)
    elif type(n, posint) then
      if x = infinity then return 0
      elif type(x, rational) then return `Psi/derivative`(n, x)
      end if
    end if
  else error "Psi expects one or two arguments, but received %1", nargs
  end if;
  `special/standing`('Psi', [args])
end proc:
`Psi/rational` := proc(x)
  description "Psi/rational(x): Psi at a rational number; in closed form for whole numbers and for halves, thirds, quarters and sixths";
  local k, n, y;
  if type(x, nonposint) then return NumericEvent(division_by_zero, 'Psi', [x], infinity) end if;
  if abs(x) > 1000 or not member(denom(x), {1, 2, 3, 4, 6}) then return 'Psi'(x) end if;
  n := ceil(x) - 1;
  y := x - n;
  # Psi(y + n) = Psi(y) + 1/y + ... + 1/(y + n - 1); the values in (0, 1] are those of Gauss.
  `Psi/unit`(y) + `if`(n >= 0, add(1/(y + k), k = 0..n - 1), -add(1/(y - k), k = 1..-n))
end proc:
`Psi/unit` := proc(y)
  description "Psi/unit(y): Psi at 1, or at a half, third, quarter or sixth between 0 and 1";
  local turned;
  turned := y > 1/2 and y < 1;
  -gamma + `if`(turned, -1, 1)*`Psi/cotangent`(`if`(turned, 1 - y, y)) - `Psi/logarithms`(denom(y))
end proc:
`Psi/cotangent` := proc(y)
  description "Psi/cotangent(y): -Pi/2*cot(Pi*y) for y = 1, 1/2, 1/3, 1/4, 1/6";
  if y = 1 or y = 1/2 then 0 elif y = 1/3 then -Pi*3^(1/2)/6 elif y = 1/4 then -Pi/2 else -Pi*3^(1/2)/2 end if
end proc:
`Psi/logarithms` := proc(q)
  description "Psi/logarithms(q): the logarithms in Psi(p/q)";
  if q = 1 then 0 elif q = 2 then 2*ln(2) elif q = 3 then 3*ln(3)/2 elif q = 4 then 3*ln(2) else 2*ln(2) + 3*ln(3)/2 end if
end proc:
`Psi/derivative` := proc(n, x)
  description "Psi/derivative(n, x): Psi(n, x) at a rational number; in terms of Zeta for whole numbers and halves";
  local k, m, y, value;
  if type(x, nonposint) then return NumericEvent(division_by_zero, 'Psi', [n, x], infinity) end if;
  if abs(x) > 1000 or not member(denom(x), {1, 2}) then return 'Psi'(n, x) end if;
  value := (-1)^(n + 1)*n!*`if`(type(x, integer), 1, 2^(n + 1) - 1)*Zeta(n + 1);
  m := ceil(x) - 1;
  y := x - m;
  value + (-1)^n*n!*`if`(m >= 0, add(1/(y + k)^(n + 1), k = 0..m - 1), -add(1/(y - k)^(n + 1), k = 1..-m))
end proc:
`evalf/Psi` := proc()
  description "evalf/Psi(x), evalf/Psi(n, x): the polygamma functions as floats";
  `special/float`('Psi', [args])
end proc:

Beta := proc(a, b)
  description "Beta(a, b): GAMMA(a)*GAMMA(b)/GAMMA(a + b)";
  if nargs <> 2 then error "Beta expects two arguments, but received %1", nargs
  elif `special/isfloat`([a, b]) then return `special/float`('Beta', [a, b])
  elif type(a, nonposint) or type(b, nonposint) then
    # Finite where the sum of the arguments is a pole as well.
    if type(a, integer) and type(b, posint) and a + b <= 0 then return (-1)^b*Beta(1 - a - b, b) end if;
    if type(a, posint) and type(b, integer) and a + b <= 0 then return (-1)^a*Beta(a, 1 - a - b) end if;
    return NumericEvent(division_by_zero, 'Beta', [a, b], infinity)
  elif type(a, posint) and type(b, rational) and a <= 1000 then return `Beta/whole`(a, b)
  elif type(b, posint) and type(a, rational) and b <= 1000 then return `Beta/whole`(b, a)
  elif type(2*a, integer) and type(2*b, integer) then
    return `if`(type(a + b, nonposint), 0, GAMMA(a)*GAMMA(b)/GAMMA(a + b))
  end if;
  `special/standing`('Beta', [args])
end proc:
`Beta/whole` := proc(n, b)
  description "Beta/whole(n, b): Beta(n, b) for a natural number n: (n - 1)!/(b*(b + 1)*...*(b + n - 1))";
  local k, p;
  p := b;
  for k to n - 1 do p := p*(b + k)/k end do;
  1/p
end proc:
`evalf/Beta` := proc()
  description "evalf/Beta(a, b): the beta function as a float";
  `special/float`('Beta', [args])
end proc:

`evalf/factorial` := proc()
  description "evalf/factorial(x): the float x!, which is GAMMA(x + 1)";
  `special/float`('factorial', [args])
end proc:
`evalf/binomial` := proc(n, k)
  description "evalf/binomial(n, k): the binomial coefficient of any two numbers as a float";
  if type(k, integer) and type(n, complex(float)) then binomial(n, k) else `special/float`('binomial', [args]) end if
end proc:
