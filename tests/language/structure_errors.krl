# What operands, substitution, mapping, types, sorting, sets and tables refuse, in every place where a
# statement can fail. Nothing that a failing statement was given is changed by it.
l := [3, x, [1, 2]]: s := {1, x}: q := (1, 2): g := "text": t := table([1 = x, 2 = [y]]): c := f0(x, 1/x):
p := proc(u, v::integer) option remember; local i; global w; description "adds"; i := u; i + w end proc:
md := module() export e; local k; e := 1; k := 2 end module:
sr := pointto(assemble(15, addressof(x), addressof(1), 0, addressof(2), 1)):
z1 := pointto(assemble(17, addressof(x), addressof(7), 1, 2)): loc := ''pointto(assemble(29, 1))'':
ar := array(1..2, [5, 6]): sy := array(symmetric, 1..2, 1..2): an := array(antisymmetric, 1..2, 1..2):
di := array(diagonal, 1..2, 1..2): id := array(identity, 1..2, 1..2): sp := table(sparse, [1 = 2]):
`index/picky` := proc(i, t, v) if nargs = 3 then error "no store at %1", op(i) end if; error "no entry at %1", op(i) end proc: pk := table(picky):
`type/odd1` := proc(e) 1 end proc: `type/broken` := proc(e) error "broken" end proc:
third := proc(e) if e = 2 then error "no %1", e end if; true end proc: less := proc(a, b) if a = 2 then error "no order" end if; true end proc:
hooked := proc(i) global `index/newtable`, hook, nt; hook := proc() end proc; `index/newtable` := hook; hook := 'hook'; nt[i] := 2 end proc:
read "every_place.txt":
watched := proc() l, s, q, g, eval(t), [entries(t)], c, eval(p), eval(md), op(2, eval(md)), sr, z1, [entries(ar), entries(sy), entries(an), entries(di), entries(id), entries(sp), entries(pk)], ar[1], Digits, a, b, typematch(5, a::integer, 'made') end proc:
everywhere([
  "op(4, l)", "op(-5, l)", "op(-5..2, s)", "op(3..1, l)", "op(2..5, l)", "op(10^20, l)", "op([1, 1..2, 1], l)", "op([y, 1], l)", "op([3, y], l)", "op([3, 5], l)", "op(y, l)", "op(1, 2, 3)", "op()",
  "op(1, pointto(assemble(9, addressof(no), addressof(e))))", "op(1, md:-k)", "nops()", "op(9, eval(p))", "op(1, pointto(assemble(29, 1)))",
  "subsop(4 = 1, l)", "subsop(-4 = 1, l)", "subsop(0 = 1, l)", "subsop([3, y] = 1, l)", "subsop([y, 3] = 1, l)", "subsop(y = 1, l)", "subsop(1, l)", "subsop(10^20 = 1, l)",
  "subsop(1 = y, 2.5)", "subsop(1 = 3, eval(md))", "subsop(1 = 3, pointto(assemble(9, addressof(no), addressof(e))))", "subsop(2 = 3, sr)", "subsop(3 = 1, eval(t))", "subsop(2 = 3, eval(t))", "subsop(2 = 0, 1/2)",
  "subsop(1 = 7, z1)", "subsop(1 = y, z1)", "subsop(0 = y, z1)",
  "subsop(1 = 3, eval(p))", "subsop(2 = 3, eval(p))", "subsop(2 = (j, 3), eval(p))", "subsop(3 = [1], eval(p))", "subsop(3 = builtin, eval(p))", "subsop(4 = 3, eval(p))", "subsop(5 = 7, eval(p))", "subsop(6 = 7, eval(p))", "subsop(7 = (x, y), eval(p))", "subsop(7 = 1, eval(p))",
  "subsop(2 = (a, b), op(2, eval(md)))", "subsop(4 = 3, op(2, eval(md)))", "subsop(4 = (a, b), op(2, eval(md)))", "subsop(8 = 3, op(2, eval(md)))", "subsop(1 = 3, op(2, eval(md)))",
  "subs(1, l)", "subs([x = 1, 2], l)", "subs(x = 0, c)", "subs(x = 0, [c, l])", "subs(u = 5, w = u, eval(p))", "subs(remember = 5, eval(p))",
  "map()", "map(f)", "map2(f, 1)", "map(third, [1, 2, 3])", "map(third, {1, 2})", "map(third, f0(1, 2))", "map(third, 1 = 2)", "map(third, table([a = 2]))", "map(third, 2*x)", "map2(third, 2, l)", "map(third, x + 2)", "map(third, x^2)", "map(y -> 9, z1)", "map(x -> y, z1)",
  "map(f, pointto(assemble(29, 1)))", "select(type, pointto(assemble(30, 1)), integer)", "selectremove(type, pointto(assemble(31, 1)), integer)",
  "select(third, [1, 2, 3])", "remove(third, {1, 2})", "selectremove(third, [1, 2])", "select(third, table([a = 2]))", "selectremove(third, 2*x)", "remove(third, 2*x)", "select(third, f0(1, 2))", "selectremove(third, x = 2)",
  "select(type, l)", "remove(has, l)", "selectremove(hastype, l, 1, 2)", "select(x -> 1, l)", "remove(x -> FAIL, l)", "selectremove(x -> x, l)", "select(type, l, nowhere)", "remove(hastype, l, odd1)", "selectremove(type, l, broken)", "selectremove(type, z1, integer)", "select()", "remove(1)", "selectremove(f)",
  "member()", "member(3, l, 3)", "has(l)", "numboccur(l)", "length()", "hastype(l)", "type()", "type(1, 2, 3)", "typematch(1)", "typematch(1, integer, 3)",
  "type(x, x*y)", "type(x, x + y)", "type(x, eval(p))", "type(x, eval(t))", "type(x, list(integer, name))", "type(x, specfunc(integer))", "type(x, And())", "type(x, ''{f}'(1, 2)')", "type(x, nowhere)", "type([x], list(nowhere))", "type(x, odd1)", "type([x], [odd1])", "type(x, broken)", "type(x, {integer, broken})", "type(x, Not(broken))", "type(x^2, polynom(integer, [x, 3]))", "type(x^2, ratpoly(integer, 3))",
  "typematch([1, 2], [a::integer, b::nowhere])", "typematch([1, 2], [a::integer, b::broken])", "typematch([seq(i, i = 1..24)], [seq(w||i::integer, i = 1..24)])", "typematch([1, 2], [a::integer, 3::integer])",
  "hastype(l, nowhere)", "hastype(l, odd1)", "hastype(l, broken)", "hastype(eval(t), identical(x)*name)",
  "sort()", "sort(l, numeric)", "sort(l, string)", "sort([1, I], `>`)", "sort(l, numeric, 3)", "sort([2, 1], less)", "sort([2, 1], (a, b) -> 1)", "sort([2, 1], (a, b) -> FAIL)", "sort([2, 1], 3)", "sort(x + 1, 3)", "sort(x + 1, [x, 2])", "sort(x + 1, x, lexdeg)", "sort(x + 1, x, plex, x)",
  "`minus`(s)", "`minus`(s, s, s)", "EqualEntries(t, sp)", "EqualEntries(t)", "EqualStructure(1, 2, 3)",
  "table(1..2)", "table([1], [2])", "table({x})", "table(3)", "array()", "array(sparse)", "array({1 = 2})", "array(2..0)", "array(1..n)", "array(1..2, x)", "array(1..2, [1, 2, 3])", "array(1..2, 3..4, [1, 2])", "array(1..2, 3..4, [[1, 2], [3, 4]], [[1]])", "table(picky, [1, 2])",
  "ar[3]", "ar[3] := 1", "ar[y] := 1", "ar[1, 1]", "t[5] := 't[5] + 1'", "t[5] := [1, 't[5]']", "s[1] := 3", "q[1] := 3", "g[1] := 3",
  "sy[3, 1]", "sy[1, 3] := 1", "an[1, 1] := 1", "an[3, 1]", "di[1, 2] := 0", "di[3, 3]", "id[1, 1] := 1", "pk[7] := 1", "pk[7]", "indices(3)", "entries(t, t)", "hooked(1)"
]);
