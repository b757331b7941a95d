# Numbers: the two ranges, the sign of the modulus, fractions with and without an inverse.
5 mod 3, -5 mod 3, 5 mod (-3), mods(5, 10), mods(-5, 10), mods(6, 10), modp(-6, 10), 7 mod 1;
10^40 mod (10^20 + 39), mods(10^40, 10^20 + 39), -10^40 mod 97, 10^5 mod 10^30, -1 mod 10^30;
1/3 mod 7, mods(1/3, 7), -2/3 mod 7, 22/7 mod 10^20 + 39, 1/2 mod 1;
1/2 mod 4; mods(1/6, 9); modp(5, 0); modp(x, 1/2); modp(x, 3.0); modp(x, I); modp(x); modp(x, 3, 4); 5 mod p; mods(5, p);
(3 + 5*I) mod 3, (3 + 6*I) mod 3, (4 + 5*I) mod 3, I/2 mod 5, (1/2 + I) mod 5;
# The operator is what the variable says, in a procedure until it ends, and after an error.
`mod`, 5 mod 3; `mod` := mods; 5 mod 3, modp(5, 3), 5 mod 3; f := proc(n) `mod` := modp; n mod 3 end: f(5), 5 mod 3;
`mod/g` := proc(x, m) [`mod`, x mod m, m] end: modp(g(8), 6), mods(g(8), 6), g(8) mod 6;
`mod/h` := proc(x, m) error "h of %1", x end: modp(h(1), 7); `mod`; traperror(modp(h(2), 7)); `mod`; modp(1/7, 7); `mod`;
`mod` := modp: `mod/none` := proc() end: none(9) mod 7, other(9) mod 7, g[1](9) mod 7;
`mod` := 7; `mod` := x;
# Sums and products: what changes is simplified and reduced once more.
7*x^2 + 5*x + 8 mod 6, mods(7*x^2 + 5*x + 8, 6), 6*x + 12 mod 6, x/2 + y/3 mod 5, x - y mod 2, 3*I*x + 4 mod 2;
(7*x + 8*y)^2 mod 6, (3*x + 9)^3 mod 3, (8*x + 3*y)*(x + 7) mod 7, 7*(3*x + 9)^2 mod 8, (x + 6)*(x + 8) mod 7;
(10*x + 7)^n mod 7, 10^(1/2) mod 7, 9^(1/2)*x mod 2, 3^n mod 2, x^(9*y) mod 3, 2^(8*x) mod 3;
x/(3*y + 4) mod 3; 1/(7*x + 14) mod 7;
# Powers of integers by calls that wait.
2 &^ 100 mod 101, 2 &^ (-1) mod 7, power(3, 5) mod 7, 2 &^ (10^50) mod 10^20 + 39, 0 &^ 5 mod 7, 8 &^ n mod 7, x &^ 2 mod 7;
mods(2 &^ 3, 7), 7 &^ 2 mod 7, power(x, 9, 2) mod 7;
2 &^ (-1) mod 4; 0 &^ 0 mod 5; 5 &^ 0 mod 5;
# Containers, relations, names; what has no residue.
[7, 8, x*9] mod 7, {1, 8} mod 7, (9*x = 8) mod 7, (9*x <> 8) mod 7, [[8], {9}] mod 7, t[9] mod 7, 'x' mod 7, x||9 mod 7, [] mod 7;
9*x::integer mod 7;
1.5 mod 3; 1.5*x mod 3; "a" mod 3; (x < 9) mod 7; (1 .. 9) mod 7; table() mod 7; proc() end mod 7; modp1(ConvertIn(x, x), 7) mod 7;
Array(1 .. 3, [7, 8*x, 1/3]) mod 7;
