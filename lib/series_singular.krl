# Expansions of special functions where derivatives alone don't give them: at zeros, poles and branch points of the
# functions. A branch point shows as ln(x) in the coefficients. The formulas are those of Abramowitz and Stegun.

`series/aid/atzero` := proc(u, x)
  description "series/aid/atzero(u, x): the series of u when it is 0 at x = 0, FAIL else";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL or nops(s) = 0 or `series/aid/isorder`(op(1, s)) or op(2, s) <= 0 then FAIL else s end if
end proc:
# The powers are so many that Order terms come out behind a factor s^v.
`series/aid/entire` := proc(c, s)
  description "series/aid/entire(c, s): the sum of c(k)*s^k for k = 0, 1, ..., for a series s without constant term";
  local k;
  `series/aid/composed`([seq(c(k), k = 0..`series/aid/powersneeded`(s))], s, true)
end proc:
`series/aid/square` := proc(s, x)
  description "series/aid/square(s, x): the series of s^2";
  `series/aid/argument`(s^2, x)
end proc:
`series/aid/harmonic` := proc(n)
  description "series/aid/harmonic(n): 1 + 1/2 + ... + 1/n";
  local k;
  add(1/k, k = 1..n)
end proc:

# ---- Bessel functions (9.1.10 and 11, 9.6.10 and 11)
`series/BesselJ` := proc(v, u, x)
  description "series/BesselJ(v, u, x): the series of Bessel's function of the first kind";
  `series/aid/besselfirst`('BesselJ', v, u, x, -1)
end proc:
`series/BesselI` := proc(v, u, x)
  description "series/BesselI(v, u, x): the series of the modified Bessel function of the first kind";
  `series/aid/besselfirst`('BesselI', v, u, x, 1)
end proc:
`series/BesselY` := proc(v, u, x)
  description "series/BesselY(v, u, x): the series of Bessel's function of the second kind; at a zero of u its coefficients hold ln(x)";
  `series/aid/besselsecond`('BesselY', v, u, x, -1)
end proc:
`series/BesselK` := proc(v, u, x)
  description "series/BesselK(v, u, x): the series of the modified Bessel function of the second kind; at a zero of u its coefficients hold ln(x)";
  `series/aid/besselsecond`('BesselK', v, u, x, 1)
end proc:
`series/aid/besselfirst` := proc(f, v, u, x, t)
  description "series/aid/besselfirst(f, v, u, x, t): the series of f(v, u), of the kind t = -1 for J, 1 for I";
  local s;
  s := `series/aid/atzero`(u, x);
  if s = FAIL or has(v, x) then `series/function`('f'(v, u), x)
  elif not type(v, integer) then FAIL
  elif v < 0 then `series/aid/times`(t^v, `series/aid/besselfirst`(f, -v, u, x, t))
  else `series/aid/argument`((s/2)^v*`series/aid/besselentire`(v, s, x, t)/v!, x)
  end if
end proc:
`series/aid/besselentire` := proc(v, s, x, t)
  description "series/aid/besselentire(v, s, x, t): (2/s)^v*v!*f(v, s), of the kind t = -1 for J, 1 for I";
  local k, j;
  `series/aid/entire`(k -> (t/4)^k/(k!*mul(v + j, j = 1..k)), `series/aid/square`(s, x))
end proc:
`series/aid/besselsecond` := proc(f, v, u, x, t)
  description "series/aid/besselsecond(f, v, u, x, t): the series of f(v, u), of the kind t = -1 for Y, 1 for K";
  local s;
  s := `series/aid/atzero`(u, x);
  if s = FAIL or has(v, x) then `series/function`('f'(v, u), x)
  elif not type(v, integer) then FAIL
  else `series/aid/times`(`if`(v < 0, t^v, 1), `series/aid/moreterms`(`series/aid/bessellog`, (abs(v) + 1)*op(2, s), x, abs(v), u, x, t))
  end if
end proc:
`series/aid/bessellog` := proc(n, u, x, t)
  description "series/aid/bessellog(n, u, x, t): the series at a zero of u of BesselY(n, u) for t = -1, BesselK(n, u) for t = 1";
  local s, q, first, poles, rest, k;
  s := `series/aid/argument`(u, x);
  q := `series/aid/square`(s, x);
  first := `series/aid/argument`((s/2)^n*`series/aid/besselentire`(n, s, x, t)/n!, x);
  poles := add((-t/4)^k*(n - k - 1)!/k!*q^k, k = 0..n - 1)/(s/2)^n;
  rest := `series/aid/entire`(k -> (t/4)^k*(-2*gamma + `series/aid/harmonic`(k) + `series/aid/harmonic`(n + k))/(k!*(n + k)!), q)*(s/2)^n;
  if t < 0 then `series/aid/argument`((2*ln(s/2)*first - poles - rest)/Pi, x)
  else `series/aid/argument`(poles/2 + (-1)^(n + 1)*ln(s/2)*first + (-1)^n*rest/2, x)
  end if
end proc:

# ---- elliptic integrals (17.3.11 and 12; at the modulus 1 Byrd and Friedman, 900)
`series/EllipticK` := proc(u, x)
  description "series/EllipticK(u, x): the series of the complete elliptic integral of the first kind; at the modulus 1 with ln(x)";
  local s, k, j;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif `series/aid/lowest`(s) > 0 then `series/aid/times`(Pi/2, `series/aid/entire`(k -> (binomial(2*k, k)/4^k)^2, `series/aid/square`(s, x)))
  elif abs(`series/aid/constant`(s)) = 1 then
    `series/aid/moreterms`(`series/aid/atmodulus1`, 1, x, u, x, k -> (binomial(2*k, k)/4^k)^2, k -> 2*ln(2) - add(1/(j*(2*j - 1)), j = 1..k))
  else `series/function`('EllipticK'(u), x)
  end if
end proc:
`series/EllipticE` := proc(z, u, x)
  description "series/EllipticE(u, x), series/EllipticE(z, u, x): the series of an elliptic integral of the second kind; at the modulus 1 with ln(x)";
  local s, k, j;
  if nargs = 3 then return `series/aid/amplitude`('EllipticE', [z, u], x, t -> (1 - u^2*t^2)^(1/2)/(1 - t^2)^(1/2)) end if;
  s := `series/aid/argument`(z, u);
  if s = FAIL then FAIL
  elif `series/aid/lowest`(s) > 0 then
    `series/aid/times`(Pi/2, `series/aid/entire`(k -> (binomial(2*k, k)/4^k)^2/(1 - 2*k), `series/aid/square`(s, u)))
  elif abs(`series/aid/constant`(s)) = 1 then
    # 1 + w*(...)/2 with the parameters 1/2, 3/2; 2
    `series/aid/argument`(1 + (1 - s^2)/2*`series/aid/atmodulus1`(z, u, k -> (binomial(2*k, k)/4^k)^2*(2*k + 1)/(k + 1),
      k -> 2*ln(2) - add(1/(j*(2*j - 1)), j = 1..k) - 1/((2*k + 1)*(2*k + 2))), u)
  else `series/function`('EllipticE'(z), u)
  end if
end proc:
`series/aid/atmodulus1` := proc(u, x, c, d)
  description "series/aid/atmodulus1(u, x, c, d): the sum of c(k)*w^k*(d(k) - ln(w)/2) with w = 1 - u^2, which is 0 at x = 0";
  local w, k;
  w := `series/aid/argument`(1 - u^2, x);
  if w = FAIL or nops(w) = 0 or `series/aid/isorder`(op(1, w)) then FAIL
  else `series/aid/argument`(`series/aid/entire`(k -> c(k)*d(k), w) - `series/aid/entire`(c, w)*ln(w)/2, x)
  end if
end proc:
`series/EllipticF` := proc(z, k, x)
  description "series/EllipticF(z, k, x): the series of the elliptic integral of the first kind";
  `series/aid/amplitude`('EllipticF', [z, k], x, t -> 1/((1 - t^2)^(1/2)*(1 - k^2*t^2)^(1/2)))
end proc:
`series/EllipticPi` := proc(z, n, k, x)
  description "series/EllipticPi(n, k, x), series/EllipticPi(z, n, k, x): the series of an elliptic integral of the third kind";
  if nargs = 3 then `series/function`('EllipticPi'(z, n), k)
  else `series/aid/amplitude`('EllipticPi', [z, n, k], x, t -> 1/((1 - n*t^2)*(1 - t^2)^(1/2)*(1 - k^2*t^2)^(1/2)))
  end if
