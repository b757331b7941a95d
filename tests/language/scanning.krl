# One conversion after the other; what doesn't fit ends the scan, an end before anything gives 0.
sscanf("12 abc", "%d%s"), sscanf("12 abc", "%d%d"), sscanf("", "%d"), sscanf("  ", "%d"), sscanf("abc", "%d"), sscanf("", ""), sscanf("1", "%*d%d"), sscanf("x1", "x%d"), sscanf("y1", "x%d"), sscanf("", "x%d"), sscanf("5 % 6", "%d%%%d"), sscanf("5,6", "%d ,%d"), sscanf("5 , 6", "%d , %d");
sscanf("-12 +7 007 123456789012345678901234567890 -0", "%d%i%u%d%d"), sscanf("12345", "%2d%2d%d"), sscanf("777 ff -FF 0x1f 123456789abcdef01", "%o%x%x%x%x"), sscanf("8", "%o"), sscanf("-", "%d"), sscanf("12 34", "%*d%d");
sscanf("1.5 2e3 -.5 +5. 1E-2 .25e+1 1", "%f%e%g%f%f%f%f"), sscanf("NaN -Inf Inf +Inf", "%f%f%f%f"), sscanf("1.5.5", "%f%f"), sscanf(".", "%f"), sscanf("1e", "%f"), sscanf("12.345", "%4f%f"), sscanf("1.23456789012345", "%f"), sscanf("1e3x", "%f%s"); sscanf("Nan", "%f"); sscanf("Ing", "%f");
sscanf("a b cd", "%2c%c"), sscanf("abc", "%5c"), sscanf("  abc  def", "%s%s%n"), sscanf("abcdef", "%3s%s"), sscanf("abc123 def", "%[a-z]%d%n"), sscanf("abc]-x", "%[]abc-]%s"), sscanf("key = value", "%[^=]=%s"), sscanf("x", "%[a"), sscanf("a", "%n"), sscanf("ab", "%1[ab]%s");
sscanf("x^2+1 [1,2] 'y'", "%a%a%a"); sscanf("x+", "%a"); sscanf("a:=1", "%a"); map(v -> sprintf("%y %.3f", v, v), sscanf("3ff0000000000000 c000000000000000", "%y%y")), sscanf("g", "%y"), sscanf("", "%y"); sscanf("3ff", "%y"); sscanf("3ff800000000000 1", "%y");
sscanf("3+4I 1.5-2e1I", "%Zd%Zf"), sscanf("1.5,2 3 , -4", "%z,f%z,d"), sscanf("1 2", "%z d"), sscanf("3", "%Zd"); sscanf("3;4", "%z,d"); sscanf("3+4", "%Zd"); sscanf("3,x", "%z,d"); sscanf("x,1", "%z,a"); sscanf("1", "%zZd"); sscanf("2+3*I", "%Za");
sscanf("1", "%k"); sscanf("1", "%99999999999d"); sscanf("1"); sscanf(1, "%d"); sscanf(" 1 ", "%"), sscanf("1", "%5"), sscanf("7", `%d`), sscanf(`7`, "%d"); sscanf("7", "%M"); sscanf("7", "%m");
# Exact zeros are no parts of a complex number; doubles are shown over a link, too.
sscanf("3+0I 0+3I 0+0I", "%Zd%Zd%Zd"), evalb(op(sscanf("0+3I", "%Zd")) = 3*I), sscanf("3.+0.I 0 , 1.5", "%Zf%z,a"); sscanf("3ff8000000000000 c000000000000000 7ff0000000000000", "%y%y%y");
# What is printed is read back.
a := [0, 7, -7, 2^100, -10^50]: evalb(map(x -> op(sscanf(sprintf("%d", x), "%d")), a) = a), evalb(map(x -> op(sscanf(sprintf("%x", x), "%x")), [0, 255, -255, 2^29]) = [0, 255, -255, 2^29]);
a := [1.5, -.25, 1e30, 123456.789, 1e-20]: evalb(map(x -> op(sscanf(sprintf("%.12e", x), "%e")) - x, a) = [0., 0., 0., 0., 0.]), op(sscanf(sprintf("%Zf", 1.5 - 2.25*I), "%Zf"));
# Lines that are typed.
scanf("%d%s");
42 rest of the line
readline();
scanf("%f %f\n"); readline(); readline(terminal);
1.5
2.5
next line
and another
