def f(x, y): return x/2 + y
def calls(n):
    s = 0.0
    for i in range(1, n + 1): s = f(s, i)
    return s
print(calls(1000000))
