# Integers modulo an integer: powers, inverses, roots, orders, logarithms.

powermod := proc(b, e, m)
  description "powermod(b, e, m): b^e modulo m, in 0 .. m - 1; a negative e takes the inverse of b";
  if not type([args], [integer, integer, posint]) then return `kernel/native`("opencall", [integer, integer, posint], args) end if;
  if m = 1 then 0 elif e = 0 then 1
  elif e < 0 then `kernel/native`("powermod", invmod(b, m), -e, m)
  else `kernel/native`("powermod", b, e, m)
  end if
end proc:
`residues/positive` := proc(r, m)
  description "residues/positive(r, m): the residue of r in 0 .. m - 1";
  local s;
  s := irem(r, m);
  `if`(s < 0, s + m, s)
end proc:

# The least s in size is an inverse modulo b/g, which the kernel knows how to take.
gcdex := proc(a, b)
  description "gcdex(a, b): the list [g, s, t] with g = gcd(a, b) = s*a + t*b";
  local g, s;
  if not type([args], [integer, integer]) then return `kernel/native`("opencall", [integer, integer], args) end if;
  if b = 0 then return [abs(a), sign(a), 0] elif a = 0 then return [abs(b), 0, sign(b)] end if;
  g := igcd(a, b);
  s := mods(1/(a/g), abs(b)/g);
  [g, s, (g - s*a)/b]
end proc:
ilcm := proc()
  description "ilcm(a, b, ...): the least common multiple of integers";
  local r, a;
  if not type([args], list(integer)) then return `kernel/native`("opencall", [integer $ nargs], args) end if;
  r := 1;
  for a in [args] do
    if a = 0 then return 0 end if;
    r := abs(r*a)/igcd(r, a)
  end do;
  r
end proc:
invmod := proc(a, m)
  description "invmod(a, m): the inverse of a modulo m";
  if not type([args], [integer, posint]) then return `kernel/native`("opencall", [integer, posint], args) end if;
  if igcd(a, m) <> 1 then error "%1 has no inverse modulo %2", a, m end if;
  `if`(m = 1, 0, modp(1/a, m))
end proc:
chinese := proc(r, m)
  description "chinese([r1, ...], [m1, ...]): the least number >= 0 that is ri modulo each mi";
  local x, n, i, e, d;
  if not type([args], [list(integer), list(posint)]) then return `kernel/native`("opencall", [list(integer), list(posint)], args) end if;
  if nops(r) <> nops(m) then error "as many residues as moduli expected, but received %1 and %2", nops(r), nops(m) end if;
  x := 0; n := 1;
  for i to nops(r) do
    e := gcdex(n, m[i]);
    d := r[i] - x;
    if irem(d, e[1]) <> 0 then error "no number has the residues %1 modulo %2", r, m end if;
    x := x + n*`residues/positive`(e[2]*(d/e[1]), m[i]/e[1]);
    n := n*(m[i]/e[1]);
    x := `residues/positive`(x, n)
  end do;
  x
end proc:

jacobi := proc(a, n)
  description "jacobi(a, n): the symbol of Jacobi, n odd: -1, 0 or 1";
  if not type([args], [integer, posint]) then return `kernel/native`("opencall", [integer, posint], args) end if;
  if irem(n, 2) = 0 then error "odd number expected, but received %1", n end if;
  `kernel/native`("jacobi", `residues/positive`(a, n), n)
end proc:

# A root modulo a prime by Tonelli and Shanks, modulo its powers by Hensel's lemma, all joined.
sqrtmod := proc(a, n)
  description "sqrtmod(a, n): an x in 0 .. n/2 with x^2 = a modulo n; FAIL when there is none";
  local x, r, f, m, q;
  if not type([args], [integer, posint]) then return `kernel/native`("opencall", [integer, posint], args) end if;
  x := 0; m := 1;
  for f in factorint(n) do
    q := f[1]^f[2];
    r := `sqrtmod/primepower`(`residues/positive`(a, q), f[1], f[2]);
    if r = FAIL then return FAIL end if;
    x := chinese([x, r], [m, q]); m := m*q
  end do;
  min(x, n - x)
end proc:
`sqrtmod/primepower` := proc(a, p, e)
  description "sqrtmod/primepower(a, p, e): a root of a modulo p^e; FAIL when there is none";
  local k, b, x, i;
  if a = 0 then return 0 end if;
  k := 0; b := a;
  while irem(b, p) = 0 do b := iquo(b, p); k := k + 1 end do;
  if irem(k, 2) = 1 then return FAIL end if;
  if p = 2 then
    # Of an odd number modulo 2^i: a root modulo 2^(i - 1), or that and 2^(i - 2).
    if irem(b - 1, 2^min(e - k, 3)) <> 0 then return FAIL end if;
    x := 1;
    for i from 4 to e - k do
      if irem(x^2 - b, 2^i) <> 0 then x := x + 2^(i - 2) end if
    end do
  else
    x := `sqrtmod/prime`(irem(b, p), p);
    if x = FAIL then return FAIL end if;
    for i from 2 to e - k do x := `residues/positive`(x - (x^2 - b)*invmod(2*x, p^i), p^i) end do
  end if;
  irem(p^(k/2)*x, p^e)
end proc:
`sqrtmod/prime` := proc(a, p)
  description "sqrtmod/prime(a, p): a root of a modulo an odd prime; FAIL when there is none";
  local q, s, z, c, r, t, i, b, m;
  if a = 0 then return 0 end if;
  if jacobi(a, p) <> 1 then return FAIL end if;
  q := p - 1; s := 0;
  while irem(q, 2) = 0 do q := iquo(q, 2); s := s + 1 end do;
  z := 2;
  while jacobi(z, p) <> -1 do z := z + 1 end do;
  c := powermod(z, q, p); r := powermod(a, (q + 1)/2, p); t := powermod(a, q, p); m := s;
  while t <> 1 do
    b := t;
    for i while b <> 1 do b := irem(b*b, p) end do;
    i := i - 1;
    b := powermod(c, 2^(m - i - 1), p);
    m := i; c := irem(b*b, p); r := irem(r*b, p); t := irem(t*c, p)
  end do;
  r
end proc:

ordermod := proc(a, n)
  description "ordermod(a, n): the least k > 0 with a^k = 1 modulo n, which is coprime to a";
  local k, f, i;
  if not type([args], [integer, posint]) then return `kernel/native`("opencall", [integer, posint], args) end if;
  if igcd(a, n) <> 1 then error "%1 and %2 are not coprime", a, n end if;
  k := carmichael(n);
  for f in factorint(k) do
    for i to f[2] while powermod(a, k/f[1], n) = irem(1, n) do k := k/f[1] end do
  end do;
  k
end proc:
primitiveroot := proc(n)
  description "primitiveroot(n): the least positive number whose powers are all residues coprime to n; FAIL when there is none";
  local phi, primes, g, f, p;
  if not type([args], [posint]) then return `kernel/native`("opencall", [posint], args) end if;
  if n <= 4 then return [0, 1, 2, 3][n] end if;
  f := factorint(n);
  if f[1] = [2, 1] then f := f[2 .. -1] end if;
  if nops(f) > 1 or f[1][1] = 2 then return FAIL end if;
  phi := totient(n);
  primes := map2(op, 1, factorint(phi));
  for g from 2 do
    if igcd(g, n) = 1 and not member(1, [seq(powermod(g, phi/p, n), p = primes)]) then return g end if
  end do
end proc:
# Pohlig and Hellman's reduction to prime orders, there Shanks's baby steps and giant steps.
discretelog := proc(b, a, n)
  description "discretelog(b, a, n): the least k >= 0 with a^k = b modulo n, which is coprime to a; FAIL when there is none";
  local order, rs, ms, f, q, g, h, x, gamma, i, d, inverse;
  if not type([args], [integer, integer, posint]) then return `kernel/native`("opencall", [integer, integer, posint], args) end if;
  order := ordermod(a, n);
  rs := []; ms := [];
  for f in factorint(order) do
    q := f[1]^f[2];
    g := powermod(a, order/q, n); h := powermod(b, order/q, n);
    gamma := powermod(g, q/f[1], n); inverse := invmod(g, n);
    x := 0;
    for i from 0 to f[2] - 1 do
      d := `discretelog/steps`(powermod(irem(powermod(inverse, x, n)*h, n), f[1]^(f[2] - 1 - i), n), gamma, f[1], n);
      if d = FAIL then return FAIL end if;
      x := x + d*f[1]^i
    end do;
    rs := [op(rs), x]; ms := [op(ms), q]
  end do;
  x := chinese(rs, ms);
  `if`(powermod(a, x, n) = `residues/positive`(b, n), x, FAIL)
end proc:
`discretelog/steps` := proc(b, a, order, n)
  description "discretelog/steps(b, a, order, n): k < order with a^k = b modulo n, FAIL when there is none";
  local m, seen, x, j, giant;
  m := isqrt(order) + 1;
  seen := table(); x := irem(1, n);
  for j from 0 to m - 1 do
    if not assigned(seen[x]) then seen[x] := j end if;
    x := irem(x*a, n)
  end do;
  giant := invmod(x, n); x := `residues/positive`(b, n);
  for j from 0 to m do
    if assigned(seen[x]) then return j*m + seen[x] end if;
    x := irem(x*giant, n)
  end do;
  FAIL
end proc:
