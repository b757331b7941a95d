# The normal view: storage of sums and products would show through.
op(0, 2*x), nops(2*x), op(1, 2*x), op(2, 2*x), nops(x^2), op(0, x^2), op(2, x^2), nops(2*x*y), op(3, 2*x*y);
op(2*x + 3*y^2 - z), op(0, x + y), nops(x + y), op(0, x*y), op(2*x^2), nops(-x), op(-x);
op(0, [1]), op(0, {1}), op(0, 1/2), op(0, 3), op(0, -10^20), op(0, 1.5), op(0, 2 + I), op(0, "s"), op(0, x), op(0, a..b), op(0, f(1)), op(0, t[1]), op(0, x^y);
op(0, a = b), op(0, a <> b), op(0, a < b), op(0, a <= b), op(0, a::b), op(0, 'a || (b + 1)'), op(0, a and b), op(0, a or b), op(0, not a), op(0, ''x'');
op(1, 3), op(1, "s"), op(1, x), op(1/2), op(2 + 3*I), op(3*I), nops(3*I), op(1.5), op([a, b]), op(f(a, b)), op(t[1, 2]), op(a..b), op(''x''), [op([])], [op(f())];
# Positions: from the end, ranges, an empty range, the head in front, outside.
op(-1, [1, 2]), op(1..2, f(a, b, c)), op(-2..-1, [1, 2, 3]), op(0..2, f(a, b)), [op(3..2, [1, 2])], op(0..0, [1]), [op(1..0, [])];
op(3, [1, 2]); op(-3, [1, 2]); op(1..3, [1, 2]); op(3..1, [1, 2]); op(10^20, [1]);
op(x, [1]); op(); op(1, [1], 2); op(a..b, [1]); nops(); nops(1, 2);
# Nested positions.
op([1, 2], [f(a, b), c]), op([2, 0], [f(a, b), g(c)]), op([1, 1..2], [f(a, b)]), op([], [7]), op([-1, -1], [[1], [2, 3]]);
op([1, x], [[1]]); op([x, 1], [[1]]); op([1..2, 1], [[1]]); op([1, 3], [[1, 2]]); op([10^20], [1]);
# Procedures, tables and names show what they hold.
f := proc(u, v::integer) option remember; local i; global g; description "adds"; i := u; i + g end proc: f(1, 2):
nops(eval(f)), [op(1, eval(f))], [op(2, eval(f))], [op(3, eval(f))], op(4, eval(f)), [op(5, eval(f))], [op(6, eval(f))], [op(7, eval(f))];
op(0, eval(f)), op(1, f), nops(f), op(8, eval(f));
h := x -> x^2: [op(4, eval(h))], [op(3, eval(h))];
d := table([a = 1]): op(0, eval(d)), nops(eval(d)), op(eval(d)), op(d), op(2, op(d));
m := module() export e; e := 1 end module: op(0, eval(m)), nops(eval(m));
# Places of a procedure's own come from outside only as raw objects.
op(1, pointto(assemble(29, 1))); nops(pointto(assemble(29, 1)));
# Replacement by position.
subsop(1 = NULL, [a, b]), subsop(-1 = q, f0(a, b)), subsop(0 = g, f0(a)), subsop(0 = g, t[1]), subsop(1 = NULL, 2 = NULL, [a, b, c]), subsop(2 = 9, {1, 2}), subsop([a]);
subsop(1 = (u, v), [1, 2]), subsop(3 = z, [a, b, c]), subsop([1, 2] = z, [f0(a, b), c]), subsop([1, 1] = u, [1, 2] = v, 2 = w, [f0(a, b), c]), subsop([] = 3, [1]);
subsop(2 = y, 2*x), subsop(1 = 3, 2*x), subsop(1 = y, 2*x), subsop(2 = z, 2*x*y), subsop(1 = a + b, x + y), subsop(2 = 3*b, x + y), subsop(1 = z, 2 = w, x*y);
subsop(1 = 2, x^3), subsop(2 = 4, x^3), subsop(2 = n, x^3), subsop(2 = 1, x^n), subsop(1 = b, a..c), subsop(2 = b, a = c), subsop(1 = b, not a), subsop(1 = b, ''a'');
subsop(1 = x, 2 + 3*I), subsop(2 = x, 2 + 3*I), subsop(2 = 0, 2 + 3*I), subsop(1 = 5, 3*I), subsop(1 = x, 3*I), subsop(1 = 1.5, 2 + 3*I);
subsop(1 = 2, 1/3), subsop(2 = 4, 2/3), subsop(2 = x, 2/3), subsop(1 = 7, 2.5), subsop(2 = 1, 2.5), subsop(1 = x, 3), subsop(1 = 2, x), subsop(1 = "b", "a");
subsop(2 = 0, 2/3);
subsop(1 = x, 2.5); subsop(3 = 1, [1, 2]); subsop(-3 = 1, [1, 2]); subsop(0 = g, [1]); subsop(1 = 1, []); subsop(10^20 = 1, [1]);
subsop([1, x] = 3, [[1]]); subsop(x = 1, [1]); subsop(1, [1]); subsop();
subsop(1 = 3, eval(m));
subsop(1 = s, eval(d)), subsop(2 = 1..3, eval(d)); subsop(2 = 3, eval(d)); eval(d);
# Each field of a procedure takes its own kind.
subsop(1 = (a, b::name, c = list), eval(f)); subsop(2 = j, eval(f)); subsop(6 = (h, k), eval(f)); subsop(3 = (trace, "remember"), eval(f)); subsop(5 = ("new", text), eval(f));
op(4, subsop(4 = table([(3, 4) = 7]), eval(f))), [op(4, subsop(4 = NULL, eval(f)))], op(4, eval(f));
subsop(1 = 3, eval(f)); subsop(1 = (3, a), eval(f)); subsop(2 = 3, eval(f)); subsop(2 = (j, 3), eval(f)); subsop(6 = 7, eval(f)); subsop(3 = [1], eval(f)); subsop(5 = 7, eval(f));
subsop(4 = 3, eval(f)); subsop(3 = builtin, eval(f)); subsop(7 = 1, eval(f)); subsop(7 = (x, y), eval(f)); subsop(8 = 1, eval(f));
g := subsop(2 = j, eval(f)): g(1, 2) - g(1, 2), f(1, 2) - f(1, 2);
# Membership, counts and sizes.
member(2, [1, 2, 3]), member(2, {1, 2}), member(4, [1]), member(2, [1, 2], 'p'), p, member(1, x);
member(1); member(1, [1], 3);
numboccur(x + x^2, x), numboccur(a + 2*b, 2*b), numboccur(x^2 + 2, 2), numboccur([x, [x]], x), numboccur([x, y, z], {x, z}), numboccur([[1, 2], 1], [1, 2]), numboccur(f0(x, x), f0), numboccur(2 + I, I), numboccur(3, 3), numboccur(x, y);
length("abc"), length(abc), length(12345), length(-10^20), length(0), length(1/2), length([1, 2]), length(x + y), length(f0(1)), length(table([ab = 1]));
numboccur(x); length(); length(1, 2);
# Tables that hold themselves.
t := table([a = x]): t[t] := eval(t): has(eval(t), x), has(eval(t), 7), type(eval(t), table); length(eval(t)); numboccur(eval(t), x); subs(x = 1, eval(t)); t[a];
