# symmetric: one entry for all orders of the indices.
s := array(symmetric, 1 .. 3, 1 .. 3): s[2, 1] := x: s[1, 2], s[2, 1], s[3, 2], s[2, 3], s[1, 1];
s[1, 2] := y: eval(s);
assigned(s[2, 1]), assigned(s[3, 2]), assigned(s[2, 3]);
s[2, 1] := 's[2, 1]': s[1, 2], s[2, 1], assigned(s[1, 2]);
s[4, 1];
s[1, 4] := 2;
s := array(symmetric, 1 .. 2, 1 .. 2, [[1, 2], [2, 3]]): s[2, 1], s[2, 2], nops([indices(s)]);
st := table(symmetric): st[3, 1, 2] := x: st[2, 1, 3], st[1, 2, 3], st[7], st[c, c];
# antisymmetric: the sign of the permutation.
a := array(antisymmetric, 1 .. 3, 1 .. 3): a[2, 1] := x: a[1, 2], a[2, 1], a[1, 1], a[3, 1], a[1, 3];
a[1, 1] := 0: a[1, 1];
a[2, 2] := 1;
a[4, 4];
nops([indices(a)]);
at := table(antisymmetric): at[1, 2, 3] := v: at[2, 3, 1], at[3, 2, 1], at[1, 3, 2], at[1, 1, 2];
at[2, 1, 1] := 5;
# diagonal.
d := array(diagonal, 1 .. 2, 1 .. 2): d[1, 1] := x: d[1, 1], d[2, 2], d[1, 2], d[2, 1], d[i, j], d[i, i];
d[1, 2] := 0;
d[3, 1];
# identity.
id := array(identity, 1 .. 2, 1 .. 2): id[1, 1], id[1, 2], id[i, i], id[i, j], id[i, 1];
id[1, 1] := 1;
id[1, 2] := 2;
id[3, 3];
# What the function tells by itself is told without a look at the bounds.
id := array(identity, 1 .. 2): id[1, 1], id[1, 2], id[7];
d := array(diagonal, 1 .. 2): d[1, 2], d[0, 7], d[1];
d[3];
d[1, 1];
# sparse.
sp := array(sparse, 1 .. 3): sp[2] := x: sp[1], sp[2], sp[i];
sp[4];
t := table(sparse): t[1] := 5: t[a] := 6: t[1], t[2], t[a], t[b], t["x"], t[1, 2], t[1, b];
t[3] := t[3] + 1: t[3], t[4];
table(sparse, [x, y]), op(1, eval(t));
# Several: each has its say in turn.
ss := array([symmetric, sparse], 1 .. 3, 1 .. 3): ss[3, 1] := x: ss[1, 3], ss[3, 1], ss[2, 1], ss[2, 2];
eval(ss);
ds := array([diagonal, sparse], 1 .. 2, 1 .. 2): ds[1, 1] := x: ds[1, 1], ds[2, 2], ds[1, 2];
array([symmetric, unknown], 1 .. 2, 1 .. 2);
# A function of the user's: the procedure sees the list of indices, the table, and the list of the value.
`index/logged` := proc(i, t, v) global log; log := [args[1], nargs]; if nargs = 3 then t[op(i)] := 10*op(v) else t[op(i)] fi end:
lt := table(logged): lt[x, 1] := 4: log, lt[x, 1], log, lt[9], log;
lt[2] := lt[3] + 1: lt[2];
`index/defaulted` := proc(i, t, v) if nargs = 3 then t[op(i)] := op(v) elif assigned(t[op(i)]) then t[op(i)] else default fi end:
dt := table(defaulted): dt[1] := 7: dt[1], dt[2]; nops([indices(dt)]);
ls := table([symmetric, logged]): ls[5, 2] := 1: ls[2, 5], log;
ls := table([logged, sparse]): ls[5], log, eval(ls);
# Its errors pass, and the table is as it was.
`index/picky` := proc(i, t, v) if nargs = 3 then if op(v) < 0 then error "no %1 here", op(v) fi; t[op(i)] := op(v) else t[op(i)] fi end:
pt := table(picky): pt[1] := 2: pt[1] := -3;
pt[1], eval(pt);
# A name without a procedure.
nt := table(nofunction): nt[1] := 2;
nt[1];
`index/inert` := other: it := table(inert): it[1];
# Many entries through a function.
m := 2^12: big := table(logged): for k to 200 do big[m*k] := k od: add(big[m*k], k = 1 .. 200)/10, nops([indices(big)]);
