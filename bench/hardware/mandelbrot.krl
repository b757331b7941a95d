# Counts of the Mandelbrot set, 400 by 400, at most 100 rounds each.
mandelbrot := proc(n) local i, j, k, x, y, t, cx, cy, total;
  total := 0;
  for i to n do for j to n do
    cx := -2 + 3*i/n; cy := -1.5 + 3*j/n; x := 0; y := 0;
    for k to 100 while x*x + y*y <= 4 do t := x*x - y*y + cx; y := 2*x*y + cy; x := t end do;
    total := total + k
  end do end do;
  total end:
evalhf(mandelbrot(400));
