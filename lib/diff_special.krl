# Derivatives of special functions: diff/f(u, x) in diff(f(u), x). Where one of several arguments has no derivative in
# closed form, the call stays.
`diff/erf` := proc(u, x)
  description "diff/erf(u, x): the derivative of the error function of u";
  if nargs = 2 then 2*exp(-u^2)/Pi^(1/2)*diff(u, x) else `diff/aid/staying`('erf'(args[1..-2]), args[-1]) end if
end proc:
`diff/erfc` := proc(u, x)
  description "diff/erfc(u, x): the derivative of the complementary error function of u";
  if nargs = 2 then -2*exp(-u^2)/Pi^(1/2)*diff(u, x) else `diff/aid/staying`('erfc'(args[1..-2]), args[-1]) end if
end proc:
`diff/erfi` := proc(u, x)
  description "diff/erfi(u, x): the derivative of the imaginary error function of u";
  if nargs = 2 then 2*exp(u^2)/Pi^(1/2)*diff(u, x) else `diff/aid/staying`('erfi'(args[1..-2]), args[-1]) end if
end proc:
`diff/lnGAMMA` := proc(u, x)
  description "diff/lnGAMMA(u, x): the derivative of the logarithm of the gamma function of u";
  if nargs = 2 then Psi(u)*diff(u, x) else `diff/aid/staying`('lnGAMMA'(args[1..-2]), args[-1]) end if
end proc:
`diff/factorial` := proc(u, x)
  description "diff/factorial(u, x): the derivative of the factorial of u";
  if nargs = 2 then factorial(u)*Psi(u + 1)*diff(u, x) else `diff/aid/staying`('factorial'(args[1..-2]), args[-1]) end if
end proc:
`diff/Si` := proc(u, x)
  description "diff/Si(u, x): the derivative of the sine integral of u";
  if nargs = 2 then sin(u)/u*diff(u, x) else `diff/aid/staying`('Si'(args[1..-2]), args[-1]) end if
end proc:
`diff/Ci` := proc(u, x)
  description "diff/Ci(u, x): the derivative of the cosine integral of u";
  if nargs = 2 then cos(u)/u*diff(u, x) else `diff/aid/staying`('Ci'(args[1..-2]), args[-1]) end if
end proc:
`diff/Li` := proc(u, x)
  description "diff/Li(u, x): the derivative of the logarithmic integral of u";
  if nargs = 2 then 1/ln(u)*diff(u, x) else `diff/aid/staying`('Li'(args[1..-2]), args[-1]) end if
end proc:
`diff/dilog` := proc(u, x)
  description "diff/dilog(u, x): the derivative of the dilogarithm of u";
  if nargs = 2 then ln(u)/(1 - u)*diff(u, x) else `diff/aid/staying`('dilog'(args[1..-2]), args[-1]) end if
end proc:
`diff/LambertW` := proc(k, u, x)
  description "diff/LambertW(u, x), diff/LambertW(k, u, x): the derivative of Lambert's W function of u, on a branch k";
  if nargs = 2 then LambertW(k)/(k*(1 + LambertW(k)))*diff(k, u)
  elif has(k, x) then `diff/aid/staying`('LambertW'(k, u), x)
  else LambertW(k, u)/(u*(1 + LambertW(k, u)))*diff(u, x)
  end if
end proc:
`diff/Heaviside` := proc(u, x)
  description "diff/Heaviside(u, x): the derivative of the unit step of u";
  if nargs = 2 then Dirac(u)*diff(u, x) else `diff/aid/staying`('Heaviside'(args[1..-2]), args[-1]) end if
end proc:
`diff/GAMMA` := proc(a, u, x)
  description "diff/GAMMA(u, x), diff/GAMMA(a, u, x): the derivative of the gamma function, or of the upper incomplete one";
  if nargs = 2 then GAMMA(a)*Psi(a)*diff(a, u)
  elif has(a, x) then `diff/aid/staying`('GAMMA'(a, u), x)
  else -u^(a - 1)*exp(-u)*diff(u, x)
  end if
end proc:
`diff/Psi` := proc(n, u, x)
  description "diff/Psi(u, x), diff/Psi(n, u, x): the derivative of the digamma function, or of the n-th polygamma function";
  if nargs = 2 then Psi(1, n)*diff(n, u)
  elif has(n, x) then `diff/aid/staying`('Psi'(n, u), x)
  else Psi(n + 1, u)*diff(u, x)
  end if
end proc:
`diff/Zeta` := proc(n, u, x)
  description "diff/Zeta(u, x), diff/Zeta(n, u, x), diff/Zeta(n, u, a, x): the derivative of the zeta function, of its n-th derivative, or of Hurwitz's";
  local a, y;
  if nargs = 2 then return Zeta(1, n)*diff(n, u) end if;
  y := args[-1];
  if has(n, y) then `diff/aid/staying`('Zeta'(args[1..-2]), y)
  elif nargs = 3 then Zeta(n + 1, u)*diff(u, x)
  else
    # By a: -s*Zeta(0, s + 1, a), whose n-th derivative by s this is.
    a := args[3];
    Zeta(n + 1, u, a)*diff(u, y) + `if`(n = 0, -u*Zeta(0, u + 1, a), -u*Zeta(n, u + 1, a) - n*Zeta(n - 1, u + 1, a))*diff(a, y)
  end if
end proc:
`diff/Beta` := proc(u, v, x)
  description "diff/Beta(u, v, x): the derivative of the beta function";
  Beta(u, v)*(diff(u, x)*(Psi(u) - Psi(u + v)) + diff(v, x)*(Psi(v) - Psi(u + v)))
end proc:
`diff/binomial` := proc(u, v, x)
  description "diff/binomial(u, v, x): the derivative of the binomial coefficient";
  binomial(u, v)*(diff(u, x)*(Psi(u + 1) - Psi(u - v + 1)) + diff(v, x)*(Psi(u - v + 1) - Psi(v + 1)))
end proc:
`diff/Ei` := proc(n, u, x)
  description "diff/Ei(u, x), diff/Ei(n, u, x): the derivative of the exponential integral Ei(u), or of E_n(u)";
  if nargs = 2 then exp(n)/n*diff(n, u)
  elif has(n, x) then `diff/aid/staying`('Ei'(n, u), x)
  else -Ei(n - 1, u)*diff(u, x)
  end if
end proc:
`diff/polylog` := proc(n, u, x)
  description "diff/polylog(n, u, x): the derivative of the polylogarithm of index n";
  if has(n, x) then `diff/aid/staying`('polylog'(n, u), x)
  else polylog(n - 1, u)/u*diff(u, x)
  end if
end proc:

# Bessel functions by their recurrences (Abramowitz and Stegun, 9.1.27 and 9.6.26).
`diff/BesselJ` := proc(v, u, x)
  description "diff/BesselJ(v, u, x): the derivative of the Bessel function J of order v";
  if has(v, x) then `diff/aid/staying`('BesselJ'(v, u), x)
  else (-BesselJ(v + 1, u) + v*BesselJ(v, u)/u)*diff(u, x)
  end if
end proc:
`diff/BesselY` := proc(v, u, x)
  description "diff/BesselY(v, u, x): the derivative of the Bessel function Y of order v";
  if has(v, x) then `diff/aid/staying`('BesselY'(v, u), x)
  else (-BesselY(v + 1, u) + v*BesselY(v, u)/u)*diff(u, x)
  end if
end proc:
`diff/BesselI` := proc(v, u, x)
  description "diff/BesselI(v, u, x): the derivative of the modified Bessel function I of order v";
  if has(v, x) then `diff/aid/staying`('BesselI'(v, u), x)
  else (BesselI(v + 1, u) + v*BesselI(v, u)/u)*diff(u, x)
  end if
end proc:
`diff/BesselK` := proc(v, u, x)
  description "diff/BesselK(v, u, x): the derivative of the modified Bessel function K of order v";
  if has(v, x) then `diff/aid/staying`('BesselK'(v, u), x)
  else (-BesselK(v + 1, u) + v*BesselK(v, u)/u)*diff(u, x)
  end if
end proc:

# Airy's functions, whose second derivative is x times themselves.
`diff/AiryAi` := proc(n, u, x)
  description "diff/AiryAi(u, x), diff/AiryAi(n, u, x): the derivative of Airy's function of u, or of its n-th derivative";
  if nargs = 2 then AiryAi(1, n)*diff(n, u)
  elif has(n, x) then `diff/aid/staying`('AiryAi'(n, u), x)
  else AiryAi(n + 1, u)*diff(u, x)
  end if
end proc:
`diff/AiryBi` := proc(n, u, x)
  description "diff/AiryBi(u, x), diff/AiryBi(n, u, x): the derivative of Airy's second function of u, or of its n-th derivative";
  if nargs = 2 then AiryBi(1, n)*diff(n, u)
  elif has(n, x) then `diff/aid/staying`('AiryBi'(n, u), x)
  else AiryBi(n + 1, u)*diff(u, x)
  end if
end proc:
`diff/Shi` := proc(u, x)
  description "diff/Shi(u, x): the derivative of the hyperbolic sine integral of u";
  if nargs = 2 then sinh(u)/u*diff(u, x) else `diff/aid/staying`('Shi'(args[1..-2]), args[-1]) end if
end proc:
`diff/Chi` := proc(u, x)
  description "diff/Chi(u, x): the derivative of the hyperbolic cosine integral of u";
  if nargs = 2 then cosh(u)/u*diff(u, x) else `diff/aid/staying`('Chi'(args[1..-2]), args[-1]) end if
end proc:
`diff/Dirac` := proc(n, u, x)
  description "diff/Dirac(u, x), diff/Dirac(n, u, x): the derivative of Dirac's function of u, or of its n-th derivative";
  if nargs = 2 then Dirac(1, n)*diff(n, u)
  elif has(n, x) then `diff/aid/staying`('Dirac'(n, u), x)
  else Dirac(n + 1, u)*diff(u, x)
  end if
end proc:
`diff/surd` := proc(u, n, x)
  description "diff/surd(u, n, x): the derivative of the n-th root of u, the real one for odd n";
  if nargs <> 3 or has(n, x) then `diff/aid/staying`('surd'(args[1..-2]), args[-1]) else surd(u, n)/(n*u)*diff(u, x) end if
end proc:
`diff/hypergeom` := proc(a, b, z, x)
  description "diff/hypergeom(a, b, z, x): the derivative of a hypergeometric function by its argument";
  local t;
  if nargs <> 4 or has([a, b], x) then return `diff/aid/staying`('hypergeom'(args[1..-2]), args[-1]) end if;
  `*`(op(a))/`*`(op(b))*hypergeom(map(t -> t + 1, a), map(t -> t + 1, b), z)*diff(z, x)
end proc:

# Orthogonal polynomials by their arguments (Abramowitz and Stegun, 22.5 and 22.8), in forms without poles.
`diff/LegendreP` := proc(n, u, x)
  description "diff/LegendreP(n, u, x): the derivative of Legendre's function of degree n";
  if nargs <> 3 or has(n, x) then `diff/aid/staying`('LegendreP'(args[1..-2]), args[-1])
  else GegenbauerC(n - 1, 3/2, u)*diff(u, x)
  end if
end proc:
`diff/ChebyshevT` := proc(n, u, x)
  description "diff/ChebyshevT(n, u, x): the derivative of Chebyshev's function of the first kind";
  if nargs <> 3 or has(n, x) then `diff/aid/staying`('ChebyshevT'(args[1..-2]), args[-1])
  else n*ChebyshevU(n - 1, u)*diff(u, x)
  end if
end proc:
`diff/ChebyshevU` := proc(n, u, x)
  description "diff/ChebyshevU(n, u, x): the derivative of Chebyshev's function of the second kind";
  if nargs <> 3 or has(n, x) then `diff/aid/staying`('ChebyshevU'(args[1..-2]), args[-1])
  else 2*GegenbauerC(n - 1, 2, u)*diff(u, x)
  end if
end proc:
`diff/HermiteH` := proc(n, u, x)
  description "diff/HermiteH(n, u, x): the derivative of Hermite's function of degree n";
  if nargs <> 3 or has(n, x) then `diff/aid/staying`('HermiteH'(args[1..-2]), args[-1])
  else 2*n*HermiteH(n - 1, u)*diff(u, x)
  end if
