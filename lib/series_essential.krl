# Expansions at essential singularities and at branch points: what has no series in integral powers becomes a sum of
# products of a factor that is no series, as exp(1/x) or x^a, with a series. Asymptotic series are from Abramowitz and Stegun.

# ---- products of a power, another factor and a series
`series/aid/general` := proc(p, x)
  description "series/aid/general(p, x): [a, s, f, e] with p = x^a*f*exp(e)*s, s being a series; FAIL where there are no such";
  local s, f;
  s := `series/aid/argument`(p, x);
  if s <> FAIL then [0, s, 1, 0]
  elif type(p, `^`) and not has(op(2, p), x) then `series/aid/generalpower`(op(p), x)
  elif type(p, `^`) then `series/general/exp`(op(2, p)*ln(op(1, p)), x)
  elif type(p, `*`) then `series/aid/generalproduct`([op(p)], x)
  elif type(p, function) and type(op(0, p), name) then
    f := `series/general/`||(op(0, p));
    if type(f, procedure) then f(op(p), x) else FAIL end if
  else FAIL
  end if
end proc:
`series/aid/generalpower` := proc(b, n, x)
  description "series/aid/generalpower(b, n, x): the same for b^n";
  local g, s, v;
  g := `series/aid/general`(b, x);
  if g = FAIL then return FAIL end if;
  s := g[2];
  if nops(s) = 0 or `series/aid/isorder`(op(1, s)) then return FAIL end if;
  v := op(2, s);
  s := `series/aid/argument`(`series/aid/shifted`(s, -v)^n, x);
  if s = FAIL then FAIL else [n*(g[1] + v), s, g[3]^n, n*g[4]] end if
end proc:
`series/aid/generalproduct` := proc(factors::list, x)
  description "series/aid/generalproduct([p, q, ...], x): the same for the product";
  local g, h, s, t;
  g := [0, `series/aid/fromterms`(x, [1, 0]), 1, 0];
  for t in factors do
    h := `series/aid/general`(t, x);
    if h = FAIL then return FAIL end if;
    s := `series/aid/argument`(g[2]*h[2], x);
    if s = FAIL then return FAIL end if;
    g := [g[1] + h[1], s, g[3]*h[3], g[4] + h[4]]
  end do;
  g
end proc:
`series/aid/powersum` := proc(p, x)
  description "series/aid/powersum(p, x): the expansion of p, term by term, as a sum of such products; or FAIL";
  local g, parts, i, k, s;
  parts := [];
  for g in map(`series/aid/general`, `if`(type(p, `+`), [op(p)], [p]), x) do
    if g = FAIL then return FAIL end if;
    # Series with the same factors become one.
    g := subsop(4 = expand(g[4]), g);
    k := select(i -> parts[i][1] = g[1] and parts[i][3] = g[3] and parts[i][4] = g[4], [$1..nops(parts)]);
    if k = [] then parts := [op(parts), g]
    else
      k := k[1];
      s := `series/aid/argument`(parts[k][2] + g[2], x);
      if s = FAIL then return FAIL end if;
      parts := subsop(k = subsop(2 = s, g), parts)
    end if
  end do;
  add(`if`(g[3] = 1 and g[4] = 0, `series/aid/sum`(g[2], x, g[1], 1), `series/aid/sum`(g[2], x, 0, 1)*x^g[1]*g[3]*exp(g[4])), g = parts)
end proc:

# The terms with negative exponents make a factor.
`series/general/exp` := proc(u, x)
  description "series/general/exp(u, x): [a, s, 1, e] with exp(u) = x^a*exp(e)*s";
  local s, c, k;
  s := `series/aid/argument`(u, x);
  if s = FAIL then return FAIL end if;
  s := `series/aid/split`(s);
  if s = FAIL then return FAIL end if;
  c := s[2];
  k := 0;
  if has(c, x) then
    k := coeff(expand(c), ln(x), 1);
    c := expand(c - k*ln(x));
    if has(k, x) or has(c, x) then return FAIL end if
  end if;
  # Without other terms the series is exact.
  if nops(s[3]) = 0 then [k, `series/aid/fromterms`(x, [`series/aid/value`('exp', c), 0]), 1, s[1]]
  else [k, `series/aid/times`(`series/aid/value`('exp', c), `kernel/native`("series/exp", s[3], `series/aid/terms`())), 1, s[1]]
  end if
