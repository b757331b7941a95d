# 10^6 calls of a small procedure.
f := (x, y) -> x/2 + y: calls := proc(n) local i, s; s := 0; for i to n do s := f(s, i) end do; s end:
evalhf(calls(10^6));
