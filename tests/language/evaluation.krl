# Names: full evaluation at the top, one level for locals, last-name evaluation.
a := b: b := 3: a;
ev := proc() local l; l := 'b'; l, eval(l) end proc: ev();
f := proc(x) x end proc: f; eval(f, 1); g := f: g; eval(g);
t := table([1 = 2]): t; t2 := t: t2; eval(t2);
eval(a, 1), eval(a, 2), eval('a', 1);
eval(a, 0);
eval(a, -1);
eval(a, x);
eval();
eval(x^2 + y, x = 3), eval(x^2 + y, {x = 1, y = 2}), eval(x^2, [x = z]);
eval([x, f(x), x = y], x = 2);
eval(x[x], x = 1), eval('x', x = x);
eval(sin(x) + g2(x, 1), x = 0);
# Exponents are walked as well, coefficients aren't; what comes for an empty sequence stands in its place.
eval(x^2*y^3 + 3*x, {2 = n, 3 = 4});
eval([a[], g2()], (NULL = 2));
# Every entry of a table is walked, also those of its long chains; keys that become equal leave one entry.
big := proc(n) local t, i; t := table(); for i to n do t[i] := x end do; t end proc(20000):
big := eval(eval(big), x = y): nops([indices(big)]), {entries(big)};
nops([indices(eval(table([x = 1, y = 1]), x = y))]); big := 'big':
eval(x, {1});
evaln(a), evaln(t[1 + 1]), evaln(a || 1);
evaln(1 + 2);
evaln();
assigned(a), assigned(nothing), assigned(t[1]), assigned(t[2]), assigned(f), assigned(h(1));
assigned(nested0[1]); nested0[1] := table([2 = 3]): assigned(nested0[1][2]), assigned(nested0[1][3]);
assigned(3);
# Calls that stay as they are.
'f'(1 + 1);
h(1 + 1, NULL, 3), h(), (h + k)(x);
2(x), 3.5(x), "s"(x);
readlib('nosuch');
readlib('nosuch', "/nonexistent");
readlib('nosuch3', 3);
readlib(3);
# Concatenation.
a || 1, a || b, "x" || 1 || 2, x || (1..4), x || ("a".."d"), `||`((x, y), 1);
x || (2..1); [x || (3..3)];
x || (1.5..2);
x || (n..m), x || (1, 2, k), a || b[i];
cat(a, b, "c"), cat("a", 1, b), cat(), cat(x, 1..3), cat("n = ", n + 1);
`||`(a, 2);
`||`(a);
# Selection.
l := [10, 20, 30, [40, 50]]: l[1], l[-1], l[4, 2], l[2..3], l[-2..-1], [l[]];
l[0];
l[5];
l[k], l[1][2], {3, 3, 4}[1], (a, 7, 8)[2];
"hello"[2], "hello"[2..3], "hello"[-1], "hello"[k];
"hello"[9];
eval('y0[i]', y0 = 0), x[1], x[1][2], x[], x[1, 2][3];
t[1], t[2], t[k];
nested := table(): nested[1] := table([2 = 3]): nested[1][2]; nested[1];
fp := table([p = proc() 5 end proc]): fp[p], fp[p]();
# Logic.
true and false, true or x, not FAIL, x and x, not (x = y), x or not x;
evalb(1 < 2), evalb("a" < "b"), evalb(x = x), evalb(x = y), evalb(1 = 1.0), evalb(2 <= 1), evalb(x < 1);
evalb(infinity = infinity), evalb(-infinity < 3), evalb(undefined = undefined), evalb(undefined <> undefined), evalb(3 < infinity);
evalb(2 + I = 2 + I), evalb((x -> x + 1) = (y -> y + 1)), evalb(proc(x::integer) x end proc = proc(x) x end proc);
evalb(1 + I < 2);
evalb(5);
evalb(x);
evalb([1] < [2]);
`if`(1 < 2, "yes", "no"), `if`(FAIL, 1, 2), `if`(x < 1, 1, 2), `if`(c, z, z);
`if`(1 < 2, 3);
# Calls of operators by name.
`+`(1, 2, x), `*`(2, 3), `-`(5), `/`(4), `^`(2, 3), `and`(true, x), `<`(1, 2), `=`(1, 2), `+`(), `*`();
`not`(true), `or`(false, x), `>`(x, y), `<>`(1, 2), `union`({1}, {2}), `minus`({1, 2}, {2}), `intersect`({1, 2}, {2});
`$`(1..3), `$`(k^2, k = 1..3), x $ 2, x $ 0, $ "a".."c", x $ n;
# Other built-ins of the evaluator.
parse("1 + 2"), parse("x := 3", statement), parse("y", nosemicolon);
parse("x := 1");
parse("1 +");
parse("f(");
parse(1);
ASSERT(1 = 2, "never evaluated"), ASSERT();
kernelopts(ASSERT = true): ASSERT(1 = 1); ASSERT(1 = 2, "sum", 3);
try ASSERT(false) catch: "caught" end try;
ASSERT(x);
ASSERT(FAIL);
kernelopts(ASSERT = false):
ToInert(1);
evalb(time() >= 0), type(time(1 + 1), float);
addressof(1); pointto(addressof(x + 1)); pointto(3);
disassemble(addressof(5)); nops([disassemble(addressof(x + y))]);
pointto(assemble(disassemble(addressof([x, y]))));
assemble(0);
assemble(60, 1);
assemble(36, 1);
assemble(nosuchtag);
MPFloat(3);
MPFloat("a");
system("exit 3");
system(3);
debugger := proc() NULL end proc: DEBUG();
dbg := proc() DEBUG(1); 5 end proc: dbg();
userinfo(1, test);
infolevel[test] := 2: userinfo(1, test, "seen", 1 + 1); userinfo(3, test, "unseen");
streamcall(3);
streamcall(INTERFACE_PRINT(1 + 1));
exports(3);
nops(), op();
# A call of `if` that stays undecided outlives the procedure whose arguments it holds.
f5 := proc(x) `if`(c5, x, 2) end proc: r5 := f5(7); c5 := true: r5; c5 := 'c5':
# Levels beyond any number of names; names in a ring.
eval(x5, 2^40), eval(x5, 10^30); ra := 'rb': rb := 'ra': timelimit(0.05, eval(ra, 2^60)); eval(ra); ra := 'ra': rb := 'rb':
# Ranges of big integers in names, and more names than time allows.
x || (10^20 .. 10^20 + 1), x || (2^64 .. 3); timelimit(0.1, x || (1 .. 5*10^7)); x || (1 .. 10^9);
timelimit(infinity, 3);
# What has no order stays a relation, and no condition.
evalb("a" < 1), evalb(o5 < "b"), evalb((1 .. 2) < 3), evalb("a" < "b"), evalb([1] <= [1]);
if "a" < 1 then 1 end if; try if (o5 = p5) < 1 then 1 end if catch "cannot evaluate": "undecided" end try;
# A long condition that stays undecided takes no longer than its length asks for.
lc := o5: for n5 from 2 to 60 do lc := lc and o || n5 end do: evalb(lc = (lc and o5)), nops(lc);
# A part shared by sixty levels is evaluated once, unless procedures run in it, and by other walks in each place: a
# time limit ends those.
sh := proc(n, f) local l, i; l := o5; for i to n do l := f(l) end do; l end proc: s5 := sh(60, z -> [z, z]): s6 := sh(60, z -> q5(z, z)):
nops(s5), nops(s6); e5 := x5: for n5 to 60 do e5 := (e5 + 1)*(e5 - y5)^2 end do: y5 := x5^2: has(e5, 'y5'), has(e5, x5); o5 := 4: has(s6, 4), has(s6, 'o5'); o5 := 'o5':
s7 := eval(s6): q5 := proc(a, b) a end proc: timelimit(0.05, nops([s7])); q5 := 'q5': timelimit(0.05, evalf(s5));
# What is known of an evaluation ends where a name is given a value in the midst of it, by whatever means.
b7 := [[f7(n7), a7] $ n7 = 1..9000]: set7 := proc() global a7; a7 := 1; 2 end proc: has([b7, set7(), b7][3], 1), has([b7, set7(), b7][1], 'a7'); a7 := 'a7':
tb7 := table(): c7 := [[n7, tb7[1]] $ n7 = 1..9000]: st7 := proc() global tb7; tb7[1] := -5; 0 end proc: has([c7, st7(), c7][3], -5); r7 := [[n7, g7(1)] $ n7 = 1..9000]: sg7 := proc() g7(1) := -6 end proc: has([r7, sg7(), r7][3], -6);
nops({seq(op(9000, b7)[2], a7 = 1..3)}); _Env7 := '_Env7': v7 := [[n7, _Env7] $ n7 = 1..9000]: se7 := proc() _Env7 := -8; has(v7, -8) end proc: [v7, se7(), has(v7, -8)][2..3];
sw := proc(d) eval(d, o5 = 3); 1 end proc: timelimit(0.05, sw(eval(s5, 1))); sd := proc(d) 2*d; 1 end proc: timelimit(0.05, sd(eval(s5, 1)));
