# Polynomials modulo a prime in several indeterminates, over the prime field or the one that a RootOf makes of it.

# The native operation f on polynomials; the indeterminates of `first` are its main ones. NULL to what is none.
`mod/aid/several` := proc(f, a::list, first::list, p)
  local s, field, names, y, r;
  s := `mod/aid/field`(a, first);
  if s = NULL then return NULL end if;
  names := remove(type, first, specfunc(anything, RootOf));
  r := sort([op(s[1] minus {op(names)})]);
  names := [op(names), seq(r[-k], k = 1 .. nops(r))];
  field := s[2];
  if field <> [] then field := [op(field), `mod/aid/minimal`(op(field), y, p)] end if;
  r := `kernel/native`("mod/aid/several", convert(f, string), map(expand, modp(a, p)), names, field, p);
  if r <> FAIL then r end if
end proc:

# [quotient, remainder] in x. A leading coefficient with other indeterminates makes coefficients that are fractions,
# unless it divides all the way: powers of it are collected in m, as a pseudo-division does.
`mod/aid/longdivision` := proc(a, b, x, p)
  local divisor, lead, q, r, m, n, t, shown;
  divisor := `mod/Expand`(b, p);
  r := `mod/Expand`(a, p);
  if divisor = 0 then error "division by zero" end if;
  if `mod/aid/several`('Multiply', [r, divisor], [x], p) = NULL then return NULL end if;
  n := degree(divisor, x); lead := coeff(divisor, x, n);
  q := 0; m := 1;
  while r <> 0 and degree(r, x) >= n do
    t := `mod/aid/several`('Divide', [coeff(r, x, degree(r, x)), lead], [], p);
    if t = [] then
      t := [coeff(r, x, degree(r, x))];
      q, r, m := op(map(`mod/Expand`, [lead*q, lead*r, lead*m], p))
    end if;
    t := t[1]*x^(degree(r, x) - n);
    q := q + t; r := `mod/Expand`(r - t*divisor, p)
  end do;
  if m = 1 then return [q, r] end if;
  shown := proc(f, m, x, p)
    local i;
    add(`mod/Normal`(coeff(f, x, i)/m, p)*x^i, i = 0 .. max(degree(f, x), 0))
  end;
  map(shown, [expand(q), r], m, x, p)
end proc:

# a^n modulo b, polynomials in x; NULL when x isn't told.
`mod/aid/longpower` := proc(a, n, b, x)
  local p, result, square, k;
  if nargs < 5 then return NULL end if;
  p := args[nargs];
  square := `mod/aid/longdivision`(a, b, x, p);
  if square = NULL then return NULL end if;
  square := square[2]; k := n;
  if k = 0 and square = 0 then error "0^0 generated" end if;
  result := 1;
  while k > 0 do
    if irem(k, 2) = 1 then result := `mod/aid/longdivision`(result*square, b, x, p)[2] end if;
    k := iquo(k, 2);
    if k > 0 then square := `mod/aid/longdivision`(square^2, b, x, p)[2] end if
  end do;
  result mod p
end proc:

# What Sqrfree, Factors and Irreduc tell of a polynomial; `more` may hold the RootOf that makes the field.
`mod/aid/parts` := proc(f, a, more::list, p)
  local r;
  if member(f, {'DistDeg', 'Roots'}) then return NULL end if;
  r := `mod/aid/several`(`if`(f = 'Irreduc', 'Factors', f), [a], select(type, more, specfunc(anything, RootOf)), p);
  if r = NULL or f <> 'Irreduc' then r else evalb(nops(r[2]) = 1 and r[2][1][2] = 1) end if
end proc:

`mod/Content` := proc(a, x::name, c)
  description "Content(a, x) mod p, Content(a, x, 'c') mod p: the monic greatest common divisor of the coefficients of a polynomial in x; the primitive part is assigned";
  local p, d, g, i;
  p := args[nargs];
  d := `mod/Expand`(a, p);
  if d = NULL then return NULL end if;
  if d = 0 then
    if nargs = 4 then c := 0 end if;
    return 0
  end if;
  if not type(degree(d, x), integer) then return NULL end if;
  g := 0;
  for i from ldegree(d, x) to degree(d, x) while g <> 1 do
    g := `mod/Gcd`(g, coeff(d, x, i), p);
    if g = NULL then return NULL end if
  end do;
  if nargs = 4 then c := `mod/aid/divided`(d, g, p)[1] mod p end if;
  g mod p
end proc:

`mod/Primpart` := proc(a, x::name, c)
  description "Primpart(a, x) mod p, Primpart(a, x, 'c') mod p: a polynomial in x divided by its content, which is assigned";
  local p, d, g;
  p := args[nargs];
  g := `mod/Content`(a, x, 'd', p);
  if g = NULL then return NULL end if;
  if nargs = 4 then c := g end if;
  d
end proc:
