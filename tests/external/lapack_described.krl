# LAPACK: the library's own convention, everything by reference, matrices in place.
d := proc(f) define_external(f, args[2..-1], LIB = "liblapack.so.3") end proc:
Int := REF(integer[4], CALL_ONLY):
dgesv := d('dgesv_', n::Int, k::Int, A::ARRAY(1..n, 1..n, float[8], NO_COPY), lda::Int, ipiv::ARRAY(1..n, integer[4]), B::ARRAY(1..n, 1..k, float[8], NO_COPY), ldb::Int, info::REF(integer[4], RETURN_ONLY)):
A := rtable(1..3, 1..3, [[2, 1, 0], [1, 3, 1], [0, 1, 4]], datatype = float[8], subtype = Matrix):
B := rtable(1..3, 1..1, [[4], [10], [14]], datatype = float[8], subtype = Matrix):
p := Array(1..3, datatype = integer[4]):
dgesv(3, 1, A, 3, p, B, 3, 'info'); info, seq(trunc(1000*B[i, 1] + 0.5)/1000, i = 1..3), seq(p[i], i = 1..3);
dgesv(3, 1, rtable(1..3, 1..3, datatype = float[8], order = C_order), 3, p, B, 3, 'info');
S := rtable(1..2, 1..2, [[1, 2], [2, 4]], datatype = float[8]): q := Array(1..2, datatype = integer[4]):
dgesv(2, 1, S, 2, q, rtable(1..2, 1..1, [[1], [1]], datatype = float[8]), 2, 'info'): info;
dgesv(2, 1, S, 2, q, B, 2, 'info');
