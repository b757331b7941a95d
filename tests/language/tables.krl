# Creation.
table(), table([1 = 2]), table([[1, 2]]), table({7 = x}), table([(1, 2) = 3]);
t := table([a, b]): t[1], t[2], t[3];
t := table([p = 1, 5, (x, y) = 6]): t[p], t[2], t[x, y], t[1];
array(1 .. 0), array(1 .. 2), array(1 .. 1, 3 .. 3, 5 .. 5);
array(1 .. 2, [x, y]);
array([[x]]), array([x]), array([]);
a := array([[1, 2], [3, 4]]): a[1, 1], a[1, 2], a[2, 1], a[2, 2];
a := array([[1, 2], [3]]): a[2, 1], a[2, 2];
a := array(0 .. 1, -1 .. 0, [[1, 2], [3, 4]]): a[0, -1], a[0, 0], a[1, -1], a[1, 0];
a := array(1 .. 2, 1 .. 2, [(1, 2) = x]): a[1, 2], a[2, 1];
a := array(1 .. 2, {2 = x}): a[1], a[2];
a := array([x, 3], 4 .. 5): a[4], a[5];
array(2 .. 0);
array(1 .. 2, 3 .. 4, [[1, 2], [3, 4]], [[1]]);
array(1 .. 2, 3 .. 4, [1, 2]);
array(1 .. 2, [1, 2, 3]);
array([[1], [2, 3]]);
array(1 .. n);
array(1.0 .. 2);
array();
array(sparse);
array({1 = 2});
array(1 .. 2, x);
array(1 .. 2, {x});
table(1 .. 2);
table([1], [2]);
table({x});
table(3);
table([1 = 2], x);
# Bounds of an array.
a := array(1 .. 2, -10^10 .. 10^10): a[1, 5] := 1: a[1, 5], a[2, 10^10], a[i, 7];
a[3, 1];
a[1, 10^10 + 1];
a[0, 0] := 1;
a[1] := 1;
a[1, 1, 1];
a[i, 1] := 1;
a[i, 1];
# Keys are what they are: 1 is not 1.0, several indices are not one list.
t := table(): t[1] := i1: t[1.0] := f1: t["1"] := s1: t[1, 1] := p1: t[[1, 1]] := l1: t[] := n1:
t[1], t[1.0], t["1"], t[1, 1], t[[1, 1]], t[];
nops([indices(t)]);
# Implicit creation, and what cannot be indexed.
u[1] := 2: eval(u); u[k, "s"] := 3: u[1], u[k, "s"];
w[1][2] := 3: w[1][2], eval(w[1]);
f(1)[2] := 5;
l := [1, 2]: l[1] := 3: l;
s := {1, 2}: s[1] := 3;
q := (1, 2): q[1] := 3;
n := 5: n[1] := 3;
g := "text": g[1] := 3;
# A reference stands for itself, and a value may not hold it.
r[1] := r[1] + 1;
r[1] := [r[1]];
r[1] := 'r[1]': r[1];
r[2] := r[1] + 1: r[2];
proc() local v; v[1] := 1; v[1] := v[1] + 1; v[1] end();
# Removal, and what is assigned.
t := table([1 = x, 2 = y, (3, 4) = z]): t[1] := 't[1]': t[3, 4] := evaln(t[3, 4]):
t[1], t[2], t[3, 4], assigned(t[1]), assigned(t[2]), assigned(t[3, 4]), assigned(t);
t[p] := proc(x) x + 1 end: t[t] := table([7 = 8]): assigned(t[p]), assigned(t[q]), t[p](4), t[t][7], t[p];
# Listing: the same order for all three.
t := table([one = 1, two = (2, 2), (3, 3) = three]):
evalb({indices(t)} = {[one], [two], [3, 3]}), evalb({entries(t)} = {[1], [2, 2], [three]});
evalb([seq(t[op(k)], k = indices(t))] = [seq(op(v), v = entries(t))]);
[indices(table())], entries(table([1 = 2])), indices(array(1 .. 2, [x, y]));
entries(u[1]);
u[2] := table([5 = 6]): indices(u[2]), entries(u[2]);
indices(3);
entries(t, t);
# Tables are one object under all their names; a list of entries is a copy.
t1 := table([1 = 2]): t2 := t1: t2[1] := 3: t1[1], evalb(eval(t1) = eval(t2));
# Loops: over entries, and with deletion on the way.
t := table([seq(k = k^2, k = 1 .. 100)]): s := 0: for e in entries(t) do s := s + op(e) od: s;
for k in [indices(t)] do if irem(op(k), 2) = 1 then t[op(k)] := evaln(t[op(k)]) fi od:
nops([indices(t)]), t[1], t[2];
c := 0: for x in eval(t) do c := c + 1 od: c;
# Entries whose keys share a bucket; every second goes, and comes back.
m := 2^12: t := table(): for k to 500 do t[m*k] := -k; t[k, 3] := "p" od:
nops([indices(t)]), t[77*m], t[77, 3], t[501*m], t[501, 3];
for k by 2 to 500 do t[m*k] := evaln(t[m*k]); t[k, 3] := evaln(t[k, 3]) od: nops([indices(t)]), t[77*m], t[78*m], t[78, 3];
ok := true: for k to 500 do ok := ok and evalb(assigned(t[m*k]) = evalb(irem(k, 2) = 0)) od: ok;
for k by 2 to 500 do t[m*k] := k od: nops([indices(t)]), add(t[m*k], k = 1 .. 500);
# Keys far apart.
t := table(): for k to 300 do t[k*2^20] := k; t[k*2^40] := -k od: add(t[k*2^20] + t[k*2^40], k = 1 .. 300), nops([entries(t)]);
# A procedure that remembers as much.
f := proc(n) option remember; 2*n/m end: add(f(m*k), k = 1 .. 300), add(f(m*k), k = 1 .. 300), nops([indices(op(4, eval(f)))]);
# Protected.
pr[1] := 5: setattribute(pr, protected): pr[1] := 6;
pr[1];
# The user's own table for a name that has none.
`index/newtable` := proc(n, i, v) table(sparse) end: h[3] := 4: h[3], h[5], eval(h);
`index/newtable` := proc(n, i, v) global log; log := [n, i, v] end: h2[3, 4] := 5: log, h2[3, 4];
hook := proc() end: `index/newtable` := hook: hook := 'hook': h3[1] := 2;
`index/newtable` := '`index/newtable`': h3[1] := 2: h3[1];
# Initial values through the library, when it has the procedure.
`index/FillInitVals` := proc(t, v) t[values] := v end: t := table([1, 2]): t[values], t[1];
`index/FillInitVals` := '`index/FillInitVals`':
