def work(n):
    s = 0
    for i in range(1, n + 1):
        s = s + 1
    return s
print(work(10**7))
