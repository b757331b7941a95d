# Expansions of special functions: series/f(u, x) in series(f(u), x).

`series/erf` := proc(u, x)
  description "series/erf(u, x): the series of the error function of u";
  `series/aid/inverse`('erf', u, x, s -> 2*exp(-s^2)/Pi^(1/2))
end proc:
`series/erfc` := proc(u, x)
  description "series/erfc(u, x): the series of the complementary error function of u";
  `series/aid/inverse`('erfc', u, x, s -> -2*exp(-s^2)/Pi^(1/2))
end proc:
`series/erfi` := proc(u, x)
  description "series/erfi(u, x): the series of the imaginary error function of u";
  `series/aid/inverse`('erfi', u, x, s -> 2*exp(s^2)/Pi^(1/2))
end proc:
`series/Si` := proc(u, x)
  description "series/Si(u, x): the series of the sine integral of u";
  `series/aid/inverse`('Si', u, x, s -> sin(s)/s)
end proc:
# ---- the gamma function and its logarithmic derivatives
`series/GAMMA` := proc(u, v, x)
  description "series/GAMMA(u, x): the series of the gamma function of u, also at its poles; series/GAMMA(a, u, x): that of the incomplete one";
  local s, c;
  if nargs = 3 then
    if type(u, nonposint) and `series/aid/atzero`(v, x) <> FAIL then return `series/aid/argument`(v^u*Ei(1 - u, v), x)
    elif not type(u, posint) and `series/aid/atzero`(v, x) <> FAIL then return FAIL
    end if;
    return `series/function`('GAMMA'(u, v), x)
  end if;
  s := `series/aid/argument`(u, v);
  if s = FAIL or `series/aid/lowest`(s) < 0 or `series/aid/onlyorder`(s) then return FAIL end if;
  c := `series/aid/constant`(s);
  expand(`if`(type(c, nonposint), `series/aid/moreterms`(`series/aid/gammapole`, 2, v, u, v, c), `series/aid/gammaat`(s, c)))
end proc:
`series/aid/gammapole` := proc(u, v, c)
  description "series/aid/gammapole(u, v, c): the series in v of GAMMA(u), the constant term c of u being a pole";
  local s, k, product;
  s := `series/aid/argument`(u, v);
  # GAMMA(s) = GAMMA(s - c + 1)/(s*(s + 1)*...*(s - c))
  product := s;
  for k to -c do product := `series/aid/argument`(product*(s + k), v) end do;
  s := `series/aid/argument`(s - c + 1, v);
  `series/aid/argument`(`series/aid/gammaat`(s, 1)/product, v)
end proc:
# GAMMA(c + w) = GAMMA(c)*exp(Psi(c)*w + Psi(1, c)*w^2/2 + ...)
`series/aid/gammaat` := proc(s, c)
  description "series/aid/gammaat(s, c): the series of GAMMA(s), s being a series with the constant term c, no pole";
  local w, g;
  w := `series/aid/withoutconstant`(s);
  g := `series/aid/loggamma`(c, w);
  `series/aid/times`(`series/aid/value`('GAMMA', c), `kernel/native`("series/exp", g, `series/aid/terms`()))
end proc:
`series/aid/loggamma` := proc(c, w)
  description "series/aid/loggamma(c, w): the series of ln(GAMMA(c + w)/GAMMA(c))";
  local k;
  `series/aid/composed`([0, seq(`series/aid/polygamma`(k - 1, c)/k!, k = 1..`series/aid/powersneeded`(w))], w, true)
end proc:
`series/aid/polygamma` := proc(n, c)
  description "series/aid/polygamma(n, c): Psi(n, c), in terms of gamma and Zeta for a natural number c";
  local k;
  if not type(c, posint) then `if`(n = 0, Psi(c), Psi(n, c))
  elif n = 0 then -gamma + add(1/k, k = 1..c - 1)
  else (-1)^(n + 1)*n!*(`series/aid/zeta`(n + 1) - add(1/k^(n + 1), k = 1..c - 1))
  end if
end proc:
`series/aid/zeta` := proc(n)
  description "series/aid/zeta(n): Zeta(n), for even n in terms of Pi (Euler)";
  if irem(n, 2) = 1 then Zeta(n) else (-1)^(n/2 + 1)*`series/aid/bernoulli`(n)*(2*Pi)^n/(2*n!) end if
end proc:
`series/aid/bernoulli` := proc(n)
  option remember;
  description "series/aid/bernoulli(n): the n-th Bernoulli number";
  local k, b, sum;
  if n = 0 then return 1 elif n = 1 then return -1/2 elif irem(n, 2) = 1 then return 0 end if;
  # sum(binomial(n + 1, k)*B(k), k = 0..n) = 0
  b, sum := 1, 0;
  for k from 0 to n - 1 do
    sum := sum + b*`series/aid/bernoulli`(k);
    b := b*(n + 1 - k)/(k + 1)
  end do;
  -sum/(n + 1)
end proc:
`series/lnGAMMA` := proc(u, x)
  description "series/lnGAMMA(u, x): the series of the logarithm of the gamma function of u";
  local s, c, g;
  s := `series/aid/argument`(u, x);
  if s = FAIL or `series/aid/onlyorder`(s) then return FAIL end if;
  if `series/aid/lowest`(s) < 0 then return `series/aid/lngammaatpole`(s, x) end if;
  c := `series/aid/constant`(s);
  if type(c, nonposint) then return `series/aid/argument`(ln(GAMMA(s)), x) end if;
  `series/aid/argument`(`series/aid/value`('lnGAMMA', c) + `series/aid/loggamma`(c, `series/aid/withoutconstant`(s)), x)
end proc:
`series/Psi` := proc(n, u, x)
  description "series/Psi(u, x), series/Psi(n, u, x): the series of the digamma function of u, or of a polygamma function";
  local s, c, w, k;
  if nargs = 2 then return `series/Psi`(0, n, u) end if;
  if not type(n, nonnegint) then return `series/function`('Psi'(n, u), x) end if;
  s := `series/aid/argument`(u, x);
  if s = FAIL or `series/aid/onlyorder`(s) then return FAIL end if;
  if `series/aid/lowest`(s) < 0 then return `series/aid/psiatpole`(n, s, x) end if;
  c := `series/aid/constant`(s);
  if type(c, nonposint) then return `series/aid/moreterms`(`series/aid/psipole`, 2, x, n, u, x, c) end if;
  w := `series/aid/withoutconstant`(s);
  `series/aid/composed`([seq(`series/aid/polygamma`(n + k, c)/k!, k = 0..`series/aid/powersneeded`(w))], w, true)
end proc:
`series/aid/psipole` := proc(n, u, x, c)
  description "series/aid/psipole(n, u, x, c): the series in x of Psi(n, u), the constant term c of u being a pole";
  local s, k;
  s := `series/aid/argument`(u, x);
  # Psi(n, s) = Psi(n, s - c + 1) - (-1)^n n! (1/s^(n + 1) + 1/(s + 1)^(n + 1) + ...)
  `series/aid/argument`(`series/Psi`(n, `series/aid/argument`(s - c + 1, x), x) - (-1)^n*n!*add(1/(s + k)^(n + 1), k = 0..-c), x)
end proc:
`series/factorial` := proc(u, x)
  description "series/factorial(u, x): the series of the factorial of u";
  `series/GAMMA`(u + 1, x)
end proc:
