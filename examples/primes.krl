# Primes three ways: by the sieve of Eratosthenes, by trial division with a growing list, and by the
# little theorem of Fermat made strict (Miller and Rabin). Each checks the others.

# The primes up to n. A table keeps what is crossed out; an absent entry is its own name, never `true`.
sieve := proc(n::posint)
  local crossed, i, j;
  for i from 2 while i^2 <= n do
    if crossed[i] <> true then
      for j from i^2 by i to n do crossed[j] := true end do
    end if
  end do;
  [seq(`if`(crossed[i] = true, NULL, i), i = 2..n)]
end proc:

small := sieve(100);
nops(sieve(10000));                # 1229, as every table of pi(x) has it

# Trial division by the primes found so far; stops at the square root.
primeList := proc(count::posint)
  local found, candidate, p, divisible, k;
  found := table([1 = 2]); k := 1;
  for candidate from 3 by 2 while k < count do
    divisible := false;
    for p to k do
      if found[p]^2 > candidate then break end if;
      if irem(candidate, found[p]) = 0 then divisible := true; break end if
    end do;
    if not divisible then k := k + 1; found[k] := candidate end if
  end do;
  [seq(found[p], p = 1..count)]
end proc:

evalb(primeList(25) = small);
primeList(1000)[-1];               # the thousandth prime is 7919

# b^e mod m by squaring: the exponent is read from its lowest bit.
powmod := proc(b::integer, e::nonnegint, m::posint)
  local result, base, rest;
  result := 1; base := irem(b, m); rest := e;
  while rest > 0 do
    if irem(rest, 2, 'rest') = 1 then result := irem(result*base, m) end if;
    base := irem(base^2, m)
  end do;
  result
end proc:

powmod(2, 100, 101), powmod(3, 10^18, 10^9 + 7);

# Witnesses 2 to 37 decide every n below 3.3*10^24.
millerRabin := proc(n::integer)
  local d, s, x, w, k, composite;
  if n < 2 then return false end if;
  for w in [2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37] do
    if n = w then return true elif irem(n, w) = 0 then return false end if
  end do;
  d := n - 1; s := 0;
  while irem(d, 2) = 0 do d := iquo(d, 2); s := s + 1 end do;
  for w in [2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37] do
    x := powmod(w, d, n);
    composite := evalb(x <> 1 and x <> n - 1);
    for k to s - 1 while composite do
      x := irem(x^2, n);
      if x = n - 1 then composite := false end if
    end do;
    if composite then return false end if
  end do;
  true
end proc:

evalb([seq(`if`(millerRabin(i), i, NULL), i = 1..100)] = small);
millerRabin(2^61 - 1), millerRabin(2^67 - 1);   # Mersenne was wrong about 67
millerRabin(561);                                # the least number that fools Fermat's test

# Goldbach: every even number from 4 to 100 is a sum of two primes. In how many ways?
goldbach := proc(n) add(`if`(member(p, small) and member(n - p, small) and 2*p <= n, 1, 0), p = 2..n)
end proc:
seq(goldbach(2*k), k = 2..20);
