work(n) = { my(t = Map(), s = 0); for(i = 1, n, mapput(t, 17*i, i));
  for(i = 1, n, s = s + mapget(t, 17*i)); s; }
for(k = 1, 7, work(10^5));
print(work(10^5))
