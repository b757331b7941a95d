# The primes below 10^6 by the sieve, in a table.
sieve := proc(n) local composite, i, j, count;
  count := 0;
  for i from 2 to n do
    if composite[i] <> 1 then
      count := count + 1;
      for j from i*i by i to n do composite[j] := 1 end do
    end if
  end do;
  count
end proc:
lprint(sieve(10^6));
