def has(x, z):
    seen = set()
    pending = [x]
    while pending:
        part = pending.pop()
        if part == z if isinstance(part, str) else False:
            return True
        if isinstance(part, tuple) and id(part) not in seen:
            seen.add(id(part))
            pending.extend(part)
    return False
def work(n):
    x, y = 'a', 'b'
    for i in range(n):
        x, y = ('f', x, y), x
    return sum(not has(x, 'z') for i in range(10))
print(work(10**6))
