# C functions bound by their description: each kind of type both ways.
system("cc -w -shared -fPIC -x c external_code.txt -o libt.so");
d := proc(f) define_external(f, args[2..-1], LIB="./libt.so") end proc:
P := STRUCT(x::float[8], y::float[8]):
norm2 := d('norm2', p::P, RETURN::float[8]):
norm2(table([x=3,y=4]));
norm2([3,4]);
norm2(table([x=3]));
scale := d('scale', p::REF(P), f::float[8]):
t := table([x=1,y=2]): scale(t, 3); t[x], t[y];
scale('q', 3): q[x], q[y];
mk := d('mk', x::float[8], y::float[8], RETURN::STRUCT(x::float[8],y::float[8],LIST)):
mk(1,2);
L := STRUCT(x::float[8], y::float[8], LIST):
norm2l := define_external('norm2', p::L, RETURN::float[8], LIB="./libt.so"):
norm2l([3,4]);
scalel := d('scale', p::REF(L), f::float[8]):
l := [1,2]: scalel('l', 3): l;
R := STRUCT(n::integer[4], v::ARRAY(1..n, float[8]), name::string[], tag::string[8], p::P, q::REF(P)):
sumrec := d('sumrec', r::REF(R), RETURN::float[8]):
A := Array(1..3,[1,2,3],datatype=float[8]):
r := table([n=3, v=A, name="nn", tag="tt", p=table([x=10,y=0]), q=table([x=100,y=0])]):
sumrec(r); A; r[tag], r[name], r[p][x], r[q][x], r[v];
r[q] := 0: sumrec(r); r[q]; assigned(r[q]);
U := UNION(i::integer[4], d::float[8], s::string[]):
wi := d('whichi', u::U, RETURN::integer[4]): wd := d('whichd', u::U, RETURN::float[8]): ws := d('whichs', u::U, RETURN::integer[4]):
wi(table([i=5])), wd(table([d=2.5])), ws(table([s="abc"])), wi(7), wd(2.5), ws("four");
wi(table([z=3])); wi(foo);
newarray := d('newarray', n::integer[4], RETURN::ARRAY(1..n, float[8])):
B := newarray(4); B[2] := 7: B; type(B, rtable);
same := d('same', a::ARRAY(1..n,float[8]), n::integer[4], RETURN::ARRAY(1..n,float[8])):
gc(): B; evalb(addressof(same(A, 3)) = addressof(A));
sumf := d('sumf', a::ARRAY(1..n,float[4]), n::integer[4], RETURN::float[4]):
sumf(A,3), sumf([1,2,3],3);
sumf([1e39, 1], 2); sumf([Float(infinity), 1], 2);
sqf := d('sqf', a::REF(ARRAY(1..n,float[4])), n::integer[4]):
sqf('A',3); A;
addf := d('addf', a::float[4], b::float[4], RETURN::float[4]): addf(0.1, 0.2); addf(1e39, 0);
upper := d('upper', c::char[1], RETURN::char[1]): upper("a"), upper(98);
isit := d('isit', b::boolean[4], RETURN::boolean[4]): isit(true), isit(false), isit(0), isit(FAIL); isit(7);
b8 := d('b8', c::integer[1], RETURN::integer[1]): b8(127), b8(-128), b8(2.9); b8(128);
b16 := d('b16', c::integer[2], RETURN::integer[2]): b16(32767); b16(-32769); b16(1e300); b16(10^30);
greet := d('greet', b::REF(string[40]), n::string[], RETURN::string[]):
greet('buf', "you"), buf;
nothing := d('nothing', RETURN::string[]): [nothing()];
spoil := d('spoil', s::string[], RETURN::string[]): spoil("abc"), "abc"; seq(length(spoil(cat("a" $ k))), k = 254..257), spoil(cat("a" $ 300))[1..3];
apply := d('apply', f::PROC(x::integer[4], RETURN::integer[4]), x::integer[4], RETURN::integer[4]):
apply(x -> x^2, 5);
apply(x -> apply(y -> y+x, 10), 5);
apply(x -> x/0, 5);
try timelimit(0.1, apply(proc(x) do end do end proc, 1)) catch: lasterror end try; times := kernelopts(gctimes): gc(): evalb(kernelopts(gctimes) > times), apply(x -> x, 1);
apply(x -> "s", 5);
apply(proc(x) try apply(y->y/0, 1) catch: 3 end try end proc, 5);
applyn := d('applyn', f::PROC(n::integer[4], a::ARRAY(1..n,float[8]), RETURN::integer[4]), n::integer[4], a::ARRAY(1..n,float[8]), RETURN::integer[4]):
applyn(proc(n,a) a[1] := 99; n end proc, 3, A); A;
applyref := d('applyref', f::PROC(x::REF(integer[4])), x::REF(integer[4])):
z := 5: applyref(proc(x) x := eval(x)+1 end proc, 'z'); z;
depth := d('depth', n::integer[4], RETURN::integer[4]): depth(1); depth(1);
divide := d('divide', a::integer[4], b::integer[4], RETURN::integer[4]): divide(7,2); divide(7,0); divide(7,0); divide(8,2);
ident := d('ident', x::ANYTHING, RETURN::ANYTHING): ident(x^2+1), ident("s"), ident(5);
keep := d('keep', f::PROC(x::integer[4], RETURN::integer[4])): keep(x->x+1000); gc();
callkept := d('callkept', x::integer[4], RETURN::integer[4]): callkept(7);
fill := d('fill', a::ARRAY(1..m,1..n,float[8]), m::integer[4], n::integer[4]):
M := rtable(1..2,1..3,datatype=float[8],order=Fortran_order,subtype=Matrix): fill(M,2,3); M;
M2 := rtable(1..2,1..3,datatype=float[8],order=C_order): fill(M2,2,3); M2;
fill2 := d('fill', a::ARRAY(1..m,1..n,float[8],NO_COPY), m::integer[4], n::integer[4]): fill2(M2,2,3);
fill3 := d('fill', a::REF(ARRAY(1..m,1..n,float[8]),RETURN_ONLY), m::integer[4], n::integer[4]): fill3('M3',2,2); M3;
fill4 := d('fill', a::REF(ARRAY(1..m,1..n,float[8])), m::integer[4], n::integer[4]): fill4('M2',2,3); M2; fill4('MM',1,2); MM;
setstr := d('setstr', b::REF(string[5]), n::integer[4]): setstr('ss', 5); ss; setstr('ss',3); ss;
cmul := d('cmul', a::complex[8], b::complex[8], RETURN::complex[8]): cmul(1+2*I, 3-I);
noargs := d('noargs', RETURN::integer[4]): noargs(); noargs(3);
np := d('sumf', n::NO_PASS(integer[4]), a::ARRAY(1..n,float[4]), k::integer[4], RETURN::float[4]): np(3, A, 2);

# faults end their statement, as often as they come, and leave signals and collections in order
bus := d('bus'): bus(); bus();
block := d('block'): blocked := d('blocked', RETURN::integer[4]): block(); blocked(); block(); gc(): applyn((n, a) -> a[1], 1, A);
try depth(1) catch "Segmentation": "caught" end try; try block() finally print(finally_) end try;
traperror(bus()), traperror(divide(1, 0));
apply(x -> divide(x, 0), 5); apply(x -> traperror(divide(x, 0)), 5); apply(proc(x) try divide(x, 0) catch: 8 end try end proc, 5);
scale(0, 3); sumrec(0);

# keywords and other words as names, of parameters and of members
K := STRUCT(`int`::integer[4], `a b*/`::float[8]): kw := d('keywords', `double`::REF(K), RETURN::float[8]):
k := table([`int` = 3, `a b*/` = 1/4]): kw(k); k[`int`];
quote := d('strlen', `a"b\\`::string[], RETURN::integer[8]): quote("12345");

# read-only arrays and other shapes come as copies; an end of a range may be by reference
ro := Array(1..3, [1, 2, 3], datatype = float[8], readonly): sq2 := d('fill', a::ARRAY(1..m, float[8]), m::integer[4], n::integer[4]):
sq2(ro, 3, 1): ro[3]; sq2([1, 2, 3], 3, 1); sq2([1, 2], 3, 1); sq2([[1, 2]], 3, 1); sq2(5, 3, 1); sq2(Array(0..2, datatype = float[8]), 3, 1);
bandsum := d('band', a::ARRAY(1..3, 1..3, float[8], storage = band[1, 1]), n::integer[4], RETURN::integer[4]):
bm := rtable(1..3, 1..3, fill = 2, storage = band[1, 1], datatype = float[8]): bandsum(bm, 9); bandsum(rtable(1..3, 1..3, datatype = float[8]), 9);
sym := d('band', a::ARRAY(1..2, 1..2, float[8], indfn = [symmetric], storage = triangular[upper], NO_COPY), n::integer[4], RETURN::integer[4]):
sm := rtable(symmetric, 1..2, 1..2, [[1, 2], [2, 3]], datatype = float[8], storage = triangular[upper]): sym(sm, 3); sym(bm, 3); sym(rtable(1..2, 1..2, datatype = float[8]), 3);
byref := d('sumf', a::ARRAY(1..n, float[4]), n::NO_PASS(REF(integer[4], CALL_ONLY)), k::integer[4], RETURN::float[4]): byref([1, 2], 2, 2); byref([1, 2], 0, 2);
anysize := d('band', a::ARRAY(float[8]), n::integer[4], RETURN::integer[4]): anysize(Array(1..2, 1..2, fill = 3, datatype = float[8]), 4);
copied := d('fill', a::ARRAY(1..2, float[8], COPY), m::integer[4], n::integer[4]): cc := Array(1..2, [5, 6], datatype = float[8]): copied(cc, 2, 1): cc[1];
unset := d('fill', a::REF(ARRAY(float[8])), m::integer[4], n::integer[4]): unset('nothing_there', 1, 1); unset('cc', 2, 1): cc[1]; unset(cc, 2, 1); unset([1], 1, 1);

