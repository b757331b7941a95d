sieve(n) = { my(composite = vector(n), count = 0);
  for(i = 2, n, if(composite[i] != 1, count++; forstep(j = i*i, n, i, composite[j] = 1))); count; }
print(sieve(10^6))
