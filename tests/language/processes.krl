# Commands that are read from and written to.
q := popen("echo hi; echo there", READ): readline(q), readline(q), readline(q); iolib(13, q)[2..3]; iolib(3, q, "x"); feof(q); filepos(q); pclose(q); pclose(q);
q := popen("sort > sorted.txt", WRITE): writeline(q, "b", "a", "c"): popen("sort > sorted.txt", WRITE); pclose(q); readlines("sorted.txt"); removefile("sorted.txt");
# A pipe whose reader has gone.
p := pipe(): fclose(p[1]); writeline(p[2], "x"); fclose(p[2]); q := popen("true", WRITE): ssystem("sleep 0.3"); writeline(q, "x"); fflush(q); pclose(q);
# Pipes and processes.
p := pipe(): readyfiles(0, p[1]), readyfiles(0, p[2]) = [p[2]]; writeline(p[2], "through the pipe"): readyfiles(1, p[1]) = [p[1]], readline(p[1]), iolib(13, p[1])[3], iolib(13, p[1])[5], iolib(13, p[2])[5]; writeline(p[1], "x"); fclose(p[2]); readline(p[1]), iolib(4, p[1]); fclose(p[1]);
iolib(19); iolib(19, 1); iolib(19, x, 1); iolib(19, 1, x); iolib(19, 1, 3); iolib(15, 1); iolib(16, 1); iolib(17); iolib(17, "a", 2.5); iolib(18, 1); iolib(22); iolib(22, 0); iolib(22, x); iolib(18);
p := pipe(): test := proc(work) local child; child := fork(); if child = 0 then work() end if; child end proc:
child := test(() -> (writeline(p[2], "from the child"), exec("sh", "-c", "exit 7"))): readline(p[1]), evalb(wait() = [child, 7]); fclose(op(p)); kill(test(() -> exec("sleep", 100))); wait()[2];
# Commands whose output is shown.
ssystem("echo abc; exit 3"); ssystem("echo before; sleep 10", 1); ssystem("kill -9 $$"); ssystem(1); ssystem("a", x); ssystem("nosuchcommand 2>/dev/null"); printf("%s\n", "in order"): ssystem("echo after");
# Values beside other programs.
f := popen("echo '2^200; 10^20/7' | bc", READ): evalb(fscanf(f, "%d%d") = [2^200, iquo(10^20, 7)]); pclose(f); type(getenv("PATH"), string), getenv("NO_SUCH_VARIABLE"); evalb(abs(systemtime() - systemtime()) < 2);
