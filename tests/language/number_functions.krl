# Integer functions: signs, zeros, long operands, what stays a call.
igcd(0, 0), igcd(-6, 4), igcd(), igcd(12), igcd(2^200, 6^100), igcd(-10^30, 0), igcd(x, 4);
iquo(-7, 2), irem(-7, 2), iquo(7, -2), irem(7, -2), iquo(10^30, 10^10), irem(10^30 + 7, -10^15), iquo(3, 10^20), irem(3, 10^20);
iquo(17, 5, 'r'), r, irem(17, 5, 'q'), q;
NumericStatus(false): iquo(7, 0), irem(10^30, 0), iquo(-7, 0, 'r'), r, irem(7, 0, 'q'), q; NumericStatus(invalid_operation);
iquo(1.5, 2); irem(7, x); iquo(7, 2, 3);
isqrt(0), isqrt(1), isqrt(2), isqrt(6), isqrt(7), isqrt(-4), isqrt(10^40), isqrt(10^40 - 1), isqrt(10^32 - 1), isqrt(2*10^9), isqrt(999999999), isqrt(1000000000);
isqrt(2*10^60); isqrt(x); isqrt(1/2);
icontent(6*x + 9*y), icontent(6/5*x + 4/15), icontent(-12), icontent(-2/3), icontent(x), icontent(2.5*x), icontent(4 + 6*I), icontent(2*x*y), icontent(3*I*x), icontent(0);
icontent([1]); icontent(a = b); icontent({2});
0!, 1!, 12!, 13!, 20!, 25!; ilog10(factorial(1000)); (-1)!; x!; (1/2)!; factorial(1, 2); factorial(); 32177!; (10^20)!;
# Limits answer at once. What a handler gives in their place is no integer of theirs.
length(10^268435447), 10^268435448; (-10)^268435449; undefined;
NumericEventHandler(overflow = proc(o, x, d) 1/2 end): 2^891723257; (10^15)^891723257; NumericEventHandler(overflow = proc(o, x, d) -infinity end): 2^891723257; NumericEventHandler(default):
2^891723257; 10^(3*10^8); 3^(10^12); (1/2)^(-10^12); (10^10)^(10^8); (-1)^(10^30), 1^(10^30), 0^(10^9);
NumericEventHandler(overflow = exception): 2^891723257; (2/3)^891723257; NumericEventHandler(default):
Float(1, 2147483646); Float(12, 2147483646); Float(1, 2147483647); Float(1, -2147483646); Float(1, 10^12); Float(1, -10^30);
1e2147483640*1e2147483640, -1e2147483640*1e2147483640, 1e-2147483640*1e-2147483640; 1e2147483640/1e-2147483640, 1e-2147483640/1e2147483640;
(-1.0)^(10^20), (-1.)^(10^20 + 1), 1.0^(10^20), 2.0^(10^10), .5^(10^20), (-2.)^(10^20 + 1), 2.^(-10^20), .5^(-10^20), 1.000000001^(2^33), .999999999^(-2^33), (1. + I)^(-2^31);
NumericStatus(false): 2.^(10^20): NumericStatus(overflow, underflow, invalid_operation); NumericStatus(false): 2.^(-10^20): NumericStatus(overflow, underflow, invalid_operation);
(1e2147483640)^2, (1e-2147483640)^3, (1e10)^(2000000000), (1e10)^(-2000000000);
Digits := 0; Digits := -1; Digits := 268435449; Digits := 1.5; Digits := x; Digits;
evalf[268435449](1); evalf[0](1); evalf[-1](1); evalf(1, 0); evalf(1, x); evalf(1/3, 5), evalf[3](2/3), evalf(1/3, NULL);
# Rounding: each mode, ties, a carry through all digits; -0. keeps its sign.
Digits := 3: round4 := proc(x) local r; r := NULL; for Rounding in [nearest, 0, infinity, -infinity] do r := r, evalf(x) end do; r end:
round4(2/3); round4(-2/3); round4(12345/1000); round4(12355/1000); round4(-12345/1000); round4(99999); round4(-99999); round4(10^30 + 1);
Digits := 10: Rounding; Rounding := sideways;
# Quotients round once, whatever digits the operands have.
Digits := 1: Float(1379878957,-10)/Float(-693,-12), Float(1379878957,-10)/(-693), 1/Float(1379878957,-10), 1379878957/Float(-693,-12), (1/3)/Float(1379878957,-10), Float(15,-1)*(1/9); Digits := 10:
.1 + .2, 1.5 - 1.5, 0. + (-0.), -0. + (-0.), -0.*3, -0.*(-3), 2./3., 2/3., 1/3 + .5, 1.0 + 1e-20;
Rounding := -infinity: 1.5 - 1.5, 0. + (-0.), Re(3.*I), Im(2.5), Default0(); Rounding := nearest: Re(3.*I), Im(2.5), Im(2), Re(3*I), Default0();
# Parts, sizes, order.
abs(-3), abs(-1/2), abs(-2.5), abs(-0.), abs(-infinity), abs(undefined), abs(3 + 4*I), abs(3. + 4.*I), abs(-2*I), abs(1.0e100 + 1.0*I);
max(), min(), max(3), max(1, 2.5, 7/3), min(1, -2.5, -7/3), max(1, infinity), min(1, -infinity), max(2, undefined), max(1/2, .5), max(x, 1);
trunc(7/2), trunc(-7/2), trunc(-2.7), trunc(.3), trunc(12e3), trunc(infinity), trunc(5/2 + 7/2*I), trunc(10^30/7);
Re(2 + 3*I), Im(2 + 3*I), conjugate(2 + 3*I), conjugate(-2.5*I), Re(5), Im(1/2), conjugate(infinity), Re(undefined);
ilog10(0), ilog10(999), ilog10(1000), ilog10(.001), ilog10(-12.5), ilog10(1 + 100*I), ilog10(infinity), ilog10(Float(-infinity)), ilog10(undefined), ilog2(0), ilog2(-infinity);
# The functions that IEEE 754 recommends.
CopySign(2., -0.), CopySign(-2, 3), CopySign(0, -1), CopySign(-0., 1), CopySign(infinity, -2), CopySign(1/2, -infinity), CopySign(undefined, 1), CopySign(x, 1), CopySign(1, x), CopySign(1 + I, 1);
NextAfter(1.5, 2), NextAfter(1.5, -infinity), NextAfter(1, 2), NextAfter(0, 1), NextAfter(0., -1), NextAfter(-1.5, 0), NextAfter(1.5, 1.5), NextAfter(infinity, 1), NextAfter(undefined, 1.), NextAfter(undefined, 1), NextAfter(x, 1);
Scale10(1.5, 3), Scale10(15, 3), Scale10(1/2, -1), Scale2(1.5, 2), Scale2(3, -1), Scale10(1.5, 1/2) - 1.5*10^(1/2), Scale10(2, x);
Scale10(undefined, 1), Scale10(1.5, undefined), Scale10(infinity, -infinity), Scale10(infinity, 3), Scale10(0, infinity), Scale10(-0., -infinity), Scale10(-2., infinity), Scale10(-2, infinity), Scale10(2., -infinity), Scale10(2, -infinity), Scale10(1 + I, 2), Scale10(1, I);
frem(5., 2.), frem(7., 2.), frem(-7, 2), frem(7.5, 2), frem(3, -5), frem(-3, 5), frem(5, 3), frem(6, 3), frem(-6, 3), frem(5, infinity), frem(3 + 5*I, 2), frem(x, 1);
frem(Float(infinity), 2), frem(1, 0), frem(1, I), frem(undefined, 1), frem(1, undefined);
SFloatMantissa(1.25), SFloatExponent(1.25), SFloatMantissa(Float(-infinity)), SFloatExponent(Float(undefined)), SFloatMantissa(3), SFloatExponent(x);
Unordered(1, 2.), Unordered(infinity, -infinity), Unordered(undefined, 1), Unordered(1, Float(undefined)), Unordered(1 + I, 1), Unordered(x, 1);
OrderedNE(1, 2), OrderedNE(1, 1.), OrderedNE(infinity, 1), OrderedNE(undefined, 1), OrderedNE(1 + I, 1), OrderedNE(x, 1);
DefaultOverflow(1), DefaultOverflow(-1), DefaultUnderflow(1), DefaultUnderflow(-1);
# Every class of number.
NumericClass(infinity), NumericClass(-infinity), NumericClass(undefined);
NumericClass(Float(infinity)), NumericClass(Float(-infinity)), NumericClass(Float(undefined));
NumericClass(0.), NumericClass(-0.), NumericClass(1.5), NumericClass(-1.5);
NumericClass(0), NumericClass(7), NumericClass(-10^30), NumericClass(2/3), NumericClass(-2/3);
NumericClass(I), NumericClass(-2.5*I), NumericClass(0. + 0.*I), NumericClass(Complex(Float(infinity), Float(-infinity))), NumericClass(Complex(infinity, infinity));
NumericClass(0. + 2.*I), NumericClass(2. + 0.*I), NumericClass(2 - 3*I), NumericClass(x), NumericClass("a"), NumericClass([1]);
# Complex floats: zeros, infinities and undefined parts.
NumericStatus(false): 1/(0. + 0.*I); NumericStatus(division_by_zero);
(infinity + I)*(1 + 2*I), (infinity + I)*(0. + 0.*I), I - I, (1 + I) + (1 - I), (1. + I)^0, 1/(2*I), 1/(1 + I), (1 + 2*I)/(3 - I), (1. + 2*I)/(3 - I), (3. + 4*I)^(-2), 1/(1e100 + I);
Complex(Float(undefined), 1.)*(0. + 2.*I), Complex(infinity, 1)^2, Complex(infinity, 1)^(-2);
# The hypergeometric kernel: its messages, its sums.
hyper := `evalf/hypergeom/kernel`:
hyper([], [], 1.), hyper([1], [], 1/2), hyper([1/2, 1], [1/2], .5), hyper([1, 1], [2], -.5), hyper([-3, 1], [2], 2), hyper([1], [1], 1, 3), hyper([1], [2], 0), hyper([1/2], [3/2], -30.);
hyper(1, [], 1); hyper([], 1, 1); hyper([x], [], 1); hyper([], [x], 1); hyper([], [], x); hyper([], [], 1, -1); hyper([], [], 1, 0); hyper([], [], 1, x);
hyper([1, 2, 3], [1/2], 1/2); hyper([1, 2], [3], 2); hyper([1, 2], [3], 1); hyper([1], [-2], 1); hyper([1], [2]);
evalf(`hypergeom/kernel`([1], [1], 1));
# Numbers that no integer holds.
hyper([Float(1, -300000000)], [], 1/2); hyper([Float(1, 300000000)], [], 1/2); hyper([], [], Float(1, 300000000)), hyper([-3], [], Float(1, 300000000));
# Continued fraction of the root of 13290059: relations that a small bound keeps.
MorrBrilCull(1, 3645, 1, 4034, 3257, 3645, 13290059, 0, 1, 1)[1 .. 5];
MorrBrilCull(1, 2, 3, 4, 5, 6, 7, 8, 9, x);
# Without a modulus there is nothing to do; the root of a square ends at once.
MorrBrilCull(0, 1, 0, 1, 5, 5, 0, 4, 30, 10); MorrBrilCull(0, 1, 25, 1, 5, 5, 25, 4, 0, 10), MorrBrilCull(0, 1, 25, 1, 5, 5, 25, 10^18, 6, 10);
