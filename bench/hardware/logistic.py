def logistic(r, n):
    x = 0.5
    for i in range(n): x = r*x*(1 - x)
    return x
print(logistic(3.9, 20000000))
