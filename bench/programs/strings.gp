work(n) = { my(parts = vector(n, i, Str("<", i, ">"))); #concat(parts); }
print(work(5*10^4))
