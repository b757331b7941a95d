# Global bindings: names that are bound to be replaced are themselves where they are bound anew or unbound.
bind(q = r): q;
bind(q = s): q;
bind();
unbind(q): q, bind();
bind(q = 5, w = x + 1): q, w;
unbind(w, q); w, q;
unbind('nosuch');
bind(k1 = k2): bind(k2 = 7): k1;
unbind(k1, k2): k1, k2;
# A procedure binds for the statements behind its call.
b := proc() bind(u1 = 3) end proc:
b(), u1;
u1; unbind(u1): u1;
# All members of a module, and one of them.
m := module() export a, `+`; a := 10; `+` := proc(x, y) [x, y] end proc end module:
bind(m): a, 1 + x;
a;
unbind(a, `+`): a, x + y;
use m:-a in a, x + y end use;
# A use reaches as far as its statements, inner ones come first, declarations hide it.
use a = b, c = d in a + c; use a = e in a + c end use; a end use;
use a = b in proc(a) a end proc, proc(c) local d; d := a; c + d end proc end use;
f := proc(x) use y = x in y^2 end use end proc: f(3);
# What is no list of bindings, outside and inside of a trap. What was bound before stays.
bind(q = r):
bind(3);
bind(3 = 4);
bind(nosuch);
bind(no_modules);
bind(m, no_modules);
e1 := module() end module:
bind(e1);
bind(eval(e1));
use e1 in 1 end use;
use nosuch in 1 end use;
try bind(3) catch: lastexception end try;
try bind(3 = 4) catch: lastexception end try;
try bind(nosuch) catch: lastexception end try;
try bind(no_modules) catch: lastexception end try;
try bind(e1) catch: lastexception end try;
try bind(eval(e1)) catch: lastexception end try;
try use e1 in 1 end use catch: lastexception end try;
q, bind();
# A use inside of a procedure comes before what the procedure declares; inside of an inner procedure, names of enclosing
# ones come before it.
f := proc(x) use x = 7 in proc(y) proc() [x, y] end proc end proc end use end proc: f(1)(2)();
f := proc(q) local t; t := 1; use t = q + 5 in use r = t in r + t end use end use end proc: f(9);
f := proc(x) use y = x in proc() y end proc end use end proc: f(4)(); eval(f(4)); print(f);
f := proc(x) local t; t := 7; use y = [x, t] in proc(x) local t; t := 1; [x, t, y] end proc end use end proc: f(3)(5);
f := proc(x) use y = proc(z) x + z end proc in proc(x) y(x) end proc end use end proc: f(10)(1);
f := proc() local s; use s = s1 in s := 3 end use; s end proc: f(), s1;
f := proc() use u = nargs in u, proc() u, nargs end proc(5, 6, 7) end use end proc: f(1, 2);
# A binding in terms of a procedure's variables holds in the procedures inside, whatever they declare.
qu := proc(b) local c; c := 7; use a = g(b, c), d = (x -> x + b) in proc(c) proc(b) a, b, c, d(1) end proc end proc end use end proc: qu(5)(6)(8);
qu := proc(b) use a = b + 1 in module() export e; e := () -> a end module end use end proc: qu(5):-e();
qu := proc(a) use a = g(2) in proc() a end proc end use end proc; qu(5)();
# Inner bindings come in front of outer ones for the same name, also those of a module or a member.
m := module() export a, x; a := 10; x := 1 end module: n := module() export b, a; b := 1; a := 20 end module:
use a = 7 in use m in a end use end use; use a = 7 in use m:-a in a end use end use;
use n in use m in [a, b] end use end use; use m in use n in [a, b] end use end use;
proc() use a = 7 in use m in a end use end use end proc(); use a = 7 in proc() use m in a end use end proc() end use;
# A binding list itself stands under the bindings around it.
use m = n in use m in a, b end use end use;
o := module() export sub, a; a := 5; sub := module() export x; x := 77 end module end module:
use o in use sub in x, a end use end use;
# What a module, a member or an equation binds is no implicit local.
f := proc() use m in x := 10 end use; use m:-a in a := 3 end use end proc: f(): m:-x, m:-a;
f := proc() use m in for x to 3 do end do end use end proc: f(): m:-x;
mm := module() export e; use m in x := 66; e := x end use end module: mm:-e, m:-x;
# The name of a parameter or local variable in a binding list is that variable: its members are known, it is no module.
f := proc(m) use m in x end use end proc;
f := proc(t) local m; proc() use m in x end use end proc end proc;
f := proc(m) try use m in x end use catch "`%1` is not": lastexception end try end proc: f(1);
f := proc(m) use m:-x in x end use end proc: f(module() export x; x := 99 end module), m:-x;
