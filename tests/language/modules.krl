# A module's members, from inside and outside.
m := module() export a, f; local n; n := 10; a := 1; f := proc(x) n := n + x; n end proc end module:
m:-a, m:-f(5), m[f](1), m['a'];
m:-n;
m:-y;
module mm() export b; b := 1 end module:
mm:-q;
mm := 3;
attributes(mm);
m[1 + 1];
m:-a := 7: m:-a;
exports(m);
m := 3;
m;
type(m, name), eval(m, 1);
(x + 1):-a;
nomodule:-a;
# Anonymous modules: each evaluation gives another.
stack := proc()
  module()
    export push, pop, size;
    local items, n;
    items := table(); n := 0;
    push := proc(x) n := n + 1; items[n] := x end proc;
    pop := proc() local x; if n = 0 then error "stack is empty" end if; x := items[n]; n := n - 1; x end proc;
    size := () -> n;
  end module
end proc:
s1 := stack(): s2 := stack():
s1:-push(1): s1:-push(b): s2:-push("c"):
s1:-size(), s2:-size(), s1:-pop(), s1:-pop(), s1:-size();
s1:-pop();
try s1:-pop() catch "stack": lasterror end try;
# What a definition refuses.
module(x) export a; end module;
module() export a; local a; end module;
module() export a; global a; end module;
module() export a, a; end module;
module() export Digits; end module;
module() export thismodule; end module;
module() local nargs; end module;
module() export a; return 1 end module;
ret := module() export a; a := 5; return; a := 6 end module: ret:-a;
module() break end module;
module() export a; b1 := 2; a := b1 end module:
named := module() export a; c1 := 2; a := c1 end module:
named:-a;
# thismodule, and members that call each other.
tm := module() export self, twice; self := () -> thismodule; twice := x -> 2*x end module:
evalb(eval(tm:-self()) = eval(tm)), tm:-self():-twice(4);
# A module defined inside a procedure captures its frame.
mk := proc(k) module() export get; get := () -> k end module end proc:
mk(3):-get(), mk(q):-get();
# use: names and operators come from a module, as far as the statement reaches.
vec := module() export `+`, `*`, norm; `+` := proc(a, b) 'plus'(a, b) end proc; `*` := proc(a, b) 'times'(a, b) end proc; norm := x -> abs(x) end module:
use vec in norm(-3), p + q, 2*p end use;
norm(-3);
use vec in proc(u, v) u + v end proc end use:
use nn = vec:-norm, k = 7 in nn(-k) end use;
use q7 in 1 end use;
pu := proc(x) use vec in x + norm(x) end use end proc: pu(-2);
bind(kk = 12): kk + 1; unbind(kk): kk;
# load and unload are options of the definition; unload runs at restart.
un := module() export bye; option unload = bye; bye := proc() print("unloading") end proc end module:
m9 := module() export v; v := 1 end module:
restart;
m9;
attributes(u), type(proc() end proc, procedure), type(module() end module, `module`);
# A warning names the procedure that the assignment makes, a member or a local too.
mw := module() export f; local g; g := proc() g1 := 1 end proc; f := proc() f1 := 1 end proc end module:
pw := proc() local q; q := proc() q1 := 1 end proc; q end proc:
# The name of a module definition is a variable of the procedure or module around it: an implicit local of each
# call, a declared local, an export, a captured variable, a parameter's name, or a global.
f := proc() module q() export a, me; a := 2; me := () -> q end module; evalb(q:-me() = q), q:-a end proc:
f(), f(), q;
f := proc(n) if n > 0 then y := module q() export v; v := n end module; y:-v + q:-v fi end proc: f(3), f(4);
f := proc(n) local q, inner; inner := proc() module q() export v; v := n end module; 0 end proc; inner() + q:-v end proc: f(3), f(4), eval(f);
module outer() export inner; module inner() export v; v := 7 end module end module: outer:-inner:-v, exports(outer:-inner);
module outer2() local inner; export get; module inner() export v; v := 8 end module; get := () -> inner:-v end module: outer2:-get();
f := proc(p) module p() export v; v := 9 end module; p:-v end proc: f(mp), mp:-v; f(mp); f(5);
f := proc() global mg; module mg() export v; v := 10 end module; mg:-v end proc: f(), mg:-v; f();
f := proc() module q() export a; a := 2 end module; q:-b end proc: f();
