# Infinite, undefined and complex values in sums, products, powers and the constructors.
infinity + 2.5; infinity*2.0; undefined + 1.0; Float(infinity) - 3; 1/infinity; -infinity + infinity*x;
Complex(1, 0), Complex(0, 2), Complex(1.5, 2);
Complex(x, y);
Complex(infinity, 1), Complex(1, infinity), Complex(0, infinity), Complex(infinity, undefined);
Fraction(2, 4), Fraction(1/2); Fraction(x, 2); Fraction(infinity, -2); Fraction(0, 0); Fraction(1+I/2);
2.0*x; 2.5^2; 0.0*x; 0.*infinity; x^2.0; 2.0^x; 2.5^(-1); 2.5^(1/2); (1.5+I)^2; 2.0*I; 0.0*I + 1; 2.5 + I;
0.0^(-1); (-0.0)*3; -0.0; 0.0 - 0.0; (-0.0)^3; 1/(-0.0);
0*x; 0*[1,x]; 0.0*[1,x];
(-infinity)^2; (-infinity)^3; (-infinity)^(1/2); infinity^(1/2); infinity^(-1/2); infinity^I; I^infinity; I*infinity; (1+I)*infinity; infinity^undefined; undefined^(1/2); 0^infinity; 0^undefined; 1^infinity; 1^undefined; x^undefined; infinity^infinity; infinity^(-infinity); (-infinity)^infinity; 0.5^infinity; 2.0^infinity; Float(infinity)^2; Float(infinity)^(-1); Float(infinity)^0; 2^Float(infinity); Float(undefined)^2;
1 - infinity*I; infinity*I - infinity*I; (infinity + I)*2;
0.5^infinity; 2.0^infinity; 2.0^(-infinity); 2.0^undefined; x^infinity; infinity^x; 0.5^Float(infinity); (-2.0)^Float(infinity); 1.0^Float(infinity);
# The order of terms and factors is that of their first occurrence.
a*b*a; b*a*b*a^2; (a*b)/(a); x/y/z; 1/(1/x); -(-x); -(a + b); -(2*x); (a-b)*(-1); 2*(x+y)/2; (x + y)/2; 3/4*x^2;
add(x||k, k = 1..30) - add(x||k, k = 2..30);
# Inline procedures that call themselves are refused.
rec2 := proc(x) option inline; rec2(x+1) end: rec2(1);
# Evaluation to floats.
evalf(2/3), evalf[5](2/3), evalf(2/3, 3), evalf([1/3, x/2 + 1/7]), evalf(2^100), evalf(I/3), evalf(x = 1/2), evalf(f(1/3));
evalf(); evalf(1, 2, 3); evalf[0](1); evalf[x](1); evalf(2/3, 0);
# An infinity stays at its place among the factors, the first of several.
infinity*u1*u2; u3*infinity*u4; infinity*u5*infinity*u6; -3*u7*infinity; u8*infinity^2*u9/5;
