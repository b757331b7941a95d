# Arithmetic with series. series(s + t, x), series(s*t, x) and series(s^n, x) expand sums, products and powers of them; here
# stands what takes more than that.

`convert/polynom` := proc(s)
  description "convert(s, polynom): a series, or an expression of series and order terms, with polynomials in their place";
  local t;
  if type(s, series) then `+`(op(`series/aid/polynomterms`(s)))
  elif `series/aid/isorderof`(s) then 0
  elif type(s, {`+`, `*`, `^`, list, set, `=`}) and hastype(s, {series, specfunc(anything, O)}) then map(`convert/polynom`, s)
  else s
  end if
end proc:
`series/aid/polynomterms` := proc(s)
  description "series/aid/polynomterms(s): the terms of the series s, without its order term, as a list";
  local i;
  [seq(`if`(`series/aid/isorder`(op(2*i - 1, s)), NULL, op(2*i - 1, s)*op(0, s)^op(2*i, s)), i = 1..nops(s)/2)]
end proc:
`series/aid/isorderof` := proc(t)
  description "series/aid/isorderof(t): true for a call O(e)";
  type(t, function) and op(0, t) = 'O'
end proc:

composeseries := proc(s::series, t::series)
  description "composeseries(s, t): the series s with the series t, which has no constant term, in the place of its variable";
  local a, e, i, low, w, result, x, k;
  if nops(t) > 0 and op(2, t) <= 0 then error "a series without constant term is expected to be put into another, but received %1", t end if;
  x := op(0, t);
  Order := `series/aid/ownterms`(s, t);
  if nops(s) = 0 then return `series/aid/fromterms`(x, []) end if;
  low := op(2, s);
  # Horner's rule over the exponents from the top down; an order term at e is one at e times the least exponent of t.
  result := `series/aid/fromterms`(x, []);
  e := op(nops(s), s);
  for i from nops(s)/2 to 1 by -1 do
    for k from op(2*i, s) to e - 1 do result := `series/aid/argument`(result*t, x) end do;
    e := op(2*i, s);
    a := op(2*i - 1, s);
    if `series/aid/isorder`(a) then result := `series/aid/fromterms`(x, [O(1), 0])
    else result := `series/aid/argument`(result + a, x)
    end if
  end do;
  `series/aid/argument`(result*t^e, x)
end proc:

# The coefficients of the inverse, one after the other from the powers of s (Knuth, vol. 2, 4.7, algorithm L).
reverseseries := proc(s::series)
  description "reverseseries(s): the inverse t of the series s = a*x + ..., for which s(t(x)) = x";
  local x, n, k, p, b, q, i;
  if nops(s) = 0 or op(2, s) <> 1 then error "a series that begins with the first power of its variable is expected, but received %1", s end if;
  x := op(0, s);
  # The coefficient of x^k in the inverse is that of x^(k - 1) in (x/s)^k, over k (Lagrange and Buermann).
  Order := `series/aid/ownterms`(s);
  n := min(`series/aid/terms`(), order(s));
  q := `series/aid/argument`(x/s, x);
  p := `series/aid/fromterms`(x, [1, 0]);
  b := [];
  for k to n - 1 do
    p := `series/aid/argument`(p*q, x);
    b := [op(b), `series/aid/coefficient`(p, k - 1)/k, k]
  end do;
  `series/aid/fromterms`(x, [op(map(op, [seq([b[2*i - 1], b[2*i]], i = 1..nops(b)/2)])), O(1), n])
end proc:
`series/aid/ownterms` := proc()
  description "series/aid/ownterms(s, ...): the highest order of truncated series, Order where none is";
  local n;
  n := remove(type, map(order, [args]), identical(infinity));
  if n = [] then Order else max(0, op(n)) end if
end proc:
`series/aid/coefficient` := proc(s, e::integer)
  description "series/aid/coefficient(s, e): the coefficient of the series s at the exponent e";
  local i;
  for i to nops(s)/2 do if op(2*i, s) = e then return op(2*i - 1, s) end if end do;
  0
end proc:
