def work(n):
    t = {}
    for i in range(1, n + 1):
        t[17 * i] = i
    s = 0
    for i in range(1, n + 1):
        s = s + t[17 * i]
    return s
for i in range(7): work(10**5)
print(work(10**5))
