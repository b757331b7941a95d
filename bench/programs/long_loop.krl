# A counted loop of 10^7 rounds with one sum in each.
work := proc(n) local i, s; s := 0; for i to n do s := s + 1 end do; s end proc:
lprint(work(10^7));
