# Terms as tuples (name, power) with a coefficient, the sum as a dictionary.
def replaced(s, old, new):
    return {tuple((new if base == old else base, exponent) for base, exponent in term): coefficient
            for term, coefficient in s.items()}

s = {(("y", 1),): 1}
for i in range(1, 100001):
    s[(("c%d" % i, 1), ("x", i))] = 1
for _ in range(20):
    s = replaced(s, "y", "z")
    s = replaced(s, "z", "y")
print("true" if any(base == "y" for term in s for base, _ in term) else "false", len(s), sep=", ")
