def work(n):
    elements = [i if i % 2 == 0 else "s" for i in range(1, n + 1)]
    numbers = [i for i in range(1, n + 1)]
    for k in range(3):
        answers = [isinstance(x, int) for x in elements]
    wholes = [isinstance(numbers, list) and all(isinstance(x, int) and x > 0 for x in numbers) for k in range(3)]
    return answers[0], answers[1], len(answers), *wholes, all(isinstance(x, (int, str)) for x in elements)


def shown(x):
    return ("false", "true")[x] if isinstance(x, bool) else str(x)


print(", ".join(map(shown, work(10**6))))
