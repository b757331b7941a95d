# Operations by number.
iolib(99), iolib(0), iolib(24), iolib(26), iolib(2^70); iolib(-1); iolib(); iolib(x);
# Writing, reading, positions: a file is named by number or name.
f := iolib(1, "t1.txt", WRITE): iolib(3, f, "one", "two", three); iolib(6, f); iolib(1, "t1.txt", READ); op(-2..-1, iolib(13)[4]), iolib(13, f)[2..3], iolib(13, f)[5..6], iolib(13)[1..3]; iolib(7, f);
iolib(2, "t1.txt"), iolib(2, `t1.txt`), iolib(2, "t1.txt"), iolib(21, "t1.txt"), iolib(2, "t1.txt"), iolib(2, "t1.txt"), iolib(21, "t1.txt"); iolib(3, "t1.txt", "x"); iolib(6, "t1.txt", 1), iolib(4, "t1.txt", 3), iolib(4, "t1.txt", 3, TEXT), iolib(4, "t1.txt"), iolib(4, "t1.txt"), iolib(4, "t1.txt", 0), iolib(6, "t1.txt", infinity), iolib(6, "t1.txt", 2); iolib(6, "t1.txt", -1); iolib(6, "t1.txt", x); iolib(6); iolib(6, "t1.txt", 1, 2); iolib(7, "t1.txt");
iolib(13, "t1.txt"); iolib(7, "t1.txt"); iolib(7); iolib(2); iolib(2, x + 1); iolib(2, 3); iolib(2, 10^20); iolib(2, "nosuch"); iolib(2, "/tmp"); iolib(1, "/nosuch/a", WRITE); iolib(1, "t1.txt/a", READ); iolib(13, 1, 2); iolib(3, "t1.txt", 3);
iolib(1); iolib(1, "a"); iolib(1, "a", FOO); iolib(1, "a", READ, FOO); iolib(1, "a", READ, TEXT, x); iolib(14, "a", WRITE, TEXT); iolib(14, default, WRITE); iolib(20, terminal, READ); iolib(20, "x"); iolib(20, "x", 3);
# Bytes.
iolib(5, "b.bin", [1, 2, 255, 0, 10]); iolib(5, "b.bin", [256]); iolib(5, "b.bin", [-1]); iolib(5, "b.bin", [x]); iolib(5, "b.bin"); iolib(5, "b.bin", x + 1); iolib(5, "b.bin", "abc"); iolib(7, "b.bin"); iolib(4, "b.bin"); iolib(7, "b.bin");
A := rtable(1..8, datatype = integer[1], subtype = Array): iolib(4, "b.bin", A), [seq(A[i], i = 1..8)]; iolib(6, "b.bin", 0): iolib(4, "b.bin", A, 9); iolib(4, "b.bin", A, TEXT); iolib(4, "b.bin", A, 2), iolib(4, "b.bin", A, 8), iolib(4, "b.bin", A); iolib(4, "b.bin", rtable(1..3)); iolib(4, "b.bin", x); iolib(4, "b.bin", -1); iolib(4, "b.bin", rtable(symmetric, 1..3, 1..3, datatype = float[8])); iolib(4, "b.bin", rtable(1..3, 1..3, datatype = float[8], storage = diagonal)); iolib(4, "b.bin", rtable(1..3, datatype = float[8], readonly = true)); iolib(7, "b.bin");
iolib(14, "b.bin", WRITE): iolib(5, "b.bin", rtable(1..2, [1.5, -2], datatype = float[8])), iolib(6, "b.bin"); iolib(13, "b.bin")[3], iolib(13, "b.bin")[6]; iolib(4, "b.bin"); iolib(7, "b.bin"); B := rtable(1..2, datatype = float[8]): iolib(4, "b.bin", B), B[1], B[2]; iolib(8, "b.bin"); iolib(8, "b.bin"); iolib(8); iolib(8, x + 1);
# Formats on files.
iolib(9); iolib(9, default); iolib(9, default, x + 1); iolib(10); iolib(11, "t1.txt"); iolib(12, "abc"); iolib(9, "o.txt", "%d %s\n", 12, "abc"), iolib(9, "o.txt", "%d %s\n", 13, "def"); iolib(7, "o.txt"); iolib(11, "o.txt", "%d%s"), iolib(11, "o.txt", "%d"), iolib(6, "o.txt"), iolib(2, "o.txt"), iolib(11, "o.txt", "%d%s"); iolib(8, "o.txt");
# Reading and writing in turn, from a position of an existing file on.
iolib(1, "t1.txt", WRITE, TEXT, infinity): iolib(3, "t1.txt", "appended"): iolib(6, "t1.txt", 0): iolib(2, "t1.txt"), iolib(2, "t1.txt"); iolib(3, "t1.txt", "XX"): iolib(6, "t1.txt", 0): iolib(4, "t1.txt", TEXT); iolib(11, "t1.txt", "%d"); iolib(8, "t1.txt");
# The streams of the front end.
iolib(4, default); iolib(6, default); iolib(21, default); iolib(1, default, READ) - iolib(1, default, WRITE);
iolib(2, default);
a typed line
iolib(11, terminal, "%d%s");
42 rest
iolib(23, default); iolib(7, default); iolib(7, terminal); iolib(3, default, "to the screen", "and more"); iolib(5, default, "bytes\n");
iolib(1, INTERFACE_PRINT, WRITE): iolib(3, INTERFACE_PRINT, "abc"): iolib(23, INTERFACE_PRINT); iolib(2, INTERFACE_PRINT); iolib(7, INTERFACE_PRINT);
# Redirection.
writeto("w.txt"): print(hello): writeto(terminal): iolib(4, "w.txt", TEXT); writeto("w.txt"); iolib(7, "w.txt"); appendto("w.txt"): lprint(x): iolib(1, "w.txt", READ); writeto(terminal): readtext("w.txt"); removefile("w.txt"); writeto(x + 1); appendto(1); writeto("/nosuch/x"); writeto("/proc/x"); appendto("/proc/x"); writeto(cat(a$2000)); writeto(); currentdir(): writeto("w.txt"): mkdir("sub"): currentdir("sub"): iolib(1, "../w.txt", READ): currentdir(".."): writeto(terminal): readtext("w.txt"); removefile("w.txt"); rmdir("sub");
# Directories, environment.
iolib(29, "dd"); iolib(29, "dd"); c := iolib(27, "dd"): evalb(cat(c, "/dd") = iolib(27, "..")); iolib(30, "dd"); iolib(30, "dd"); iolib(27, "nodir"); iolib(27, 3); iolib(29); iolib(28, "NO_SUCH_VARIABLE"); iolib(28); iolib(28, 3); type(iolib(28, "HOME"), string), type(iolib(25), posint);
# Full disks, full tables; a file stays open over an error.
iolib(3, "/dev/full", "x"): iolib(23, "/dev/full"); iolib(7, "/dev/full"); close_all := proc() local r; for r in [iolib(13)] do if type(r, list) then iolib(7, r[1]) end if end do end proc: close_all(): for i from 0 to 46 do iolib(1, cat("x", i), WRITE) end do: iolib(1, x47, WRITE); iolib(1, "/nosuch", READ); iolib(15); iolib(13)[1], nops([iolib(13)]); for i from 0 to 46 do iolib(8, i) end do: [iolib(13)];
# The library's procedures.
writetext("l.txt", "a\nb\n\nc\n"); readlines("l.txt"); appendtext("l.txt", "d"); readtext("l.txt"); readlines("l.txt"); fileexists("l.txt"), fileexists("nope"), fileexists("/tmp"), fileexists("/nodir/x"); readline("l.txt"), fileexists("l.txt"), filepos("l.txt"); removefile("l.txt"); fileexists("l.txt");
mkdir("q d"); writelines("q d/it's", ["x", "y"]); writelines("q d/b", []); listdir("q d"), readlines("q d/b"), readtext("q d/b"); removefile("q d/it's", "q d/b"); listdir("q d"); rmdir("q d"); listdir("q d"); readtext("/nofile"); readtext("/tmp"); writetext("/dev/full", "abc"); fopen("a", FOO); fopen("a"); writelines("a", [1]);
f := fopen("z.txt", APPEND): fprintf(f, "%s %d\n", "n", 1); fclose(f); f := fopen("z.txt", APPEND): writeline(f, "more"); fclose(f); f := fopen("z.txt", READ): fscanf(f, "%s%d"), feof(f), fscanf(f, "%s"), fscanf(f, "%s"), feof(f); fclose(f); f := fopen("z.txt", WRITE, BINARY): writebytes(f, [104, 105]); filepos(f, 0): readbytes(f, 9, TEXT); fflush(f); filestatus()[4][6]; fclose(f); removefile("z.txt");
# Calls that need no frame of their own are told in errors and tracebacks as if they had one, and not behind an error.
f := proc(x) local y; y := sscanf(x, 7); y end proc: f("a"); tracelast; readline("/nosuch"); writeline("/dev/null", 3); readline(x + 1); feof(17); lastexception[2..-1]; g := proc() try sscanf(3) catch: 1 end try; error "own" end proc: g(); traperror(sscanf(3)); sscanf("1+", "%a"); sscanf("1*1/0", "%a");
readline(), feof(default);
the line of the default input
# Lines are the same whichever way they are read, and ways may be mixed: over the ends of buffers, with zeros, and back.
L := [seq(cat("line ", k, " ", "x" $ irem(7*k, 97)), k = 1..5000), cat("y" $ 200000), "", "end"]: writelines("l", L):
evalb(readlines("l") = L), evalb(readtext("l") = cat(jointext(L, "\n"), "\n"));
mixed := proc() local k, at, same; same := true;
  for k to nops(L) do
    if irem(k, 5) = 1 then at := filepos("l"); readline("l"); filepos("l", at) end if;
    if irem(k, 7) = 3 and L[k] <> "" then same := same and fscanf("l", "%[^\n]%c") = [L[k], "\n"]
    elif irem(k, 11) = 2 then same := same and readbytes("l", length(L[k]) + 1, TEXT) = cat(L[k], "\n")
    else same := same and readline("l") = L[k]
    end if
  end do;
  same, readline("l"), feof("l")
end proc:
mixed(); fclose("l"): mixed(); fclose("l"): removefile("l");
f := fopen("w", WRITE): for k to 3000 do writeline(f, cat("a", k)); if irem(k, 500) = 0 then filepos(f, 0); readline(f); readline(f); filepos(f, infinity) end if end do: fclose(f); evalb(readlines("w") = [seq(cat("a", k), k = 1..3000)]);
writebytes("w", [97, 0, 98, 10, 0, 10, 99]): fclose("w"): readline("w"), readline("w"), readline("w"), readline("w"); fclose("w"): readlines("w"); removefile("w");
# Written lines and values are spliced, evaluated once, and no place for another procedure of that name.
s := "7 8", "%d %d": sscanf(s); n := 0: h := proc() global n; n := n + 1; "12" end proc: sscanf(h(), "%d"), n; readline := proc() mine end proc: readline("/nosuch"); readline := 'readline': print(sscanf);
