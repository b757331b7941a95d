# All equations of one call apply at once, to whole subexpressions.
subs(x = y, x + y), subs(x = y, y = x, x + 2*y), subs({x = y, y = x}, x + 2*y), subs([x = 1], y = 2, x + y + z), subs(x = x + 1, x^2), subs(x = 1, x = 2, x);
subs(x + y = z, x + y), subs(x + y = z, x + y + w), subs(2*b = c, a + 2*b), subs(x^2 = z, x^2 + x^4), subs(f(x) = g, f(f(x))), subs(t[1] = z, t[1] + t[2]), subs(f = g, f(f)), subs(1 = 2, [1, x, y]), subs("a" = b, ["a"]);
subs(x = 3, x^2), subs(2 = 3, x^2), subs(2 = n, x^2), subs(3 = c, 3*x*y), subs(2 = x, 2 + 3*I), subs(3 = x, 2 + 3*I), subs(3 = x, 1/3), subs(x = 2, x^y), subs(y = 2, x^y), subs(x = 0, y*x + z);
subs(x = (1, 2), [x, h(x), y]), [subs(x = NULL, h(x, y))], subs(x = 1, [x, {x}, x..y, x = y, x < y, 'h(x)', ''x'', x::y, not x]);
subs(x + 1), subs(x = 1), subs([], x), subs({}, x);
subs(x = 0, 1/x);
subs(x = (1, 2), x + y);
subs(1, x); subs([x = 1, 2], x); subs(x = 1, 2, x); subs();
# The result is simplified and not evaluated.
x0 := 5: subs(y = 'x0', y + 1), subs(y = 0, sin(y)), eval(subs(y = 'x0', y + 1));
# Procedures: the body takes anything, a declaration only its like, and places stay places.
p := proc(a, b) local i; option remember; i := a + y; i*z + b end proc: p(1, 2):
subs(y = 1, z = 7, eval(p)); subs(y = a, eval(p)); subs(q = 1, eval(p)); subs(a = 5, eval(p)); subs(i = 5, eval(p)); subs(y = 1, remember = trace, eval(p));
subs(y = 1, remember = 5, eval(p)); subs(y = 1, remember = builtin, eval(p)); subs(a = 5, y = a, eval(p)); subs(a = 5, 2 = a, eval(p));
q := subs(y = 3, z = 2, eval(p)): q(4, 1), evalb(p(4, 1) = (4 + y)*z + 1), op(4, eval(q))[4, 1], op(4, eval(q))[1, 2], evalb(op(4, eval(p))[1, 2] = (y + 1)*z + 2);
w := proc(n) global c; c := c + n; proc(k) c*k end proc end proc: subs(c = e, eval(w)); subs(c = 3, eval(w)); r := subs(n = v, c = e, eval(w)): e := 1: r(2)(5), e;
subs(d = 1, proc() d := 2 end proc); subs(d = 1, proc() global d; for d to 3 do od end proc); subs("no" = s, proc() try error "no" catch "no": "yes" end try end proc); subs("no" = "on", proc() try error "no" catch "no": "yes" end try end proc)();
# Tables: keys and values, in a copy.
t := table([a = x, x = [x]]): s := subs(x = 1, eval(t)): s[a], s[1], t[a], t[x], evalb(subs(q = 1, eval(t)) = eval(t));
# An error on the way leaves everything as it was.
L := [x, 1/x, x^2]: subs(x = 0, L); L; traperror(subs(x = 0, L)), L;
# What holds what.
has(a + 2*b, 2*b), has(a + 2*b, b), has(a*b^2, b^2), has(2, 2), has(I, I), has(2 + 3*I, I), has(2 + 3*I, 3), has(x^2, 2), has(x + y, 1), has(1/2, 2), has(1.5, 15), has(x, y), has(f(x), f), has(f(x), x), has(t1[k], k);
has([1, 2], {3, 2}), has([1, 2], [3]), has([[1, 2], 3], [1, 2]), has([], []), has(a and not b, b), has(a::b, b), has(eval(t), a), has(eval(p), y), has(eval(p), a), has('h(x)', x), has(''x'', x);
has(x); has(); has(1, 2, 3);
