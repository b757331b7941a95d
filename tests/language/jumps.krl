# A `return`, `break` or `next` from the midst of an operation puts back what the operation changed, as an
# error does: loop variables, environment variables, print levels, numeric events.
k := 5: f := proc() global k; seq(RETURN(k), k = 1..3) end proc: f(), k;
f := proc() global k; add(RETURN(k), k = [7, 8]) end proc: f(), k; error "later"; k;
f := proc() global k; try seq(RETURN(k), k = 1..3) finally print("put back", k) end try end proc: f();
f := proc() global k; traperror(mul(RETURN(k), k = 1..3)), k end proc: f();
f := proc() global k; seq(goto(there), k = 1..3); print("never"); there; "label", k end proc: f();
f := proc() local i, s; global k; s := 0; for i to 4 do seq(parse("next", statement), k = 1..3); s := s + 1; next end do; s, k end proc: f();
seq(RETURN(k), k = 1..3); k;
f := proc() Digits := 20; seq(RETURN(Digits), Digits = 5..7) end proc: f(), Digits;
f := proc() if RETURN("from a condition") then 1 end if end proc: f(); error "after it";
`print/shown` := RETURN: f := proc() print(shown(1)); "never" end proc: f(); error "after printing"; 1;
f := proc(a, b) a + b; "never" end proc: NumericEventHandler(invalid_operation = RETURN):
nops([f(Float(infinity), -Float(infinity))]), nops([f(Float(infinity), -Float(infinity))]);
NumericEventHandler(invalid_operation = default): f(Float(infinity), -Float(infinity));
# What ends the value that a variable had in these loops: its end, an error, a jump; also for the variables
# that belong to the procedure that runs.
seq(evalf(1/3), Digits = 2..4); Digits; try seq(1/(Digits - 6), Digits = 5..7) catch "numeric exception: div": Digits end try;
g := proc(x) Digits := 3; if x = 6 then error "six" end if; x end proc:
f := proc() Digits := 20; try seq(g(Digits), Digits = 5..7) catch "six": end try; Digits end proc: f(), Digits;
seq(_EnvA, _EnvA = 1..2); _EnvA; f := proc() seq(_EnvA, _EnvA = 1..2), _EnvA end proc: f(); _EnvA := 7: f(), _EnvA;
# Names of RETURN's kind in every place of a statement.
f := proc(x) local i; for i from RETURN(x) to 3 do end do end proc: f(1);
f := proc(x) local i; for i to 3 while RETURN(x) do break end do end proc: f(2);
f := proc(x) Digits := RETURN(x) end proc: f(3), Digits;
f := proc(x) option remember; RETURN(x + 1) end proc: f(3), f(3);
f := proc() map(RETURN, [4, 5]); "never" end proc: f();
# An error goes on through `finally` as it was, whatever others that part has met and dealt with.
try error "first" finally try error "second" catch: end try end try; lasterror;
try error "first %1", 1 finally traperror(2 + 3) end try; lasterror; lastexception;
try try error "first" finally traperror(error2()); traperror(1/0) end try catch "first": "the first one" end try;
# So does an error that goes on from a `finally`, or from the end of a time limit: the loop's variable is back.
k := 5: p := proc(x) try error "x" finally 1 end try end proc: try seq(p(k), k = 1..3) catch: end try; k; error "y"; k;
try seq(timelimit(0.05, proc() do end do end proc()), k = 1..3) catch: end try; k; error "y"; k;
q := proc() try add(p(k), k = 1..3) catch: end try; k end proc: q(); proc(a, b) local c; c := a; error "z" end proc(1, 2); k;
# A time limit in the midst of a substitution or a search leaves both in order, and no memory behind.
`type/slow` := proc(x) do end do end proc: tl := [seq(h9(i9), i9 = 1..3)]: timelimit(0.05, hastype(tl, slow)); hastype(tl, integer);
`type/slow` := proc(x) evalb(x = h9(3)) end proc: hastype(tl, slow); subs(1 = 7, tl);
