def sieve(n):
    composite = {}
    count = 0
    for i in range(2, n + 1):
        if composite.get(i) != 1:
            count = count + 1
            for j in range(i * i, n + 1, i):
                composite[j] = 1
    return count
print(sieve(10**6))
