# The functions of Bessel and Airy: exact values, and floats at once.

BesselJ := proc(v, x)
  description "BesselJ(v, x): Bessel's function of the first kind, of order v";
  if nargs <> 2 then error "BesselJ expects two arguments, but received %1", nargs end if;
  if type(x, name) and type(v, {name, numeric}) and x <> infinity and not type(v, {float, negative, fraction}) then return 'BesselJ'(v, x) end if;
  `Bessel/first`('BesselJ', [args])
end proc:
BesselI := proc(v, x)
  description "BesselI(v, x): the modified Bessel function of the first kind, of order v";
  if nargs <> 2 then error "BesselI expects two arguments, but received %1", nargs end if;
  if type(x, name) and type(v, {name, numeric}) and x <> infinity and not type(v, {float, negative, fraction}) then return 'BesselI'(v, x) end if;
  `Bessel/first`('BesselI', [args])
end proc:
`Bessel/first` := proc(f, a::list)
  description "Bessel/first(f, [v, x]): f(v, x) for BesselJ and BesselI";
  local v, x, s;
  v, x := op(a);
  s := `if`(f = 'BesselJ', -1, 1);
  if `special/isfloat`(a) then return `special/float`(f, a)
  elif x = 0 then
    if v = 0 then return 1
    elif type(v, integer) or type(v, numeric) and v > 0 then return 0
    elif type(v, numeric) then return NumericEvent(division_by_zero, f, a, infinity)
    end if
  elif x = infinity then return `if`(s < 0, 0, infinity)
  elif type(v, integer) then
    if v < 0 then return s^v*f(-v, x)
    elif `special/negative`(x) then return (-1)^v*f(v, -x)
    end if
  elif v = 1/2 then return `if`(s < 0, sin(x), sinh(x))*2^(1/2)/(Pi*x)^(1/2)
  elif v = -1/2 then return `if`(s < 0, cos(x), cosh(x))*2^(1/2)/(Pi*x)^(1/2)
  end if;
  `special/standing`(f, a)
end proc:
BesselY := proc(v, x)
  description "BesselY(v, x): Bessel's function of the second kind, of order v";
  if nargs <> 2 then error "BesselY expects two arguments, but received %1", nargs end if;
  if type(x, name) and type(v, {name, numeric}) and x <> infinity and not type(v, {float, negative, fraction}) then return 'BesselY'(v, x) end if;
  `Bessel/second`('BesselY', [args])
end proc:
BesselK := proc(v, x)
  description "BesselK(v, x): the modified Bessel function of the second kind, of order v";
  if nargs <> 2 then error "BesselK expects two arguments, but received %1", nargs end if;
  if type(x, name) and type(v, {name, numeric}) and x <> infinity and not type(v, {float, negative, fraction}) then return 'BesselK'(v, x) end if;
  `Bessel/second`('BesselK', [args])
end proc:
`Bessel/second` := proc(f, a::list)
  description "Bessel/second(f, [v, x]): f(v, x) for BesselY and BesselK";
  local v, x;
  v, x := op(a);
  if `special/isfloat`(a) then return `special/float`(f, a)
  elif x = 0 then return NumericEvent(division_by_zero, f, a, `if`(f = 'BesselY', -infinity, infinity))
  elif x = infinity then return 0
  elif f = 'BesselY' then
    if type(v, negint) then return (-1)^v*f(-v, x)
    elif v = 1/2 then return -cos(x)*2^(1/2)/(Pi*x)^(1/2)
    elif v = -1/2 then return sin(x)*2^(1/2)/(Pi*x)^(1/2)
    end if
  elif `special/negative`(v) then return f(-v, x)
  elif v = 1/2 then return exp(-x)*Pi^(1/2)/(2*x)^(1/2)
  end if;
  `special/standing`(f, a)
end proc:
`evalf/BesselJ` := proc()
  description "evalf/BesselJ(v, x): Bessel's function of the first kind as a float";
  `special/float`('BesselJ', [args])
end proc:
`evalf/BesselY` := proc()
  description "evalf/BesselY(v, x): Bessel's function of the second kind as a float";
  `special/float`('BesselY', [args])
end proc:
`evalf/BesselI` := proc()
  description "evalf/BesselI(v, x): the modified Bessel function of the first kind as a float";
  `special/float`('BesselI', [args])
end proc:
`evalf/BesselK` := proc()
  description "evalf/BesselK(v, x): the modified Bessel function of the second kind as a float";
  `special/float`('BesselK', [args])
end proc:

AiryAi := proc(n, x)
  description "AiryAi(x), AiryAi(n, x): Airy's function, or its n-th derivative";
  if nargs <> 1 and nargs <> 2 then error "AiryAi expects one or two arguments, but received %1", nargs end if;
  `Airy/value`('AiryAi', [args])
end proc:
AiryBi := proc(n, x)
  description "AiryBi(x), AiryBi(n, x): Airy's second function, or its n-th derivative";
  if nargs <> 1 and nargs <> 2 then error "AiryBi expects one or two arguments, but received %1", nargs end if;
  `Airy/value`('AiryBi', [args])
end proc:
`Airy/value` := proc(f, a::list)
  description "Airy/value(f, [x]), Airy/value(f, [n, x]): f(x) or f(n, x) for AiryAi and AiryBi";
  local n, x;
  n, x := `if`(nops(a) = 1, 0, a[1]), a[-1];
  # y'' = x*y, so that the n-th derivative is x times the one before the last and n - 2 times the one before.
  if type(n, posint) and n > 1 and n <= 100 then return x*f(n - 2, x) + `if`(n = 2, 0, (n - 2)*f(n - 3, x)) end if;
  if n = 0 then
    if `special/isfloat`([x]) then return `special/float`(f, [x])
    elif x = 0 then return `if`(f = 'AiryAi', 1, 3^(1/2))/(3^(2/3)*GAMMA(2/3))
    elif x = infinity then return `if`(f = 'AiryAi', 0, infinity)
    elif x = -infinity then return 0
    end if;
    return `special/standing`(f, [x])
  elif n = 1 then
    if `special/isfloat`([x]) then return `special/float`(f, [1, x])
    elif x = 0 then return `if`(f = 'AiryAi', -1, 3^(1/2))/(3^(1/3)*GAMMA(1/3))
    elif x = infinity then return `if`(f = 'AiryAi', 0, infinity)
    end if
  end if;
  `special/standing`(f, [n, x])
end proc:
`evalf/AiryAi` := proc()
  description "evalf/AiryAi(x), evalf/AiryAi(n, x): Airy's function and its derivative as floats";
  `special/float`('AiryAi', [args])
end proc:
`evalf/AiryBi` := proc()
  description "evalf/AiryBi(x), evalf/AiryBi(n, x): Airy's second function and its derivative as floats";
  `special/float`('AiryBi', [args])
end proc:
