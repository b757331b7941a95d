# Order.
reverse([1, 2, 3]), reverse([]), reverse([a]); rotate([1, 2, 3, 4], 1), rotate([1, 2, 3, 4], -1), rotate([], 3), rotate([1, 2], 7), rotate([1, 2], 10^20 + 1), rotate([1, 2], 0); distinct([b, a, b, 1, a, 1.0]), distinct([]);
reverse(3); reverse(); rotate([1], x);
# Shape.
flatten([1, [2, [3, []]], x, {[4]}]), flatten([1, [2, [3]]], 1), flatten([[1]], 0), flatten([]); chunks([1, 2, 3, 4, 5], 2), chunks([], 2), chunks([1, 2], 2), chunks([1], 3); windows([1, 2, 3, 4], 2), windows([1], 2), windows([], 1); columns([[1, 2], [3, 4], [5, 6]]), columns([]), columns([[], []]), columns([[a]]);
columns([[1], [2, 3]]); chunks([1], 0); columns([1]);
deep := []: for i to 900 do deep := [deep, i] end do: nops(flatten(deep)); shared := [1, 2]: for i to 40 do shared := [shared, shared] end do: try timelimit(1/10, flatten(shared)) catch: lastexception[2] end try;
# Member by member.
zip(`+`, [1, 2, 3], [10, 20]), zip(f, [1], [2, 3], 0), zip(f, [1, 2], [3], 'w'), zip((x, y) -> [x, y], [], []), zip(`*`, [1, 2], []);
partialsums([1, 2, 3, x]), partialsums([]), partialsums([1/2]), differences([1, 4, 9]), differences([]), differences([1]);
# A sum of names that the procedure itself uses: the names of others stay theirs.
total := 7: partialsums([total, 'total', x]); zip(f, ['a', 'b'], ['i', 'n']);
# Counts.
positions(a, [a, b, a]), positions(x, []); tally([a, b, a, 1]), tally([]), groupby(x -> irem(x, 3), [1, 2, 3, 4, 5]), groupby(f, []); groupby(x -> NULL, [1]);
# Folds.
foldl(f, 0, [a, b]), foldr(f, 0, [a, b]), foldl(f, 0, []), foldr(f, 0, []), foldl(`+`, 0, [1, 2, 3]);
# What a person assigns under such a name takes its place.
distinct := 3: distinct, reverse([1, 2]); reverse := proc(x) -x end proc: reverse(5);
# They print and tell what they do.
zip; op(5, eval(zip)); eval(differences);
