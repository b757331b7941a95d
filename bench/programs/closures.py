def counter():
    n = 0
    def call(step):
        nonlocal n
        n = n + step
        return n
    return call
def work(rounds):
    c = counter()
    for i in range(1, rounds + 1):
        c(1); c(2)
    s = 0
    for i in range(1, rounds + 1):
        s = s + counter()(i)
    return c(0) + s
print(work(5 * 10**5))
