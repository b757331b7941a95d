# 5*10^4 short strings made from numbers, then joined to one text; ten times, different strings each time.
work := proc(k, n) local i, parts;
  parts := seq(cat("<", k, i, ">"), i = 1..n);
  cat(parts)[-10..-1]
end proc:
for k to 9 do work(k, 5*10^4) end do:
lprint(work(10, 5*10^4));
