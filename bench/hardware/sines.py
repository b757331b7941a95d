from math import sin
def sines(n):
    s = 0.0
    for i in range(1, n + 1): s += sin(i)
    return s
print(sines(1000000))
