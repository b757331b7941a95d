# Elliptic integrals, of the modulus k; the incomplete ones from 0 to z, the sine of the amplitude. Exact values, and floats
# at once.

EllipticK := proc(k)
  description "EllipticK(k): the integral of ((1 - t^2)*(1 - k^2*t^2))^(-1/2) from 0 to 1";
  if nargs <> 1 then error "EllipticK expects one argument, but received %1", nargs
  elif type(k, name) then return `if`(k = infinity, 0, 'EllipticK'(k))
  elif `special/isfloat`([k]) then return `special/float`('EllipticK', [k])
  elif k = 0 then return Pi/2
  elif k = 1 or k = -1 then return NumericEvent(division_by_zero, 'EllipticK', [k], infinity)
  elif k^2 = 1/2 then return GAMMA(1/4)^2/(4*Pi^(1/2))
  elif k^2 = -1 then return GAMMA(1/4)^2*2^(1/2)/(8*Pi^(1/2))
  elif `special/negative`(k) then return EllipticK(-k)
  end if;
  `special/standing`('EllipticK', [k])
end proc:
`evalf/EllipticK` := proc()
  description "evalf/EllipticK(k): the complete elliptic integral of the first kind as a float";
  `special/float`('EllipticK', [args])
end proc:

EllipticF := proc(z, k)
  description "EllipticF(z, k): the integral of ((1 - t^2)*(1 - k^2*t^2))^(-1/2) from 0 to z";
  if nargs <> 2 then error "EllipticF expects two arguments, but received %1", nargs
  elif `special/isfloat`([z, k]) then return `special/float`('EllipticF', [z, k])
  elif z = 0 then return 0
  elif k = 0 then return arcsin(z)
  elif z = 1 and (k = 1 or k = -1) then return NumericEvent(division_by_zero, 'EllipticF', [z, k], infinity)
  elif z = 1 then return EllipticK(k)
  elif k = 1 then return arctanh(z)
  elif `special/negative`(z) then return -EllipticF(-z, k)
  elif `special/negative`(k) then return EllipticF(z, -k)
  end if;
  `special/standing`('EllipticF', [z, k])
end proc:
`evalf/EllipticF` := proc()
  description "evalf/EllipticF(z, k): the elliptic integral of the first kind as a float";
  `special/float`('EllipticF', [args])
end proc:

EllipticE := proc(z, k)
  description "EllipticE(k), EllipticE(z, k): the integral of ((1 - k^2*t^2)/(1 - t^2))^(1/2) from 0 to 1, or to z";
  if nargs = 1 then
    if type(z, name) then return 'EllipticE'(z)
    elif `special/isfloat`([z]) then return `special/float`('EllipticE', [z])
    elif z = 0 then return Pi/2
    elif z = 1 or z = -1 then return 1
    elif `special/negative`(z) then return EllipticE(-z)
    end if
  elif nargs = 2 then
    if `special/isfloat`([z, k]) then return `special/float`('EllipticE', [z, k])
    elif z = 0 then return 0
    elif k = 0 then return arcsin(z)
    elif z = 1 then return EllipticE(k)
    elif k = 1 then return z
    elif `special/negative`(z) then return -EllipticE(-z, k)
    elif `special/negative`(k) then return EllipticE(z, -k)
    end if
  else error "EllipticE expects one or two arguments, but received %1", nargs
  end if;
  `special/standing`('EllipticE', [args])
end proc:
`evalf/EllipticE` := proc()
  description "evalf/EllipticE(k), evalf/EllipticE(z, k): the elliptic integrals of the second kind as floats";
  `special/float`('EllipticE', [args])
end proc:

EllipticPi := proc(z, n, k)
  description "EllipticPi(n, k), EllipticPi(z, n, k): the integral of ((1 - t^2)*(1 - k^2*t^2))^(-1/2)/(1 - n*t^2) from 0 to 1, or to z";
  if nargs = 2 then
    if `special/isfloat`([z, n]) then return `special/float`('EllipticPi', [z, n])
    elif z = 0 then return EllipticK(n)
    elif z = 1 or n = 1 or n = -1 then return NumericEvent(division_by_zero, 'EllipticPi', [z, n], infinity)
    elif n = 0 and type(z, rational) and z < 1 then return Pi/(2*(1 - z)^(1/2))
    elif `special/negative`(n) then return EllipticPi(z, -n)
    end if
  elif nargs = 3 then
    if `special/isfloat`([z, n, k]) then return `special/float`('EllipticPi', [z, n, k])
    elif z = 0 then return 0
    elif n = 0 then return EllipticF(z, k)
    elif z = 1 then return EllipticPi(n, k)
    elif `special/negative`(z) then return -EllipticPi(-z, n, k)
    elif `special/negative`(k) then return EllipticPi(z, n, -k)
    end if
  else error "EllipticPi expects two or three arguments, but received %1", nargs
  end if;
  `special/standing`('EllipticPi', [args])
end proc:
`evalf/EllipticPi` := proc()
  description "evalf/EllipticPi(n, k), evalf/EllipticPi(z, n, k): the elliptic integrals of the third kind as floats";
  `special/float`('EllipticPi', [args])
end proc:
