# The kernel vector, member by member, from a C function that is written for it.
system("cc -c -w -fPIC -I \"$KOREL/extern/include\" -x c external_vector.txt -o vec.o && cc -shared -o libvec.so vec.o");
vec := define_external('vec', KOREL, LIB = "./libvec.so"):
assigned_name := 7: assigned_float := 2.5:
vec(); vec("nothing");

# tests follow a name to its value, but for those that ask about the name
[vec("isAssignedName", 'assigned_name'), vec("isAssignedName", u), vec("isAssignedName", 7)];
[vec("isUnassignedName", 'assigned_name'), vec("isUnassignedName", u), vec("isUnassignedName", t[1])];
[vec("isComplexFloat", 1.0+2*I), vec("isComplexFloat", 1+2*I), vec("isComplexFloat", 1.5)];
[vec("isFloat", 'assigned_float'), vec("isFloat", 1)];
[vec("isInteger", 'assigned_name'), vec("isInteger", 10^50), vec("isInteger", 1/2)];
map2(vec, "isInteger8", [127, 128, -128, -129, 1.0]);
map2(vec, "isInteger16", [32767, 32768, -32768, -32769]);
map2(vec, "isInteger32", [2^31-1, 2^31, -2^31, -2^31-1]);
map2(vec, "isInteger64", [2^63-1, 2^63, -2^63, -2^63-1]);
map2(vec, "isName", [u, "u", t[1], 5]);
[vec("isNULL", () -> NULL), vec("isNULL", () -> 5)];
map2(vec, "isZero", [0, 0.0, 0.0*I, true, false, 1, u]);
map2(vec, "isProcedure", [x -> x, u, vec, 5]);
map2(vec, "isRTable", [Array(1..2), [1]]);
map2(vec, "isString", ["a", a]);
map2(vec, "isTable", [table(), [1]]);
map2(vec, "isUnnamedZero", [0, 0.0, u]);

# conversions, their messages, and what doesn't fit
vec("korelToComplexFloat64", 1/2+3*I), vec("korelToComplexFloatDAG", 1/2+3*I); vec("korelToComplexFloat64", "s");
vec("korelToComplexFloatDAG", [1]);
map2(vec, "korelToFloat32", [1/3, Pi, 'assigned_name']); vec("korelToFloat32", u); vec("korelToFloat32", 1e39);
map2(vec, "korelToFloat64", [1/3, Pi, -10^300, 2.5e-310]); vec("korelToFloat64", "1"); vec("korelToFloat64", 1e309);
vec("korelToFloat64", I); vec("korelToFloat64", Float(infinity));
map2(vec, "korelToInteger8", [-128, 127, 5/2, -5/2, 2.9]); vec("korelToInteger8", 128); vec("korelToInteger8", u);
vec("korelToInteger16", 2^15); vec("korelToInteger16", "s"); vec("korelToInteger32", 2^31); vec("korelToInteger32", [1]);
vec("korelToInteger64", 9223372036854775807.0), vec("korelToInteger64", -2^63); vec("korelToInteger64", 2^63);
vec("korelToInteger64", 1e30); vec("korelToInteger64", s); vec("korelToInteger64", Float(undefined));
map2(vec, "korelToBool", [true, false, FAIL, 0, 1]); vec("korelToBool", 2);
vec("korelToM_INT", 2^40); vec("korelToM_INT", 2.0);
map2(vec, "korelToString", ["s", u, t[1]]);
map2(vec, "toKorelBoolean", [0, 1, 2, -1]); map2(vec, "toKorelChar", [65, 0]); vec("toKorelComplex");
[vec("toKorelExpressionSequence", 5)]; vec("numArgs", a, b);
evalb(vec("toKorelName", true) = global_name), evalb(vec("toKorelName", false) = global_name), vec("toKorelName", false);
vec("selectRealPart", 3+4*I), vec("selectImaginaryPart", 3+4*I), vec("selectImaginaryPart", 3);

