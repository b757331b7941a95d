# Well-known sequences of integers, and counts of choices.

binomial := proc(n, k)
  description "binomial(n, k): the coefficient of x^k in (1 + x)^n, for numbers; for anything else the call";
  local m, i, r;
  if nargs <> 2 then error "binomial expects two arguments, but received %1", nargs end if;
  if not type([n, k], list(integer)) then return `binomial/general`(n, k) end if;
  if k < 0 then return `if`(n < 0 and k <= n, (-1)^(n - k)*binomial(-k - 1, n - k), 0) end if;
  if n < 0 then return (-1)^k*binomial(k - n - 1, k) end if;
  if k > n then return 0 end if;
  m := min(k, n - k);
  if n <= 32176 then return factorial(n)/(factorial(m)*factorial(n - m)) end if;
  r := 1;
  for i to m do r := r*(n - m + i)/i end do;
  r
end proc:
`binomial/general` := proc(n, k)
  description "binomial/general(n, k): the binomial coefficient of what isn't two integers";
  local i, r;
  if type(k, integer) and type(n, complex(numeric)) then
    # By its definition, with digits to spare for floats; of many factors from the gamma function.
    if k < 0 then return `if`(hastype([n], float), 0., 0) end if;
    if hastype([n], float) then
      if k > 1000 then
        if type(n, float) and n < 0 then return (-1)^k*`special/float`('binomial', [k - 1 - `special/exact`(n), k]) end if;
        return `special/float`('binomial', [n, k])
      end if;
      Digits := Digits + length(k) + 3
    end if;
    r := 1;
    for i to k do r := r*(n - k + i)/i end do;
    return `binomial/rounded`(r, `if`(hastype([n], float), length(k) + 3, 0))
  end if;
  if type([n, k], list(complex(numeric))) and hastype([n, k], float) then return `special/float`('binomial', [n, k]) end if;
  if k = 0 then 1 elif k = 1 or n - k = 1 then n elif n = k then 1 else 'binomial'(n, k) end if
end proc:
`binomial/rounded` := proc(x, spare)
  description "binomial/rounded(x, spare): a float without the digits to spare that it was computed to";
  if spare = 0 then return x end if;
  Digits := Digits - spare;
  1.0*x
end proc:
multinomial := proc()
  description "multinomial(a, b, ...): (a + b + ...)!/(a! b! ...)";
  local a, r, s;
  r := 1; s := 0;
  for a in [args] do
    if not type(a, nonnegint) then error "integers >= 0 expected, but received %1", a end if;
    s := s + a; r := r*binomial(s, a)
  end do;
  r
end proc:

# The list of the numbers of Fibonacci at n - 1 and n from those at n/2, by their squares; the last step is a product.
fibonacci := proc(n::integer)
  description "fibonacci(n): the n-th number of Fibonacci; fibonacci(1) and fibonacci(2) are 1";
  local p, k;
  if n < 0 then return (-1)^(n + 1)*fibonacci(-n) end if;
  if n < 2 then return n end if;
  k := iquo(n, 2);
  p := `fibonacci/pair`(k);
  `if`(irem(n, 2) = 0, p[2]*(2*p[1] + p[2]), (2*p[2] + p[1])*(2*p[2] - p[1]) + 2*(-1)^k)
end proc:
`fibonacci/pair` := proc(n)
  description "fibonacci/pair(n): the list of the numbers of Fibonacci at n - 1 and n > 0";
  local p, k, low, high;
  if n = 1 then return [0, 1] end if;
  k := iquo(n, 2);
  p := map(x -> x^2, `fibonacci/pair`(k));
  low := p[1] + p[2]; high := 4*p[2] - p[1] + 2*(-1)^k;
  `if`(irem(n, 2) = 0, [low, high - low], [high - low, high])
end proc:
lucas := proc(n::nonnegint)
  description "lucas(n): the n-th number of Lucas; lucas(0) is 2, lucas(1) is 1";
  local p;
  if n = 0 then return 2 end if;
  p := `fibonacci/pair`(n);
  2*p[1] + p[2]
end proc:

# The denominator is that which von Staudt and Clausen tell.
bernoulli := proc(n::nonnegint)
  description "bernoulli(n): the n-th number of Bernoulli; bernoulli(1) is -1/2";
  local d, denominator;
  if n = 0 then return 1 elif n = 1 then return -1/2 elif irem(n, 2) = 1 then return 0 end if;
  denominator := mul(`if`(isprime(d + 1), d + 1, 1), d = divisors(n));
  (-1)^(n/2 - 1)*`kernel/native`("bernoulli/numerator", n, denominator)/denominator
