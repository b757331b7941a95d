# Equal terms and factors collect; what cancels is gone.
x - x; x - x + 0.; 2*x + 3*x; x*x; x*x^(-1); a + b + a; (a + b)^2*(a + b); 2*(a + b); (2*x)^3; (-2*x)^3; (2*x)^y;
# Powers of numbers fold as far as they are exact.
4^(1/2); 8^(5/3); (1/2)^y; (2/3)^y; 2^(1/2)*2^(1/2); 2^(-3); (-8)^(1/3); (3/4)^(-2);
(-1)^(1/2); (-1)^(3/2); (-1)^(-1/2); (-1)^4; (-1)^(7/3);
0^0; 0^(-1); 1^z; z^0; z^1;
# Only algebra takes part.
"a" + 1; 2*"a"; "a"^2; 2^"a"; 2^NULL;
[1, 2] + [3, 4]; 3*[1, x]; [1, 2] + [1]; 0*[1, 2];
# Sets have no duplicates; their order is the store's.
nops({b, a, b}); {3, 1, 2, 1};
# Numbers move to the right side of a strict inequality.
x + 1 < 3; 2 < x + 1; x + 1 < y;
infinity - infinity; 2*infinity; -3*infinity; 0*infinity; 5 + infinity; infinity^(-1);
# Truth values fold in any place.
not not p; p and p; p or true; p and false; not p and not q; false or p;
# Complex numbers are exact.
I; I*I; (1+I)*(1-I); (2+3*I)^3; 1/(1+I); I*x*I; Complex(1, 0); Complex(0, 2); Complex(1, 2, 3);
Fraction(6, 4); Fraction(1, 0); Integer(3); Integer("s"); Float(15, 2); Float(1, infinity);
5!; 20!; factorial(-1); factorial(1, 2); n!;
# A statement whose outcome is known is its outcome.
if true then a else b fi; while false do c od; if false then 1 elif x then 2 fi;
# A sum of many terms is one object whatever their order.
s1 := add(u||k, k = 1..40): s2 := add(u||(41 - k), k = 1..40): evalb(s1 = s2); s1 - s2; nops(s1);
# What has no value stays beside what may have one, and swallows numbers and infinities.
infinity - infinity + x; y + undefined + 3; undefined + infinity; undefined - undefined; infinity + 2 - 2*infinity;
# A root of a negative float is imaginary; zero to a negative power that is no integer has no value.
(-2.25)^(1/2); 2*(-0.75)^(1/2); 2.25^(1/2); 0^(-0.5); 0^(-2.0);
# Powers that cancel leave 1, whatever kind of zero their exponents come to.
x^0.5*x^(-0.5); x^(1/2)*x^(-1/2);
# Relations in a procedure wait for its parameters.
relations := proc(x) 2*(x = 1) + (x = 2) end proc: print(relations); relations(3); try relations(3) catch: lasterror end try;
# Loops that run while a statement is simplified keep what they have made.
(1 < x)*mul(k*y, k = 1..3); nops((1 < x) + add(2^(100 + k), k = 1..3));
# Lists whose calls or sequences are still to be evaluated add afterwards, element by element.
[seq(i, i = 1..3)] + [1, 2, 3]; 2*[seq(i, i = 1..2)] - [seq(i, i = 3..4)]; [seq(i, i = 1..3)] + [1];
two := 1, 2: [two] + [3, 4] + x; [op([two])] + [3, 4]; [f(x), 1] + [1, 2]; [x] + [1, 2];
p := proc(n) [args] - [seq(2*k, k = 1..n)] end proc: p(2, 3); p(4);
'[f(x)] + [1]', eval(A + B, {A = [f(x)], B = [1]});
# A float complex quotient keeps the digits that cancel.
(1.234567891+.987654321*I)/(1.234567891+.987654322*I); Digits := 3: 5.0/(3.0+7.0*I), x/(3.0+7.0*I)*5; Digits := 10:
add([k, f(k)], k = 1..3), `+`([f(1), 2], [3, 4]), map(t -> [f(t), t], a + b);
# Many integers among the factors: the product is that of one after the other, floats in their order.
p := mul(x + k, k = 1 .. 300): evalb(subs(x = 1, p) = 301!), subs(x = -7, p), 2^3*(-3)^2*4*5*6*7*8*9*10*11*y*12*13*14*(-1)^5, 2*3*4*5*6*7*8*9*10*0*z, 1.1*2*3*4*5*6*7*8*9*10*11*12, evalb(`*`(seq(k^3, k = 1 .. 200))*`*`(seq(1/k, k = 1 .. 200)) = 200!^2);
