# Numbers and real constants leave the largest or least of them behind, once each what can't be compared.
max(x, 3, 2), max(x, x), max(x), min(x, y, x), max(max(x, 2), y, 5), max(min(x, 2), 3), max(2^(1/2), 1), min(2^(1/2), 3), max(Pi, exp(1), x), max(Pi, 22/7), min(Pi, 355/113), max(I, 2);
max(x, infinity), max(x, -infinity), min(x, infinity), min(-infinity, x), max(undefined, x), max(x, undefined, 1), max(Pi, infinity), min(Pi, -infinity), max(-infinity, Pi);
max([1, 2]), max({1, 2, x}), max([]), min([]), min([x, min(x, 3)]);
traperror(max([1], 2)), traperror(min([3, [1, 2]])), traperror(max("a", 1)), traperror(max(1 .. 2, 3)), traperror(min(x = 1, 2));
# Integer parts: of constants as far as their digits tell, the sign in front.
trunc(x), trunc(-x), trunc(-3*x), trunc(trunc(x)), trunc(100*2^(1/2)), trunc(-2^(1/2)), trunc(Pi*10^30), trunc(exp(10)), trunc(x, 1), trunc(3 + 2^(1/2)*2^(1/2) - 2);
# Integer logarithms.
ilog10(1/3), ilog10(99/10), ilog10(1/1000), ilog10(-999/1000), ilog10(10^30/7), ilog10(x), ilog10(Pi*100), ilog10(1/Pi);
ilog2(1000), ilog2(1024), ilog2(1/3), ilog2(Pi), ilog2(2^1000 - 1), ilog2(x), ilog[3](80), ilog[3](81), ilog[10](0.001), ilog[5/2](100), ilog(10), ilog(exp(3)*2), ilog[2](0), ilog[2](-9);
ilog[1](3); ilog[x](3); ilog(1, 2);
