work(n) = { my(parts = vector(n, i, Str("<", i, ">")), all = concat(parts)); strjoin(Vec(all)[-10..-1]); }
print(work(5*10^4))
