# What a declaration refuses, in the order in which it looks: repetition, then a clash with another kind.
proc() local y, y; global y; y end proc;
proc(x) local x, x; x end proc;
proc(x, x) local x; x end proc;
module() local b, b; export b; end module;
module() local a; export a, a; global a; end module;
# Each refusal inside of a trap. The statement behind it finds nothing left over.
try proc(x) local x; x end proc catch: lastexception end try;
try proc(x) global x; x end proc catch: lastexception end try;
try proc(x, x) x end proc catch: lastexception end try;
try proc(Digits) 1 end proc catch: lasterror end try;
try proc() local y, y; y end proc catch: lastexception end try;
try proc() local y; global y; y end proc catch: lastexception end try;
try proc() local Order; 1 end proc catch: lasterror end try;
try proc() global y, y; y end proc catch: lastexception end try;
try proc(thismodule) 1 end proc catch: lastexception end try;
try proc() local args; 1 end proc catch: lastexception end try;
try proc() global nargs; 1 end proc catch: lastexception end try;
try module() export procname; end module catch: lastexception end try;
try module() export a; local a; end module catch: lastexception end try;
try module() export a; global a; end module catch: lastexception end try;
try module() export a, a; end module catch: lastexception end try;
try module() export Order; end module catch: lasterror end try;
try module() return 1 end module catch: lastexception end try;
try module() next end module catch: lastexception end try;
proc(x) proc(y) x + y end proc end proc(1)(2);
# An error inside leaves no procedure around the next one: y isn't the outer parameter any more.
proc(y) local f; f := proc() local z, z; y end proc end proc;
proc() y end proc();
# The imaginary unit may be declared, with a warning, and then is the declared name.
proc(I) I^2 end proc(3);
proc() local I; I := 5; I end proc();
m := module() export I; I := 7 end module:
m:-I, I^2;
# Inline procedures.
proc(x) option inline; proc() x end proc end proc;
f := proc(n) proc(x) option inline; x + n end proc end proc;
try proc(x) option inline; y := x end proc catch: lastexception end try;
try proc(x) local t; option inline; x + t end proc catch: lastexception end try;
try proc(n) proc(x) option inline; x + n end proc end proc catch: lastexception end try;
proc(x) option inline, system; x end proc;
# An operator without arrow takes the names of its body, but no constants and nothing declared.
proc() option operator; x = y end proc;
proc() option operator; x^2 < y .. z + infinity end proc;
proc() option operator; global g; local l; [g + l, f(x, {y}), true and u] end proc;
constants := Pi: (proc() option operator; Pi*r^2 end proc)(2); constants := 'constants':
# Places by number that nothing declares.
none := disassemble(addressof([]))[2]:
made := proc(body) pointto(assemble(PROC, none, none, none, none, body, none, none, none)) end proc:
defined := proc(body) pointto(assemble(MODDEF, none, none, none, none, body, none, none, none, none)) end proc:
made(assemble(PARAM, 1));
made(assemble(LOCAL, 1));
made(assemble(LEXICAL, -1));
defined(assemble(LOCAL, 1));
defined(assemble(PARAM, 2));
try made(assemble(PARAM, 1)) catch: lastexception end try;
try made(assemble(LOCAL, 1)) catch: lastexception end try;
try made(assemble(LEXICAL, 1)) catch: lastexception end try;
try defined(assemble(LOCAL, 1)) catch: lastexception end try;
# A type tells what is assigned, from outside of the module too; what is refused changes nothing.
# What isn't a name can't be assigned through a parameter, captured or not, at any level.
for level from 0 to 2 do kernelopts(assertlevel = level):
  for target in [proc(x) x := 3 end proc, proc(x) proc() x := 3 end proc() end proc, proc(x) x[1] := 3 end proc, proc(x) (x, x) := 3, 4 end proc, proc(x) x::integer := 3 end proc, proc(x) for x to 2 do end do end proc] do
    print(level, traperror(target(2)), target(nm)); nm := 'nm' end do end do:
kernelopts(assertlevel = 2):
t := module() export a::integer; a := 3 end module:
t:-a, t[a], t:-a + 1;
t:-a := "s";
t:-a;
t:-a := 7: t:-a;
kernelopts(assertlevel = 0):
