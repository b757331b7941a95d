# The coefficients of a sum of 10^4 multiples of x^a*y^b, counted under pairs of exponents; ten sums.
work := proc(n, k) local t, i, a, b;
  t := table(sparse);
  for i to n do
    a := irem(7*i, 50);
    b := irem(i, 50);
    t[a, b] := t[a, b] + i + k
  end do;
  nops([indices(t)])
end proc:
total := 0:
for k to 10 do total := total + work(10^4, k) end do:
lprint(total);
