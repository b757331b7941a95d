\\ A closure of GP's copies what it captures: the state lives in a global here.
n = 0;
counter(z) = { n = z; (step) -> n = n + step; }
work(rounds) = { my(c = counter(0), s = 0, keep); for(i = 1, rounds, c(1); c(2)); keep = n;
  for(i = 1, rounds, s = s + counter(0)(i)); keep + s; }
print(work(5*10^5))
