# 10^6 calls of a counter that keeps its state in a closure, and 5*10^5 closures made.
counter := proc() local n; n := 0; proc(step) n := n + step end proc end proc:
work := proc(rounds) local c, i, s;
  c := counter();
  for i to rounds do c(1); c(2) end do;
  s := 0;
  for i to rounds do s := s + counter()(i) end do;
  c(0) + s
end proc:
lprint(work(5*10^5));
