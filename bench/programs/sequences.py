def work(n):
    squares = [i ** 2 for i in range(1, n + 1)]
    shifted = [x + 1 for x in squares]
    return sum(x for x in squares) + sum(x for x in shifted)
print([work(10**5 + i) for i in range(1, 6)])
