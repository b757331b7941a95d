# A number that cancels leaves a float behind when it was one; a complex part that is absent stays absent.
1.0*x - x + 3; 1.5*x - 1.5*x + 1/2; 1.0*x - x + y; x - 1.0*x + 2 + I; op(I + 3.0*I); op(1.0*I - I); -0. + 0.*I;
1.0*[f(1), 2] - [f(1), 2]; [f(1), 2] + [3, 4]; 2*[f(1), 2] + [3, 4]; 2*[f(1), 2];
setattribute([1, 2], row, u) + setattribute([1, 2], column);
# One object for one value, whatever the road to it.
same := proc() local i; [seq(evalb(addressof(args[1]) = addressof(args[i])), i = 2..nargs)] end proc:
same(x*infinity, infinity*x + infinity*x, 3*(x*infinity), infinity*x + 2*infinity*x + x*infinity);
same(-infinity*I*x, (-infinity)*I*x, -(infinity*I*x), x*(-infinity*I));
same(x*infinity, -I*x*(infinity*I), (infinity*I)^2*(-x)); same(y - infinity, (y + I - infinity) - I);
same(undefined*I, I*undefined, (x*undefined)*I, (undefined*I)*x); same(undefined, undefined^infinity, undefined*x);
same((1 + I)*(-1)^(5/6), ((1 + I)*I)*(-1)^(1/3), (1 + I)*(I*(-1)^(1/3)));
same((1 + I)^(3/2), (1 + I)*(1 + I)^(1/2), (1 + I)^(1/2)*(1 + I)^(1/2)*(1 + I)^(1/2)); (-I)^(-1/2);
same((4 + I)*x*y, (1 + I)*x*y + (2 + I)*y*x + x*(1 - I)*y);
evalb(add((k + I)*x||k, k = 1..40) - add(-I*x||(41 - k), k = 1..40) = add((k + 2*I)*x||k, k = 1..40)); x + I*x;
nops(add([k, x||k, f(k)], k = 1..3000)[2]); [f(1), 2]*3 + z - [x, 1] + [1, y];
v := infinity: n := 2: -v + 1.5*n; v := undefined: v + y + 1.5*n;
# Long exponents of units; zero and infinite complex numbers to powers.
I^(10^20), I^(10^20 + 3), (-1)^((10^20 + 2)/3), (-1)^(10^20/3); (1 + I)^(10^20);
0^I; 0^(2 + I); 0^(I - 2); (infinity + I)^(1/2); (Float(infinity) + I)^2; (Float(undefined) + I)^2; (infinity*I)^3; (3/5 + 4/5*I)^infinity;
# What oscillates swallows finite numbers.
(-1)^infinity; (-1)^infinity + 1 + I; 2*(-1)^infinity; 1/((-1)^infinity); 0*(-1)^infinity;
z := I^infinity: [z*z, x - 2*z, z + infinity, 2.5*z, conjugate(z), abs(z), trunc(z)];
# A handler may answer for a sum with what it likes.
NumericEventHandler(invalid_operation = proc(operation, operands, standard) [standard, operands] end proc):
infinity - infinity + x; try infinity - infinity catch: lasterror end try; NumericEventHandler(default):
# Only algebra is raised to powers, and constructors take numbers.
(1, 2)^x; (1..2)^y; (1..2)^2; (a and b)^2; NULL^2; x^(1..2); (a = b)^z;
Complex("a", 1); Float(1, "a"); Complex(I, 1); Float(1.5, 2.5);
try (1, 2)^x catch: lasterror end try; try (1..2)^2 catch: lasterror end try; try x^(1..2) catch: lasterror end try;
f := proc(head, a, b) try head(a, b) catch: lasterror end try end proc: f(Complex, "a", 1), f(Float, 1, I);
# What the constructors don't take, outside of a trap; what fails before it runs, under one.
Integer(); Fraction(0.5); Fraction(1, 2, 3); Complex([1]); Float("a"); Float(1, 2, 3); Float(1.5, infinity);
try 1 := 2 catch: lastexception end try; try (a, 1) := (1, 2) catch: lastexception end try;
try try 1 catch "x": 1 catch "xy": 2 end try catch: lastexception end try;
try setattribute([1], row) + setattribute([2], column) catch: lasterror end try;
again := proc(z) option inline; again(z - 1) end proc: try again(1) catch "recursive": lastexception end try;
x^Float(infinity); (x + 1)^(-Float(infinity)); x^infinity; (1/2)^Float(infinity);
