def work(k, n):
    parts = ["<" + str(k) + str(i) + ">" for i in range(1, n + 1)]
    return "".join(parts)[-10:]
for k in range(1, 10): work(k, 5 * 10**4)
print(work(10, 5 * 10**4))
