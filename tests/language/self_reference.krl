# What holds itself prints in a finite text.
t := table(): t[1] := eval(t): t[2] := f(t): t; print(t); entries(t); t3 := table([1 = table([2 = 3])]): print(t3, t3);
a1 := array(1..2): a1[1] := [eval(a1)]: print(a1); lprint(a1); save t, "saved.krl"; try save a1, "saved.krl" catch: lasterror end try;
sm := module() export self; self := thismodule end module;
tree := module() export v, child; v := 3; child := module() export up; up := tree end module; child:-up := thismodule end module;
evalb(length(eval(sm)) > 0), has(eval(sm), 77), hastype(eval(tree), string);
