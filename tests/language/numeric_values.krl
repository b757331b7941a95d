# Sixty digits of each, from elsewhere; the last one is rounded.
known := table(['exp(1)' = 2.71828182845904523536028747135266249775724709369995957496697,
  'ln(2)' = 0.693147180559945309417232121458176568075500134360255254120680,
  'sin(1)' = 0.841470984807896506652502321630298999622563060798371065672752,
  'cos(10^20)' = 0.763970404441728300400146802737881122834473441747004480622189,
  'tan(11)' = -225.950846454195142025795483203453153951657509885131194631095,
  'arctan(1/3)' = 0.321750554396642193401404614358661319020755295557656191432803,
  'arcsin(9/10)' = 1.11976951499863418668667705584539961589516218640330288237568,
  'arccos(-1/7)' = 1.71414389570026197682639597179636976819752391282101723893436,
  '2^(1/3)' = 1.25992104989487316476721060727822835057025146470150798008198,
  'Pi' = 3.14159265358979323846264338327950288419716939937510582097494,
  'gamma' = 0.577215664901532860606512090082402431042159335939923598805767,
  'Catalan' = 0.915965594177219015054603514932384110774149374281672134266498,
  'sinh(1/100)' = 0.0100001666675000019841297398614117380176415601352275241402626,
  'arctanh(99/100)' = 2.64665241236224619770506064593426860094555264028473624945323]):
wrong := proc(e) Digits := 60; `if`(evalf(e) = evalf(known[e]), NULL, e) end proc: [seq(wrong(op(t)), t = indices(known))];
# Fewer digits are the rounding of more, and functions undo each other, at any number of digits.
check := proc(n) local f, x, bad;
  bad := NULL;
  for f in [exp, sin, cos, tan, arctan, sinh, cosh, tanh, arcsinh] do for x in [1/3, -17/10, 10^8 + 1/7, 1/10^9] do
    if f = exp or f = sinh or f = cosh then x := x/10^6 end if;
    if evalf(evalf(f(x), n + 25), n) <> evalf(f(x), n) then bad := bad, f(x) end if
  end do end do;
  for x in [2, 1/3, 1 + 1/10^12, 10^40 + 1] do
    Digits := n;
    if abs(evalf(exp(ln(x))/x, n + 15) - 1) > 10^(-n) then bad := bad, ln(x) end if;
    if abs(evalf(sin(x)^2 + cos(x)^2, n + 15) - 1) > 10^(-n) then bad := bad, sin(x) end if;
    if abs(evalf(tan(arctan(x))/x, n + 60) - 1) > 10^(-n) then bad := bad, arctan(x) end if;
    if evalf(evalf(ln(x), n + 25), n) <> evalf(ln(x), n) then bad := bad, ln(x), n end if
  end do;
  bad
end proc:
seq(check(n), n = [1, 2, 7, 10, 33, 100, 500]);
evalb(abs(evalf(Pi - 4*(4*arctan(1/5) - arctan(1/239)), 1000)) < 10^(-990)), evalf(sin(Pi/6), 300) - 1/2;
# Digits that cancel, arguments near a pole, near 1, tiny and huge.
evalf(sin(3141592653589793238462643383279502884197/10^39)), evalf(ln(1 + 1/10^30)), evalf(cos(1/10^20)), evalf(tan(15707963267948966192313/10^22)), evalf(arcsin(1 - 1/10^25)), evalf(arccosh(1 + 1/10^30)), evalf(exp(1/10^20)), evalf(exp(10^6)), evalf(1.0000000001^(10.^10)), evalf(sin(Float(1, -10^6))), evalf(arctan(Float(1, 10^6)));
evalf(exp(10^12)), evalf(exp(-10^12)), evalf(sin(Float(1, 10^9)));
# Powers.
evalf(2^(1/2)), 2^0.5, (-8.)^(1/3), I^0.5, (1. + I)^(1/2), 2.0^I, (-2.0)^(1/2), (-2)^2.5, (-2)^3.0, (-2.)^(-1/2), 0.0^(1/3), 10.^(-1/2), evalf((1 + I)^(1/3)), evalf(3^(-Pi));
# Complex arguments, and real ones that lead there.
evalf(exp(1 + I)), evalf(exp(Pi*I/3)), evalf(ln(-1)), evalf(ln(1 + I)), evalf(ln(0.6 + 0.8*I)), evalf(sin(1 + I)), evalf(cos(1 + I)), evalf(tan(1 + I)), evalf(arcsin(2)), evalf(arccos(2)), evalf(arctan(1 + I)), evalf(sinh(I)), evalf(arccosh(1/2)), evalf(arctanh(2)), evalf(coth(1 + I)), evalf(sqrt(-2)), evalf(sqrt(I));
evalf(arctan(1, -1)), evalf(arctan(-1, -1)), evalf(arctan(1, 0)), evalf(arctan(0, -2)), evalf(arctan(0, 1)), evalf(arctan(0, 0)), evalf(cot(1)), evalf(sec(1)), evalf(csc(1)), evalf(sech(1)), evalf(csch(1)), evalf(sqrt(2)), evalf(sqrt(4));
# Ends, poles, and what has no value.
evalf(exp(infinity)), evalf(exp(-infinity)), evalf(arctan(infinity)), evalf(arctan(-infinity)), evalf(ln(infinity)), evalf(tanh(-infinity)), evalf(sin(infinity)), evalf(exp(undefined)), evalf(ln(undefined)), Float(undefined)^0.5; ln(0.); arctanh(1.); evalf(ln(0)); evalf(arctanh(1)); (0.)^(-1/2);
evalf(exp(x)), evalf(exp(x + 1/3)), evalf(sec(x)), evalf(sqrt(x)), evalf(arctan(x, 1)), evalf('exp'(1, 2)), evalf('exp'());
evalf((exp@@2)(1)), evalf((sin@cos)(1)), evalf((f@@(-1))(x));
# Another precision, another rounding.
Rounding := -infinity: evalf(exp(2)), evalf(cos(1/10^30)), evalf(exp(1/10^30)); Rounding := infinity: evalf(exp(3)), evalf(cos(1/10^40)), evalf(exp(1/10^40)); Rounding := nearest: evalf(exp(2), 15), evalf(exp(3), 15);
Digits := 20: evalf(Pi), evalf(Pi, 5); Digits := 10: evalf(Pi);
# A long one ends on time.
try timelimit(1/10, evalf(exp(1/3), 10^6)) catch: lastexception[2] end try;
