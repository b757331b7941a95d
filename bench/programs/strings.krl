# 5*10^4 short strings made from numbers, then joined to one text.
work := proc(n) local i, parts;
  parts := seq(cat("<", i, ">"), i = 1..n);
  cat(parts)[-10..-1]
end proc:
lprint(work(5*10^4));
