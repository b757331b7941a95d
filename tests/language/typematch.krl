# Names take what they matched, in order.
typematch(x^2, a::name^b::integer); a, b; a := 'a': b := 'b':
typematch(x^2, a::name^b::integer, 's'); s; a, b;
typematch([1, [2, g(3)]], [a::integer, c::[b::integer, anyfunc(d::posint)]], 's'); s;
typematch(3*x, `&*`(a::integer, b::name), 's'); s; typematch(3*x + 2*y, `&+`(a::algebraic, b::`*`), 's'); s; typematch(g(1, 2), g(a::integer, b::integer), 's'); s; typematch(g(1, 2), specfunc(a::integer, g), 's'); s; typematch(x = y, a::(symbol = c::name), 's'); s; typematch(5, 5, 's'), s; typematch([1, 2], [a::integer, a::integer]), a; a := 'a':
typematch(1 .. 5, a::integer .. b::integer), a, b; a := 'a': b := 'b':
# Nothing is assigned where nothing matches, and an alternative that fails leaves no bindings.
s := old: typematch([1, x], [a::integer, b::integer]), typematch([1, x], [a::integer, b::integer], 's'), a, b, s;
typematch([1, x], {[a::integer, b::integer], [c::integer, d::name]}, 's'); s;
typematch([1, x], Or([a::integer, b::integer], [c::integer, d::name]), 's'); s; typematch(5, And(a::integer, b::odd, Not(c::even)), 's'); s; typematch(5, Not(a::name), 's'); s;
typematch([1, 2], [a::integer, {[b::integer], c::integer}], 's'); s;
# A pattern in `type` is an ordinary pair.
type(5, a::integer), type(x::y, name::name), hastype([x::y], name::name);
# 23 bindings can be made; the 24th fails, and leaves all as it was.
t := [seq(v||i::integer, i = 1 .. 23)]: typematch([seq(i^2, i = 1 .. 23)], t), v1, v2, v22, v23;
t := [seq(w||i::integer, i = 1 .. 24)]: typematch([seq(i^2, i = 1 .. 24)], t); w1, w23; try typematch([seq(i^2, i = 1 .. 24)], t) catch "too many": lastexception[2] end try; type(3, a::integer), typematch(3, a::integer), a; a := 'a':
# Procedures of the library make matches of their own in the midst of one.
`type/pair` := proc(e) local h, l; typematch(e, ['h'::anything, 'l'::anything], '_pair') end proc:
`type/short` := proc(e::list(integer)) evalb(nops(e) < 3) end proc:
typematch([x, [1, 2], [3, 4]], [a::name, b::pair, c::And(pair, short)], 's'); s; _pair;
`type/bad` := proc(e) error "bad %1", e end proc: typematch([1, [2, 3]], [a::integer, b::bad]); typematch([1, [2, 3]], [a::integer, b::pair], 's'), s, a, b;
# Targets that take no value.
typematch([5, 6], [a::integer, 3::integer]); a; typematch([5, 6], [a::integer, g::integer], 7); typematch(5); typematch(5, integer, 's', 1);
k := table(): typematch([5, 6], ['k[1]'::integer, 'k'[2]::integer], 'k[3]'); k[3]; typematch([5, 6], ['k[1]'::integer, 'k[2]'::integer]); k[1], k[2];
# A time limit ends a long test, and the match: what is tested next binds nothing.
limited := proc(e, t) try timelimit(0.05, typematch([1, e], [a::integer, b::t])) catch "time": lprint("ended") end try; proc(e::(p::integer)) e end proc(3) end proc:
limited([seq(x||i, i = 1..10000)], list(Not({seq(identical(-i), i = 1..10000)})));
