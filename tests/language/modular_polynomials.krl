# Making them, small and big moduli alike; they read back as they print.
a := modp1(ConvertIn(x^3 + 2*x + 1, x), 7); b := modp1(ConvertIn([1, -5, 10], x), 7); z := modp1(Zero(x), 7);
modp1(Constant(-1, x), 7), modp1(Constant(14, x), 7), modp1(One(x), 7), modp1(ConvertIn((x + 1)^2*(3*x - x^2) - 5, x), 7), modp1(ConvertIn([], x), 7);
modp1(ConvertIn(3, t[1]), 7), modp1(ConvertOut(ConvertIn((t[1] + 1)^3, t[1])), 7), modp1(ConvertIn((x + 1)^7, x), 7);
evalb(modp1(ConvertIn(x^3 + 2*x + 1, x), 7) = a), evalb(a = b), modp1(a, 7), modp1(a(x), 7);
m := 10^20 + 39: A := modp1(ConvertIn(x^3 + 2*x - 1, x), m); B := modp1(ConvertIn([1, m - 5, m + 10], x), m);
modp1(ConvertIn(x + 46328, x), 46327), modp1(ConvertIn(x - 1, x), 46329), modp1(ConvertIn(x - 1, x), 46337);
modp1(ConvertIn(x/2, x), 7); modp1(ConvertIn(x*y, x), 7); modp1(ConvertIn(1/x, x), 7); modp1(ConvertIn(f(x), x), 7); modp1(ConvertIn(x^(2^40), x), 7);
modp1(ConvertIn([1, 1/2], x), 7); modp1(ConvertIn(x, 3), 7); modp1(ConvertIn(x^n, x), 7); modp1(ConvertIn(sin(x)*x, x), 7);
modp1(ConvertIn((x/2 + 1/2)*(2*x + 2), x), 7), modp1(ConvertIn((y + 1)*x - y*x, x), 7), modp1(ConvertIn((x^2 + x)/x, x), 7), modp2(ConvertIn((x/2 + y)*(2*x + 2), x, y), 7); modp1(ConvertIn((x + 1)*(y + 1), x), 7);
# Arithmetic.
modp1(Add(a), 7), modp1(Add(a, b, a, z), 7), modp1(Add(a, Subtract(a)), 7), modp1(Subtract(a, b), 7), modp1(Subtract(b, a), 7);
modp1(Multiply(a, b), 7), modp1(Multiply(a, z), 7), modp1(Multiply(Constant(3, x), a), 7), modp1(Multiply(A, B), m);
modp1(Multiply(Constant(2, x), ConvertIn(3*x^2 + x, x)), 6), modp1(Multiply(ConvertIn(2*x + 1, x), ConvertIn(3*x + 1, x)), 6);
modp1(Multiply(ConvertIn(x^3 + x + 1, x), ConvertIn(x^3 + x + 1, x)), 2);
modp1(Quo(a, b, 'r'), 7), r, modp1(Rem(a, b, 'q'), 7), q, modp1(Quo(b, a, 'r'), 7), r;
q := modp1(Quo(A, B, 'r'), m): modp1(Subtract(Add(Multiply(q, B), r), A), m), modp1(Rem(A, A), m);
modp1(Quo(a, z), 7); modp1(Rem(z, a), 7); modp1(Quo(A, Constant(0, x)), m); modp1(Quo(ConvertIn(x, x), Constant(2, x)), 6); modp1(Quo(ConvertIn(x, x), Constant(2, x)), 10^20);
modp1(Gcd(Multiply(a, b), Multiply(b, b), 'u', 'v'), 7), u, v, modp1(Gcd(z, b), 7), modp1(Gcd(z, z), 7), modp1(Gcd(a, One(x)), 7), modp1(Gcd(Constant(3, x), z), 7);
modp1(Gcd(ConvertIn(2*x + 1, x), ConvertIn(3*x^2, x)), 6);
g := modp1(Gcdex(a, b, 's', 't'), 7), s, t; modp1(Add(Multiply(s, a), Multiply(t, b)), 7); modp1(Gcdex(z, z, 's', 't'), 7), s, t, modp1(Gcdex(a, z, 's', 't'), 7), s, t;
g := modp1(Gcdex(A, B, 's', 't'), m): g, evalb(modp1(Add(Multiply(s, A), Multiply(t, B)), m) = g), modp1(Degree(s), m);
modp1(Powmod(a, 100, b), 7), modp1(Powmod(a, 0, b), 7), modp1(Powmod(b, 1, a), 7), modp1(Powmod(z, 5, a), 7), modp1(Powmod(A, 10^30, B), m);
modp1(Powmod(b, 0, b), 7); modp1(Powmod(a, -1, b), 7); modp1(Powmod(a, 2, z), 7);
modp1(Resultant(a, b), 7), modp1(Resultant(b, a), 7), modp1(Resultant(a, Multiply(a, b)), 7), modp1(Resultant(Constant(3, x), a), 7), modp1(Resultant(a, Constant(3, x)), 7), modp1(Resultant(One(x), One(x)), 7), modp1(Resultant(a, z), 7);
modp1(Resultant(ConvertIn(x - 1, x), ConvertIn(x^3 - 2, x)), 7), modp1(Resultant(ConvertIn(x^3 - 2, x), ConvertIn(x - 1, x)), 7), modp1(Resultant(A, B), m);
modp1(Diff(a), 7), modp1(Diff(ConvertIn(x^7 + x, x)), 7), modp1(Diff(One(x)), 7), modp1(Diff(A), m);
modp1(Shift(a, 3), 7), modp1(Shift(a, -1), 7), modp1(Shift(a, -9), 7), modp1(Shift(z, 5), 7), modp1(Shift(A, 2), m), modp1(Shift(a, 0), 7);
modp1(Translate(a, 3), 7), modp1(Translate(a, 7), 7), modp1(Translate(Translate(A, 10^19), -10^19), m), modp1(Translate(One(x), 5), 7);
modp1(Eval(a, 3), 7), modp1(Eval(a, -4), 7), modp1(Eval(a, [0, 1, 2, 3]), 7), modp1(Eval(z, 5), 7), modp1(Eval(A, 10^19), m), modp1(Eval(a, []), 7);
modp1(Interp([1, 2, 3], [4, 5, 6], x), 7), modp1(Interp([0, 1, 2, 3], [1, 4, 6, 6], x), 7), modp1(Interp([], [], x), 7), modp1(Interp([10^19, 5], [7, 10^19], x), m);
modp1(Interp([1, 1], [2, 3], x), 7); modp1(Interp([1, 2], [2], x), 7); modp1(Interp([1, 9], [2, 3], x), 7); modp1(Interp([1, 3], [2, 3], x), 4);
# Queries.
modp1(Degree(a), 7), modp1(Degree(z), 7), modp1(Coeff(a, 1), 7), modp1(Coeff(a, 9), 7), modp1(Coeff(a, -1), 7), modp1(Coeff(A, 0), m), modp1(Coeff(a, 10^20), 7);
modp1(Indeterminate(a), 7), modp1(Modulus(a), 7), modp1(IsZero(z), 7), modp1(IsZero(a), 7), modp1(IsOne(One(x)), 7), modp1(IsOne(a), 7), modp1(IsConstant(Constant(3, x), 3), 7), modp1(IsConstant(a, 1), 7), modp1(IsConstant(z, 0), 7);
modp1(ConvertOut(a), 7), modp1(ConvertOut(a, y), 7), modp1(ConvertOut(z), 7), modp1(MaxHardware(), 7);
# A polynomial of a smaller modulus of the same form may enter; what comes out carries the modulus of the call.
modp1(Add(a, ConvertIn(10*x, x)), 11), modp1(Shift(a, 0), 11), modp1(Modulus(Multiply(A, B)), m + 2);
modp1(Embed(a, 11), 7), modp1(Embed(a, 2), 7), modp1(Embed(a, 10^20), 7), modp1(Embed(A, 7), m), modp1(Embed(a, 7), 7);
modp1(Add(a, b), 5); modp1(Degree(a), m); modp1(Degree(A), 7); modp1(Add(a, ConvertIn(y, y)), 7); modp1(Gcd(a, ConvertIn(y, y)), 7);
# Numbers.
modp1(Chrem([1], [2]), 7), modp1(Chrem([1, 2, 3], [3, 5, 7]), 7), modp1(Chrem([], []), 7), modp1(Chrem([10^20, 5], [10^21, 7]), 7), modp1(Chrem([-1, -1], [3, 5]), 7);
modp1(Chrem([1, 2], [3]), 7); modp1(Chrem([1, 2], [3, 3]), 7); modp1(Chrem([1, 2], [3, 1]), 7); modp1(Chrem([1, 9], [3, 5]), 7); modp1(Chrem([1, x], [3, 5]), 7); modp1(Chrem(1, 2), 7);
modp1(Prime(1), 7), modp1(Prime(-5), 7), modp1(Prime(46327), 7), modp1(Prime(1009), 7), modp1(Prime(1010), 7), modp1(Prime(99999989), 7), modp1(Prime(10^20), 7), modp1(Prime(2), 7);
modp1(Randpoly(x, 5), 101), modp1(Randpoly(x, 0), 2), modp1(Degree(Randpoly(20, y)), 2); modp1(Randpoly(x, -1), 7);
# Names, counts and kinds that are refused.
modp1(Gcd(a), 7); modp1(Gcd(a, b, c, d, e), 7); modp1(Gcd(a, 3), 7); modp1(Add(), 7); modp1(Degree(x^2), 7); modp1(Quo(a, b, 5), 7); modp1(MaxHardware(1), 7);
modp1(3, 7); modp1(x, 7); modp1(t[1](a), 7); modp1(Nothing(a), 7); modp1(nothing(a), 7);
modp1(One(x), 1); modp1(One(x), 0); modp1(One(x), -7); modp1(One(x), 7/2); modp1(One(x), 7.0); modp1(One(x)); modp1(One(x), p);
`modp1/Twice` := proc(a, m) modp1(Add(a, a), m) end: `modp1/least` := proc(a, m) m end: modp1(Twice(a), 7), modp1(least(a), 7), modp1(Degree(Twice(a)), 7);
# Very long ones are refused before memory goes.
modp1(Shift(a, 10^9), 7); modp1(Shift(a, 10^8), 7); modp1(ConvertIn(x^(10^8), x), 7);
