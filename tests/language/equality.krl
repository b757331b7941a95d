# Tables: entries, and the shape they stand in.
a := table([1 = x, 2 = [y]]): b := table([2 = [y], 1 = x]): c := table([1 = x]):
EqualEntries(a, b), EqualEntries(a, c), EqualEntries(a, a), EqualStructure(a, b), evalb(eval(a) = eval(b));
c[2] := [y]: EqualEntries(a, c); c[2] := 3: EqualEntries(a, c), EqualEntries(c, a);
v := array(1 .. 2, [x, [y]]): w := array(0 .. 2): EqualEntries(a, v), EqualStructure(a, v), EqualStructure(v, w);
EqualStructure(v, array(1 .. 2)), EqualEntries(table(), table()), EqualEntries(table(), c);
s := table(sparse): EqualStructure(s, a), EqualStructure(s, table(sparse)), EqualStructure(s, array(sparse, 1 .. 2));
EqualEntries(s, a);
EqualEntries(a, s);
n := table([t = a]): m := table([t = b]): EqualEntries(n[t], m[t]), EqualEntries(n[t], a);
# Grown tables, and tables that have lost entries.
m := 2^12: big := table([seq(m*k = k, k = 1 .. 300)]): other := table():
for k from 300 by -1 to 1 do other[m*k] := k od: EqualEntries(big, other);
other[7*m] := 8: EqualEntries(big, other), EqualEntries(other, big); other[7*m] := 7: EqualEntries(big, other);
for k from 11 to 300 do big[m*k] := evaln(big[m*k]) od: EqualEntries(big, table([seq(m*k = k, k = 1 .. 10)]));
# Procedures: field by field.
f := proc(x) local y; y := x + 1; [y, 2] end: g := proc(x) local y; y := x + 1; [y, 2] end:
h := proc(x) local y; y := x + 1; [y, 3] end:
EqualEntries(f, g), EqualEntries(f, h), EqualStructure(f, g), EqualStructure(f, h), EqualEntries(f, f);
p := proc(x) option remember; x end: q := proc(x) option remember; x end: EqualEntries(p, q);
p(1): EqualEntries(p, q); q(1): EqualEntries(p, q);
k1 := proc() try error "a" catch "a": 1 finally 2 end end: k2 := proc() try error "a" catch "a": 1 finally 2 end end:
k3 := proc() try error "a" catch "b": 1 finally 2 end end: EqualEntries(k1, k2), EqualEntries(k1, k3);
# Everything else.
EqualEntries(1, 1), EqualEntries(1, 2), EqualEntries(2.50, 2.5), EqualEntries(1, 1.0), EqualEntries(x + y, y + x);
EqualEntries([1], [1]), EqualEntries([1], [2]), EqualEntries("a", "a"), EqualEntries({1}, [1]), EqualEntries(x, "x");
EqualStructure(1, 2), EqualStructure([1], [2]), EqualStructure(x, x);
EqualEntries(1);
EqualStructure(1, 2, 3);
