# 10^6 sines.
sines := proc(n) local i, s; s := 0; for i to n do s := s + sin(i) end do; s end:
evalhf(sines(10^6));
