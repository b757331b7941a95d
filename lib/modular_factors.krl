# Factors of polynomials modulo a prime as expressions, over the prime field or the one that a RootOf makes of it; and
# determinants.

# f(a) with the RootOf that is named, if it isn't in the polynomial itself.
`mod/aid/factored` := proc(f, a, more::list, p)
  local s, x, given;
  given := select(type, more, name);
  s := `mod/aid/setting`([a, op(remove(type, more, name))], given);
  if s = NULL then return `mod/aid/parts`(f, a, more, p) end if;
  `mod/aid/run`(f, [a], op(1, [op(s[1]), x]), s[2], p)
end proc:

`mod/Sqrfree` := proc(a)
  description "Sqrfree(a) mod p: [leading coefficient, [[square-free factor, multiplicity], ...]]";
  local r;
  r := `mod/aid/factored`('Sqrfree', a, [args[2 .. nargs - 1]], args[nargs]);
  if r = NULL then NULL else `mod/aid/numbered`(r, args[nargs]) end if
end proc:

`mod/DistDeg` := proc(a)
  description "DistDeg(a, x) mod p: [[product of the factors of degree d, d], ...] of a square-free polynomial";
  local r, t;
  r := `mod/aid/factored`('DistDeg', a, [args[2 .. nargs - 1]], args[nargs]);
  if r = NULL then NULL else [seq([t[1] mod args[nargs], t[2]], t = r)] end if
end proc:

`mod/Factors` := proc(a)
  description "Factors(a) mod p, Factors(a, alpha) mod p: [leading coefficient, [[irreducible factor, multiplicity], ...]], over the field of the RootOf alpha";
  local r;
  r := `mod/aid/factored`('Factors', a, [args[2 .. nargs - 1]], args[nargs]);
  if r = NULL then NULL else `mod/aid/numbered`(r, args[nargs]) end if
end proc:

`mod/aid/numbered` := proc(r, p)
  local t;
  [r[1] mod p, [seq([t[1] mod p, t[2]], t = r[2])]]
end proc:

`mod/Factor` := proc(a)
  description "Factor(a) mod p, Factor(a, alpha) mod p: the polynomial as a product of irreducible factors";
  local r, t;
  r := `mod/Factors`(args);
  if r = NULL then NULL else r[1]*convert([seq(t[1]^t[2], t = r[2])], `*`) end if
end proc:

`mod/Irreduc` := proc(a)
  description "Irreduc(a) mod p, Irreduc(a, alpha) mod p: whether the polynomial is irreducible";
  `mod/aid/factored`('Irreduc', a, [args[2 .. nargs - 1]], args[nargs])
end proc:

`mod/Roots` := proc(a)
  description "Roots(a) mod p, Roots(a, alpha) mod p: [[root, multiplicity], ...]";
  local r, t;
  r := `mod/aid/factored`('Roots', a, [args[2 .. nargs - 1]], args[nargs]);
  if r = NULL then NULL else [seq([t[1] mod args[nargs], t[2]], t = r)] end if
end proc:

`mod/Primitive` := proc(a, p)
  description "Primitive(a) mod p: whether the powers of a root of the irreducible polynomial make all elements but 0";
  local s, x, d, n, order, q;
  s := `mod/aid/setting`([a], []);
  if s = NULL or s[1] = [] then return NULL end if;
  x := op(s[1]);
  d := `mod/aid/run`('Add', [a, 0], x, s[2], p);
  if not `mod/aid/run`('Irreduc', [d], x, s[2], p) or coeff(d, x, 0) = 0 then return false end if;
  n := degree(d, x);
  if s[2] <> [] then n := n*modp1(Degree(`mod/aid/minimal`(op(s[2]), x, p)), p) end if;
  order := p^n - 1;
  for q in `mod/aid/primes`(order) do
    if `mod/aid/run`('Powmod', [x, [iquo(order, q)], d], x, s[2], p) = 1 then return false end if
  end do;
  true
end proc:

# The set of the primes that divide n > 0: trial division, then Pollard's method of random walks.
`mod/aid/primes` := proc(n)
  local m, d, found, y, z, g, c, k;
  m := n; found := {};
  for d in [2, 3, 5, seq(6*k + 1, k = 1 .. 1700), seq(6*k + 5, k = 0 .. 1700)] while m > 1 do
    if irem(m, d) = 0 then
      if d = 2 or `mod/aid/isprime`(d) then found := found union {d} end if;
      while irem(m, d) = 0 do m := iquo(m, d) end do
    end if
  end do;
  if m = 1 then return found end if;
  if `mod/aid/isprime`(m) then return found union {m} end if;
  for c do
    y := 2; z := 2; g := 1;
    while g = 1 do
      y := modp(y^2 + c, m); z := modp(modp(z^2 + c, m)^2 + c, m);
      g := igcd(y - z, m)
    end do;
    if g <> m then return found union `mod/aid/primes`(g) union `mod/aid/primes`(iquo(m, g)) end if
  end do
end proc:

# The walk of primes down from n + 2 begins at an odd n.
`mod/aid/isprime` := proc(n)
  local d;
  if n < 1010 then
    for d from 2 while d^2 <= n do if irem(n, d) = 0 then return false end if end do;
    return evalb(n > 1)
  end if;
  evalb(irem(n, 2) = 1 and modp1(Prime(n + 2), 2) = n)
end proc:

`mod/Det` := proc(a, p)
  description "Det(a) mod p: the determinant of a square matrix of polynomials, a list of rows or an array";
  local m, n, i, j, k, d, f, row;
  m := modp(`if`(type(a, list), a, convert(a, `list(list)`)), p);
  n := nops(m);
  if select(proc(r, n) evalb(nops(r) <> n) end, m, n) <> [] then error "square matrix expected, but received %1", a end if;
  if hastype(m, name) then
    d := `mod/aid/several`('Det', [seq(op(row), row = m)], [], p);
    if d = NULL then return NULL else return d mod p end if
  end if;
  d := 1;
  for k to n do
    for i from k to n while m[i][k] = 0 do end do;
    if i > n then return 0 end if;
    if i > k then m := subsop(k = m[i], i = m[k], m); d := -d end if;
    d := modp(d*m[k][k], p);
    f := modp(1/m[k][k], p);
    row := map(proc(c, f, p) modp(c*f, p) end, m[k], f, p);
    m := subsop(seq(i = [seq(modp(m[i][j] - m[i][k]*row[j], p), j = 1 .. n)], i = k + 1 .. n), m)
  end do;
  d mod p
end proc:
