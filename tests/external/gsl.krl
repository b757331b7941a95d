# GSL: a root finder and an integrator that call a procedure of the language.
lib := "libgsl.so.27":
d := proc(f) define_external(f, args[2..-1], LIB = lib) end proc:
Fn := STRUCT(function::PROC(x::float[8], params::integer[8], RETURN::float[8]), params::integer[8]):
qng := d('gsl_integration_qng', f::REF(Fn, CALL_ONLY), a::float[8], b::float[8], epsabs::float[8], epsrel::float[8], result::REF(float[8], RETURN_ONLY), abserr::REF(float[8], RETURN_ONLY), n::REF(integer[8], RETURN_ONLY), RETURN::integer[4]):
calls := 0:
f := table([function = (proc(x, p) global calls; calls := calls + 1; x^2 end proc), params = 0]):
qng(f, 0, 3, 1e-9, 1e-9, 'integral', 'error_', 'evaluations'), trunc(10^9*integral + 0.5), evalb(calls = evaluations);
f[function] := proc(x, p) error "not at %1", trunc(x + 0.5) end proc: qng(f, 0, 4, 1e-9, 1e-9, 'integral', 'error_', 'evaluations');
bessel := d('gsl_sf_bessel_J0', x::float[8], RETURN::float[8]): trunc(10^9*bessel(5));

# the root finder; its kind stands in a variable of the library
C := proc(f) define_external(f, args[2..-1], LIB = "libc.so.6") end proc:
dlopen := C('dlopen', path::string[], mode::integer[4], RETURN::integer[8]):
dlsym := C('dlsym', handle::integer[8], name::string[], RETURN::integer[8]):
word := C('memcpy', dest::REF(integer[8], RETURN_ONLY), source::integer[8], n::integer[8], RETURN::integer[8]):
word('kind', dlsym(dlopen(lib, 1), "gsl_root_fsolver_brent"), 8):
new := d('gsl_root_fsolver_alloc', T::integer[8], RETURN::integer[8]):
set := d('gsl_root_fsolver_set', s::integer[8], fn::integer[8], a::float[8], b::float[8], RETURN::integer[4]):
iterate := d('gsl_root_fsolver_iterate', s::integer[8], RETURN::integer[4]):
root := d('gsl_root_fsolver_root', s::integer[8], RETURN::float[8]):
free := d('gsl_root_fsolver_free', s::integer[8]):
solver := new(kind): evalb(solver <> 0);

# the structure has to outlive the call: memory of C holds it, filled in by a call that keeps nothing
malloc := C('malloc', bytes::integer[8], RETURN::integer[8]):
store := C('memcpy', dest::integer[8], source::REF(Fn, CALL_ONLY), bytes::integer[8], RETURN::integer[8]):
block := malloc(16): store(block, table([function = (proc(x, p) x^2 - 5 end proc), params = 0]), 16):
set(solver, block, 0.0, 5.0);
for i to 60 do iterate(solver) end do: trunc(10^9*root(solver));
free(solver);
