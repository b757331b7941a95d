# Environment variables end with the procedure that assigned them.
d := proc(n) Digits := n; inner() end proc: inner := () -> Digits:
d(20), Digits, inner();
Digits := 15: d(5), Digits; Digits := 10:
nest := proc(n) if n = 0 then Digits else Digits := n; nest(n - 1), Digits end if end proc: nest(3), Digits;
bad := proc() Digits := 50; error "stop" end proc: bad(); Digits;
try bad() catch: Digits end try;
_EnvA := 1: ea := proc() _EnvA := 2; eb() end proc: eb := () -> _EnvA: ea(), _EnvA;
ec := proc() _EnvB := 5; _EnvB end proc: ec(), _EnvB;
ed := proc() _EnvA := '_EnvA'; _EnvA end proc: ed(), _EnvA;
anames(environment);
# What each refuses; the value stays.
Digits := 0;
Digits := 1.5;
Digits := -3;
Digits := 268435449;
Digits := d;
UseHardwareFloats := 1;
Rounding := -1;
Rounding := up;
Order := -1;
Order := 2^70;
Order := 1.5;
`mod` := modq;
Testzero := 3;
Normalizer := 3;
`index/newtable` := 3;
NumericEventHandlers := 1;
printlevel := 2^40;
printlevel := a;
Digits, UseHardwareFloats, Rounding, Order, `mod`, Testzero, Normalizer, `index/newtable`, printlevel;
# What each takes.
Rounding := 0: Rounding := -infinity: Rounding := infinity: Rounding; Rounding := nearest:
Order := infinity: Order; Order := 6:
`mod` := mods: `mod`; `mod` := modp:
Testzero := 'Testzero': Testzero; Testzero := x -> evalb(x = 0): Testzero(0);
Normalizer := x -> x: Normalizer(3); Normalizer := 'Normalizer': Normalizer;
UseHardwareFloats := false: UseHardwareFloats;
NumericEventHandlers;
# Rounding of results by mode.
rm := proc(m) Rounding := m; Digits := 3; evalf(2/3), evalf(-2/3), evalf(1/3) end proc:
rm(nearest); rm(0); rm(infinity); rm(-infinity);
# Ditto values belong to a frame.
11: 22: 33: %, %%, %%%;
dt := proc() 5; 6; %, %% end proc: dt();
%;
# Aliases and macros.
alias(F = f(x));
F + 1, f(x)^2, f(y);
macro(q1 = 7); q1 + 1; macro();
alias(a1 = b1, b1 = c1);
a1, b1, c1;
alias(F = F, a1 = a1, b1 = b1); macro(q1 = q1); F, q1, a1;
alias(1 = 2);
alias(x = "s");
alias(I = j);
alias(j = I);
alias(z);
alias(k = infinity);
alias(aa = bb, z);
aa;
# Attributes.
setattribute(u, red): attributes(u), u; setattribute(u): attributes(u);
l := setattribute([1, 2], row): attributes(l), l, evalb(l = [1, 2]);
s := setattribute("abc", 1, 2): attributes(s), s;
setattribute(1.5, hot): attributes(%), attributes(1.5);
g := setattribute('g1(x)', cold): attributes(g), g; attributes(setattribute(g));
p := proc(x) option remember; x + 1 end proc: attributes(eval(p));
pp := setattribute(eval(p), remember, system): attributes(eval(pp)), pp(3);
setattribute(3, a);
setattribute('Digits', protected);
md := module() export e; e := 1 end module: setattribute(eval(md), b);
attributes();
attributes(1, 2);
setattribute();
setattribute(v, protected): v := 3;
setattribute(v): v := 3;
[1, 2] + setattribute([3, 4], row);
setattribute([1, 2], column) + setattribute([3, 4], row);
[1, 2] + [1];
save Digits, "environment_saved";
restart: alias(), macro(), Digits;
