work(n) = { my(s = 0); for(i = 1, n, s = s + 1); s; }
print(work(10^7))
