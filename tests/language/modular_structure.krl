# Coefficients as operands, and by index.
a := modp1(ConvertIn(x^3 + 2*x + 1, x), 7): A := modp1(ConvertIn(x^2 + 10^19, x), 10^20 + 39): z := modp1(Zero(x), 7):
c := modp2(ConvertIn(x^2*y + 3*y + 1, x, y), 7);
op(a), op(0, a), op(2, a), op(-1, a), op(2 .. 3, a), nops(a), nops(z), op(A), op(c), nops(c); op(5, a);
a[1], a[-1], a[0], a[1 .. 4], a[4 .. 1], a[2 .. 6], a[-2 .. -1], a[0 .. 1], A[1], c[1], c[0], c[3], c[2 .. 4], z[1 .. 2];
a[5]; a[-5]; z[1]; a[10^20]; a[1 .. x]; a[1, 2]; a[k]; a[x .. y]; a[1 .. 10^20];
a[1] := 3;
type(a, zppoly), type(a, modp1), type(a, modp2), type(c, modp2), type(c, evalgf1), type(c, modp1), type(x, zppoly), has(a, x), has(c, y), has(a, 2);
# subsop, map, subs.
subsop(1 = 3, a), subsop(4 = 0, a), subsop(1 = 0, 2 = 0, 4 = 0, a), subsop(-1 = 6, a), subsop(1 = 10^15, A), subsop(3 = modp1(Zero(y), 7), c);
subsop(1 = 7, a); subsop(1 = -1, a); subsop(1 = x, a); subsop(5 = 1, a); subsop(0 = 1, a); subsop(1 = 3, c); subsop(1 = modp1(One(x), 7), c);
map(proc(n) n^2 mod 7 end, a), map(proc(n) 0 end, a), map(modp, A, 97), map(proc(p) modp1(Shift(p, 1), 7) end, c);
map(proc(n) n + 6 end, a); map(proc(n) x end, a); map(proc(n) 1 end, c);
subs(x = y, a), subs(7 = 11, a), subs({x = w, 7 = 13}, a), subs(y = w, c), subs({y = w, 7 = 11}, c), subs({x = y, y = x}, c), subs(x = t[2], a), subs(q = 1, a), eval(a, x = w), subs(2 = 5, a), [subs(x = y, [a, x])];
subs(7 = 5, a); subs(7 = 0, a); subs(7 = x, a); subs(x = 3, a); subs(x = y, c); subs(2 = 8, a); subs(7 = -7, a);
evalb(a = a), evalb(subs(x = y, a) = a), evalb(subs(x = y, subs(y = x, a)) = subs(x = y, a));
a + 1; 2*a; a^2;
f := proc(u) modp1(Multiply(u, u), 7) end: f(a); length(a) > 0, member(a, [z, a]), {a, a};
x := 5: a; x := 'x': evalf(a);
# Two indeterminates.
modp2(ConvertIn(x*y + x), 7), modp2(ConvertIn(x*y + 1, y), 7), modp2(ConvertIn(5, x, y), 7), modp2(ConvertIn(x^2 - 1, x, y), 7), modp2(ConvertIn((x + y)^2, x, y), 10^20 + 39), modp2(ConvertInAndSwapIndets(x^2*y + 1, x, y), 7);
modp2(ConvertIn(x), 7); modp2(ConvertIn(x*y*z1), 7); modp2(ConvertIn(x, x), 7); modp2(ConvertIn(x, y), 7); modp2(ConvertIn(x*y, x, x), 7); modp2(ConvertIn(w, x, y), 7); modp2(ConvertIn(x, x, y, w), 7); modp2(ConvertIn(3), 7);
modp2(ConvertIn(x/2, x, y), 7); modp2(ConvertIn(1/x, x, y), 7); modp2(ConvertIn(x^(2^40)*y, x, y), 7); modp2(ConvertIn(x, 3, y), 7); evalgf1(ConvertIn(x/2, x, y), 7); evalgf1(ConvertIn(1/x, x, y), 7); evalgf1(ConvertIn(x^(2^40)*y, x, y), 7);
modp2(Build([1, modp1(ConvertIn(y^2, y), 7), 0], x, y), 7), evalgf1(Build([8], x, y), 7), modp2(Build([], x, y), 7);
modp2(Build([1], x), 7); modp2(Build([1/2], x, y), 7); modp2(Build(3, x, y), 7); modp2(Build([modp1(One(x), 7)], x, y), 7);
modp2(Constant(9, x, y), 7), modp2(Constant(modp1(ConvertIn(y, y), 7), x), 7), modp2(Constant(modp1(ConvertIn(y, y), 7), x, y), 7);
modp2(Constant(9), 7); modp2(Constant(9, x), 7); modp2(Constant(9, x, y, w), 7); modp2(Constant(9, 3, y), 7); modp2(Constant(9, x, x), 7); modp2(Constant(modp1(One(y), 11), x), 7); modp2(Constant(1/2, x, y), 7);
modp2(Coeff1(c, 0), 7), modp2(Coeff1(c, 5), 7), modp2(Coeff2(c, 1), 7), modp2(Coeff2(c, 9), 7), modp2(Degree1(c), 7), modp2(Degree2(c), 7), modp2(Degree1(Zero(x, y)), 7), modp2(Degree2(Zero(x, y)), 7);
modp2(ConvertOut(c), 7), modp2(ConvertOut(c, u, v), 7), modp2(ConvertOut(Zero(x, y)), 7), modp2(ConvertOut(One(x, y)), 7), modp2(Indeterminates(c), 7), modp2(Modulus(c), 7), modp2(Eval2(c, 2), 7), modp2(Eval2(c, 0), 7);
modp2(IsConstant(Constant(3, x, y), 3), 7), modp2(IsConstant(c, 1), 7), modp2([IsOne(One(x, y)), IsZero(c), IsZero(Zero(x, y)), IsOne(c)], 7), modp2(5, 7), modp2([5, [One(x, y)]], 7);
modp2(VarSwap(c), 7), modp2(VarSwapSwap(c), 7), modp2(VarSwap(VarSwap(c)), 7), evalgf1(VarSwap(c), 7), modp2(VarSwap(Zero(x, y)), 7);
modp2(SubPoly(c, 1, 2), 7), modp2(SubPoly(c, 0, 0), 7), modp2(SubPoly(c, 5, 9), 7), modp2(Shift(c, 1), 7), modp2(Shift(c, -1), 7), modp2(Shift(c, -5), 7);
modp2(SubPoly(c, 2, 1), 7); modp2(SubPoly(c, -1, 1), 7); modp2(SubPoly(c, x, 1), 7);
modp2(ReplaceTerm(c, 2, modp1(ConvertIn(y^3, y), 7)), 7), modp2(ReplaceTerm(c, 5, modp1(One(y), 7)), 7), modp2(ReplaceTerm(c, 3, modp1(Zero(y), 7)), 7);
modp2(ReplaceTerm(c, 0, modp1(One(y), 7)), 7); modp2(ReplaceTerm(c, 1, 3), 7); modp2(ReplaceTerm(c, 1, modp1(One(x), 7)), 7);
plus := proc(u, v) modp1(Add(u, v), 7) end: modp2(Zip(plus, c, One(x, y)), 7), modp2(Zip(proc(u) modp1(Subtract(u), 7) end, c), 7), evalgf1(Zip(plus, c, VarSwapSwap(c)), 7);
modp2(Zip(plus, c, Zip(proc(u) modp1(Subtract(u), 7) end, c)), 7); modp2(Zip(proc() 1 end, c), 7); modp2(Zip(plus, c, 3), 7);
modp2(Coeff1(c), 7); modp2(Degree1(a), 7); modp2(t[1](c), 7); evalgf1(t[1](c), 7); evalgf1(Coeff1(c, 1), 7); evalgf1(IsOne(a), 7); modp2(nothing(c), 7); modp2(One(x, y), 1);
