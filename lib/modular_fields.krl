# Dense polynomials over a field of p^k elements, in x and y modulo an irreducible polynomial e in y:
# evalgf1(Gcd(a, b, e), p). Elements of the field are dense polynomials in y, or integers. And sums and products of
# dense polynomials in two indeterminates: modp2(Multiply(a, b), m).

`evalgf1/Add` := proc(a::zppoly, b::zppoly, e::zppoly, p::integer)
  description "evalgf1(Add(a, b, e), p): the sum of polynomials over the field";
  `kernel/native`("evalgf1/aid/run", "Add", args)
end proc:

`evalgf1/Subtract` := proc(a::zppoly, b::zppoly, e::zppoly, p::integer)
  description "evalgf1(Subtract(a, b, e), p): the difference of polynomials over the field";
  `kernel/native`("evalgf1/aid/run", "Subtract", args)
end proc:

`evalgf1/Multiply` := proc(a::zppoly, b::zppoly, e::zppoly, p::integer)
  description "evalgf1(Multiply(a, b, e), p): the product of polynomials over the field";
  `kernel/native`("evalgf1/aid/run", "Multiply", args)
end proc:

`evalgf1/Quo` := proc(a::zppoly, b::zppoly, e::zppoly, r)
  description "evalgf1(Quo(a, b, e), p), evalgf1(Quo(a, b, e, 'r'), p): the quotient; the remainder is assigned";
  local q;
  q := `kernel/native`("evalgf1/aid/run", "Divide", a, b, e, args[nargs]);
  if nargs = 5 then r := q[2] end if;
  q[1]
end proc:

`evalgf1/Rem` := proc(a::zppoly, b::zppoly, e::zppoly, q)
  description "evalgf1(Rem(a, b, e), p), evalgf1(Rem(a, b, e, 'q'), p): the remainder; the quotient is assigned";
  local r;
  r := `kernel/native`("evalgf1/aid/run", "Divide", a, b, e, args[nargs]);
  if nargs = 5 then q := r[1] end if;
  r[2]
end proc:

`evalgf1/Gcd` := proc(a::zppoly, b::zppoly, e::zppoly, p::integer)
  description "evalgf1(Gcd(a, b, e), p): the monic greatest common divisor over the field";
  `kernel/native`("evalgf1/aid/run", "Gcd", args)
end proc:

`evalgf1/Gcdex` := proc(a::zppoly, b::zppoly, e::zppoly, s, t)
  description "evalgf1(Gcdex(a, b, e, 's', 't'), p): the monic greatest common divisor g; s*a + t*b = g";
  local g;
  g := `kernel/native`("evalgf1/aid/run", "Gcdex", a, b, e, args[nargs]);
  if nargs > 4 then s := g[2] end if;
  if nargs > 5 then t := g[3] end if;
  g[1]
end proc:

`evalgf1/Powmod` := proc(a::zppoly, n::nonnegint, b::zppoly, e::zppoly, p::integer)
  description "evalgf1(Powmod(a, n, b, e), p): a^n modulo b over the field";
  `kernel/native`("evalgf1/aid/run", "Powmod", args)
end proc:

`evalgf1/Resultant` := proc(a::zppoly, b::zppoly, e::zppoly, p::integer)
  description "evalgf1(Resultant(a, b, e), p): the resultant, an element of the field";
  `kernel/native`("evalgf1/aid/run", "Resultant", args)
end proc:

`evalgf1/Eval` := proc(a::zppoly, c, e::zppoly, p::integer)
  description "evalgf1(Eval(a, c, e), p): the value at an element c of the field";
  `kernel/native`("evalgf1/aid/run", "Eval", args)
end proc:

`evalgf1/Factors` := proc(a::zppoly, e::zppoly, p::integer)
  description "evalgf1(Factors(a, e), p): [leading coefficient, [[irreducible factor, multiplicity], ...]] over the field";
  `kernel/native`("evalgf1/aid/run", "Factors", args)
end proc:

`evalgf1/Sqrfree` := proc(a::zppoly, e::zppoly, p::integer)
  description "evalgf1(Sqrfree(a, e), p): [leading coefficient, [[square-free factor, multiplicity], ...]]";
  `kernel/native`("evalgf1/aid/run", "Sqrfree", args)
end proc:

`evalgf1/DistDeg` := proc(a::zppoly, e::zppoly, p::integer)
  description "evalgf1(DistDeg(a, e), p): [[product of the factors of degree d, d], ...] of a square-free polynomial";
  `kernel/native`("evalgf1/aid/run", "DistDeg", args)
end proc:

`evalgf1/Irreduc` := proc(a::zppoly, e::zppoly, p::integer)
  description "evalgf1(Irreduc(a, e), p): whether the polynomial is irreducible over the field";
  `kernel/native`("evalgf1/aid/run", "Irreduc", args)
end proc:

`evalgf1/Roots` := proc(a::zppoly, e::zppoly, p::integer)
  description "evalgf1(Roots(a, e), p): [[root, multiplicity], ...] in the field";
  `kernel/native`("evalgf1/aid/run", "Roots", args)
end proc:

`modp2/Add` := proc()
  description "modp2(Add(a, b, ...), m): the sum of polynomials";
  local m;
  m := args[nargs];
  modp2(Zip(proc() modp1(Add(args), m) end, args[1 .. nargs - 1]), m)
end proc:

`modp2/Subtract` := proc(a::zppoly, b)
  description "modp2(Subtract(a), m), modp2(Subtract(a, b), m): the negative; the difference";
  local m;
  m := args[nargs];
  modp2(Zip(proc() modp1(Subtract(args), m) end, args[1 .. nargs - 1]), m)
end proc:

`modp2/Multiply` := proc(a::zppoly, b::zppoly, m::integer)
  description "modp2(Multiply(a, b), m): the product of polynomials";
  local r, i, c;
  r := modp2(Shift(a, -nops(a)), m);
  for i to nops(b) do
    c := b[i];
    r := `modp2/Add`(r, modp2(Shift(Zip(proc(u) modp1(Multiply(u, c), m) end, a), i - 1), m), m)
  end do;
  r
end proc:

`modp1/ChremPoly` := proc(a::list, moduli::list, m)
  description "modp1(ChremPoly([a1, ...], [m1, ...]), m): the dense polynomial modulo m1*m2*... that is a1 modulo m1, and so on";
  local x, n, k, i, product;
  if nops(a) <> nops(moduli) then error "list of moduli and residues must be the same length" end if;
  if a = [] then error "list that is not empty expected" end if;
  if not type(a, list(modp1)) then error "list of dense polynomials expected, but received %1", a end if;
  x := modp1(Indeterminate(a[1]), moduli[1]);
  n := max(seq(nops(k), k = a));
  product := convert(moduli, `*`);
  modp1(ConvertIn([seq(modp1(Chrem([seq(modp1(Coeff(a[k], i), moduli[k]), k = 1 .. nops(a))], moduli), m), i = 0 .. n - 1)], x), product)
end proc:
