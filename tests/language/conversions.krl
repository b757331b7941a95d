# Structures.
A := array(1..2, [5, 6]): B := array(0..1, 1..2, [[1, 2], [3, 4]]): T := table([2=b, 1=a]): U := table([x=1]):
convert(A, list), convert(T, list), convert(U, list), convert({3}, list), convert("abc", list), convert(f(x, y), list), nops(convert(x+y, set)), convert([1, 1, 2], set), convert([1], list), convert([], set), convert(eval(T), list), convert("", list);
convert(B, list); convert(B, `list(list)`), convert({[1, 2]}, `list(list)`), convert([f(1), g(2, 3)], `list(list)`); convert(A, `list(list)`);
# Texts.
convert(x+1, string), convert(abc, string), convert("a b", name), convert(x+1, symbol), convert(a[1], name), convert(a[1], symbol), convert(2.5, string), convert("s", string);
# Sums and products.
convert([1, 2, x], `+`), convert({2, 3}, `*`), convert(B, `+`), convert(T, `*`), convert(f(1, 2), `+`), convert([], `+`), convert([], `*`), convert(x*y, `+`); convert("abc", `+`);
# Exact numbers and floats.
convert(0.75, rational), convert(.3333333333, rational), convert(3.141592654, rational), convert(3.14159, rational, 3), convert(0.1, rational, exact), convert(-2.5, fraction), convert(x+0.5*y^1.5, rational), convert([0.5, 1.+0.25*I], rational), convert(Float(infinity), rational), convert(0., rational), convert(1e20, rational), convert(sin(0.5), rational), convert(3, rational), convert(1e-5, rational), convert(x, rational); convert(0.5, rational, x);
convert(1/3, float), convert(Pi, float, 20), convert(x/2, float); convert(1, float, 0);
# Bases.
convert(10, base, 2), convert(0, base, 7), convert(-10, base, 3), convert([0, 1, 0, 1], base, 2, 10), convert([], base, 2, 10), convert(10^40, base, 10^5), convert(255, base, 256), convert(256, base, 256), convert(1, base, 2); convert([2], base, 2, 10); convert([1], base, 2); convert(5, base, 1); convert(x, base, 2);
convert(10, binary), convert(-5, binary), convert(64, octal), convert(255, hex), convert(-255, hex), convert(0, hex), convert("FF", decimal, hex), convert(110, decimal, binary), convert(ff, decimal, 16), convert(-17, decimal, octal), convert("z", decimal, 36), convert(0, binary); convert(12, decimal, binary); convert("", decimal, 2); convert("1", decimal, 37); convert(1.5, binary);
n := 3^200: evalb(convert(convert(n, base, 7), base, 7, 10) = convert(n, base, 10)), evalb(convert(convert(n, hex), decimal, hex) = n), convert(convert(n, binary), decimal, binary) - n;
