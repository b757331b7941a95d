# Python has no symbols of its own: the monomials are tuples of exponents in a dictionary.
def work(n, k):
    terms = {}
    for i in range(1, n + 1):
        key = (7 * i % 50, i % 50)
        terms[key] = terms.get(key, 0) + (i + k)
    return terms
total = 0
for k in range(1, 11):
    total = total + len(work(10**4, k))
print(total)
