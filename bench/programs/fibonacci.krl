# Naive recursive Fibonacci of 24, forty times: what a procedure call costs.
fib := proc(n) if n < 2 then n else fib(n - 1) + fib(n - 2) end if end proc:
to 39 do fib(24) end do:
lprint(fib(24));
