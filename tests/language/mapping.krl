# The operands of each kind of object.
map(f, a + b), map(f, 2*x), map(f, 2*x + 3*y), map(f, 2*x*y^2), map(f, x^2), map(f, x^y), map(f, [1, a, "s"]), map(f, {3}), map(f, g(1, 2)), map(f, []), map(f, g());
map(f, 3), map(f, 1/2), map(f, 1.5), map(f, 2 + I), map(f, "s"), map(f, x), map(f, t[1]), map(f, a = b), map(f, a <= b), map(f, a..b), map(f, a::b), map(f, not a), map(f, a and b), map(f, ''x''), map(f, 'a || (b + 1)');
map(f, [1, 2], u, v), map2(f, y, [1, 2], z), map2(op, 1, [[1, 2], [3]]), map(op, [[1, 2], [3]]), map(nops, [x + y, [1]]), map(type, [1, a], integer);
map(x -> x^2, [1, 2, 3]), map(x -> NULL, [1, 2, 3]), map(x -> (x, x), [1, 2]), map(x -> x*2, a + b), map(x -> x + 1, a*b), map(x -> 1, [a, b]);
map(x -> NULL, a + b);
map(x -> (x, x), a*b);
map(); map(f); map2(f, 1); map2(f);
map(f, pointto(assemble(30, 1))); select(type, pointto(assemble(29, 1)), integer); selectremove(type, pointto(assemble(31, 1)), integer);
k := proc(a) a end proc: map(f, eval(k)), map(f, k);
# An operand is a value, not evaluated again; further arguments are evaluated in each call.
n := 'w': L := [n]: w := 3: map(f, [''w'']), map(x -> x, [''w'']), map(f, [1], 'w'); n, L;
count := 0: tick := proc() global count; count := count + 1; count end proc: map(f, [a, b], 'tick()');
# Tables: values in a copy.
t := table([a = 1, b = x]): m := map(f, eval(t)): m[a], m[b], t[a], t[b], map(f, t);
s := select(type, eval(t), integer): s[a], assigned(s[b]), t[b];
r := remove(type, eval(t), integer): r[b], assigned(r[a]);
b := selectremove(type, eval(t), integer): b[1][a], indices(b[2]);
# What a predicate holds for.
select(type, [1, a, 2], integer), remove(type, [1, a, 2], integer), selectremove(type, [1, a, 2], integer);
select(type, a + 2*c + 3, integer), remove(type, a + 2*c + 3, integer), selectremove(type, a + 2*c + 3, integer), select(type, a + c, integer), remove(type, a + c, symbol);
select(type, 2*x*y, numeric), remove(type, 2*x*y, numeric), selectremove(type, 2*x*y, numeric), select(type, 2*x, symbol), remove(has, x*y^2*z, {x, y}), select(has, x*y, z);
select(type, g(1, a), integer), selectremove(type, g(1, a), integer), select(type, {1, a}, integer), selectremove(type, {1, a}, integer), select(type, 3, integer), [remove(type, 3, integer)], [selectremove(type, 3, integer)], [selectremove(type, x, integer)];
select(has, [x, x + y, z], y), select(hastype, [x, [1], y + 1], integer), select(x -> evalb(x > 2), [1, 2, 3, 4]), select(x -> x > 2, [1, 2, 3, 4]), remove(`>`, [1, 2, 3, 4], 2), select(member, [1, 2, 3], {1, 3});
# Types that a tag decides and others agree with the full test.
E := [1, 2/3, 1.5, "s", v, v[1], v(1), v = 1, v < 1, v <= 1, v <> 1, v..1, [1], {1}, v::u, v + 1, 2*v, v^2, ''v'', not v, v and u, v or u]:
for T in [`..`, range, `||`, uneval, zppoly, series, set, rtable, `or`, `and`, `not`, list, indexed, float, fraction, function, equation, `=`, `<`, `<=`, `<>`, `::`, integer, name, algebraic] do
  if select(type, E, T) <> select(x -> type(x, T), E) or [selectremove(type, E, T)] <> [select(type, E, T), remove(type, E, T)] then print(T) fi od;
select(type, x^2, symbol);
select(type, a = 1, integer); select(type, a..c, integer);
select(x -> 1, [a]); select(x -> FAIL, [a]); remove(x -> NULL, [a]); selectremove(x -> x, [a]);
select(type, [1]); select(type, [1], integer, a); remove(has, [1]); selectremove(hastype, [1]);
select(f); select(); selectremove(type); remove(3);
# An error in the midst leaves the originals as they were, and the level of evaluation too.
bad := proc(x) if x = 3 then error "three", x fi; true end proc:
L := [1, 2, 3, 4]: T := table([1 = 3]):
map(bad, L); select(bad, L); remove(bad, L); selectremove(bad, L); map(bad, eval(T)); map(bad, 3*x); L, T[1];
try map(bad, L) catch "three": lastexception end try;
traperror(select(bad, {1, 3})), map(x -> traperror(bad(x)), L);
# Long lists leave no garbage behind.
nops(map(x -> x + 1, [seq(i, i = 1..20000)])), nops(select(x -> evalb(x > 10), [seq(i, i = 1..20000)]));
# What is called may store into the table that is walked: the walk is over the entries as they were.
churn := proc(v) global T; local j; for j to 30 do T[4096*(j + 100)] := j end do; [seq([j, v], j = 1..60)]; v end proc:
`type/churned` := proc(e) churn(e); false end proc:
fresh := proc() global T; T := table([seq(4096*i = h(i), i = 1..12)]); eval(T) end proc:
count := proc(t) add(op([1, 1], e), e = [entries(t)]) end proc:
count(map(churn, fresh())), count(select(x -> evalb(churn(x) = x), fresh())), map(count, [selectremove(x -> evalb(op(churn(x)) < 7), fresh())]), hastype(fresh(), churned), T[4096*130], T[4096];
# selectremove asks once of each operand, in order, also where the predicate stores in the table that is divided.
asked := NULL: small := proc(x) global asked; asked := asked, x; evalb(x < 40) end:
map(nops, [selectremove(small, [seq(k, k = 1 .. 100)])]), evalb([asked] = [seq(k, k = 1 .. 100)]);
T := table([seq(k = k, k = 1 .. 100)]): asked := NULL:
moving := proc(x) global T; T[x + 200] := x; T[x] := evaln(T[x]); small(x) end:
halves := [selectremove(moving, eval(T))]:
map(h -> nops([indices(h)]), halves), nops([asked]), nops({asked}), nops([indices(T)]), min(op(map(op, [indices(T)])));
