# Assumptions: made, strengthened, shown, asked for, taken back; what is made under them stays true.
assume(x > 0); x, x + 1, [x^2]; lprint(x); about(x); assumptions(x);
is(x > 0), is(x >= 0), is(x < 0), is(x > 1), is(x, integer), is(x^2 + x > 0), is(exp(x) > 1), is(1/x, positive);
additionally(x < 1); about(x);
is(x > 0 and x < 1), is(x > 1 or x <= 1), is(not x < 1), is(x^2 < 1), is(x, 0..1), is(x::real);
assume(n, integer, n >= 1, n <= 10); about(n); assumptions(n, x);
is(n*(n + 1), integer), is(2*n, even), is(2*n + 1, odd), is(n, posint), is(n > 10), is(n - 1 >= 0), is((-1)^(2*n) = 1);
coulditbe(n > 5), coulditbe(n > 12), coulditbe(n = 3), coulditbe(n^2 > 7), coulditbe(y > 0);
# Bounds that are constants; integers reach theirs.
assume(p > sqrt(2), p < Pi, k::{integer, positive}, k < 7/2): about(p, k); is(p > 1), is(p < 22/7), is(p > 3), is(k <= 3);
assume(z, imaginary, c, prime, t <> 0); is(z^2, real), is(I*z, real), is(z^3, imaginary), is(c > 1), is(t^2 <> 0), is(t = 0);
about(); about(x^2 + 1, n - 5);
# Facts about numbers and constants.
is(sqrt(2) > 1), is(Pi < 22/7), is(7, prime), is(9, prime), is(I, real), is(2 + I, nonzero), is(-3, odd), is(1/3, integer), is(a = a), is(a, real);
# What uses them.
unassume(): about(); x;
assume(x > 0, y < 0, r, real, n, integer, w, imaginary);
abs(x), abs(-x), abs(x*a), abs(y), abs(r), abs(x*y*r), abs(r^2), abs(exp(r)), abs(x*r + a);
Re(x + I*r) - x, Im(x + I*r), conjugate(x + I*r) - x, Re(r*a), Im(r*a), Re(a*I), conjugate(x*a), Re(w), Im(w), conjugate(w);
max(x, 0), max(x, -1, y), min(x, y, 0), max(r, 0), min(n^2, -1), max(abs(a), 0);
floor(n), floor(n + r) - n, floor(n + 1/2), floor(a + 1), ceil(2*n + 1/3), round(n), trunc(n), frac(n), floor(x);
additionally(x < 1): floor(x), ceil(x), floor(x + 3), floor(-x), round(x);
# For a while: names keep what they had, and what comes out is written in them.
assuming(abs(b), b > 0), assuming(abs(b - 1), b > 1), b;
f := abs(b) + abs(c): assuming(f, b > 0, c < 0), f, assuming(abs(x - 1), r::real); assuming(abs(x - 2), x > 3);
# A name without its assumption is another name: what was made before stays, with its assumption.
g := abs(x): x := 'x': x, abs(x), g, g - x;
local1 := proc() local a; assume(a > 0); abs(a)/a end proc: local1();
# How much of it is seen.
interface(showassumed = 0): y; interface(showassumed = 2): y + 1; 5; interface(showassumed = 1): y^2;
`a~` + 1;
aLongNameThatStandsNearTheEnd := 'aLongNameThatStandsNearTheEnd': assume(aLongNameThatStandsNearTheEnd > 0):
[2^200, aLongNameThatStandsNearTheEnd];
# Refused, each with nothing changed.
assume(5 > 3); assume(Pi > 3); assume(u, green); assume(u); assume(); assume(u < v); assume(u, even, u, odd); assume(u > 0, u < 0);
assume(v, integer, v > 0, v < 1); additionally(y > 1); about(u, y); is(u, green); is(); is(1, 2, 3); is(5); assuming(u); unassume(3);
# Whole numbers of quarter turns leave circular functions and exp, with the sign that their parity gives.
restart: assume([n, k], integer, m, even, h, odd):
[sin(n*Pi), tan(n*Pi), cos(n*Pi), sec(n*Pi), exp(I*n*Pi), cos(m*Pi), cos(h*Pi), cos(2*n*Pi), sin((n + 1/2)*Pi), exp(2*I*Pi*n)];
[cos(h*Pi/2), cot(h*Pi/2), sin(h*Pi/2), sin(m*Pi/2), exp(I*h*Pi/2), sin(n*Pi/2), sinh(I*n*Pi), cosh(2*I*k*Pi)];
[sin(x + n*Pi), cos(x - 2*n*Pi), tan(x + k*Pi), exp(x + I*n*Pi + I*Pi/2), sin(x + n*Pi + Pi/3), cos(x + h*Pi/2), sin(Pi*n*k)];
cot(n*Pi); tan(h*Pi/2);
turns := [n*Pi, (n + k)*Pi, h*Pi/2, m*Pi/2, n*Pi + h*Pi/2 + Pi/3, (2*n + 1)*Pi/2 + 1, 3*k*Pi + m*Pi/2 + 2]:
places := [n = 3, k = -2, m = 6, h = -5], [n = -4, k = 5, m = -2, h = 7], [n = 0, k = 1, m = 8, h = 1]:
{seq(seq(seq(evalb(abs(evalf(eval(subs(p, f(t))) - f(evalf(subs(p, t), 30)))) < 10^(-8)), f = [sin, cos, x -> exp(I*x)]), t = turns), p = [places])};
# A file keeps no assumption, and says so.
e := abs(x) + n: save e, n, "assumed.m":
# Facts never contradict values: random expressions at random values of their names.
facts := proc(e, v)
  local p, wrong;
  global known;
  wrong := NULL;
  for p in [real, integer, rational, positive, negative, nonnegative, nonpositive, nonzero] do
    if `kernel/native`("known", e, p) then
      known := known + 1;
      if p = real and not type(v, numeric) or p = integer and abs(evalf(v - round(v))) > 1/10^6 or
        p = positive and v <= 0 or p = negative and v >= 0 or p = nonnegative and v < 0 or p = nonpositive and v > 0 or
        p = nonzero and v = 0 then wrong := wrong, [p, e, v] end if
    end if
  end do;
  wrong
end proc:
unassume(): assume(X > 1, Y, -1/2 .. 3/4, Z, real, N, integer, M, posint, X < 7/2): known := 0: seed := 12345:
die := proc(n) global seed; seed := irem(1103515245*seed + 12345, 2147483648); iquo(seed, 65536) mod n end proc:
tree := proc(d)
  local k;
  k := die(`if`(d = 0, 6, 14));
  if k < 5 then [X, Y, Z, N, M][k + 1] elif k = 5 then (die(9) - 4)/(1 + die(3))
  elif k < 8 then tree(d - 1) + tree(d - 1) elif k < 11 then tree(d - 1)*tree(d - 1) elif k < 12 then tree(d - 1)^(die(3) + 1)
  elif k = 12 then abs(tree(d - 1)) else tree(d - 1) - (die(5) - 2) end if
end proc:
point := proc() [X = 1 + (1 + die(99))/40, Y = (die(126) - 50)/100, Z = (die(200) - 100)/7, N = die(20) - 10, M = 1 + die(9)] end proc:
bad := [seq(proc(e) facts(e, eval(subs(point(), e))) end proc(tree(3)), i = 1..3000)]; evalb(known > 4000);
# Powers of -1 with exponents whose parity follows from what is assumed; other names keep theirs.
assume([n, m], integer): additionally(m, odd): (-1)^(2*n), (-1)^m, (-1)^(2*n + 1), (-1)^(n*(n + 1)), ((-1)^n)^2, (-1)^n*x*(-1)^n, ((-1)^n)^3, (-1)^n/(-1)^n, (-1)^n*(-1)^m, (-1)^n, ((-1)^j)^2, (-1)^(2*j);
f := (-1)^(2*j): eval(subs(j = n, f)); unassume(n): (-1)^(2*n); unassume();
