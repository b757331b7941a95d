fib(n) = if(n < 2, n, fib(n - 1) + fib(n - 2));
for(i = 1, 39, fib(24));
print(fib(24))
