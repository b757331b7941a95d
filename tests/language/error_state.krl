# Statements that fail, in every place where they can.
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
  "read 3", "read \"/nonexistent\"", "save 3, \"f\"", "save x, 3",
  "save f(x), \"f\"", "for f(x) to 3 do end do", "libname := \"a\", 3", "use zz in 1 end use", "setattribute('Digits', protected)",
  "alias(1 = 2)", "alias(z)", "timelimit(aa, 1)", "quit(256)", "ToInert(1)", "convert(1, nosuchform)", "readlib(nosuch)",
  "assemble(0)", "proc(x) local x; x end proc", "proc() local args; 1 end proc",
  "module(x) export e; end module", "try 1 catch: 2 catch \"a\": 3 end try", "streamcall(1)", "exports(1)", "userinfo(1, a)"
]:
ll := [1, 2]: ss := {1}: md := module() export e; e := 1 end module:
needs := proc(x::integer) x end proc: brk := proc() break end proc: gt := proc() goto(nowhere) end proc:
prot := 1: setattribute('prot', protected):
read "every_place.txt":
watched := proc() Digits, Rounding, Order, prot, ll, ss, printlevel end proc:
everywhere(failing);
lasterror, lastexception;
# An error met while the part under a trap is simplified is told with its own words when that part runs: parameters
# as they stand, the message alone in `lasterror`.
x := 5: try proc(x, x) 1 end proc catch "nothing": 1 end try;
try proc(y, y) 1 end proc catch "parameter": [lasterror], [lastexception] end try; [traperror(proc(z) local z; z end proc)];