# callbacks: in a structure, two at once, with structures, texts, arrays and float[4]
cm := d('callmember', c::REF(STRUCT(f::PROC(x::integer[4], RETURN::integer[4]), x::integer[4])), RETURN::integer[4]): cm(table([f = (x -> 10*x), x = 4]));
tw := d('twice', f::PROC(x::integer[4], RETURN::integer[4]), g::PROC(x::integer[4], RETURN::integer[4]), x::integer[4], RETURN::integer[4]):
tw(x -> x + 1, x -> 2*x, 5); tw(x -> tw(y -> y + 100, y -> y, x), x -> tw(y -> 3*y, y -> y, x), 5);
ea := d('each', f::PROC(p::REF(P)), p::REF(P), n::integer[4]): pt := table([x = 1, y = 2]): ea(proc(p) p[x] := 2*p[x] end proc, pt, 5): pt[x], pt[y];
te := d('text', f::PROC(b::REF(string[9])), b::REF(string[9]), RETURN::integer[4]): te(proc(b) b := "callback" end proc, 'tb'), tb;
mf := d('meanf', f::PROC(a::ARRAY(1..n, float[4]), n::integer[4], RETURN::float[4]), n::integer[4], RETURN::float[4]): mf(proc(a, n) a[1] := 10; add(a[i], i = 1..n) end proc, 3);
gl := d('applyn', f::PROC(k::integer[4], a::ARRAY(1..size, float[8]), RETURN::integer[4]), size::GLOBAL(integer[4]), a::ARRAY(1..size, float[8]), RETURN::integer[4]):
gl(proc(k, a) rtable_num_elems(a) end proc, 3, A);
apply(proc(x) local times; times := kernelopts(gctimes); gc(); add(i^2, i = 1..1000); kernelopts(gctimes) - times end proc, 5);

# wrappers: used again, another text gets another number, other people's files stay
system("echo 'int x;' > csum____.c; stat -c %Y%Z apply___.so > before"):
apply2 := d('apply', f::PROC(x::integer[4], RETURN::integer[4]), x::integer[4], RETURN::integer[4]):
system("stat -c %Y%Z apply___.so | cmp - before"), evalb(op(1, op(5, eval(apply))) = op(1, op(5, eval(apply2))));
csum := d('csum', p::REF(P), RETURN::float[8]): csum(table([x = 1, y = 2])); system("cat csum____.c; ls csum*; ls .*.c.* 2> /dev/null");
text := define_external('hypot', x::float[8], y::float[8], RETURN::float[8], NO_COMPILE): system("test -e hypot___.c");
system(cat("printf '%s' '", text, "'"));
system("cp apply___.so mine.so"): w := d('apply', f::PROC(x::integer[4], RETURN::integer[4]), x::integer[4], RETURN::integer[4], WRAPLIB = "./mine.so"): w(x -> x, 1);
nc := d('noargs', RETURN::integer[4], NO_CHECK): nc(1, 2, 3); nc2 := d('apply', f::PROC(RETURN::integer[4]), x::integer[4], RETURN::integer[4], NO_CHECK): nc2();
