# 10^5 stores into a table under spread keys, and as many lookups; eight times.
work := proc(n) local t, i, s;
  t := table();
  for i to n do t[17*i] := i end do;
  s := 0;
  for i to n do s := s + t[17*i] end do;
  s
end proc:
to 7 do work(10^5) end do:
lprint(work(10^5));
