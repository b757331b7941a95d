# The logistic map, 2*10^7 steps.
logistic := proc(r, n) local x, i; x := 0.5; for i to n do x := r*x*(1 - x) end do; x end:
evalhf(logistic(3.9, 2*10^7));
