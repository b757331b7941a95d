work(n, k) = { my(t = Map(), key, c); for(i = 1, n, key = [(7*i)%50, i%50]; if(mapisdefined(t, key, &c), mapput(t, key, c + i + k), mapput(t, key, i + k))); #t; }
total = 0; for(k = 1, 10, total = total + work(10^4, k));
print(total)
