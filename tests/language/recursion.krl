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
# A match that the stack's end has ended is over: what is tested next binds nothing.
deep := proc(n) local a; a := x; to n do a := [a] end do; a end proc: `type/nest` := [nest]:
typematch([1, deep(300000)], [a::integer, b::nest]);
proc(e::(p::integer)) e end proc(3);
# A part that occurs twice in each of its kind is met once: otherwise these would last for ever.
nest := proc(n) local e; e := 1 + x + x^2; to n do e := f(e, e) end do; e end proc:
shared := proc(e) sort(e); has(e, y), type(e, constant), type(e, polynom), hastype(e, string), evalb(numboccur(e, x) = 2^61), nops(map(a -> a, e)), nops(select(has, e, x)), map(a -> evalb(length(a) > 2^60), [e]), nops(subsop([1, 2, 1] = y, e)), evalb(subs(y = x, subs(x = y, e)) = e), op([seq(1, k = 1..60)], e) end proc:
shared(nest(60));
