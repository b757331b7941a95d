# if: three-valued, the first true branch, else, nothing.
if 1 < 2 then "a" elif 1 < 0 then "b" else "c" end if;
if FAIL then 1 else 2 end if;
if false then 1 end if;
if x then 1 end if;
if 5 then 1 end if;
c := 3: if c > 2 and c < 5 then "in" fi;
if not (c = 3) then 1 elif c = 3 and true then 2 else 3 end if;
# Values of compound statements go on as %.
for i to 3 do i^2 end do: %;
if true then 77 end if: %;
# read and save name their file.
read 3;
read "/nonexistent/file.krl";
read x + 1;
save x;
save "out.krl";
save 3, "out.krl";
save x, 3;
s1 := [1, 2]: s2 := proc(x) x + 1 end proc: save s1, s2, "saved.krl": s1 := 's1': s2 := 's2':
read "saved.krl": s1, s2(4);
save nosuchvalue, "saved.krl";
save s1, "/nonexistent/dir/file.krl";
# error: text with marks, a sequence, the last error again.
error "plain";
error "with %1 and %-2 and %0", a, 3;
error "%1 of %2 missing", 1;
error sym, 1;
error 3;
error;
lasterror, lastexception;
traperror(error1()); traperror(1/0), lasterror; traperror(2 + 3), lasterror;
# try: which clause, finally, errors in clauses, jumps through.
try error "abc def" catch "x": 1 catch "abc": 2 catch: 3 end try;
try error "abc" catch "b", "ab": "prefix of either" end try;
try error "one" catch "two": 2 end try;
try 5 finally 6 end try;
try error "e1" finally print("finally runs") end try;
try error "e1" catch "e1": error "e2" finally print("cleanup") end try;
lasterror;
try try error "inner" catch "other": 1 end try catch "inner": "outer got it" end try;
tj := proc() local i; for i to 5 do try if i = 2 then next elif i = 4 then break end if; print(i) finally print(-i) end try end do; i end proc: tj();
tr := proc() try return 1, 2 finally print("bye") end try; 3 end proc: [tr()];
try error "a" catch "": error end try;
te := proc() try error "first %1", 1 catch: error "second" end try end proc:
try te() catch: lastexception end try;
try catch "a": 1 catch: 2 catch "b": 3 end try;
try 1 catch "ab": 1 catch "a": 2 catch "ab": 3 end try;
try 1 catch "a": 1 catch "ab": 2 end try;
# Loops: what is refused.
for i from a to 3 do end do;
for i from 1 to b do end do;
for i from 1 by c1 to 3 do end do;
for "s" to 2 do end do;
for i from "a" to 3 do end do;
for i from 1 to "c" do end do;
for i from infinity do end do; i;
for i from -infinity to 3 do end do;
for i from "a" to "e" by 2 do print(i) end do: i;
for i from "a" to "c" by 1/2 do end do;
for i to 3 do i := "x" end do;
for i from 3 to 1 by -1 do print(i) end do: i;
for i from 1 to 2 by 1/3 do print(i) end do: i;
for i from 1.5 to 3 do print(i) end do: i;
for i to 3 while i < 2 do print(i) end do: i;
for i to 3 while qq do end do;
to 2 do print(again) end do;
for i in [a, b], [c] do print(i) end do;
for i in x + 2*y do print(i) end do: for i in f(u, v) do print(i) end do: for i in "xy" do print(i) end do:
for i in {3, 1, 2} while i < 3 do print(i) end do: i;
i := 9: for i in [] do print(i) end do: i;
for i in 7 do print(i) end do: for i in table([1 = 2]) do print(i) end do:
for i to 2 do for j to 3 do if j = 2 then next end if; print([i, j]) end do end do:
do break end do; while false do 1 end do;
k := 0: do k := k + 1; if k > 5 then break end if end do: k;
for i from 1 to infinity do if i^2 > 50 then break end if end do: i;
for tt[1] to 2 do print(tt[1]) end do: tt[1];
# Assignments: several targets, refused targets.
(p, q) := 1, 2: (p, q) := q, p: p, q;
p, q := q, p: p, q;
(p, q) := 1;
(p, q) := 1, 2, 3;
(p, 3) := 1, 2;
1 := 2;
a + b := 3;
"s" := 1;
r1 := r1 + 1;
r2 := [r2];
r3 := 'r3 + 1': r3 := proc() r3() end proc: r3 := 'r3': r3;
t1[1] := t1[1];
t2[1] := t2;
sin := 3;
ll := [1, 2, 3]: ll[2] := b: ll; ll[-1] := z: ll;
ll[4] := 1;
ll[0] := 1;
ll[2] := 1, 2;
ll[1, 2] := 3;
ll[k1] := 3;
ll2 := [[1, 2], [3, 4]]: ll2[2, 1] := x: ll2;
long := [$1..101]: long[3] := 1;
ok := [$1..100]: ok[3] := z: ok[3];
ss := {1, 2}: ss[1] := 3;
st := "abc": st[1] := "x";
u3(2)(3) := 1;
lasterror := 3;
libname := 3;
libname := 'libname';
# seq, add, mul and $.
seq(i^2, i = 1..4), seq(c, c = "a".."d"), seq(x, x = [u, v, w]), seq(i, i = 3..1), seq(i, i = 1.5..3);
seq(c, c = "xyz"), seq(i, i = f(a, b)), seq(u, i = 1..2);
i := 42: seq(i, i = 1..3): i;
try seq(1/(i - 2), i = 1..3) catch: "caught" end try: i;
seq(i, i = 1..n);
add(i, i = 1..n);
mul(i, i = 1..n);
seq(i, i = "ab".."c");
seq(i, 3 = 1..2);
seq(i);
add(k, k = 1..100), mul(k, k = 1..10), add(x[k], k = 1..3), mul(x + k, k = 0..2), add(k, k = 2..1), mul(k, k = []);
add(1/k, k = 1..10), add(0.5, k = 1..4), add(k*y, k = [1, 2, y]), add(I*k, k = 1..3);
ad := proc(n) add(j, j = 1..n) end proc: ad(10);
f $ 3, i^2 $ i = 2..4, 'j^2' $ 'j' = 2..4, $ 3..5, x $ m;
sq := seq(proc() k end proc, k = 1..2): sq[1]();
# Time limits and interrupts can't be caught inside.
timelimit(0.2, proc() do end do end proc());
timelimit(5, 1 + 1);
try timelimit(0.1, proc() do end do end proc()) catch: "caught" end try;
timelimit(1, timelimit(1, 2));
timelimit(-2, 1);
timelimit(a, 1);
# save f! takes along what f needs.
base := 2: h := x -> base*x: t3 := table([1 = h]): f9 := proc(x) if x > 0 then f9(x - 1) + t3[1](x) else h(1) end if end proc:
other := 5: save f9!, "saved.krl": save unassigned9!, "saved2.krl":
restart; read "saved.krl": f9(2), other;
