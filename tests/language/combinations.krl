# Choices of places: equal members count apart, the order of the list stays.
combinations([a, b, c], 2), combinations([a, a], 1), combinations([], 0), combinations([a], 2), combinations([a, b], 0), combinations([a, b], 2);
sublists([a, b, c]), sublists([]), tuples([1, 2], [a, b]), tuples(), tuples([1], []), tuples([1, 2]), permute([1, 2, 1]), permute([]);
nops(combinations([seq(i, i = 1..12)], 6)), combinations([seq(i, i = 1..12)], 6)[-1], nops(tuples([0, 1]$6));
tuples([1], 3); combinations([1], -1); combinations([seq(i, i = 1..100)], 50); permute(x);
try timelimit(1/10, combinations([seq(i, i = 1..28)], 12)) catch: lastexception[2] end try;
