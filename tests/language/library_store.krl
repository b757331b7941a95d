# Records by their characters: what a file holds is what the name `x` becomes, and what it is saved as.
readRecord := proc(text, header) global x; unassign('x'); iolib(9, "r.m", "%s", cat(`if`(nargs > 1, header, "K6R0\n"), text)); iolib(7, "r.m"); read "r.m"; x end proc:
written := proc(value) global x; x := value; rewritten() end proc:
rewritten := proc() local line; save x, "w.m"; iolib(2, "w.m"); line := iolib(2, "w.m"); iolib(8, "w.m"); line end proc:
refused := proc(text, header) try readRecord(args) catch: op(2..-1, [lastexception]) end try end proc:
written(5), written(-12345), written(1/2), written(1.5), written(2*I), written("a {b}\n"), written([a, a + 1, a + 1]), written(f(a)), written('''a'''), written({}), written(2^100);
readRecord("I\"x\"\"&6\"\n"), readRecord("\n\n I\"x\n\"\" &\n6\""), readRecord("I\"x\"\"&6\",\nI\"y\"\"'6\"\n"), y, readRecord("I\"x\"\"&6\"", "K5R4\n"), readRecord("I\"x\"\"&6\"", "K5R5\r");
refused("I\"x\"\"&6\"", "K6R1\n"), refused("", "K"), refused(""), refused("I\"x\"\""), refused("I\"x]6\""), refused("I\"xf6\""), refused("I\"xF*6\""), refused("I\"x\"!6\""), refused("I\"x7!6\""), refused("I\"x6jjjjjjjjjz6\""), refused("I\"x6{6\""), refused("I\"x\"\"_6\""), refused("I\"x#\"\"#\"\"!6\""), refused("I\"xN\"\"\"6\""), refused("I\"x7#E$!6\"");
# Fractions come in lowest terms, and a name that is its own value has none.
readRecord("I\"x#\"\"#\"\"%6\""), readRecord("I\"x#\"\"%!\"#6\""), readRecord("I\"x%\"xG6\"");
# What earlier versions wrote.
readRecord("I\"x:6#%\"aG6\"F&F&C#,&9#\"\"\"F*F*F&F&6\"", "K5R4\n")(3), readRecord("I\"x:6#%\"aG6#%\"bG6\"F(C$>U#V#U#F(F(6\"", "K5R4\n")(3), readRecord("I\"xW\"\"#400C000000000000BFF00000000000006\"", "K5R4\n")[1], readRecord("I\"x'%\"\"G\"\"\"6\"", "K5R4\n"): rewritten(); readRecord("I\"x'%\"\"G\"\"\"6\""): rewritten();
readRecord("I\"xR6\"F$6#%(builtinGF$\"$.#F$F$F$%\"fGF$"): readRecord("I\"xR6\"F$6#%(builtinGF$\"$.#F$F$F$%#opGF$")([7]), refused("I\"xR6\"F$6#%(builtinGF$\"$.#F$F$F$\"\"\"F$");
# Percent signs of a file's name are no marks.
read "no%1.m"; iolib(9, "a%1.m", "%s", "K7R0\n"): iolib(7, "a%1.m"): read "a%1.m";
# The statement.
save "t.txt"; save 3, "a.m"; save "x", "a.m"; save nosuch, Digits, "a.m"; save x, 3; x := NULL: y := "a\nb": save x, y, "t.txt": iolib(2, "t.txt"), iolib(2, "t.txt"), iolib(8, "t.txt"); save x, "/nosuch/a.m"; save x, "/nosuch/a"; restart; anames();
# The archive tool: refusals in the order of the words.
system("mkdir ar"): iolib(31), iolib(31, "list"); iolib(31, 3, "ar"); iolib(31, "pick", "nowhere"); iolib(31, "add", "ar"); iolib(31, "list", "ar", 3); iolib(31, "create", "ar"); iolib(31, "create", "ar", 0); iolib(31, "create", "ar", x); iolib(31, "create", "ar", 1, 2); iolib(31, "create", "ar", 10^6);
iolib(31, "create", "ar", 100); iolib(31, "create", "ar", 100); iolib(31, "list", "ar"), iolib(31, "gc", "ar"), iolib(31, "reindex", "ar"); iolib(31, "add", "ar"); iolib(31, "add", "ar", "x"); iolib(31, "update", "ar", 3, "x"); iolib(31, "extract", "ar", "x", 3); iolib(31, "delete", "ar"); iolib(31, "pack", "ar", 3); iolib(31, "add", "ar", "a.m", cat("a" $ 116)); iolib(31, "delete", "ar", "x"); iolib(31, "add", "ar", "nofile", "x"); iolib(31, "add", "ar", "nofile", "");
x := 5: save x, "x.m": y := [1, 2]: save y, "y.m": iolib(31, "add", "ar", "x.m", "p.m", "y.m", "q.m", "x.m", "p.m"); map(t -> [t[1], t[3], t[4]], iolib(31, "list", "ar")); iolib(31, "update", "ar", "y.m", "p.m", "x.m", "q.m"), iolib(31, "delete", "ar", "nomember", "p.m"), map(t -> [t[1], t[3], t[4]], iolib(31, "list", "ar")); iolib(31, "pack", "ar"), iolib(31, "extract", "ar", "q.m", "e.m"), map(t -> [t[1], t[3], t[4]], iolib(31, "list", "ar")); x := 0: read "e.m"; x;
iolib(31, "create", "ar", 1, prefix = "other", suffix = ".old"), iolib(31, "reindex", "ar", prefix = "other", suffix = ".old"); iolib(31, "list", "ar", prefix = "absent"); iolib(31, "list", "ar", prefix = name);
# Libraries: the first directory wins; what a name hides goes along; locals stay shared.
dir := cat(currentdir(), "/"): system("mkdir la lb"): libname := cat(dir, "la"), cat(dir, "lb"), libname: iolib(31, "create", cat(dir, "lb"), 10):
pair := proc() local c; c := 0; proc() c := c + 1 end proc, proc() c end proc end proc: up, now := pair(): up(): m := module() local p; export q; p := 7; q := proc() p := p + 1 end proc end module: f := 1: save f, up, now, m, libname[2]; f := 2: save f, libname[1]; map(t -> t[1], iolib(31, "list", libname[2])); save f, up, libname[2]; map(t -> t[1], iolib(31, "list", libname[2])); save Digits, nosuch, libname[1]; save nosuch, libname[2]; save libname, libname[1]; save 3, libname[1];
restart; dir := cat(currentdir(), "/"): libname := cat(dir, "la"), cat(dir, "lb"), libname: f, up(), up(), now(), m:-q(), m:-q(); kernelopts(unread = 'f'); libname := libname[2..-1]: f; libname := cat(dir, "la"), libname: kernelopts(unread = 'f'); f; readlib(nosuch, libname[1]); readlib(nosuch2, 3); libname := 'libname'; libname := [1]; libname := 3, 4; libname := 5;
# A module that has not been looked into goes from one directory into another, and back into its own, whole.
restart; dir := cat(currentdir(), "/"): system("mkdir lc"): libname := cat(dir, "lb"), cat(dir, "lc"), libname: save m, libname[2]; m:-q(); restart; dir := cat(currentdir(), "/"): libname := cat(dir, "lc"), libname: eval(m, 1): save m, libname[1]; m:-q(), m:-q(); restart; dir := cat(currentdir(), "/"): libname := cat(dir, "lc"), libname: m:-q();
# Counts of instrumented procedures of the library are saved at the end of a run, not by a restart.
restart; dir := cat(currentdir(), "/"): run := proc(text) local line; iolib(9, "run.krl", "%s", text); iolib(7, "run.krl"); system(cat(substring(kernelLibrary, 1..-4), "bin/korelTTY -q -s < run.krl > run.out 2>&1")); do line := iolib(2, "run.out"); if line = 0 then break end if; print(line) end do; iolib(7, "run.out"); iolib(8, "run.out") end proc: kernelLibrary := libname:
system("mkdir lt"): iolib(31, "create", "lt", 10): first := cat("libname := \"", dir, "lt\", libname: "): h := proc(x) local y; y := x; y + 1 end proc: libname := cat(dir, "lt"), libname: setattribute(h, cat(dir, "lt")): save h, libname[1];
run(cat(first, "h(1): debugopts(traceproc = true): h(1), h(2); restart; ", first, "map(t -> t[1], iolib(31, \"list\", libname[1]));"));
run(cat(first, "h(1): debugopts(traceproc = true): h(1), h(2); quit"));
map(t -> t[1], iolib(31, "list", libname[1])); `TRACE/h`[1, 1], `TRACE/h`[3, 1];
run(cat(first, "h(1): debugopts(traceproc = true): h(1), h(2); `TRACE/h`[1, 1]; quit"));
run(cat(first, "h(1): debugopts(traceproc = true): h(1), h(2); system(\"rm -r lt\"): quit"));
# Where there is nothing to save the file holds the empty sequence: it can be read, as a header alone can't.
restart; save "none.m"; read "none.m"; iolib(2, "none.m"), iolib(2, "none.m"); iolib(9, "head.m", "K6R0\n"); iolib(7, "head.m"); read "head.m";
# An archive whose index has been cut off is packed by nobody: no member would be left.
system("mkdir cut"): iolib(31, "create", "cut", 1); x := 5: save x, "x.m": iolib(31, "add", "cut", "x.m", "x.m"); system("truncate -s 100 cut/korel.ind"): iolib(31, "pack", "cut"); iolib(31, "list", "cut");
