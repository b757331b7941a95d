# Types of an inner procedure's parameters are told in terms of the outer one's variables.
checked := proc(T) proc(x::T) x end proc end proc:
i := checked(integer): n := checked({name, string}): s := checked(string):
i(3), n(a), n("a");
i(a);
s(3);
try i(a) catch: lastexception end try;
eval(i), eval(checked);
checked(list(integer))([1, 2]), checked(identical(y))(y);
checked(list(integer))([a]);
# Through a level that doesn't mention the name itself.
through := proc(T) proc() proc(x::list(T)) x end proc end proc end proc:
through(integer)()([1, 2]);
through(integer)()([a]);
# A local has the value of the moment at which the closure is made.
moment := proc() local T, f; T := integer; f := proc(x::{T, list(T)}) x end proc; T := string; f end proc:
moment()(1), moment()([2]);
try moment()("a") catch "%1 expects": lasterror end try;
# Each call makes its own type; calls among the parts of a type are not run.
f1 := proc() error "run" end proc:
run := proc(T) proc(x::f1(T)) x end proc end proc:
run(integer)(f1);
`type/f1` := proc(e, t) type(e, list(t)) end proc:
run(integer)([1]), run(string)(["a"]);
run(string)([1]);
# Types of names and of the values behind them.
byname := proc(T) proc(x::evaln(T)) x := T end proc end proc:
v := 3: byname(integer)(v), v;
v := "s": byname(integer)(v);
# Types of locals are told in global names, also where a parameter has the same.
kernelopts(assertlevel = 2): grown := proc(set::set) local y::set; y := set union {3}; y end proc: nops(grown({1, 2})); wrong := proc(set) local y::set; y := set end proc: wrong(3); kernelopts(assertlevel = 0):
