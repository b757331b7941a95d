# The coefficients of a sum of 10^4 multiples of x^a*y^b, counted under pairs of exponents; ten sums.
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
