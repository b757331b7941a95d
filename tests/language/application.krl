# Calls of sums, products, powers, lists, sets, relations, numbers and compositions of functions.
(a + b)(x), 3(x), 2.5(x, y), (2 + I)(x), [1, f](x), (f*g)(x, y), (f^2)(x), (f - 2*g)(x), (1/f)(x), (f + 3)(), evalb({f, g}(x) = {f(x), g(x)}), (f = g)(x), (sin + (x -> x^2))(3), [max, min](3, 1, 2);
(f@g)(x, y), (f@g@h)(x), ((x -> x^2)@(x -> x + 1))(3), (f@@3)(x), (f@@0)(x, y), (f@@(-1))(x), (f@@n)(x), (op@[op])([f, g]);
f(x)(y), f(x)(), f[1](x)(y), f(x)(y)(z);
"abc"(x); (1..2)(x); table([])(x);
