# Roman numerals both ways, notation by powers of ten, digits in a base, simple fractions; random values by kind.
convert(1994, roman), convert(3888, roman), convert("MCMXCIV", arabic), convert(mmxx, arabic), {seq(convert(convert(n, roman), arabic) - n, n = 1..3999)};
convert("IIII", arabic); convert("", arabic); convert("MMMM", arabic); convert("VX", arabic); convert(4000, roman); convert(0, roman);
scientifictext(Pi, 5), scientifictext(-12345.678, 3), scientifictext(0.00012), scientifictext(0), scientifictext(1/3, 4), scientifictext(9.9999, 3), scientifictext(100, 1), scientifictext(10^50, 3);
engineeringtext(Pi*10^5, 5), engineeringtext(123456, 2), engineeringtext(0.00012, 3), engineeringtext(12345, 6), engineeringtext(1, 1), engineeringtext(-0.05, 2), engineeringtext(99999.9, 2), engineeringtext(999.99, 4);
{seq(parse(scientifictext(3.7*10.0^k, 5)) - 3.7*10.0^k, k = -20..20), seq(parse(engineeringtext(3.7*10.0^k, 5)) - 3.7*10.0^k, k = -20..20)};
scientifictext(x); engineeringtext(infinity); scientifictext(1, 2, 3); scientifictext(); scientifictext(1, 0);
basetext(255, 2), basetext(-35, 36), basetext(0, 7), {seq(convert(basetext(10^20 - 7, b), decimal, b), b = 2..36)}; basetext(3, 1); basetext(3, 37);
bestfraction(Pi, 10), bestfraction(Pi, 1000), bestfraction(0.3333, 10), bestfraction(-Pi, 113), bestfraction(1/2, 1), bestfraction(3.7, 1), bestfraction(exp(1), 100), bestfraction(5, 3); bestfraction(x, 3); bestfraction(infinity, 3);
# None is nearer: by trying all denominators.
brute := proc(x, n) local q, best, f; best := round(x); for q to n do f := round(x*q)/q; if abs(f - x) < abs(best - x) then best := f end if end do; best end proc:
r := rand(-10^6..10^6): randomize(1): {seq(proc(x, n) abs(bestfraction(x, n) - x) - abs(brute(x, n) - x) end proc(r()/(1 + abs(r())), 1 + irem(abs(r()), 50)), i = 1..300)};
# The same seed gives the same values; each kind keeps to what it is asked for.
draw := proc() [randomfloat(), randomfloat(2..3), randomlist(5), randomlist(3, 1..6), randompolynomial(x, 4), randompolynomial([x, y], 3), shuffle([1, 2, 3, 4, 5]), randomchoice([a, b, c])] end proc:
randomize(7); first := draw(): randomize(7): evalb(draw() = first), evalb(draw() = first), type(randomize(), posint);
{seq(degree(randompolynomial(x, d), x) - d, d = 0..20)}, {seq(degree(randompolynomial([x, y, z], d, 1..9)) - d, d = 0..10)}, {op(randomlist(200, 1..3))}, evalb(nops({op(randomlist(300))}) > 100);
min(op(randomlist(400, -2..2))), max(op(randomlist(400, -2..2))), evalb(sort(shuffle([seq(i, i = 1..30)])) = [seq(i, i = 1..30)]), Dimensions(randommatrix(2, 3)), evalb(max(seq(randomfloat(-1..1), i = 1..100)) < 1);
Digits := 40: evalb(length(SFloatMantissa(randomfloat())) > 30); Digits := 10:
# Each face of a die comes about as often as the others: chi squared with 5 degrees of freedom, 99.9% below 20.5.
t := tally(randomlist(6000, 1..6)): evalb(add((rhs(i) - 1000)^2/1000, i = t) < 41/2);
randomfloat(x..2); randomfloat(3); randomchoice([]); randomlist(-1); randompolynomial(3, 2); randommatrix(0, 1); randomize(0);
