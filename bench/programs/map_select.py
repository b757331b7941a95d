L = list(range(1, 1000001))
even = lambda x: isinstance(x, int) and x % 2 == 0
print(len([x for x in L if even(x)]), end=", ")
print(len([x for x in L if not even(x)]), end=", ")
print(len([isinstance(x, int) for x in L]), end=", ")
print(len(list(map(lambda x: x + 1, L))))