# names, evaluation, failures, memory
vec("assign", 'v', x^2); v; vec("assign", 5, 6); vec("assignIndexed", 'w', 8); w[3, -4];
vec("error", a, b);
vec("evalKorelProc", (x, y) -> x^2 + y, 3, z); vec("evalKorelProc", (x, y) -> x/y, 1, 0);
vec("evalKorelStatement", "for i to 3 do i^2 end do"); vec("evalKorelStatement", "1 +");
vec("keep", x^2 + 17): gc(): vec("kept");
vec("alloc", 0), vec("alloc", 13), vec("alloc", 100000); vec("simplify", x + 1);
vec("traperror", 5); lasterror;
infolevel[here] := 2: vec("userinfo", here); vec("userinfo", elsewhere); vec("userinfo", 5);

# lists, tables, x[i]
vec("listSelect", [a, b], 2); vec("listSelect", [a, b], 3); vec("listSelect", {a}, 1); vec("listAssign", [a, b], c);
vec("selectIndexed", [a, b], 2), vec("selectIndexed", u, 2); vec("selectIndexed", 5, 2);
tt := table([(1) = one]): vec("selectIndexed", tt, 1), vec("selectIndexed", Array(1..2, [c, d]), 2);
eval(vec("tableAlloc", k, 5));
vec("tableAssign", tt, two, 2): tt[two], vec("tableHasEntry", tt, two), vec("tableHasEntry", tt, 3);
vec("tableSelect", tt, 1), vec("tableSelect", tt, 3); vec("tableSelect", [1], 1);

# rtables: made over data of C, copied, with functions and attributes
f := vec("rtableCreate", true): f; f[2, 0] := 44: vec("numbers") = f[2, 1]; f[2, 1] := 77: vec("numbers"); gc(): f;
g := vec("rtableCreate", false): g[2, 1] := 0: vec("numbers"), g;
h := vec("attributes", a, b, symmetric): h[1, 2] := 5: h[2, 1], rtable_options(h, 'attributes'), rtable_indfns(h);
vec("objects", 2); vec("objects", -1); vec("objects", 99); vec("setIndFn", symmetric), vec("setIndFn", band[1]); vec("setIndFn", 5);
vec("noSettings", f); vec("rtableGetSettings", 5); [vec("rtableGetSettings", h)];
vec("rtableCopy", rtable(1..2, 1..2, [[1, 2], [3, 4]])), vec("rtableCopy", [[1, 2], [3, 4]]); vec("rtableCopy", 5);
vec("rtableSelect", h); vec("rtableAssign", h, 9): h[1, 2]; vec("rtableAssign", h, x);
r := rtable(band[1, 0], 1..2, 1..2): vec("rtableIndFn", r, 1), [vec("rtableIndFnArg", r, 1)]; vec("rtableIndFn", f, 1); vec("rtableIndFn", h, 2); vec("rtableIndFn", h, 0);
vec("rtableIndFnArg", h, 2); vec("rtableNumDimensions", f), vec("rtableNumElements", f), vec("rtableLowerBound", f, 2), vec("rtableUpperBound", f, 2);
vec("rtableNumElements", 5); vec("rtableLowerBound", f, 3); vec("rtableUpperBound", 5, 1);
vec("rtableData", Array(1..2, [9, 8], datatype = integer[4])); vec("rtableData", Array(1..2, storage = sparse));
vec("rtableIsReal", f), vec("rtableIsReal", Array(1..1, [I])), vec("rtableIsReal", Array(1..1, [1/2]));
vec("parts", Array(1..2, [1+2*I, 3], datatype = complex[8]));
s := Array(1..9, 1..9, storage = sparse, datatype = integer[4]): s[3, 2] := 7: s[2, 5] := 0: s[1, 8] := 4: s[1, 3] := 5:
[vec("sparse", s)]; vec("sparseSort", s, 1): [vec("sparse", s)]; vec("sparseSort", s, 2): [vec("sparse", s)];
s[1, 8], s[3, 2], s[1, 3]; vec("sparseSetNumElems", s, 1): s[1, 3], s[1, 8]; vec("sparseSetNumElems", s, 99);
[vec("sparse", vec("sparseCompact", s))]; vec("sparse", f);