end proc:
`series/aid/amplitude` := proc(f, a::list, x, slope)
  description "series/aid/amplitude(f, [z, ...], x, slope): the series of f(z, ...), whose derivative by z is slope(z)";
  if has([op(2..nops(a), a)], x) then `series/function`('f'(op(a)), x)
  else `series/aid/inverse`(t -> f(t, op(2..nops(a), a)), a[1], x, slope)
  end if
end proc:

# ---- polylogarithms and the zeta function
# dilog(s) + dilog(1 - s) = Pi^2/6 - ln(s)*ln(1 - s)
`series/dilog` := proc(u, x)
  description "series/dilog(u, x): the series of the dilogarithm of u; at a zero of u its coefficients hold ln(x)";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif nops(s) > 0 and `series/aid/lowest`(s) > 0 then `series/aid/argument`(Pi^2/6 - ln(s)*ln(1 - s) - dilog(1 - s), x)
  else `series/aid/integrated`('dilog', s, s -> ln(s)/(1 - s))
  end if
end proc:
`series/polylog` := proc(n, u, x)
  description "series/polylog(n, u, x): the series of the polylogarithm of index n; at u = 1, for a natural n, with ln(x)";
  local s, w, k, c;
  if has(n, x) then return `series/function`('polylog'(n, u), x) end if;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif `series/aid/lowest`(s) > 0 then `series/aid/entire`(k -> `if`(k = 0, 0, 1/k^n), s)
  elif `series/aid/constant`(s) = 1 and type(n, posint) then
    # In powers of w = ln(s); that of n - 1 has a coefficient in ln(-w).
    w := `series/aid/argument`(ln(s), x);
    if w = FAIL or nops(w) = 0 or `series/aid/isorder`(op(1, w)) then return FAIL end if;
    c := k -> `if`(k = n - 1, `series/aid/harmonic`(k), Zeta(n - k))/k!;
    `series/aid/argument`(`series/aid/entire`(c, w) - w^(n - 1)/(n - 1)!*ln(-w), x)
  else `series/function`('polylog'(n, u), x)
  end if
end proc:
# At the pole the coefficients are Stieltjes' constants gamma(k), the first of which is gamma.
`series/Zeta` := proc(n, u, x)
  description "series/Zeta(u, x): the series of the zeta function of u, also at its pole";
  local s, w;
  if nargs <> 2 then return `series/function`('Zeta'(args[1..-2]), args[-1]) end if;
  s := `series/aid/argument`(n, u);
  if s = FAIL then FAIL
  elif `series/aid/constant`(s) = 1 and nops(s) > 2 then
    w := `series/aid/withoutconstant`(s);
    if `series/aid/isorder`(op(1, w)) then return FAIL end if;
    `series/aid/moreterms`(`series/aid/zetapole`, 2*op(2, w), u, n, u)
  else `series/function`('Zeta'(n), u)
  end if
end proc:
`series/aid/zetapole` := proc(u, x)
  description "series/aid/zetapole(u, x): the series of Zeta(u), where u is 1 at x = 0";
  local w, k;
  w := `series/aid/withoutconstant`(`series/aid/argument`(u, x));
  `series/aid/argument`(1/w + `series/aid/entire`(k -> (-1)^k/k!*`if`(k = 0, gamma, 'gamma'(k)), w), x)
end proc:

# ---- exponential and logarithmic integrals (5.1.10 to 12, 5.2.16 to 18)
`series/Ei` := proc(n, u, x)
  description "series/Ei(u, x), series/Ei(n, u, x): the series of an exponential integral; at a zero of u its coefficients hold ln(x)";
  local s, k, a, b;
  if nargs = 2 then
    s := `series/aid/atzero`(n, u);
    if s = FAIL then `series/function`('Ei'(n), u)
    else `series/aid/argument`(gamma + ln(s) + `series/aid/entire`(k -> `if`(k = 0, 0, 1/(k*k!)), s), u)
    end if
  else
    s := `series/aid/atzero`(u, x);
    if s = FAIL or not type(n, posint) then return `series/function`('Ei'(n, u), x) end if;
    a := (-s)^(n - 1)/(n - 1)!*(-ln(s) - gamma + `series/aid/harmonic`(n - 1));
    b := `series/aid/entire`(k -> `if`(k = n - 1, 0, (-1)^k/((k - n + 1)*k!)), s);
    `series/aid/argument`(a - b, x)
  end if
