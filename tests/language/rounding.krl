# Integer parts in four directions, on every kind of number and on what stays open.
floor(7/2), floor(-7/2), floor(-3), floor(2.7), floor(-2.7), floor(-3.0), floor(Pi), floor(-Pi), floor(x), floor(infinity), floor(-infinity), floor(10^20*Pi);
ceil(7/2), ceil(-7/2), ceil(2.2), ceil(-Pi), ceil(x), ceil(3);
round(5/2), round(-5/2), round(2.5), round(2.4999999999999999999), round(Pi), round(x), round(-0.5), round(1/3);
frac(7/2), frac(-7/2), frac(2.25), frac(Pi), frac(x), frac(0);
traperror(floor("a")), traperror(trunc([1])), traperror(frac({1})), floor(1 + 2*I), round(Float(infinity)), floor(undefined), floor(0.); floor(); floor(1, 2);
