# Each failing statement, in every place where it can fail: typed, trapped, in a try, in a procedure that
# is called by another, in seq and add, in a loop. The message is the same everywhere, and afterwards the
# loop variables, the environment variables, the traps and the last error are as they should be.
failing := [
  "1/0", "0^(-1)", "\"a\" + 1", "2*\"a\"", "\"a\"^2", "x^\"a\"", "2^NULL", "[1, 2] + [1]",
  "factorial(-1)", "factorial(1, 2)", "Complex()", "Complex(\"a\")", "Fraction()", "Fraction(1.5)",
  "Integer()", "Integer(\"s\")", "Float()", "Float(\"a\")", "Float(1, 2^70)",
  "if xx then 1 end if", "if 5 then 1 end if", "evalb(5)", "evaln(1 + 2)", "eval(a, 0)", "eval()",
  "assigned(3)", "`if`(1, 2)", "parse(1)", "parse(\"1 +\")", "ERROR(\"with %1\", zz)", "error \"plain\"",
  "for ii from aa to 3 do end do", "for ii to bb do end do", "for ii by cc to 3 do end do",
  "for ii from infinity to infinity do end do", "for ii to 3 do ii := \"x\" end do", "for ii to 3 while qq do end do",
  "(p, q) := 1", "(p, q) := 1, 2, 3", "ll[0] := 1", "ll[k] := 1", "ll[1] := 1, 2", "ss[1] := 3", "nn:-e",
  "f3(2)(3) := 1", "lasterror := 3", "libname := 3", "libname := 'libname'", "prot := 2", "prot[1] := 2",
  "Digits := 0", "Digits := 268435449", "Rounding := up", "Order := -1", "Testzero := 3", "printlevel := 2^40",
  "NumericEventHandlers := 1", "UseHardwareFloats := 1", "`mod` := 3", "Normalizer := 3", "`index/newtable` := 3",
  "seq(i, i = 1..n)", "seq(i, i = \"ab\"..\"c\")", "seq(i)", "add(i, i = 1..n)", "mul(i, i = 1..n)", "seq(i, 3 = 1..2)",
  "x || (1.5..2)", "[1, 2][3]", "\"abc\"[9]", "md[2]", "md:-b", "needs()", "needs(\"s\")", "brk()", "gt()",
  "read 3", "read \"/nonexistent\"", "save 3, \"f\"", "save x, 3", "use zz in 1 end use", "setattribute('Digits', protected)",
  "alias(1 = 2)", "alias(z)", "timelimit(aa, 1)", "quit(256)", "ToInert(1)", "(aa + bb)(1)", "readlib(nosuch)",
  "assemble(0)", "proc(x) local x; x end proc", "proc() local args; 1 end proc",
  "module(x) export e; end module", "try 1 catch: 2 catch \"a\": 3 end try", "streamcall(1)", "exports(1)", "userinfo(1, a)"
]:
ll := [1, 2]: ss := {1}: md := module() export e; e := 1 end module:
needs := proc(x::integer) x end proc: brk := proc() break end proc: gt := proc() goto(nowhere) end proc:
prot := 1: setattribute('prot', protected):
typed := proc(s) parse(s, statement) end proc:
trapped := proc(s) traperror(parse(s, statement)); lasterror end proc:
tried := proc(s) try parse(s, statement); "no error" catch: lasterror end try end proc:
nested := proc(s) local d; Digits := 7; d := proc(s) Digits := 5; typed(s) end proc; try d(s) catch: lasterror, Digits end try end proc:
inseq := proc(s) local k; k := "kept"; try seq(typed(s), k = 1..3) catch: lasterror, k end try end proc:
inadd := proc(s) local k; k := "kept"; try add(typed(s), k = [1, 2]) catch: lasterror, k end try end proc:
inloop := proc(s) local k; try for k to 3 do if k = 2 then typed(s) end if end do catch: lasterror, k end try end proc:
cleaned := proc(s) local ended; try try typed(s) finally ended := true end try catch: lasterror, ended end try end proc:
rethrown := proc(s) try try typed(s) catch: error end try catch: lasterror end try end proc:
faults := 0:
for s in failing do
  m := [trapped(s)];
  if m = [] then print(s, "no message") end if;
  if [tried(s)] <> m or [nested(s)] <> [op(m), 7] or [inseq(s)] <> [op(m), "kept"] or [inadd(s)] <> [op(m), "kept"]
     or [inloop(s)] <> [op(m), 2] or [cleaned(s)] <> [op(m), true] or [rethrown(s)][1] <> m[1] then
    faults := faults + 1;
    print(s, m, [tried(s)], [nested(s)], [inseq(s)], [inadd(s)], [inloop(s)], [cleaned(s)], [rethrown(s)])
  end if;
  print(op(m))
end do:
faults, Digits, Rounding, Order, prot, ll, ss, printlevel;
lasterror, lastexception;
# An error met while the part under a trap is simplified is told with its own words when that part runs: parameters
# as they stand, the message alone in `lasterror`.
x := 5: try proc(x, x) 1 end proc catch "nothing": 1 end try;
try proc(y, y) 1 end proc catch "parameter": [lasterror], [lastexception] end try; [traperror(proc(z) local z; z end proc)];
