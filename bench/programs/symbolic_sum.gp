work(n, k) = { my(s = 0); for(i = 1, n, s = s + (i + k)*x^((7*i)%50)*y^(i%50)); s; }
total = 0; for(k = 1, 10, total = total + #select(c -> c != 0, concat(apply(p -> Vec(p), Vec(work(10^4, k))))));
print(total)
