# Two counted loops, one in the other, 10^6 rounds of a sum in all; eight times.
work := proc(n) local i, j, s;
  s := 0;
  for i to n do for j to n do s := s + i*j end do end do;
  s
end proc:
to 7 do work(1000) end do:
lprint(work(1000));
