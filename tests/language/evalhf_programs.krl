# Programs that people write, each beside what is known from elsewhere: exactly, or by software floats.

# The logistic map: at r = 4 the step x -> 4*x*(1 - x) doubles an angle; 20 steps by exact fractions and by floats of 60 digits.
logistic := proc(r, x0, n) local x, i; x := x0; for i to n do x := r*x*(1 - x) end do; x end:
exact := proc(r, x0, n) local x, i; Digits := 60; x := evalf(x0); for i to n do x := r*x*(1 - x) end do; evalf(x, 12) end:
evalb(abs(evalhf(logistic(3.5, 1/3, 200)) - exact(3.5, 1/3, 200)) < 1e-11), evalhf(logistic(4, 3/4, 50)), evalhf(logistic(2, 1/4, 3)) - logistic(2, 1/4, 3);

# Mandelbrot counts: integers that floats of 30 digits give as well.
escape := proc(cx, cy, n) local x, y, t, k; x := 0; y := 0;
  for k to n do if x^2 + y^2 > 4 then return k end if; t := x^2 - y^2 + cx; y := 2*x*y + cy; x := t end do; n + 1 end:
Digits := 30: counts := proc() local i, j, same; same := true;
  for i from -8 to 4 do for j from 0 to 5 do same := same and evalb(evalhf(escape(i/4.0, j/5.0, 25)) = escape(i/4.0, j/5.0, 25)) end do end do;
  same end: counts(); Digits := 10:
total := proc(n) local i, j, s; s := 0; for i to n do for j to n do s := s + escape(-2 + 3*i/n, -1.5 + 3*j/n, 60) end do end do; s end:
evalhf(total(60));

# Runge and Kutta's method on the three-body problem: the figure of eight comes back after its period, with its energy.
acceleration := proc(s, a) local i, j, dx, dy, r3;
  for i to 12 do a[i] := 0 end do;
  for i from 0 to 2 do a[4*i + 1] := s[4*i + 3]; a[4*i + 2] := s[4*i + 4];
    for j from 0 to 2 do if i <> j then
      dx := s[4*j + 1] - s[4*i + 1]; dy := s[4*j + 2] - s[4*i + 2]; r3 := (dx^2 + dy^2)^(3/2);
      a[4*i + 3] := a[4*i + 3] + dx/r3; a[4*i + 4] := a[4*i + 4] + dy/r3 end if end do end do end:
energy := proc(s) local i, j, e; e := 0;
  for i from 0 to 2 do e := e + (s[4*i + 3]^2 + s[4*i + 4]^2)/2;
    for j from i + 1 to 2 do e := e - 1/sqrt((s[4*i + 1] - s[4*j + 1])^2 + (s[4*i + 2] - s[4*j + 2])^2) end do end do; e end:
rungekutta := proc(s, h, n) local k1, k2, k3, k4, t, i, m;
  k1 := hfarray(1..12); k2 := hfarray(1..12); k3 := hfarray(1..12); k4 := hfarray(1..12); t := hfarray(1..12);
  for m to n do
    acceleration(s, k1); for i to 12 do t[i] := s[i] + h/2*k1[i] end do;
    acceleration(t, k2); for i to 12 do t[i] := s[i] + h/2*k2[i] end do;
    acceleration(t, k3); for i to 12 do t[i] := s[i] + h*k3[i] end do;
    acceleration(t, k4); for i to 12 do s[i] := s[i] + h/6*(k1[i] + 2*k2[i] + 2*k3[i] + k4[i]) end do
  end do; energy(s) end:
start := [0.97000436, -0.24308753, 0.466203685, 0.43236573, -0.97000436, 0.24308753, 0.466203685, 0.43236573, 0, 0, -0.93240737, -0.86473146]:
s := hfarray(start): before := evalhf(energy(s)): after := evalhf(rungekutta(s, 6.32591398/2000, 2000)):
evalf(before, 6), evalb(abs(after - before) < 1e-9), evalb(max(seq(abs(s[i] - start[i]), i = 1 .. 12)) < 1e-5);

# Gauss's elimination with pivots on the Hilbert matrix of order 6, against the exact solution; then Jacobi's iteration.
gauss := proc(A, b, n) local i, j, k, p, t;
  for k to n do
    p := k; for i from k + 1 to n do if abs(A[i, k]) > abs(A[p, k]) then p := i end if end do;
    if A[p, k] = 0 then error "the matrix is singular" end if;
    if p <> k then for j to n do t := A[k, j]; A[k, j] := A[p, j]; A[p, j] := t end do; t := b[k]; b[k] := b[p]; b[p] := t end if;
    for i from k + 1 to n do t := A[i, k]/A[k, k]; for j from k to n do A[i, j] := A[i, j] - t*A[k, j] end do; b[i] := b[i] - t*b[k] end do
  end do;
  for i from n by -1 to 1 do for j from i + 1 to n do b[i] := b[i] - A[i, j]*b[j] end do; b[i] := b[i]/A[i, i] end do; b[1] end:
H := array(1 .. 6, 1 .. 6): for i to 6 do for j to 6 do H[i, j] := 1/(i + j - 1) end do end do:
b := array(1 .. 6, [seq(add(1/(i + j - 1), j = 1 .. 6), i = 1 .. 6)]): evalhf(gauss(H, var(b), 6)): evalb(max(seq(abs(b[i] - 1), i = 1 .. 6)) < 1e-9), H[6, 6];
S := array(1 .. 2, 1 .. 2, [[1, 2], [2, 4]]): evalhf(gauss(S, hfarray([1, 1]), 2));
jacobi := proc(u, n, most) local i, j, k, v, d;
  v := array(0 .. n, 0 .. n); for k to most do d := 0;
    for i to n - 1 do for j to n - 1 do v[i, j] := (u[i - 1, j] + u[i + 1, j] + u[i, j - 1] + u[i, j + 1])/4; d := max(d, abs(v[i, j] - u[i, j])) end do end do;
    for i to n - 1 do for j to n - 1 do u[i, j] := v[i, j] end do end do; if d < 1e-13 then break end if end do; k end:
u := hfarray(0 .. 10, 0 .. 10): for i from 0 to 10 do u[i, 0] := i^2 - 0; u[i, 10] := i^2 - 100; u[0, i] := -i^2; u[10, i] := 100 - i^2 end do:
evalb(evalhf(jacobi(u, 10, 5000)) < 2000), evalb(max(seq(seq(abs(u[i, j] - (i^2 - j^2)), i = 1 .. 9), j = 1 .. 9)) < 1e-9);

# The fast Fourier transform of 4096 points: of a wave, and there and back.
fft := proc(re, im, n, sign) local i, j, k, m, l, c, s, wr, wi, t, x, y;
  j := 1; for i to n - 1 do
    if i < j then t := re[i]; re[i] := re[j]; re[j] := t; t := im[i]; im[i] := im[j]; im[j] := t end if;
    m := n/2; while m >= 2 and j > m do j := j - m; m := m/2 end do; j := j + m end do;
  l := 1; while l < n do
    for m from 0 to l - 1 do
      wr := cos(Pi*m/l); wi := sign*sin(Pi*m/l);
      for i from m + 1 by 2*l to n do
        k := i + l; x := wr*re[k] - wi*im[k]; y := wr*im[k] + wi*re[k];
        re[k] := re[i] - x; im[k] := im[i] - y; re[i] := re[i] + x; im[i] := im[i] + y end do end do;
    l := 2*l end do; n end:
wave := proc(re, n) local i; for i to n do re[i] := cos(2*Pi*5*(i - 1)/n) + 3*sin(2*Pi*7*(i - 1)/n) end do end:
back := proc(re, im, n) local i, d, t; t := hfarray(1 .. n); for i to n do t[i] := re[i] end do; fft(re, im, n, -1); fft(re, im, n, 1);
  d := 0; for i to n do d := max(d, abs(re[i]/n - t[i]), abs(im[i]/n)) end do; d end:
n := 4096: re := hfarray(1 .. n): im := hfarray(1 .. n): evalhf(wave(re, n)): evalhf(fft(re, im, n, -1)):
evalb(max(abs(re[6]/n - 1/2), abs(im[6]/n), abs(re[8]/n), abs(im[8]/n + 3/2), abs(re[n - 4]/n - 1/2), abs(re[1]/n)) < 1e-13);
noise := proc(re, n) local i, x; x := 1; for i to n do x := frac(x*16807/100003); re[i] := x end do end:
evalhf(noise(re, n)): for i to n do im[i] := 0 end do: evalb(evalhf(back(re, im, n)) < 1e-13);

# Simpson's rule, the error of which falls by 16 with half the step; Newton's method for the cube root.
simpson := proc(a, b, n) local h, s, i; h := (b - a)/n; s := exp(-a^2) + exp(-b^2);
  for i to n - 1 do if i::odd then s := s + 4*exp(-(a + i*h)^2) else s := s + 2*exp(-(a + i*h)^2) end if end do; s*h/3 end:
half := proc(b) sqrt(Pi)/2*erf(b) end: e := n -> abs(evalhf(simpson(0, 1, n)) - evalhf(half(1))):
evalb(e(1000) < 1e-13), evalb(abs(e(8)/e(16) - 16) < 0.5);
newton := proc(a) local x, k; x := a; for k to 100 do if abs(x^3 - a) <= 1e-15*a then return x end if; x := x - (x^3 - a)/(3*x^2) end do; error "no root of %1", a end:
evalhf(newton(27)), evalb(abs(evalhf(newton(2))^3 - 2) < 1e-9);

# A linear congruential generator: whole numbers below 2^53 are exact, so that the integers agree.
lcg := proc(n) local x, i, m; m := 2147483647; x := 1; for i to n do x := 16807*x; x := x - m*floor(x/m) end do; x end:
exactlcg := proc(n) local x, i; x := 1; for i to n do x := irem(16807*x, 2147483647) end do; x end: evalhf(lcg(10000)), evalhf(lcg(1000)) - exactlcg(1000);
# Primes by a sieve, Collatz's steps, and the greatest common divisor.
primes := proc(n) local A, i, j, c; A := array(1 .. n); c := 0;
  for i from 2 to n do if A[i] = 0 then c := c + 1; for j from i*i by i to n do A[j] := 1 end do end if end do; c end: evalhf(primes(30000));
collatz := proc(n) local x, c; x := n; c := 0; while x <> 1 do if x::even then x := x/2 else x := 3*x + 1 end if; c := c + 1 end do; c end: evalhf(collatz(837799));
gcd2 := proc(a, b) if b = 0 then a else gcd2(b, a - b*trunc(a/b)) end if end: evalhf(gcd2(2^40*3, 6^20));