end proc:
`diff/LaguerreL` := proc(n, a, u, x)
  description "diff/LaguerreL(n, u, x), diff/LaguerreL(n, a, u, x): the derivative of Laguerre's function, or of the generalized one";
  if nargs = 3 and not has(n, u) then -LaguerreL(n - 1, 1, a)*diff(a, u)
  elif nargs <> 4 or has([n, a], x) then `diff/aid/staying`('LaguerreL'(args[1..-2]), args[-1])
  else -LaguerreL(n - 1, a + 1, u)*diff(u, x)
  end if
end proc:
`diff/GegenbauerC` := proc(n, a, u, x)
  description "diff/GegenbauerC(n, a, u, x): the derivative of Gegenbauer's function of degree n";
  if nargs <> 4 or has([n, a], x) then `diff/aid/staying`('GegenbauerC'(args[1..-2]), args[-1])
  else 2*a*GegenbauerC(n - 1, a + 1, u)*diff(u, x)
  end if
end proc:
`diff/JacobiP` := proc(n, a, b, u, x)
  description "diff/JacobiP(n, a, b, u, x): the derivative of Jacobi's function of degree n";
  if nargs <> 5 or has([n, a, b], x) then `diff/aid/staying`('JacobiP'(args[1..-2]), args[-1])
  else (n + a + b + 1)/2*JacobiP(n - 1, a + 1, b + 1, u)*diff(u, x)
  end if
end proc:

# Elliptic integrals by the modulus and by the sine of the amplitude (Byrd and Friedman, 710).
`diff/EllipticK` := proc(k, x)
  description "diff/EllipticK(k, x): the derivative of the complete elliptic integral of the first kind";
  (EllipticE(k)/(k*(1 - k^2)) - EllipticK(k)/k)*diff(k, x)
end proc:
`diff/EllipticE` := proc(z, k, x)
  description "diff/EllipticE(k, x), diff/EllipticE(z, k, x): the derivative of an elliptic integral of the second kind";
  if nargs = 2 then (EllipticE(z) - EllipticK(z))/z*diff(z, k)
  else (1 - k^2*z^2)^(1/2)/(1 - z^2)^(1/2)*diff(z, x) + (EllipticE(z, k) - EllipticF(z, k))/k*diff(k, x)
  end if
end proc:
`diff/EllipticF` := proc(z, k, x)
  description "diff/EllipticF(z, k, x): the derivative of the elliptic integral of the first kind";
  diff(z, x)/((1 - z^2)^(1/2)*(1 - k^2*z^2)^(1/2)) + (EllipticE(z, k)/(k*(1 - k^2)) - EllipticF(z, k)/k
    - k*z*(1 - z^2)^(1/2)/((1 - k^2)*(1 - k^2*z^2)^(1/2)))*diff(k, x)
end proc:
`diff/EllipticPi` := proc(z, n, k, x)
  description "diff/EllipticPi(n, k, x), diff/EllipticPi(z, n, k, x): the derivative of an elliptic integral of the third kind";
  local c, m, p, w;
  if nargs = 3 then c, m, w := z, n, k;
    p := [EllipticPi(c, m), EllipticK(m), EllipticE(m), 0, 0]
  else c, m, w := n, k, x;
    p := [EllipticPi(z, c, m), EllipticF(z, m), EllipticE(z, m),
      c*z*(1 - z^2)^(1/2)*(1 - m^2*z^2)^(1/2)/(1 - c*z^2), m^2*z*(1 - z^2)^(1/2)/((m^2 - 1)*(1 - m^2*z^2)^(1/2))]
  end if;
  (p[3] + (m^2 - c)/c*p[2] + (c^2 - m^2)/c*p[1] - p[4])/(2*(m^2 - c)*(c - 1))*diff(c, w)
    + m/(c - m^2)*(p[3]/(m^2 - 1) + p[1] - p[5])*diff(m, w)
    + `if`(nargs = 3, 0, diff(z, x)/((1 - c*z^2)*(1 - z^2)^(1/2)*(1 - m^2*z^2)^(1/2)))
end proc:
