# Classical orthogonal polynomials: of a natural degree the polynomial itself, of numbers the value, and for any other
# degree the function that continues them.

`special/polynomial` := proc(f, a::list, g)
  description "special/polynomial(f, [n, ..., x], g): f(n, ..., x) for orthogonal polynomials, g of the same arguments where n is a natural number";
  local n, x;
  n, x := a[1], a[-1];
  if `special/isfloat`(a) then `special/float`(f, a)
  elif type(n, nonnegint) then `special/check`(f, a); g(op(a))
  else `special/standing`(f, a)
  end if
end proc:
LegendreP := proc(n, x)
  description "LegendreP(n, x): the polynomial of Legendre of degree n in x, or the Legendre function";
  if nargs <> 2 then error "LegendreP expects two arguments, but received %1", nargs end if;
  if type(n, negint) then return LegendreP(-n - 1, x) end if;
  `special/polynomial`('LegendreP', [n, x], `LegendreP/degree`)
end proc:
`LegendreP/degree` := proc(n, x)
  description "LegendreP/degree(n, x): the polynomial of Legendre of degree n";
  local c, k, s;
  c := binomial(2*n, n)/2^n;
  s := c*`special/power`(x, n);
  for k to iquo(n, 2) do
    c := -c*(n - 2*k + 2)*(n - 2*k + 1)/(2*k*(2*n - 2*k + 1));
    s := s, c*`special/power`(x, n - 2*k)
  end do;
  `+`(s)
end proc:
`special/power` := proc(x, n)
  description "special/power(x, n): x^n, which is 1 for n = 0 whatever x is";
  if n = 0 then 1 else x^n end if
end proc:

ChebyshevT := proc(n, x)
  description "ChebyshevT(n, x): the polynomial of Chebyshev of the first kind of degree n in x, cos(n*arccos(x))";
  if nargs <> 2 then error "ChebyshevT expects two arguments, but received %1", nargs end if;
  if type(n, negint) then return ChebyshevT(-n, x) end if;
  `special/polynomial`('ChebyshevT', [n, x], `ChebyshevT/degree`)
end proc:
`ChebyshevT/degree` := proc(n, x)
  description "ChebyshevT/degree(n, x): the first polynomial of Chebyshev of degree n";
  local c, k, s;
  if n = 0 then return 1 end if;
  c := 2^(n - 1);
  s := c*x^n;
  for k to iquo(n, 2) do
    c := -c*(n - 2*k + 2)*(n - 2*k + 1)/(4*k*(n - k));
    s := s, c*`special/power`(x, n - 2*k)
  end do;
  `+`(s)
end proc:

ChebyshevU := proc(n, x)
  description "ChebyshevU(n, x): the polynomial of Chebyshev of the second kind of degree n in x";
  if nargs <> 2 then error "ChebyshevU expects two arguments, but received %1", nargs end if;
  if type(n, negint) then return `if`(n = -1, 0, -ChebyshevU(-n - 2, x)) end if;
  `special/polynomial`('ChebyshevU', [n, x], `ChebyshevU/degree`)
end proc:
`ChebyshevU/degree` := proc(n, x)
  description "ChebyshevU/degree(n, x): the second polynomial of Chebyshev of degree n";
  local c, k, s;
  c := 2^n;
  s := c*`special/power`(x, n);
  for k to iquo(n, 2) do
    c := -c*(n - 2*k + 2)*(n - 2*k + 1)/(4*k*(n - k + 1));
    s := s, c*`special/power`(x, n - 2*k)
  end do;
  `+`(s)
end proc:

HermiteH := proc(n, x)
  description "HermiteH(n, x): the polynomial of Hermite of degree n in x, for the weight exp(-x^2)";
  if nargs <> 2 then error "HermiteH expects two arguments, but received %1", nargs end if;
  `special/polynomial`('HermiteH', [n, x], `HermiteH/degree`)
end proc:
`HermiteH/degree` := proc(n, x)
  description "HermiteH/degree(n, x): the polynomial of Hermite of degree n";
  local c, k, s;
  c := 2^n;
  s := c*`special/power`(x, n);
  for k to iquo(n, 2) do
    c := -c*(n - 2*k + 2)*(n - 2*k + 1)/(4*k);
    s := s, c*`special/power`(x, n - 2*k)
  end do;
  `+`(s)
end proc:

LaguerreL := proc(n, a, x)
  description "LaguerreL(n, x), LaguerreL(n, a, x): the polynomial of Laguerre of degree n in x, for the weight x^a*exp(-x), a = 0 unless told";
  if nargs = 2 then return `special/polynomial`('LaguerreL', [n, a], `LaguerreL/plain`)
  elif nargs <> 3 then error "LaguerreL expects two or three arguments, but received %1", nargs
  elif type(a, integer) and a = 0 then return LaguerreL(n, x)
  end if;
  `special/polynomial`('LaguerreL', [n, a, x], `LaguerreL/degree`)
end proc:
`LaguerreL/plain` := proc(n, x)
  description "LaguerreL/plain(n, x): the polynomial of Laguerre of degree n, for the weight exp(-x)";
  `LaguerreL/degree`(n, 0, x)
end proc:
`LaguerreL/degree` := proc(n, a, x)
  description "LaguerreL/degree(n, a, x): the polynomial of Laguerre of degree n";
  local c, k, s;
  # From the top: (-x)^n/n!, each coefficient times the next factor of (a + n)*(a + n - 1)*...
  c := (-1)^n/n!;
  s := c*`special/power`(x, n);
  for k from n by -1 to 1 do
    c := -c*k*(a + k)/(n - k + 1);
    s := s, `if`(type(a, numeric), c, expand(c))*`special/power`(x, k - 1)
  end do;
  `+`(s)
end proc:

GegenbauerC := proc(n, a, x)
  description "GegenbauerC(n, a, x): the polynomial of Gegenbauer of degree n in x, for the weight (1 - x^2)^(a - 1/2)";
  if nargs <> 3 then error "GegenbauerC expects three arguments, but received %1", nargs end if;
  `special/polynomial`('GegenbauerC', [n, a, x], `GegenbauerC/degree`)
end proc:
`GegenbauerC/degree` := proc(n, a, x)
  description "GegenbauerC/degree(n, a, x): the polynomial of Gegenbauer of degree n";
  local c, k, m, s;
  # The coefficient of (2*x)^(n - 2*k) is (-1)^k a*(a + 1)*...*(a + n - k - 1)/(k!*(n - 2*k)!).
  s := NULL;
  c := 1;
  for k from 0 to n - iquo(n, 2) - 1 do c := c*(a + k) end do;
  for k from iquo(n, 2) by -1 to 0 do
    m := c*(-1)^k*2^(n - 2*k)/(k!*(n - 2*k)!);
    s := s, `if`(type(a, numeric), m, expand(m))*`special/power`(x, n - 2*k);
    c := c*(a + n - k)
  end do;
  `+`(s)
end proc:

JacobiP := proc(n, a, b, x)
  description "JacobiP(n, a, b, x): the polynomial of Jacobi of degree n in x, for the weight (1 - x)^a*(1 + x)^b";
  if nargs <> 4 then error "JacobiP expects four arguments, but received %1", nargs end if;
  `special/polynomial`('JacobiP', [n, a, b, x], `JacobiP/degree`)
end proc:
# Binomial coefficients of any number over a natural one are products.
`JacobiP/binomials` := proc(n, a)
  description "JacobiP/binomials(n, a): the list of binomial(n + a, n - k), k = 0..n";
  local c, k, l;
  l := [1];
  c := 1;
  for k to n do
    c := c*(a + n - k + 1)/k;
    l := [c, op(l)]
  end do;
  l
end proc:
`JacobiP/degree` := proc(n, a, b, x)
  description "JacobiP/degree(n, a, b, x): the polynomial of Jacobi of degree n";
  local left, right, k;
  left, right := `JacobiP/binomials`(n, a), `JacobiP/binomials`(n, b);
  expand(add(left[k + 1]*right[n - k + 1]*`special/power`((x - 1)/2, k)*`special/power`((x + 1)/2, n - k), k = 0..n))
end proc:

`evalf/LegendreP` := proc()
  description "evalf/LegendreP(n, x): the value of a Legendre function as a float";
  `special/float`('LegendreP', [args])
end proc:
`evalf/ChebyshevT` := proc()
  description "evalf/ChebyshevT(n, x): the value of the first Chebyshev function as a float";
  `special/float`('ChebyshevT', [args])
end proc:
`evalf/ChebyshevU` := proc()
  description "evalf/ChebyshevU(n, x): the value of the second Chebyshev function as a float";
  `special/float`('ChebyshevU', [args])
end proc:
`evalf/HermiteH` := proc()
  description "evalf/HermiteH(n, x): the value of a Hermite function as a float";
  `special/float`('HermiteH', [args])
end proc:
`evalf/LaguerreL` := proc()
  description "evalf/LaguerreL(n, x), evalf/LaguerreL(n, a, x): the value of a Laguerre function as a float";
  `special/float`('LaguerreL', [args])
end proc:
`evalf/GegenbauerC` := proc()
  description "evalf/GegenbauerC(n, a, x): the value of a Gegenbauer function as a float";
  `special/float`('GegenbauerC', [args])
end proc:
`evalf/JacobiP` := proc()
  description "evalf/JacobiP(n, a, b, x): the value of a Jacobi function as a float";
  `special/float`('JacobiP', [args])
end proc:
