# Listings: statements of every form with their numbers, alone, in ranges, with break points.
f := proc(x, n::integer) local i, s; global total; s := 0; for i to n do s := s + x; if s > 5 then s := s - 1 elif s = 4 then s := s + 1 else NULL end if end do; for i in [1] while s < 0 do s end do; try s := s/x catch "a", "b": print(1) catch: 5 finally total := s end try; while s > 100 do s := 0 end do; s end proc:
show := proc() INTERFACE_CHAR(debugopts('procdump' = args)) end proc:
show(f); debugopts(statcount = f); debugopts(procdump = [f, 1]);
show([f, 2]); show([f, 4]); show([f, 9]); show([f, 3 .. 5]); show([f, 6 .. 20]); show([f, 99 .. 100]);
one := proc() 5 end proc: show(one); show([one, 1]); none := proc() end proc: show(none); debugopts(statcount = none);
arrow := x -> x^2: show(arrow); typed := proc(a::list) local b::integer; b := nops(a) end proc: show(typed);
outer := proc(x) local inner, y; y := 2; inner := proc(z) x + y + z end proc; inner(1) end proc: show(outer);
debugopts(procdump = [f, 5 .. 3]); debugopts(procdump = [f, 0]); debugopts(procdump = [f, -1]); debugopts(procdump = [f, 99]); debugopts(procdump = [f]); debugopts(procdump = [f, a]); debugopts(procdump = [f, 0 .. 2]); debugopts(procdump = 3); debugopts(procdump);
# Break points stop where the debugger is told the number; conditions mean the procedure's variables.
debugger := proc() lprint(args); NULL end proc:
x := 77: s := 78:
debugopts(stopat = [f, 3], stopat = [f, 6, s > 3 and x = 2], stopat = [f, 11, s]); show([f, 3 .. 6]); f(2, 3);
debugopts(stopat = [f, 3, i = 2]); f(1, 3); debugopts(stopat = [f, 3, 1/(x - 1) = 0]); f(1, 1); lasterror; debugopts(stopat = [f, 3, 1 < y]); f(1, 1); debugopts(stopat = [f, 3, 'x = 1']); f(1, 1); f(3, 1);
debugopts(stopat = [f, -3], stopat = [f, -6], stopat = [f, -11]); f(2, 3);
x := 'x': s := 's':
debugopts(stopat = [f, -3]); debugopts(stopat = [f, 99]); debugopts(stopat = [f, 2^40]); debugopts(stopat = [f, 0]); debugopts(stopat = [f, -99]); debugopts(stopat = [f]); debugopts(stopat = [f, a]); debugopts(stopat = f); debugopts(stopat); debugopts(stopat = [1, 2]); debugopts(stopat = [nosuch, 1]); debugopts(stopat = [nops, 1]); debugopts(stopat = [debugger, 1]);
debugopts(nosuch); debugopts(nosuch = 1); debugopts(1); debugopts(); debugopts(steplevel, statcount = one);
# Procedures by entry, by member, without a name; recursion; a local of the same name as a global.
T := table(): T[1] := proc() 1; 2 end proc: debugopts(stopat = ['T[1]', 2]); T[1](); m := module() export e; e := proc(a) a; a + 1 end proc end module: debugopts(stopat = [m:-e, 2]); m:-e(5); debugopts(stopat = ['m:-e', -2]); m:-e(5); debugopts(stopat = ['m:-no', 1]); alias1 := 'alias2': alias2 := 'w2': w2 := proc() 1; 2 end proc: debugopts(stopat = ['alias1', 2]); w2(); debugopts(stopat = [alias1, -2]); alias1 := 'alias1': debugopts(statcount = 'alias1');
maker := proc(k) proc(a) a*k; DEBUG("in", a); a + k end proc end proc: quiet := eval(debugger): debugger := proc() lprint(args[1 .. 2], substring(args[3][2], 1 .. 8), args[3][3]); NULL end proc: maker(2)(3); debugger := eval(quiet):
fact := proc(n) if n = 0 then 1 else n*fact(n - 1) end if end proc: debugopts(stopat = [fact, 3, n < 3]); fact(4); debugopts(stopat = [fact, -3]);
# Watches: plain, by short cuts, in loops and `seq`, indexed, through `assign`, of locals by procedure.
w := proc() local a, k, L; global g, G; g := 1; a := 2; for k to 3 do NULL end do; G[1] := 5; G[1] := 6; L := [1, 2]; L[2] := g; seq(g, g = 1 .. 2); assign('g', 9); g, a end proc: w():
debugopts(addwatch = 'g', addwatch = 'G', addwatch = [w, a], addwatch = [w, k], addwatch = [w, L]); G := 'G': w(); debugopts(watchtable);
g := 3: debugopts(delwatch = [w, k], delwatch = 'G', delwatch = [w, a], delwatch = [w, L]); w(); debugopts(delwatch = 'g'); debugopts(watchtable); w();
debugopts(delwatch = 'g'); debugopts(addwatch = 3); debugopts(addwatch = [w]); debugopts(addwatch = [w, 1]); debugopts(watchtable = w); debugopts(watchtable = [3]); debugopts(watchtable = ['g', [w, a]]); debugopts(watchtable); debugopts(watchtable = []); debugopts(watchtable); debugopts(addwatch); debugopts(delwatch);
# Errors: those that nothing catches, those that something does, by text or all; afterwards they go on.
bad := proc(k) if k = 0 then error "first %1", k elif k = 1 then error "second" else 1/(k - 2) end if end proc: trap := proc(k) try bad(k) catch: "caught" end try end proc:
debugopts(adderror = "first %1"); bad(0); bad(1); trap(0); traperror(bad(0)); debugopts(adderror = all); bad(2); trap(2);
debugopts(errortable = [traperror["second"]]); bad(1); trap(0); trap(1); traperror(bad(1)); debugopts(adderror = traperror); trap(0); debugopts(errortable); debugopts(delerror = traperror["second"], delerror = traperror); debugopts(errortable);
debugopts(delerror = "first"); debugopts(adderror = 3); debugopts(adderror = traperror[3]); debugopts(errortable = 3); debugopts(errortable = [3]); debugopts(adderror); debugopts(delerror); error "top";
debugopts(lasterror = 1); debugopts(lastexception = 1);
# Commands: their values, their errors, what they see and what they change; the names of errors and ditto values return.
commands := []: count := 0:
debugger := proc() global count; lprint(args); count := count + 1; if count <= nops(commands) then parse(commands[count]) else NULL end if end proc:
tell := proc() global count, commands; count := 0; commands := [args]; NULL end proc:
c := proc(p) local a; a := p + 1; "ditto"; DEBUG("stop"); a := a*2; [a, %, printlevel] end proc:
tell("a", "assign('a', 10)", "[a, p, nargs, procname]", "1/(p - 4)", "debugopts(lasterror)", "bad(0)", "%", "printlevel", "RETURN(3)"); c(4); lasterror; printlevel;
tell("c(1)", "17"); c(4);
tell("debugopts(steplevel = 999999999)", "NULL", "debugopts(steplevel = 0)"); c(4); debugopts(steplevel);
tell("debugopts(callstack)", "debugopts(callstack = 1)"); c(4); debugopts(callstack); debugopts(callstack = -1); debugopts(callstack = a);
tell("debugopts(lasterror)", "debugopts(lastexception)"); c(4); traperror(1/0): tell("debugopts(lasterror)", "debugopts(lastexception)", "1/(p - 4)"); c(4); lasterror; lastexception;
tell("printlevel", "debugopts(interrupt)"); c(4); lasterror; printlevel; "after"; debugger := proc() error "in the dialogue" end proc: c(4); lasterror; printlevel;
debugger := proc() lprint(args); NULL end proc:
debugopts(steplevel = z); debugopts(steplevel = 2^40);
DEBUG(5); DEBUG(1 > 2); DEBUG(1 < 2); DEBUG(u < v);
# A `debugger` that is no procedure is none.
debugger := 5: c(4); debugger := proc() lprint(args); NULL end proc: c(4);
# Equal statements are told apart, whatever form they stand in; a `DEBUG` of the program's own is a statement too.
same := proc(n) local s, i; s := n; s; if n > 1 then s else s end if; for i to 2 do s end do; try s; error "same" catch: s finally s end try; s; s end proc:
debugger := proc() lprint(args[-1][3]); debugopts(steplevel = `if`(args[-1][2] = same, 999999999, 0)); NULL end proc:
debugopts(stopat = [same, 1]); same(2); debugopts(stopat = [same, -1], steplevel = 0); same(2);
fails := proc(k) local go, j; go := proc(x) if x = 0 then error "zero" end if; x - 1 end proc; go(k); go(k) ; if true then go(k - 1) else go(k - 1) end if; for j to 1 do go(k); go(0) end do; go(0) end proc:
printlevel := 2: fails(1); fails(3); printlevel := 1:
debugger := proc() lprint(args); NULL end proc: debugopts(steplevel = 0):
ask := proc(x) local y; y := x^2; DEBUG(x > 2 and y < 3); DEBUG(not x > 2); DEBUG(a); DEBUG(a = 1); DEBUG([1 > 2]); DEBUG(1 > 2, 3); y end proc: ask(3); ask(1);
# A break point that is set or taken away while its loop runs, also where it is the only statement in there.
late := proc(n) local i, s; s := 0; for i to n do s := s + i end do; for i in [1, 2, 3] do s := s + i end do; s end proc:
debugger := proc() lprint(args); if args[-1][3] = 2 then debugopts(steplevel = 999999999) else debugopts(steplevel = 0, stopat = [late, 3], stopat = [late, 5]) end if; NULL end proc:
debugopts(stopat = [late, 2]); late(3); debugopts(stopat = [late, -2], stopat = [late, -3]);
debugger := proc() lprint(args); debugopts(stopat = [late, -args[-1][3]]); NULL end proc: late(3); late(3); debugger := proc() lprint(args); NULL end proc:
# A profile: values and ditto values stay, the jump of an error goes on, and its time counts.
debugger := proc() NULL end proc:
p := proc(n) local k, t; t := 0; for k to n do if k = 2 then next end if; t := t + k; if k = 5 then break end if end do; t; %, t end proc: p(7);
debugopts(traceproc = p); p(7); p(1); calls := proc(v, r) local k; [seq(v[k, 1], k = 1 .. r)] end proc: calls(`TRACE/p`, 10); rtable_options(`TRACE/p`, datatype, storage, order);
debugopts(traceproc = p); p(1): calls(`TRACE/p`, 10); debugopts(stopat = [p, 2]); debugopts(traceproc = [p, false]); debugopts(stopat = [p, 2]); show([p, 2]); p(7): calls(`TRACE/p`, 10);
q := proc(n) 1; error "two" end proc: debugopts(traceproc = q); q(1); q(2); traperror(q(3)); calls(`TRACE/q`, 3);
debugopts(traceproc = true); debugopts(traceproc); lazy := proc() 1; 2 end proc: lazy(); lazy(); calls(`TRACE/lazy`, 3); debugopts(traceproc = lazy); debugopts(traceproc = false); debugopts(traceproc);
own := Array(1..3, 1..3, datatype = integer[4]): TRACE(own, -1, 3 + 4), TRACE('own', 2, 5); [seq(own[k, 1], k = 1..3)]; TRACE(own, 3, 1); own := Array(1..3, 1..3): TRACE('own', 1, 1);
TRACE(1, 2, 3); TRACE(`TRACE/q`, 0, 3); TRACE(`TRACE/q`, 9, 3); TRACE(`TRACE/q`, a, 3); TRACE(`TRACE/q`, 1); TRACE(`TRACE/q`, 2, 3 + 4); debugopts(traceproc = nops); debugopts(traceproc = nosuch);
j := proc(n) if n = 1 then goto(two) end if; "one"; two; "done" end proc: j(1), j(2); debugopts(traceproc = j); j(1), j(2);
# `restart` forgets the tables.
debugopts(addwatch = 'zz', adderror = all, traceproc = true): restart; debugopts(watchtable, errortable, traceproc);
