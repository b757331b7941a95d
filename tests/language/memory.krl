# Loops that keep nothing run in constant memory, however long.
p := proc(n) local i, x; for i to n do x := [i, f(i)] od; x end proc:
p(100000): a := kernelopts(bytesalloc): p(10^6); evalb(kernelopts(bytesalloc) - a < 2*10^6);
for i to 200000 do x := [i, f(i)] od: evalb(kernelopts(bytesalloc) - a < 4*10^6);
seq(op([f(i), i][2] - i), i = 1..200000)[-1]; evalb(kernelopts(bytesalloc) - a < 10^7);
add(op(2, [f(i), i]), i = 1..200000); for i in [$1..100000] do [f(i)] od: evalb(kernelopts(bytesalloc) - a < 10^7);
# All that is held is reachable or free: what the census counts and the free words are the whole, but for two
# words that head each chunk.
live := proc() local m, k, s; gc(); m := kernelopts(memusage); s := 0; for k to nops(m) do s := s + m[k][3] od; s end proc:
live(): heads := proc() local l; l := live(); kernelopts(bytesalloc) - kernelopts(gcbytesavail) - l end proc:
h := heads(): evalb(0 < h and h < 10000), irem(h, 8);
# What is dropped dies, once the statements that made it have ended; the tables of unique objects keep their room.
a := live(): l := [seq([i, f(i)], i = 1..50000)]: evalb(live() - a > 50000*14*4);
l := 'l': seq([i], i = 1..1000): seq([i], i = 1..1000): seq([i], i = 1..1000): live(): evalb(live() - a < 50000*14*4);
# The counters tell of each collection: one more, the words that it took, and all words that it left free.
n := kernelopts(gctimes): gc(): kernelopts(gctimes) - n;
seq([i, g(i)], i = 1..10000): 0: 0: 0: seq([i], i = 1..1000): gc(): evalb(kernelopts(gcbytesreturned) > 10000), evalb(kernelopts(gcbytesavail) > 10000);
evalb(kernelopts(gcbytesavail) = 4*kernelopts(gcwordsavail)), evalb(kernelopts(gcbytesreturned) = 4*kernelopts(gcwordsreturned));
u := kernelopts(bytesused): x := [1, 2, 3, 4]: evalb(kernelopts(bytesused) > u), evalb(kernelopts(bytesused) - u < 10000);
# A closure keeps its variables, a remember table its values, a weak one only while they are of use elsewhere.
c := proc() local k; k := [g(1)]; proc() k := [op(k), g(nops(k) + 1)] end proc end proc(): c(): gc(): c(): gc(): c();
s := proc(n) option remember; [n, w] end proc: s(1): s(2): gc(): gc(): op(4, eval(s));
w1 := proc(n) option remember, system; {n, w} end proc: w1(1): kept := w1(2): seq([i], i = 1..1000): 0: 0: gc(): gc(): op(4, eval(w1));
w1(1);
# What was old when it died is found by collections that come by themselves, and its place is used again.
old := [seq(f(k)^2, k = 1..200000)]: gc(): old := 'old': 0: 0: 0:
held := kernelopts(bytesalloc): for i to 300000 do [i, i + 1, f(i)] end do:
old := [seq(g(k)^2, k = 1..200000)]: evalb(kernelopts(bytesalloc) - held < 12000000);
# What is mapped to itself, replaced by itself or selected whole is the same object, and what was made on the way dies
# but for the room of the tables of unique objects.
values := proc() local m, k, s; gc(); m := kernelopts(memusage); s := 0; for k in m do if k[1] <> 'HASH' then s := s + k[3] end if end do; s end proc:
e := [seq(op([f(k, [k, x||k], {k, y}), k = 2*k + z^k, k*x^2*y, k..w[k], 'k'::name, not x||k]), k = 1..5000)]: same := x -> evalb(addressof(x) = addressof(e)):
values(): 0: 0: values(): a := values(): same(map(x -> x, e)), same(map(u -> map(v -> v, u), e)), same(map(u -> subsop(1 = op(1, u), u), e)), same(select(type, e, anything)), same(remove(has, e, nowhere)), same(subs(x = x, e)), same(sort(e, (a, b) -> true));
0: 0: 0: seq([i], i = 1..1000): values(): evalb(values() - a < 50000);
# What an error that was caught has noted of the calls on its way isn't kept.
fill := proc(n) local t, i; t := table(); for i to n do t[i] := [i, v(i)] end do; error "x" end proc:
old := 'old': 0: 0: 0: a := live(): try fill(100000) catch: end try: 0: 0: 0: live(): evalb(live() - a < 100000*8*4);
# What a statement has made and dropped is found by the first `gc()` behind it, however much it was.
drop := proc(n) local l; l := [seq([i, h(i)], i = 1..n)]; nops(l) end proc: drop(1): a := values(): drop(20000): evalb(values() - a < 50000); drop(50000): evalb(values() - a < 50000); op(1, [seq([i, h(i)], i = 1..20000)]): evalb(values() - a < 50000);
