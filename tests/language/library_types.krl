# A type of the library is a procedure that answers true or false, or a type.
`type/small` := proc(e) type(e, integer) and evalb(abs(e) < 10) end proc: `type/pairs` := list([integer, name]): `type/number` := integer: `type/tree` := {integer, [tree, tree]}:
type(3, small), type(30, small), type([[1, x], [2, y]], pairs), type([[1, x], 2], pairs), type(3, number), type(x, number), type([1, [[2, 3], 4]], tree), type([1, [[2, 3], x]], tree), type([3, 5], list(small)), type([3, 50], list(small)), type({3}, {list(small), set(small)});
type(x, nowhere); type([x], [nowhere]); try type(x, nowhere) catch "type": lastexception end try;
# With arguments and with an index.
`type/multiple` := proc(e, n, m) if nargs = 3 then type(e, integer) and irem(e, n*m) = 0 else type(e, integer) and irem(e, n) = 0 end if end proc:
type(12, multiple(4)), type(12, multiple(5)), type(12, multiple(4, 3)), type(x, multiple(4)), type([4, 8], list(multiple(4)));
`type/which` := proc(e) evalb(op(procname) = e) end proc:
type(7, which[7]), type(8, which[7]), type([7, 8], [which[7], which[8]]);
`type/spread` := [integer]: type(spread(3), spread(integer)), type(spread(x), spread(integer)), type(spread[3], identical(spread)[integer]), type([3], spread);
# What an argument stands for isn't evaluated again.
v := 5: `type/isv` := proc(e) evalb(e = 'v') end proc: `type/one` := proc() evalb(nargs = 1) end proc: type('v', isv), type(''v'', isv), type(2 = (1, 2), 2 = one), type(2 = NULL, 2 = one), type(2 = x, 2 = one);
# Answers that are none, and errors on the way.
`type/odd1` := proc(e) 1 end proc: `type/none` := proc(e) end proc: `type/fail` := proc(e) FAIL end proc: `type/broken` := proc(e) error "broken by %1", e end proc: `type/strict` := proc(e::string) true end proc:
type(x, odd1); type(x, none); type(x, fail); type(x, odd1(3)); type(x, odd1[3]); type(x, broken); type("a", strict); type(7, strict); try type(x, odd1) catch "result": "caught" end try; try type([x], list(broken)) catch "broken": lastexception[2 .. 3] end try; type(3, small), type(3, integer);
# Types that lead back to themselves.
`type/loop` := loop: type(x, loop); `type/a1` := b1: `type/b1` := a1: type(x, a1); `type/c1` := complex(c1): type(x, c1); `type/d1` := d1[1]: type(x, d1); `type/chain` := {integer, chain}: type(x, chain); 1 + 1;
# Parameters, assignments and conditions ask the same question.
p := proc(e::small, n::name(integer)) e end proc: p(3, 'v'), p(30, 'v'); p(3, v); p(3, 'w'); q := proc(e::nowhere) e end proc: q(3); if 3::small then "small" end if; evalb(30::small);
# Parts of an expression.
hastype(x + 2*y, `*`), hastype(x + y, `*`), hastype(x + 2*y, '`*`(integer)'), hastype(x + 2*y, '`*`({integer, name})'), hastype(x + y^2, `^`), hastype(2*x + 3, fraction), hastype(x/2 + 3, fraction), hastype(x + 2*y, `&*`(integer, name));
hastype(5, integer), hastype(x, integer), hastype([1, [x, "s"]], string), hastype([1, [x, y]], string), hastype({x}, sequential), hastype(x[1, y], string), hastype(x["s"], string), hastype(g(x, "s"), string), hastype(g(h(x)), identical(h)), hastype(x^2.5, float), hastype(2 + 3*I, integer), hastype(2.5, integer), hastype(x = y..z, range), hastype(g(x), sequential), hastype(1/2, posint), hastype("s", symbol);
hastype(NULL, anything); hastype(); hastype(x); hastype(x, name, 1);
hastype(table([x = "s"]), string), hastype(table([x = 1]), string), hastype(table(["s" = 1]), string), hastype(proc(x) x + 1.5 end proc, float), hastype(proc(x) x + 1 end proc, float), hastype(eval(type), integer), hastype(module() export f; f := 2.5 end module, float), hastype(RootOf(_Z^2 + 1, 2.5), float), hastype(RootOf(_Z^2 + 2.5, 1), float), hastype(''x'', uneval), hastype([2, 30], small), hastype([20, 30], small), hastype([20, 30], Not(anything)), hastype(pointto(assemble(15, addressof(x), addressof(1.5), 0, addressof(2), 1)), float), hastype(pointto(assemble(17, addressof(x), addressof(7), 1, 2)), identical(x));
# The body of a procedure holds statements and unbound parameters, which the library is not asked about.
hastype(proc(x) local y; y := x + 1.5; if y then 30 else x^2.5 end if; for y in x do [y] end do end proc, small), hastype(proc(x) local y; y := x + 15; 3 end proc, small), hastype(proc(x) x + g(x) end proc, list), hastype(proc(x) [x] + g(x) end proc, list), hastype(proc(x) local y; y := x end proc, small), hastype(proc(x) g(7, x) end proc, small), type(proc(x) x end proc, one), type(g(proc(x) x end proc), one);
hastype(x, nowhere); hastype(x, a*b); hastype(proc(x) x end proc, broken);
