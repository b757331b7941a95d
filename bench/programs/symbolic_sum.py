# A symbolic sum without a library: polynomials as dictionaries from monomials, sorted tuples of
# (name, exponent), to coefficients.
class Polynomial:
    def __init__(self, terms):
        self.terms = {m: c for m, c in terms.items() if c != 0}
    @staticmethod
    def of(value):
        return value if isinstance(value, Polynomial) else Polynomial({(): value})
    def __add__(self, other):
        terms = dict(self.terms)
        for m, c in Polynomial.of(other).terms.items():
            terms[m] = terms.get(m, 0) + c
        return Polynomial(terms)
    __radd__ = __add__
    def __mul__(self, other):
        terms = {}
        for m1, c1 in self.terms.items():
            for m2, c2 in Polynomial.of(other).terms.items():
                exponents = dict(m1)
                for name, e in m2:
                    exponents[name] = exponents.get(name, 0) + e
                m = tuple(sorted((name, e) for name, e in exponents.items() if e != 0))
                terms[m] = terms.get(m, 0) + c1 * c2
        return Polynomial(terms)
    __rmul__ = __mul__
    def __pow__(self, n):
        if len(self.terms) == 1:
            (m, c), = self.terms.items()
            return Polynomial({tuple((name, e * n) for name, e in m if n != 0): c ** n})
        power = Polynomial.of(1)
        for _ in range(n):
            power = power * self
        return power

def symbol(name):
    return Polynomial({((name, 1),): 1})

x, y = symbol("x"), symbol("y")

def work(n, k):
    return sum((i + k) * x**(7 * i % 50) * y**(i % 50) for i in range(1, n + 1))

total = 0
for k in range(1, 11):
    total = total + len(work(10**4, k).terms)
print(total)
