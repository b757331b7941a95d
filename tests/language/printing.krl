# Signs, quotients and parentheses.
-a - b; a - b + c; -(a + b)*c; a/b*c; 1/x^2; y/x^2; (a^n)^m; a^(n^m); (x + y)^(1/2); 2^(-x); (-1)^x; -x^2; (-x)^(1/2); -3/4*x; x/3; -1/2;
(a = b) = c; a and (b or c); not (a and b); (a..b); a <= b; a >= b; a > b; a <> b; a = (b, c);
f(x)(y); f[1](x); (f + g)(1, 2) ; a || b; `a b` || c; m:-x; x::integer; 'a' ; ''a''; {}; []; [[]]; NULL; (1, 2);
# Names and strings are quoted where they must be.
`a b`; [`a b`, `if`, `x1`, `1x`, `%a`, ``, `a``b`]; "say \"hi\""; "tab\tnew\nline\\"; ["s"];
lprint(`a b`, "s"); print(`a b`, [1, "s"]); lprint(); print(x + 1, "text");
# Numbers beside a dot stand in parentheses, and what a postfix operator would take along.
x::(n!); (x::n)!; (a^2).b; a.2; (2).a; a.(2.5^x); (a*b^2).c; (x^y).z; (a.2).b; (2*a).b; a.(1.5)!; ''a.(2.5)(x)''; ''<(a = b), c..d>''; ''<(a < b)|(c, d)|e>'';
# A table that its printing procedures change is printed as it was.
`print/box` := proc(x) global t4; local i; for i to 500 do t4[i] := i end do; boxed(x) end proc: t4 := table([1001 = box(1), 1002 = box(2)]): print(t4); nops([entries(t4)]);
# A long number that is saved reads back, and so do texts that begin a line with a mark.
n1 := 3^400: n2 := -2/3^300: n3 := cat("!abc\n#d\n?e", seq("0123456789", i = 1..12), "!?#"): save n1, n2, n3, "saved.krl":
m1 := n1: m2 := n2: m3 := n3: n1 := 'n1': n2 := 'n2': n3 := 'n3': read "saved.krl": evalb(n1 = m1), evalb(n2 = m2), evalb(n3 = m3);
# So does a remember table, each value under the call that has it.
s1 := proc(n) option remember; n end proc: s1(1): r1 := proc(n) option remember; n end proc: r1(5) := eval(s1): r1(6) := eval(r1): r1(7) := NULL: r1(8) := (1, 2):
r1() := 3: r1(a = b) := (c = d): r1[3](4): r1[a, b](4, 5): r1[4]() := 6: save r1, "saved.krl": r1 := 0: read "saved.krl":
r1(5), r1(6), r1(7), [r1(8)], r1(), r1(a = b), r1[3](4), r1[a, b](4, 5), r1[4](), nops([indices(op(4, eval(r1)))]);
# Floats show their digits.
1.5; -1.5; 0.; 1500.; 15e2; .15e-7; 1e100; 1.50; 100.; 2. * x; x - 1.5; Float(infinity); Float(undefined);
1 + 2*I; -I; 2*I; x + I; 3 - 2*I; (1 + I)*x;
# Procedures and statements print as they are typed.
proc (a, b::integer) local c, d; global e; option remember; description "adds"; c := a + b; d := c^2; e := d; c, d end proc;
proc () end proc; x -> x^2 + 1; (x, y) -> f(y, x); () -> z;
proc (n) for i from 2 by 3 to n while i < 9 do next end do; if n = 1 then 1 elif n = 2 then 2 else 3 end if; try error "e", n catch "a", "b": 1 finally 2 end try; return 3; while true do break end do; for y in [1] do y end do end proc;
# Long lines end where they may.
add(longername||k, k = 1..20); 3^200; "a rather long string that has to be broken somewhere because it is longer than a line is wide here";
