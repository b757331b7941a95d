def work(n):
    parts = ["<" + str(i) + ">" for i in range(1, n + 1)]
    return "".join(parts)[-10:]
print(work(5 * 10**4))
