# Selections, a map of a test and a map of a function over a million members.
L := [seq(i, i = 1..1000000)]:
nops(select(type, L, even)), nops(remove(type, L, even)), nops(map(type, L, integer)), nops(map(x -> x + 1, L));
