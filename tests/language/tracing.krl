# A call shows from level 5 on, a call in it from 10, what a remembered value answers from 10.
outer := proc(n) inner(n) + 1 end proc: inner := proc(n) n^2 end proc: sq := proc(n) option remember; n^2 end proc: sq(3):
printlevel := 4: outer(2);
printlevel := 5: outer(2);
printlevel := 9: outer(2), sq(3);
printlevel := 10: outer(2), sq(3);
# The deepest statement that level 3 shows; every level is an integer of the machine.
t := true: printlevel := 2: if t then if t then if t then 1 end if end if end if;
printlevel := 3: if t then if t then if t then 2 end if end if end if;
printlevel := 2^31 - 1: 3; printlevel := -2^31: 4; printlevel := 0: 5; printlevel := 1:
pl := proc() printlevel := 5; inner(3); error "x" end proc: pl(); printlevel; inner(4); printlevel := 1:
# The option shows a procedure and what it calls, but no remembered value of another one.
tr := proc(n) option trace; local y; y := inner(n); sq(3); y end proc: tr(5);
tm := proc(n) option remember, trace; n + 1 end proc: tm(1): tm(1);
mt := module() option trace; export e; e := 3; error "no" end module;
bt := subsop(3 = (builtin, trace), eval(nops)): bt([1, y]);
te := proc() option trace; error "stop %1", 3 end proc: te(); try te() catch: "caught" end try;
# Procedures that print run untraced, and what they meet is no news for another round.
`print/box` := proc(x) box(x) + 1 end proc: `print/bad` := proc(x) error "no %1", x end proc: `print/odd` := proc(x) ASSERT(false) end proc:
printlevel := 30: box(2); bad(1); printlevel; kernelopts('assertlevel' = 1): odd(1); printlevel; printlevel := 1:
# At level 2 of assertion a typed variable takes only what it is typed for, and no trap sees the failure.
kernelopts('assertlevel' = 2):
typed := proc(x) local y::integer; y := x; y + 1 end proc: typed(3); typed(1/2); try typed("s") catch: "caught" end try;
maker := proc() local c::integer; c := 1; proc(v) c := v; c end proc end proc: made := maker(): made(5); made("s"); made(NULL);
a::integer := 3; a::integer := b; a; a::'integer' := 2: a; md := module() export e::integer; e := 1 end module: md:-e := 2; md:-e := x;
ASSERT(1 = 2, "why", 5); ASSERT(zz); traperror(ASSERT(false));
kernelopts('assertlevel' = 1): typed(1/2); a::integer := b; ASSERT(false);
kernelopts('assertlevel' = 0): ASSERT(error_is_not_seen()); ASSERT(false);
# Errors that no trap sees leave loop variables and environment variables as they were.
kernelopts('assertlevel' = 1): fails := proc(x) ASSERT(x < 3, Digits); x end proc:
seq(fails(i), i = 1..5); add(fails(j), j = [1, 9]); mul(fails(k), k = 3..4); i, j, k;
seq(fails(Digits), Digits = 2..5); Digits; evalf(fails(7), 40); Digits, UseHardwareFloats;
handler := proc() ASSERT(false) end proc: NumericEventHandler(overflow = handler): big := 1.0e2147483646 + I*1.0e2147483646:
big*big; Digits;
try timelimit(0.05, add(inner(n), n = 1..10^8)) catch: lasterror end try; n;
