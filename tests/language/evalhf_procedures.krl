# A call has its own arguments, locals and dittos.
f := proc(x, y) local a, b; a := x + y; b := a*x; b - a end: evalhf(f(2, 3));
f := proc(x) x := x + 1; nargs*x end: evalhf(f(3)), evalhf(f(3, 9, 9));
f := proc() 3; 4; 5; 100*% + 10*%% + %%% end: evalhf(f());
f := proc() if 1 < 2 then 5; 6 end if; 100*% + 10*%% + %%% end: evalhf(f());
f := proc() local i; for i to 3 do 10*i end do; 100*% + 10*%% + %%% end: evalhf(f());
f := proc() local a; a end: evalhf(f());
f := proc() end: evalhf(f());
f := proc() 1; end: g := proc(h, x) h(x) end: k := x -> x^2: evalhf(g(k, 3)); evalhf(g(5, 3));
evalhf((x -> x + 1)(2)); evalhf(f); evalhf(k + 1);
# Names inside are those outside.
c := 2.5: f := proc(x) c*x end: evalhf(f(2)); c := 'c': evalhf(f(2));
outer := proc(n) local m, s; m := n + 1; s := x -> x*2; evalhf(m*n + k(n)) end: outer(3);
outer := proc(n) local A, i; A := array(1 .. 2, [n, 4]); evalhf(A[1]/A[2]) end: outer(3);
outer := proc(n) evalhf(nargs + n) end: outer(3, 4); outer := proc(n) local m; evalhf(m) end: outer(1);
# Returns, from any depth and also as a call.
f := proc(x) local i; for i do if i*i > x then return i end if end do end: evalhf(f(50));
f := proc(x) RETURN(x + 1); 5 end: evalhf(f(1)); f := proc(x) 1 + RETURN(x) end: evalhf(f(8));
f := proc() return end: evalhf(f()); f := proc() return 1, 2 end: evalhf(f());
# Loops: the variable, the bound, the step, `while`, and what is left when they end.
f := proc(n) local i, s; s := 0; for i from n by -2 to 1 do s := 10*s + i end do; 10000*i + s end: evalhf(f(5)), evalhf(f(0));
f := proc(n) local i; for i from 1 to n do i := i + 1 end do; i end: evalhf(f(6));
f := proc(n) local i; for i while i^2 < n do end do; i end: evalhf(f(50));
f := proc(n) local s; s := 0; to n do s := s + 2 end do; s end: evalhf(f(4));
f := proc(n) local i; for i from n by -1 do if i < -3 then break end if end do; i end: evalhf(f(2));
f := proc() local i; for i from 0 by 0.25 to 1 do end do; i end: evalhf(f());
f := proc() local i; for i from 1 by 0 while i < 10 do i := i*2 end do; i end: evalhf(f());
f := proc(n) local i; for i to n do i^2 end do end: evalhf(f(4)), evalhf(f(0));
f := proc(n) local i, s; s := 0; for i to n do if i = 3 then next end if; if i = 6 then break end if; s := s + i end do; 100*i + s end:
evalhf(f(9));
f := proc(n) local i, j, s; s := 0;
  for i to n do for j to n do if j > i then break end if; if j = 2 then next end if; s := s + 10*i + j end do end do; s end: evalhf(f(3));
f := proc(n) local n2; n2 := n; while n2 <> 1 do if n2::even then n2 := n2/2 else n2 := 3*n2 + 1 end if; %%; end do; n2 end: evalhf(f(27));
f := proc() for k to 3 do 1 end do end: evalhf(f());
f := proc() global k9; print("before"); for k9 to 3 do print("body") end do end: evalhf(f());
f := proc(x) for x to 3 do end do end: evalhf(f(1));
f := proc() local k; for k in [1, 2] do k end do end: evalhf(f());
f := proc() break end: evalhf(f()); f := proc() next end: evalhf(f()); f := proc(x) if x > 1 then break end if; 2 end: evalhf(f(1)); evalhf(f(2));
# Assignments that have no place.
f := proc() global gg; gg := 3 end: evalhf(f()); f := proc() Digits := 3 end: evalhf(f()); f := proc() global Pi; Pi := 3 end: evalhf(f());
f := proc() local a, b; a, b := 1, 2; a end: evalhf(f()); f := proc() local a; a[1] := 3 end: evalhf(f());
# Output, errors and time.
f := proc(x) print("x is", x, 2*x); lprint(x^2); x end: evalhf(f(1.5));
f := proc(x) error "bad value %1 of %2", x, nargs end: evalhf(f(1/4)); lasterror;
f := proc(x) ERROR("told", x) end: evalhf(f(2)); try evalhf(f(3)) catch "told": print(caught, lasterror) end try;
f := proc(x) error end: evalhf(f(2));
f := proc(x) userinfo(2, tested, "shown", x^2); x end: evalhf(f(3)); infolevel[tested] := 3: evalhf(f(3));
f := proc() time() >= 0 end: evalhf(f());
# What a procedure may not be.
f := proc(x) option remember; x end: evalhf(f(2)); evalhf(evalf(2)); evalhf(table());
f := proc(n) local g; g := x -> x + n; g(1) end: evalhf(f(2));
make := proc(n) x -> x + n end: f := make(3): f(4); evalhf(f(4));
f := proc() procname end: evalhf(f()); f := proc() args end: evalhf(f(1)); f := proc() args[1] end: evalhf(f(1));
f := proc(x, y) if nargs > 1 then y else x end if end: evalhf(f(1)), evalhf(f(1, 2)); evalhf(f());
# Limits: arguments, locals, depth.
f := proc(a) nargs end: evalhf(f(1, 2, 3, 4, 5, 6, 7, 8, 9, 10)); evalhf(f(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
locals := n -> parse(cat("proc() local ", seq(cat("a", i, ","), i = 1 .. n - 1), "a", n, "; a", n, " := 7; a", n, " end")):
f := locals(50): evalhf(f()); f := locals(51): evalhf(f());
f := proc(n) if n = 0 then 0 else 1 + f(n - 1) end if end: evalhf(f(2000)); deep := proc(n) deep(n + 1) end: evalhf(deep(1));
fib := proc(n) if n < 2 then n else fib(n - 1) + fib(n - 2) end if end: evalhf(fib(18));
even := proc(n) if n = 0 then 1 else odd2(n - 1) end if end: odd2 := proc(n) if n = 0 then 0 else even(n - 1) end if end:
evalhf(even(100)), evalhf(even(101));
# Evaluation within evaluation: a printing procedure of the user's runs one of its own.
`print/shown` := proc(x) evalhf(fib(10)); [x, %] end: f := proc(x) local i; for i to 2 do print(i) end do; x*2 end: evalhf(f(21));
timelimit(0.05, evalhf((proc() do end do end)()));
# A body may be a number; a remember table is refused by that name, whatever the body.
evalhf(proc() 3 end()), evalhf(proc() -0.5 end() + 1); g := proc() option remember; 3 end: evalhf(g());
