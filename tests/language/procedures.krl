# Parameters: what arrives, what is missing, what is refused.
f := proc(x, y) nargs, [args], procname end proc:
f();
f(1, NULL, 2, 3);
f(a, (b, c));
g := proc(x::integer, y) x + y end proc:
g(2);
g("two", 1);
g[t](2, q);
h := proc(x::integer) nargs; x end proc:
h();
k := proc(x) if nargs = 0 then "none" else x end if end proc:
k(), k(5);
byname := proc(x::evaln) x := 7 end proc:
v := 3: byname(v): v;
byname(1 + 2);
byname(w[2]); w[2];
quoted := proc(x::uneval) [x] end proc:
quoted(1 + v);
holds := proc(x::evaln(integer)) 'x' = eval(x, 1) end proc:
v := 3: holds(v);
v := "text": holds(v);
p := proc(x) x := 1 end proc: p(2);
p(zz): zz;
nosuch := proc(n) args[n] end proc:
nosuch(2, b), nosuch(1);
# Ends of a procedure.
r := proc(n) if n = 0 then return elif n = 1 then return 1 elif n = 2 then return 1, 2 end if; "end" end proc:
[r(0)], [r(1)], [r(2)], [r(3)];
RETURN(3);
b := proc() break end proc: b();
next;
# goto runs on from the label; a label inside a loop or a missing one can't be reached.
gt := proc(n) local s; s := 0; if n > 0 then goto(there) end if; s := 1; there; s := s + 10 end proc:
gt(0), gt(1);
gm := proc() goto(nowhere) end proc: gm();
# Declarations.
proc(x) local x; x end proc;
proc(x) global x; x end proc;
proc(x, x) x end proc;
proc() local y, y; y end proc;
proc() local y; global y; y end proc;
proc() global y, y; y end proc;
proc(Digits) 1 end proc;
proc() local Order; 1 end proc;
proc(nargs) 1 end proc;
proc() local args; 1 end proc;
proc() global procname; 1 end proc;
proc(x + 1) 1 end proc;
# Implicit locals, with and without a name for the message.
proc() u1 := 1 end proc;
i1 := proc() for j1 to 2 do k1 := j1 end do end proc:
i2 := proc() (m1, n1) := 1, 2; t1[3] := 4; m1 + n1 + t1[3] end proc:
i2();
m1, n1, t1[3];
# Closures: each call captures its own frame, through every level.
counter := proc() local n; n := 0; proc() n := n + 1 end proc end proc:
c1 := counter(): c2 := counter():
c1(), c1(), c2(), c1();
adder := a -> b -> c -> a + b + c:
adder(1)(10)(100);
deep := proc(x) local l; l := 2*x; proc() proc() [x, l, procname] end proc end proc end proc:
deep(4)()();
share := proc() local n, up, get; n := 5; up := proc() n := n + 1 end proc; get := () -> n; up(); get() end proc:
share();
# A local that outlives its frame is none of the global names.
esc := proc() local x; x end proc:
e1 := esc(): e1, evalb(e1 = x), evalb(e1 = esc());
# Operators and their reductions.
x -> x;
x -> 3;
x -> sin(x);
(x, y) -> f(y, x);
(x, y) -> F2(x, y);
() -> f1(), x -> t1[1](x), x -> g1(2)(x), x -> (proc(y) y + 1 end proc)(x);
# No constant function: typed parameters, heads that hold parameters or captured names, other arguments.
(x::integer) -> sin(x), x -> x(x), x -> t1[x](x), x -> g1(x)(x), () -> f1(1), x -> f1(), () -> procname(), x -> (proc(y) x + y end proc)(x);
(a -> b -> a[1](b))(t1);
(x -> x^2)(5);
sq := x -> x^2: sq(3), sq(u), eval(sq);
# Remember tables: results stored by the procedure, and by assignment.
fib := proc(n) option remember; `if`(n < 2, n, fib(n-1) + fib(n-2)) end proc:
fib(60);
fib(61) := 0: fib(62);
calls := 0: rem := proc(x) option remember; calls := calls + 1; x^2 end proc: 
rem(2), rem(2), rem(3);
F3(2) := 5: F3(2), F3(3);
F3[a](2) := 6: F3[a](2), F3[b](2);
sin(1) := 2;
`.`(a, b) := 3;
(x + 1) := 2;
# Inline procedures are expanded when the call is simplified.
inl := proc(x) option inline; x^2 + nargs end proc:
'inl(3)';
inl(3), inl(z + 1);
inl(1, 2);
mi := module() export s, t::procedure; s := proc(x) option inline; 2*x end; t := proc(x) option inline; x + 1 end end module:
proc(a) mi:-s(a) + mi:-t(a) end; pm := proc() mi:-nosuch(1) end; pm();
proc(x) option inline; y := x end proc;
proc(x) local t; option inline; x + t end proc;
proc(x) option inline, remember; x end proc;
# Recursion has an end, and it isn't caught.
loop := proc(n) loop(n + 1) end proc:
try loop(1) catch: "caught" end try;
1 + 1;
# Types of parameters may be any expression of types.
ty := proc(x::{integer, name}, y::list(integer), z::anything) [x, y, z] end proc:
ty(1, [2], "z");
ty("s", [2], 1);
ty(s, [a], 1);
# Errors inside, with the frame's clean-up: Digits of the caller stays.
dg := proc() Digits := 30; error "no %1 of %2", args end proc:
dg(1, 2); Digits;
try dg(1, 2) catch "no": lastexception end try;
