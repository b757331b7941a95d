# The profile of procedures from a library goes on from one run to the next: `quit` stores the counts beside them.
dir := cat(currentdir(), "/"): system("mkdir counted"): iolib(31, "create", cat(dir, "counted"), 20): libname := cat(dir, "counted"), libname:
twice := proc(n) local s; s := n; if n > 0 then s := 2*s end if; s end proc: other := proc() 1 end proc: save twice, other, libname[1];
run := proc() local line, name; name := "run.krl"; traperror(iolib(8, name)); iolib(9, name, "%s", cat("libname := \"", libname[1], "\", libname:\n")); for line in [args] do iolib(9, name, "%s", cat(line, "\n")) end do; iolib(7, name); system("\"$KOREL/bin/korelTTY\" -q < run.krl") end proc:
run("debugopts(traceproc = true): own := proc() 5 end proc: own(): twice(1), twice(-1), lcm(4, 6); quit");
map(t -> t[1], iolib(31, "list", libname[1]));
run("debugopts(traceproc = true): twice(4): for i to 5 do `TRACE/twice`[i, 1] end do; quit");
run("twice(4): `TRACE/twice`[1, 1]; `TRACE/other`; quit"); run("`TRACE/twice`[1, 1]; debugopts(traceproc = true): other(): libname := libname[2]: quit");
run("debugopts(traceproc = true): twice(4): system(\"rm -r counted\"); quit");
