# Signs, quotients and parentheses.
-a - b; a - b + c; -(a + b)*c; a/b*c; 1/x^2; y/x^2; (a^n)^m; a^(n^m); (x + y)^(1/2); 2^(-x); (-1)^x; -x^2; (-x)^(1/2); -3/4*x; x/3; -1/2;
(a = b) = c; a and (b or c); not (a and b); (a..b); a <= b; a >= b; a > b; a <> b; a = (b, c);
f(x)(y); f[1](x); (f + g)(1, 2) ; a || b; `a b` || c; m:-x; x::integer; 'a' ; ''a''; {}; []; [[]]; NULL; (1, 2);
# Names and strings are quoted where they must be.
`a b`; [`a b`, `if`, `x1`, `1x`, `%a`, ``, `a``b`]; "say \"hi\""; "tab\tnew\nline\\"; ["s"];
lprint(`a b`, "s"); print(`a b`, [1, "s"]); lprint(); print(x + 1, "text");
# Floats show their digits.
1.5; -1.5; 0.; 1500.; 15e2; .15e-7; 1e100; 1.50; 100.; 2. * x; x - 1.5; Float(infinity); Float(undefined);
1 + 2*I; -I; 2*I; x + I; 3 - 2*I; (1 + I)*x;
# Procedures and statements print as they are typed.
proc (a, b::integer) local c, d; global e; option remember; description "adds"; c := a + b; d := c^2; e := d; c, d end proc;
proc () end proc; x -> x^2 + 1; (x, y) -> f(y, x); () -> z;
proc (n) for i from 2 by 3 to n while i < 9 do next end do; if n = 1 then 1 elif n = 2 then 2 else 3 end if; try error "e", n catch "a", "b": 1 finally 2 end try; return 3; while true do break end do; for y in [1] do y end do end proc;
# Long lines end where they may.
add(longername||k, k = 1..20); 3^200; "a rather long string that has to be broken somewhere because it is longer than a line is wide here";
