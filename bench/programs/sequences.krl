# A list of 10^5 squares, its shifted copy element by element, and the sum of both, five times over.
work := proc(n) local squares, shifted, i, x;
  squares := [seq(i^2, i = 1..n)];
  shifted := [seq(x + 1, x = squares)];
  add(x, x = squares) + add(x, x = shifted)
end proc:
lprint(seq(work(10^5 + i), i = 1..5));