end proc:
`series/Ci` := proc(u, x)
  description "series/Ci(u, x): the series of the cosine integral of u; at a zero of u its coefficients hold ln(x)";
  `series/aid/cosineintegral`('Ci', u, x, -1)
end proc:
`series/Chi` := proc(u, x)
  description "series/Chi(u, x): the series of the hyperbolic cosine integral of u; at a zero of u its coefficients hold ln(x)";
  `series/aid/cosineintegral`('Chi', u, x, 1)
end proc:
`series/aid/cosineintegral` := proc(f, u, x, t)
  description "series/aid/cosineintegral(f, u, x, t): the series of f(u), of the kind t = -1 for Ci, 1 for Chi";
  local s, k;
  s := `series/aid/atzero`(u, x);
  if s = FAIL then `series/function`('f'(u), x)
  else `series/aid/argument`(gamma + ln(s) + `series/aid/entire`(k -> `if`(k = 0, 0, t^k/(2*k*(2*k)!)), `series/aid/square`(s, x)), x)
  end if
end proc:
`series/Shi` := proc(u, x)
  description "series/Shi(u, x): the series of the hyperbolic sine integral of u";
  `series/aid/inverse`('Shi', u, x, s -> sinh(s)/s)
end proc:
`series/Li` := proc(u, x)
  description "series/Li(u, x): the series of the logarithmic integral of u; at u = 1 its coefficients hold ln(x)";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL then FAIL
  elif `series/aid/constant`(s) = 1 then `series/aid/argument`(Ei(ln(s)), x)
  else `series/aid/inverse`('Li', s, x, t -> 1/ln(t))
  end if
end proc:

# W(w) = w - w^2 + 3/2 w^3 - ..., the inverse of w*exp(w) (Lagrange). At the branch point -exp(-1) it has powers of
# p = (2*(exp(1)*w + 1))^(1/2): with W = -1 + y, p^2/2 is the sum of (k - 1)/k! y^k.
`series/LambertW` := proc(k, u, x)
  description "series/LambertW(u, x), series/LambertW(k, u, x): the series of Lambert's W function of u, on the branch k";
  local s, j;
  if nargs = 3 then return `series/function`('LambertW'(k, u), x) end if;
  s := `series/aid/argument`(k, u);
  if s = FAIL then FAIL
  elif nops(s) > 0 and `series/aid/lowest`(s) > 0 and not `series/aid/isorder`(op(1, s)) then
    `series/aid/entire`(j -> `if`(j = 0, 0, (-j)^(j - 1)/j!), s)
  elif `series/aid/constant`(s) = -exp(-1) then
    s := `series/aid/argument`((2*exp(1)*`series/aid/withoutconstant`(s))^(1/2), u);
    if s = FAIL or nops(s) = 0 or `series/aid/isorder`(op(1, s)) then FAIL else `series/aid/argument`(`series/aid/branch`(s) - 1, u) end if
  else `series/function`('LambertW'(k), u)
  end if
end proc:
`series/aid/branch` := proc(p)
  description "series/aid/branch(p): LambertW + 1 in powers of the series p";
  local y, k, n, t, terms;
  n, terms := `series/aid/powersneeded`(p) + 1, Order;
  Order := n + 2;
  y := `series/aid/fromterms`(t, [seq(op([2*(k + 1)/(k + 2)!, k]), k = 0..n), O(1), n + 1]);
  y := reverseseries(`series/aid/argument`(t*y^(1/2), t));
  Order := terms;
  `series/aid/entire`(k -> `series/aid/coefficient`(y, k), p)
end proc:

# ---- quotients of gamma functions, which have poles of their own
`series/Beta` := proc(u, v, x)
  description "series/Beta(u, v, x): the series of the beta function";
  local s;
  s := `series/function`('Beta'(u, v), x);
  if s <> FAIL then s else expand(`series/aid/argument`(GAMMA(u)*GAMMA(v)/GAMMA(u + v), x)) end if
end proc:
`series/binomial` := proc(u, v, x)
  description "series/binomial(u, v, x): the series of a binomial coefficient";
  local s;
  s := `series/function`('binomial'(u, v), x);
  if s <> FAIL then s else expand(`series/aid/argument`(GAMMA(u + 1)/(GAMMA(v + 1)*GAMMA(u - v + 1)), x)) end if
end proc:
