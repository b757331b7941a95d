# Lists of 10^5 members take time in proportion.
start := time(): n := 10^5: L := [seq(i, i = 1..n)]:
nops(reverse(L)), nops(rotate(L, 5)), nops(distinct([op(L), op(L)])), nops(flatten([L, L])), nops(chunks(L, 7)), nops(windows(L, 3)), nops(columns([L, L])), nops(zip(`+`, L, L));
partialsums(L)[-1], nops(differences(L)), nops(tally(L)), nops(groupby(x -> irem(x, 10), L)), nops(positions(3, L)), foldl(`+`, 0, L), foldr(`+`, 0, L), nops(combinations(L, 1));
length(jointext(L, ",")), nops(splittext(jointext(L, ","), ",")), max(op(L), w), nops(max(seq(y || i, i = 1..n)));
n := 3^50000: evalb(convert(convert(n, base, 7), base, 7, 10) = convert(n, base, 10)), evalb(convert(convert(n, hex), decimal, hex) = n), length(convert(n, binary));
evalb(time() - start < 20);
