# Operations, and what they give at the ends.
{1, 2} union {2, 3}, {1, 2} intersect {2, 3}, {1, 2} minus {2, 3};
{} union {}, {1} union {}, {} union {1}, {} intersect {1}, {} minus {1}, {1} minus {};
{1, 2} minus {1, 2}, {1, 2} intersect {3, 4}, {1} minus {2, 3};
`union`(), `union`({2}), `union`({1}, {2}, {3, 1}), `intersect`({1, 2, 3}, {2, 3}, {3, 4});
{1, 2} union {3} minus {2}, {1, 2} union {2, 3} intersect {3};
# Duplicates go, and members are compared as what they are.
{3, 1, 2, 3, 1}, nops({1, 1.0}), nops({x, "x"}), nops({x + y, y + x});
# A result equal to an operand shares what the operand has.
a := {seq(k^2, k = 1 .. 50)}: b := {1, 4, 9}:
same := (s, t) -> evalb(addressof(s) = addressof(t)):
same(a union b, a), same(b union a, a), same(a intersect b, b), same(b intersect a, b);
same(b minus {2}, b), same(a union a, a), same(a minus {}, a), same({1} union {1, 2}, {2, 1});
# Unevaluated with what may yet become a set, refused with what never does.
{u} union w, w minus {u}, w intersect w, `union`({1}, {2}, w), {u} union w[1], f(u) union 2*w, (u = 1) minus {u};
refuses := proc(f, a, b) try f(a, b); false catch "wrong number": true end end:
never := [1, 2.5 + I, "s", [1], 1 .. 2, w::integer, proc() end, table()]:
seq({seq(refuses(f, eval(a), {1}), a = never), seq(refuses(f, w, eval(a)), a = never)}, f = [`union`, `intersect`, `minus`]);
1 union {2};
{1} intersect [1], {1};
`minus`({1});
`minus`({1}, {2}, {3});
# Membership.
member(4, a), member(5, a), member(x, {}), member(9, b, 'where'), where;
member({1}, {{1}, {2}}), member(10^30, {10^30, 1});
member(2, [5, 2, 2], 'where'), where;
# Larger sets, against counting.
e := {seq(2*k, k = 1 .. 500)}: t := {seq(3*k, k = 1 .. 500)}:
nops(e union t), nops(e intersect t), nops(e minus t), nops(t minus e);
evalb((e union t) minus t = e minus t), evalb(e minus (e minus t) = e intersect t);
n := {seq(z || k, k = 1 .. 300)}: m := {seq(z || k, k = 151 .. 450)}:
nops(n union m), nops(n intersect m), nops(n minus m), evalb(n union m = m union n);
# Many sets at once: no copy of the result for each of them.
nops(`union`(seq({k, k + 1}, k = 1 .. 20000))), nops(`intersect`(seq({1, 2, k}, k = 1 .. 300)));
