work(k, n) = { my(parts = vector(n, i, Str("<", k, i, ">")), all = concat(parts)); strjoin(Vec(all)[-10..-1]); }
for(k = 1, 9, work(k, 5*10^4));
print(work(10, 5*10^4))
