work(n) = { my(s = 0); for(i = 1, n, for(j = 1, n, s = s + i*j)); s; }
for(k = 1, 7, work(1000));
print(work(1000))
