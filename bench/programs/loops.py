def work(n):
    s = 0
    for i in range(1, n + 1):
        for j in range(1, n + 1):
            s = s + i * j
    return s
for i in range(7): work(1000)
print(work(1000))
