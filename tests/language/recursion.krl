# Recursion ends in order: the error passes every trap, and the next statement runs.
r := proc(n) r(n + 1) end proc: r(1); 1;
try r(1) catch: "never" finally "never" end try; traperror(r(1)); 2;
d := proc(n) if n = 0 then 0 else 1 + d(n - 1) fi end proc: d(300);
d := proc(n) option remember; if n = 0 then 0 else 1 + d(n - 1) fi end proc: d(300);
# Deep structures: built, collected, compared, taken apart, given to others; never the end of the program.
deep := proc(n) local l, i; l := [x]; for i to n do l := [l] od; l end proc:
same := proc(n) local a, b, i; a := [x]; b := [x]; for i to n do a := [a] od; gc();
  for i to n do b := [b] od; gc(); evalb(a = b), evalb(a = [b]), nops(a), type(a, list) end proc: same(100000);
open := proc(n) local l, i; l := [x]; for i to n do l := [l] od; for i to n do l := op(1, l) od; l end proc: open(100000);
sums := proc(n) local s, i; s := x; for i to n do s := f(s) + i od; gc(); gc(); type(s, `+`), nops(s) end proc: sums(100000);
powers := proc(n) local s, i; s := x; for i to n do s := (s + 1)^2 od; gc(); gc(); nops(s) end proc: powers(100000);
tables := proc(n) local t, s, i; t := 0; for i to n do s := table([t]); t := s od; gc(); type(t, table) end proc: tables(1000);
shown := proc(n) local l, i; l := [x]; for i to n do l := [l] od; print(l) end proc: shown(100000); 4;
told := proc(n) local l, i; l := [x]; for i to n do l := [l] od; error "too deep", l end proc: [traperror(told(100000))][1]; 5;
deep(100000): 6;
# What a substitution and a search remember is given back when the stack ends them.
deep := proc(n) local a; a := x; to n do a := [a] end do; subs(x = y, a) end proc:
deep(300000):
deep := proc(n) local a; a := x; to n do a := [a] end do; hastype(a, identical(y)) end proc:
deep(300000):
subs(x = y, [x]), hastype([x], identical(x));
