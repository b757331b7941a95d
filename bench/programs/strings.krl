# 5*10^4 short strings made from numbers, then joined to one text.
work := proc(n) local i, parts;
  parts := seq(cat("<", i, ">"), i = 1..n);
  length(cat(parts))
end proc:
lprint(work(5*10^4));
