def work(n):
    parts = ["<" + str(i) + ">" for i in range(1, n + 1)]
    return len("".join(parts))
print(work(5 * 10**4))
