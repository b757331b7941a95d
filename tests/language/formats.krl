# Flags, width, precision; what is sent before an error stays.
printf("%5.2f|%-5d|%+d|% d|%05d|%-05d|%.3d|%5.3d|%+05d|%i|%u|%ld\n", 3.14159, 42, 3, 3, -42, 42, 7, 7, 7, 1, 2, 3);
printf("%*d|%*d|%-*d|%.*f|%*.*f|\n", 5, 42, -5, 42, 5, 42, 2, Pi, 8, 3, 2/3);
printf("%s|%10s|%-10s|%.2s|%6.2s|%c|%3c|%-3c|%c|%%|%5%|\n", "abc", abc, "abc", "abc", "abc", "x", y, z, 65);
printf("kept %d", x); printf("%+ d", 3); printf("% +d", 3); printf("%--d", 3); printf("%00d", 3); printf("%-*d", -5, 3); printf("%*d"); printf("%*d", 1.5, 3); printf("%.*d"); printf("%.*d", -1, 3); printf("%.*d", x, 3); printf("%99999999999d", 3); printf("%.99999999999f", 3); printf("%*d", 10^30, 3);
sprintf("%d"), sprintf(""); sprintf("%s"); sprintf("%c"); sprintf("%f"); sprintf("%y"); sprintf("%a"); sprintf("%m"); sprintf("%k", 1); sprintf("%#x", 1); sprintf("a%"), sprintf("a%5.2"), sprintf("a%l"), sprintf("a%z"), sprintf("%q"), sprintf("%-", 3);
sprintf("%s", 3); sprintf("%c", "ab"); sprintf("%c", ""); sprintf("%c", 1.5); sprintf("%d", 1.5); sprintf("%d", "3"); sprintf("%f", x); sprintf("%e", "1"); sprintf(3); sprintf(); fprintf(default); fprintf(default, 3);
# Integers of any size, bases for those of a word.
sprintf("%d %d %.40d %45d|%-45d|", 2^100, -2^100, 2^100, -2^100, 2^100); sprintf("%x %X %o %x %o %x", 255, 255, 8, -255, -8, 0), sprintf("%08x|%.4X|%-6o|", 255, 10, 8);
# Floats by their own digits; halves go up, whatever a double would make of them.
sprintf("%.2f %.2f %.1f %.0f %.0f %.0f %.1f", 2.675, 1.005, .25, .5, 1.5, 2.5, 9.96), sprintf("%.0e %.3e %E %e %.10e", 15., 9.9996, 1/3, 0, 123456789), sprintf("%.0f|%.1f|%+.1f|%f", -.4, -.04, 0., -0.);
sprintf("%g %g %g %G %g %g %g %g", 1.5, 1e20, 1e-10, 1e-10, 100000, 1000000, 123456.5, .0001), sprintf("%.3g %.3g %.0g %g %g", 999.5, 1234, 25, 0, 1e-5), sprintf("%08.2f|%-8.2f|%+8.2f|% .2f|%08.2f", 3.14159, 3.14159, 3.14159, 3.14159, -3.14159);
sprintf("%e %f", 1e2000000000, .5e-30), sprintf("%.30f", 1/3), sprintf("%f", 10^25), sprintf("%.5f", evalf(Pi, 40)), sprintf("%.3f", Float(123456, -5)), sprintf("%f %f %f", Pi, sqrt(2), 1/3);
sprintf("%e|%f|%g|%8f|%-8f|%+f|%+f|% f|%08f", infinity, -infinity, Float(undefined), Float(infinity), Float(infinity), Float(infinity), Float(undefined), Float(infinity), -Float(infinity));
h := rtable(1..2, [1.5, -.1], datatype = float[8])[1]: sprintf("%f %e %g %10.3f|%-10.2f|%+.1f|%010.3f|%.60f", h, h, h, h, h, h, h, h), sprintf("%y %Y %20y|%y", 1.0, Pi, -2, Float(infinity)); sprintf("%y", x); sprintf("%y %y", 1/3, evalf(1/3));
# Complex numbers: both parts by one conversion.
sprintf("%Zd %z,d %Zf %.2z;e %Zg %Zd %zxd", 3 + 4*I, 3 - 4*I, 1.5 - 2*I, I, 1/2 - I/3, 3, 5), sprintf("%+6.2Zf|%z y|%zxY", 1.25 + 2.5*I, 1, 2 + I), sprintf("%Zf", sqrt(-2.)); sprintf("%zZd", 3); sprintf("%Zz,d", 3); sprintf("%z,Zd", 3); sprintf("%f", 3 + I); sprintf("%d", 3 + I); sprintf("%Zd", 1.5 + I); sprintf("%Zd", x); sprintf("%Zf", x);
# Expressions.
sprintf("%a|%A|%q|%Q|%a", x + `a b`, `a b`, 1, 2, x), sprintf("%q|%a", x, `a b`), sprintf("%Q", `a b`, "c"), sprintf("%+a|%+a|% a|%+a|%10a|%-10a|", 3, -3, 2.5, x, x^2, x^2), sprintf("%a", [1, {2, x}, "s"]), sprintf(`%a and %a`, 1, 2);
evalb(sscanf(sprintf("%m", [x^2 + 1, "s", 2^100, 1.5]), "%m") = [[x^2 + 1, "s", 2^100, 1.5]]);
# Far beyond a line.
length(sprintf("%100000d", 3)), length(sprintf("%.100000f", 1/3)), length(sprintf("%s%s", cat(a$10000), "b")), fprintf(default, "%s\n", "abc"), length(sprintf("%d", 10^10000)), sprintf(cat("%d"$50), $1..50);
# All digits count for the bits of a number.
printf("%y %y %y %Y\n", 3.141592653589793, 1/3, 10^20 + 1, -0.);