end proc:
`series/aid/split` := proc(s)
  description "series/aid/split(s): the terms of the series s with negative exponents as a sum, the constant term, the other terms as a series";
  local x, i, polar, c, rest;
  x := op(0, s);
  polar, c, rest := 0, 0, [];
  for i to nops(s)/2 do
    if op(2*i, s) > 0 then rest := [op(rest), op(2*i - 1, s), op(2*i, s)]
    elif `series/aid/isorder`(op(2*i - 1, s)) then return FAIL
    elif op(2*i, s) = 0 then c := op(2*i - 1, s)
    else polar := polar + op(2*i - 1, s)*x^op(2*i, s)
    end if
  end do;
  [polar, c, `series/aid/fromterms`(x, rest)]
end proc:
# (u/2)^v times an entire function of u^2; v is no integer.
`series/general/BesselJ` := proc(v, u, x)
  description "series/general/BesselJ(v, u, x): [a, s, f, 0] with BesselJ(v, u) = x^a*f*s at a zero of u";
  `series/aid/generalbessel`(v, u, x, -1)
end proc:
`series/general/BesselI` := proc(v, u, x)
  description "series/general/BesselI(v, u, x): [a, s, f, 0] with BesselI(v, u) = x^a*f*s at a zero of u";
  `series/aid/generalbessel`(v, u, x, 1)
end proc:
`series/aid/generalbessel` := proc(v, u, x, t)
  description "series/aid/generalbessel(v, u, x, t): the same for BesselJ, t = -1, and BesselI, t = 1";
  local s, g;
  s := `series/aid/atzero`(u, x);
  if s = FAIL or has(v, x) then return FAIL end if;
  g := `series/aid/generalpower`(s/2, v, x);
  if g = FAIL then FAIL
  else [g[1], `series/aid/argument`(g[2]*`series/aid/besselentire`(v, s, x, t)/GAMMA(v + 1), x), g[3], 0]
  end if
end proc:

# ---- functions as sums of such products: series/essential/f(u, x) is an expression that equals f(u), or FAIL
`series/aid/rewritten` := proc(p, x)
  description "series/aid/rewritten(p, x): p with sums of products in the place of functions whose arguments are singular at x = 0";
  local f, r;
  if type(p, {name, numeric, series}) or not has(p, x) then return p
  elif not type(p, function) then return map(`series/aid/rewritten`, p, x)
  elif not type(op(0, p), name) then return p
  end if;
  f := `series/essential/`||(op(0, p));
  r := `if`(type(f, procedure), f(op(p), x), FAIL);
  if r = FAIL then p else r end if
end proc:
# The polar part of the argument leaves by the addition theorem.
`series/essential/sin` := proc(u, x)
  description "series/essential/sin(u, x): sin(u) by the polar part of u and the rest";
  `series/aid/addition`('sin', 'cos', 1, u, x)
end proc:
`series/essential/cos` := proc(u, x)
  description "series/essential/cos(u, x): cos(u) by the polar part of u and the rest";
  `series/aid/addition`('cos', 'sin', -1, u, x)
end proc:
`series/essential/sinh` := proc(u, x)
  description "series/essential/sinh(u, x): sinh(u) by exponentials";
  (exp(u) - exp(-u))/2
end proc:
`series/essential/cosh` := proc(u, x)
  description "series/essential/cosh(u, x): cosh(u) by exponentials";
  (exp(u) + exp(-u))/2
end proc:
`series/aid/addition` := proc(g, h, t, u, x)
  description "series/aid/addition(g, h, t, u, x): g(a)*cos(b) + t*h(a)*sin(b) with a the polar part of u and b the rest";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL or `series/aid/lowest`(s) >= 0 then return FAIL end if;
  s := `series/aid/split`(s);
  if s = FAIL then return FAIL end if;
  g(s[1])*`series/aid/near`('cos', s) + t*h(s[1])*`series/aid/near`('sin', s)
end proc:
`series/aid/near` := proc(f, s)
  description "series/aid/near(f, [a, c, s]): f(c + s), evaluated for the series 0";
  if nops(s[3]) = 0 then `series/aid/value`(f, s[2]) else f(s[2] + s[3]) end if
end proc:
# What stands as it is, a factor of its own: sin and cos of a polar part.
`series/general/sin` := proc(u, x)
  description "series/general/sin(u, x): [0, 1, sin(u), 0] for a u that has a pole and no other terms";
  `series/aid/standing`('sin', u, x)
end proc:
`series/general/cos` := proc(u, x)
  description "series/general/cos(u, x): [0, 1, cos(u), 0] for a u that has a pole and no other terms";
  `series/aid/standing`('cos', u, x)
end proc:
`series/aid/standing` := proc(f, u, x)
  description "series/aid/standing(f, u, x): [0, 1, f(u), 0] for a u that has a pole and no other terms";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL or nops(s) = 0 or op(nops(s), s) >= 0 then FAIL else [0, `series/aid/fromterms`(x, [1, 0]), f(u), 0] end if
end proc:

# ---- asymptotic series, in powers of 1/u
`series/aid/atinfinity` := proc(u, x)
  description "series/aid/atinfinity(u, x): the series of 1/u where u has a pole at x = 0 and doesn't begin with a negative number, FAIL else";
  local s;
  s := `series/aid/argument`(u, x);
  if s = FAIL or nops(s) = 0 or op(2, s) >= 0 or `series/aid/isorder`(op(1, s)) or `series/aid/isnegative`(s) then FAIL
  else `series/aid/argument`(1/s, x)
  end if
end proc:
# Stirling's series (6.1.40)
`series/aid/stirling` := proc(r)
  description "series/aid/stirling(r): ln(GAMMA(u)) - (u - 1/2)*ln(u) + u - ln(2*Pi)/2 in powers of the series r of 1/u";
  local k;
  `series/aid/entire`(k -> `if`(irem(k, 2) = 0, 0, `series/aid/bernoulli`(k + 1)/(k*(k + 1))), r)
end proc:
`series/essential/GAMMA` := proc(u, v, x)
  description "series/essential/GAMMA(u, x): GAMMA(u) at a pole of u; series/essential/GAMMA(a, u, x): the incomplete one at a zero or pole of u";
  local r, k, j;
  if nargs = 2 then
    r := `series/aid/atinfinity`(u, v);
    return `if`(r = FAIL, FAIL, (2*Pi)^(1/2)*exp((u - 1/2)*ln(u) - u)*exp(`series/aid/stirling`(r)))
  elif has(u, x) then return FAIL
  end if;
  r := `series/aid/atzero`(v, x);
  if r <> FAIL then return GAMMA(u) - v^u*`series/aid/entire`(k -> (-1)^k/(k!*(u + k)), r) end if;
  # 6.5.32
  r := `series/aid/atinfinity`(v, x);
  if r = FAIL then FAIL else v^(u - 1)*exp(-v)*`series/aid/entire`(k -> mul(u - j, j = 1..k), r) end if
end proc:
`series/essential/binomial` := proc(u, v, x)
  description "series/essential/binomial(u, v, x): a binomial coefficient by gamma functions";
  `series/aid/rewritten`(GAMMA(u + 1)/(GAMMA(v + 1)*GAMMA(u - v + 1)), x)
end proc:
`series/essential/Beta` := proc(u, v, x)
  description "series/essential/Beta(u, v, x): a beta function by gamma functions";
  `series/aid/rewritten`(GAMMA(u)*GAMMA(v)/GAMMA(u + v), x)
end proc:
`series/essential/factorial` := proc(u, x)
  description "series/essential/factorial(u, x): u! at a pole of u";
  local r;
  r := `series/essential/GAMMA`(u, x);
  if r = FAIL then FAIL else u*r end if
end proc:
`series/aid/lngammaatpole` := proc(u, x)
  description "series/aid/lngammaatpole(u, x): the series of lnGAMMA(u) at a pole of u, or FAIL";
  local r;
  r := `series/aid/atinfinity`(u, x);
  if r = FAIL then FAIL else `series/aid/argument`((u - 1/2)*ln(u) - u + ln(2*Pi)/2 + `series/aid/stirling`(r), x) end if
end proc:
# 6.3.18 and 6.4.11
`series/aid/psiatpole` := proc(n, u, x)
  description "series/aid/psiatpole(n, u, x): the series of Psi(n, u) at a pole of u, or FAIL";
  local r, k;
  r := `series/aid/atinfinity`(u, x);
  if r = FAIL then FAIL
  elif n = 0 then
    `series/aid/argument`(ln(u) + `series/aid/entire`(k -> `if`(k = 0, 0, `if`(k = 1, -1/2, -`series/aid/bernoulli`(k)/k)), r), x)
  else
    `series/aid/times`((-1)^(n + 1), `series/aid/entire`(k -> `if`(k < n, 0, `if`(k = n, (n - 1)!,
      `if`(k = n + 1, n!/2, `series/aid/bernoulli`(k - n)*(k - 1)!/(k - n)!))), r))
  end if
end proc:
# 7.1.23
`series/essential/erfc` := proc(u, x)
  description "series/essential/erfc(u, x): erfc(u) at a pole of u";
  local r, s, k;
  s := `series/aid/argument`(u, x);
  if s <> FAIL and `series/aid/lowest`(s) < 0 and `series/aid/isnegative`(s) then
    r := `series/essential/erfc`(-u, x);
    return `if`(r = FAIL, FAIL, 2 - r)
  end if;
  r := `series/aid/atinfinity`(u, x);
  if r = FAIL then FAIL
  else exp(-u^2)/Pi^(1/2)*`series/aid/entire`(k -> `if`(irem(k, 2) = 0, 0, (-1/4)^((k - 1)/2)*(k - 1)!/((k - 1)/2)!), r)
  end if
end proc:
`series/essential/erf` := proc(u, x)
  description "series/essential/erf(u, x): erf(u) at a pole of u";
  local r;
  r := `series/essential/erfc`(u, x);
  if r = FAIL then FAIL else 1 - r end if
end proc:
# 5.1.51
`series/essential/Ei` := proc(n, u, x)
  description "series/essential/Ei(u, x), series/essential/Ei(n, u, x): an exponential integral at a pole of u";
  local s, k, j;
  s := `series/aid/argument`(args[-2], args[-1]);
  if s = FAIL or nops(s) = 0 or op(2, s) >= 0 or `series/aid/isorder`(op(1, s)) then return FAIL end if;
  s := `series/aid/argument`(1/s, args[-1]);
  if nargs = 2 then exp(n)*`series/aid/entire`(k -> `if`(k = 0, 0, (k - 1)!), s)
  else exp(-u)*`series/aid/entire`(k -> `if`(k = 0, 0, (-1)^(k - 1)*mul(n + j, j = 0..k - 2)), s)
  end if
end proc:
# 5.2.8 and 9, 5.2.38 and 39
`series/essential/Si` := proc(u, x)
  description "series/essential/Si(u, x): Si(u) at a pole of u";
  local r;
  r := `series/aid/atinfinity`(u, x);
  if r = FAIL then FAIL
  else Pi/2 - `series/aid/phased`(u, x, 0, `series/aid/alternating`(r, 1), `series/aid/times`(-1, `series/aid/alternating`(r, 0)))
  end if
end proc:
`series/essential/Ci` := proc(u, x)
  description "series/essential/Ci(u, x): Ci(u) at a pole of u";
  local r;
  r := `series/aid/atinfinity`(u, x);
  if r = FAIL then FAIL
  else `series/aid/phased`(u, x, 0, `series/aid/times`(-1, `series/aid/alternating`(r, 0)), `series/aid/times`(-1, `series/aid/alternating`(r, 1)))
  end if
end proc:
`series/aid/alternating` := proc(r, odd)
  description "series/aid/alternating(r, odd): 0!*r - 2!*r^3 + 4!*r^5 - ... for odd = 1, 1!*r^2 - 3!*r^4 + ... for odd = 0";
  local k;
  `series/aid/entire`(k -> `if`(k = 0 or irem(k, 2) <> odd, 0, (-1)^iquo(k - 1, 2)*(k - 1)!), r)
end proc:
`series/aid/phased` := proc(u, x, c, p, q)
  description "series/aid/phased(u, x, c, p, q): p*cos(u - c) - q*sin(u - c), by the polar part of u";
  expand(p*`series/essential/cos`(u - c, x) - q*`series/essential/sin`(u - c, x))
end proc:
# Hankel's expansions (9.2.5 and 6, 9.7.1 and 2)
`series/aid/hankel` := proc(v, r, c)
  description "series/aid/hankel(v, r, c): the sum of c(k)*a*r^k with a = (4*v^2 - 1)*(4*v^2 - 9)*...*(4*v^2 - (2*k - 1)^2)/(k!*8^k)";
  local k, j;
  `series/aid/entire`(k -> c(k)*mul(4*v^2 - (2*j - 1)^2, j = 1..k)/(k!*8^k), r)
end proc:
`series/aid/hankelpair` := proc(v, r)
  description "series/aid/hankelpair(v, r): the two sums of Hankel's expansions, of even and of odd powers";
  local k;
  `series/aid/hankel`(v, r, k -> `if`(irem(k, 2) = 0, (-1)^(k/2), 0)), `series/aid/hankel`(v, r, k -> `if`(irem(k, 2) = 1, (-1)^((k - 1)/2), 0))
end proc:
`series/essential/BesselJ` := proc(v, u, x)
  description "series/essential/BesselJ(v, u, x): BesselJ(v, u) at a pole of u";
  local r;
  r := `if`(has(v, x), FAIL, `series/aid/atinfinity`(u, x));
  if r = FAIL then FAIL
  else (2/(Pi*u))^(1/2)*`series/aid/phased`(u, x, Pi*v/2 + Pi/4, `series/aid/hankelpair`(v, r))
  end if
end proc:
`series/essential/BesselY` := proc(v, u, x)
  description "series/essential/BesselY(v, u, x): BesselY(v, u) at a pole of u, or at a zero of it for a v that is no integer";
  local r, p, q;
  if has(v, x) then return FAIL end if;
  r := `series/aid/atinfinity`(u, x);
  if r <> FAIL then
    p, q := `series/aid/hankelpair`(v, r);
    return (2/(Pi*u))^(1/2)*`series/aid/phased`(u, x, Pi*v/2 + Pi/4, q, `series/aid/times`(-1, p))
  end if;
  if type(v, integer) or `series/aid/atzero`(u, x) = FAIL then FAIL
  else cos(Pi*v)/sin(Pi*v)*'BesselJ'(v, u) - 'BesselJ'(-v, u)/sin(Pi*v)
  end if
end proc:
`series/essential/BesselI` := proc(v, u, x)
  description "series/essential/BesselI(v, u, x): BesselI(v, u) at a pole of u";
  local r, k;
  r := `if`(has(v, x), FAIL, `series/aid/atinfinity`(u, x));
  if r = FAIL then FAIL else exp(u)/(2*Pi*u)^(1/2)*`series/aid/hankel`(v, r, k -> (-1)^k) end if
end proc:
`series/essential/BesselK` := proc(v, u, x)
  description "series/essential/BesselK(v, u, x): BesselK(v, u) at a pole of u, or at a zero of it for a v that is no integer";
  local r, k;
  if has(v, x) then return FAIL end if;
  r := `series/aid/atinfinity`(u, x);
  if r <> FAIL then return exp(-u)*(Pi/(2*u))^(1/2)*`series/aid/hankel`(v, r, k -> 1) end if;
  if type(v, integer) or `series/aid/atzero`(u, x) = FAIL then FAIL
  else Pi/(2*sin(Pi*v))*('BesselI'(-v, u) - 'BesselI'(v, u))
  end if
end proc:
