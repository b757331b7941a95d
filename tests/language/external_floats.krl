# A library of float arithmetic: MPFloat loads it, and it computes by the float vector.
MPFloat(); MPFloat(x); MPFloat("none"); MPFloat("none", 1, 2);
system("cc -c -w -fPIC -I \"$KOREL/extern/include\" -x c external_floats.txt -o flt.o && cc -shared -o libkorelfloat.so flt.o && cc -shared -o libsecond.so flt.o");
MPFloat("nowhere.so", args_); MPFloat("libsecond.so", args_);
f := define_external('flt', KOREL, LIB = "libkorelfloat.so"): f("stages"), f("members");
f("add", 1.5, 1/4), f("subtract", 1, 3.25), f("multiply", 1.5, 1.5), f("divide", 1, 3.0), f("power", 2.0, 10), f("divide", 1.0, 4);
f("negate", 2.5), f("absolute", -2.5), f("sqrt", 2.0), f("ceil", 2.1), f("ceil", -2.1), f("floor", -2.1), f("floor", 7.0), f("trunc", -2.9);
f("mantissa", 1.25), f("exponent", 1.25), f("build", 125, -2);
f("add", x, 1.0); f("sqrt", -1.0); f("exp", "s"); f("power", x, y);
f("compare", 1, 2.0), f("compare", 2.0, 2), f("compare", 3, 2.5), f("compare", Float(undefined), 1);
[f("flags", 0.0)], [f("flags", -1.5)], [f("flags", Float(infinity))], [f("flags", Float(undefined))];
f("memory", 10); f("memory", 0); f("memory", 2^62); f("free");
f("text", "1.250"); f("text", "nonsense");
f("digits", 30), f("digits", 5); f("digits", 0); Digits;
f("rounding", 3), f("rounding", 2), f("rounding", 0); f("rounding", 7);
Digits := 10: f("loop", 200000); f("warning");
f("print", "%.2f|%a", 3.14159, x^2), f("print", "%5d,%s", 17, "a text that is longer"); f("print", "%q", 1, 2);
f("scan", "12 0.25 rest", "%d %f"); [f("scan", "none", "%d")]; [f("file", 7, 2.5, x^2 + 1)];
MPFloat("libsecond.so", args_); MPFloat("libsecond.so", args_);
