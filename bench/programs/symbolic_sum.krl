# 10^4 terms in 50 different monomials, collected to one sum; ten sums.
work := proc(n, k) local i;
  add((i + k)*x^irem(7*i, 50)*y^irem(i, 50), i = 1..n)
end proc:
total := 0:
for k to 10 do total := total + nops(work(10^4, k)) end do:
lprint(total);