end proc:
eulernumber := proc(n::nonnegint)
  description "eulernumber(n): the n-th number of Euler: 1, 0, -1, 0, 5, 0, -61, ...";
  if irem(n, 2) = 1 then 0 elif n = 0 then 1 else (-1)^(n/2)*`kernel/native`("eulernumber/magnitude", n) end if
end proc:
catalannumber := proc(n::nonnegint)
  description "catalannumber(n): the n-th number of Catalan, binomial(2*n, n)/(n + 1)";
  binomial(2*n, n)/(n + 1)
end proc:
stirling1 := proc(n::nonnegint, k::nonnegint)
  description "stirling1(n, k): the coefficient of x^k in x*(x - 1)*...*(x - n + 1)";
  local row, i, j;
  if k > n then return 0 end if;
  row := table([seq(j = 0, j = 0 .. n)]); row[0] := 1;
  for i to n do
    for j from i by -1 to 1 do row[j] := row[j - 1] - (i - 1)*row[j] end do;
    row[0] := 0
  end do;
  row[k]
end proc:
stirling2 := proc(n::nonnegint, k::nonnegint)
  description "stirling2(n, k): in how many ways n things go into k groups, none of them empty";
  local i;
  if k > n then return 0 end if;
  add((-1)^(k - i)*binomial(k, i)*`if`(i = 0 and n = 0, 1, i^n), i = 0 .. k)/factorial(k)
end proc:
bell := proc(n::nonnegint)
  description "bell(n): in how many ways n things go into groups";
  local row, i, j, below;
  row := [1];
  for i to n do
    below := table(); below[1] := row[-1];
    for j to nops(row) do below[j + 1] := below[j] + row[j] end do;
    row := [seq(below[j], j = 1 .. nops(row) + 1)]
  end do;
  row[1]
end proc:

partitioncount := proc(n::nonnegint)
  description "partitioncount(n): in how many ways n is a sum of positive integers, their order being no matter";
  `kernel/native`("partitioncount", n)
end proc:
partitions := proc(n::nonnegint)
  description "partitions(n): the list of all lists of positive integers with sum n, the members of each falling";
  `partitions/upto`(n, n)
end proc:
`partitions/upto` := proc(n, m)
  description "partitions/upto(n, m): those whose members are at most m";
  local first, rest, all;
  if n = 0 then return [[]] end if;
  all := NULL;
  for first from min(n, m) by -1 to 1 do
    all := all, seq([first, op(rest)], rest = `partitions/upto`(n - first, first))
  end do;
  [all]
end proc:

iroot := proc(n::integer, k::posint)
  description "iroot(n, k): the k-th root of an integer, cut off towards 0";
  local x, y;
  if n < 0 then
    if irem(k, 2) = 0 then error "even root of the negative number %1", n end if;
    return -iroot(-n, k)
  end if;
  if n < 2 or k = 1 then return n end if;
  x := 2^(iquo(ilog2(n), k) + 1);
  do
    y := iquo((k - 1)*x + iquo(n, x^(k - 1)), k);
    if y >= x then return x end if;
    x := y
  end do
end proc:

contfrac := proc(x, n::posint)
  description "contfrac(x), contfrac(x, n): the partial quotients of the continued fraction of x as a list, of n of them at most; of a constant like Pi as many as Digits tell";
  local exact, q, all, limit, low, high, a;
  if not type(x, numeric) and `simpl/signum`(x) = FAIL then error "real number expected, but received %1", x end if;
  limit := `if`(nargs > 1, args[2], infinity);
  all := [];
  if type(x, numeric) then
    q := `evalf/aid/exact`(x);
    while nops(all) < limit do
      a := floor(q); all := [op(all), a];
      if q = a then break end if;
      q := 1/(q - a)
    end do;
    return all
  end if;
  exact := `evalf/aid/exact`(evalf(x));
  a := 10^(ilog10(evalf(x)) + 1 - Digits);
  low := exact - a; high := exact + a;
  # What both ends agree on belongs to x.
  while nops(all) < limit do
    a := floor(low);
    if floor(high) <> a or low = a or high = a then break end if;
    all := [op(all), a];
    low, high := 1/(high - a), 1/(low - a)
  end do;
  all
end proc:
convergents := proc(a::list(integer))
  description "convergents([a0, a1, ...]): the list of the fractions a0, a0 + 1/a1, ... of a continued fraction";
  local p0, p1, q0, q1, all, x;
  p0, p1, q0, q1 := 0, 1, 1, 0; all := NULL;
  for x in a do
    p0, p1 := p1, x*p1 + p0;
    q0, q1 := q1, x*q1 + q0;
    all := all, p1/q1
  end do;
  [all]
end proc:
