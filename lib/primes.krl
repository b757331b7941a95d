# Primes, factors, and what they tell of an integer.

isprime := proc(n)
  description "isprime(n): whether the integer is a prime; proven below 2^64, beyond by strong tests that no composite is known to pass";
  `kernel/native`("isprime", args)
end proc:
nextprime := proc(n)
  description "nextprime(n): the least prime above n";
  `kernel/native`("nextprime", args)
end proc:
prevprime := proc(n)
  description "prevprime(n): the greatest prime below n";
  `kernel/native`("prevprime", args)
end proc:
ithprime := proc(n)
  description "ithprime(n): the n-th prime; ithprime(1) is 2";
  `kernel/native`("ithprime", args)
end proc:
primecount := proc(n)
  description "primecount(n): how many primes are at most n";
  `kernel/native`("primecount", args)
end proc:

factorint := proc(n)
  description "factorint(n): the prime factors of an integer as a list of lists [prime, exponent]; [-1, 1] comes first for n < 0";
  `kernel/native`("factorint", args)
end proc:

divisors := proc(n)
  description "divisors(n): the sorted list of the positive divisors of an integer that isn't 0";
  local all, f, k, d;
  if not type([args], [integer]) then return `kernel/native`("opencall", [integer], args) end if;
  all := [1];
  for f in factorint(abs(n)) do all := [seq(seq(d*f[1]^k, d = all), k = 0 .. f[2])] end do;
  sort(all)
end proc:
divisorsum := proc(n, k)
  description "divisorsum(n), divisorsum(n, k): the sum of the k-th powers of the divisors of n, k = 1 unless told; k = 0 counts them";
  local power, f;
  if not type([args], {[posint], [posint, nonnegint]}) then return `kernel/native`("opencall", [posint, nonnegint], args) end if;
  power := `if`(nargs = 1, 1, args[2]);
  mul(`if`(power = 0, f[2] + 1, (f[1]^(power*(f[2] + 1)) - 1)/(f[1]^power - 1)), f = factorint(n))
end proc:
totient := proc(n)
  description "totient(n): how many of 1, ..., n are coprime to n (Euler's phi)";
  local f;
  if not type([args], [posint]) then return `kernel/native`("opencall", [posint], args) end if;
  mul((f[1] - 1)*f[1]^(f[2] - 1), f = factorint(n))
end proc:
carmichael := proc(n)
  description "carmichael(n): the least k > 0 with a^k = 1 modulo n for every a coprime to n";
  local f;
  if not type([args], [posint]) then return `kernel/native`("opencall", [posint], args) end if;
  ilcm(seq(`if`(f[1] = 2 and f[2] > 2, 2^(f[2] - 2), (f[1] - 1)*f[1]^(f[2] - 1)), f = factorint(n)))
end proc:
moebius := proc(n)
  description "moebius(n): 0 when a square above 1 divides n, else 1 or -1 as the count of its primes is even or odd";
  local factors, f;
  if not type([args], [posint]) then return `kernel/native`("opencall", [posint], args) end if;
  factors := factorint(n);
  if factors = [] then 1 elif max(seq(f[2], f = factors)) > 1 then 0 else (-1)^nops(factors) end if
end proc:
squarefree := proc(n)
  description "squarefree(n): whether no square above 1 divides n";
  if not type([args], [integer]) then return `kernel/native`("opencall", [integer], args) end if;
  n <> 0 and moebius(abs(n)) <> 0
end proc:
omega := proc(n)
  description "omega(n): how many primes divide n, each counted once";
  if not type([args], [posint]) then return `kernel/native`("opencall", [posint], args) end if;
  nops(factorint(n))
end proc:
bigomega := proc(n)
  description "bigomega(n): how many primes divide n, each as often as it does";
  local f;
  if not type([args], [posint]) then return `kernel/native`("opencall", [posint], args) end if;
  add(f[2], f = factorint(n))
end proc:
