# The C library: time as a structure, div, sorting, environment and texts.
d := proc(f) define_external(f, args[2..-1], LIB = "libc.so.6") end proc:
Tm := STRUCT(sec::integer[4], min::integer[4], hour::integer[4], mday::integer[4], mon::integer[4], year::integer[4], wday::integer[4], yday::integer[4], isdst::integer[4], gmtoff::integer[8], zone::integer[8]):
gmtime := d('gmtime_r', seconds::REF(integer[8], CALL_ONLY), tm::REF(Tm, RETURN_ONLY), RETURN::integer[8]):
gmtime(1234567890, 'tm'): tm[year] + 1900, tm[mon] + 1, tm[mday], tm[hour], tm[min], tm[sec], tm[wday];
timegm := d('timegm', tm::REF(Tm), RETURN::integer[8]):
tm[mday] := 32: timegm(tm), tm[mon], tm[mday];
strftime := d('strftime', buffer::REF(string[40], RETURN_ONLY), most::integer[8], format::string[], tm::REF(Tm, CALL_ONLY), RETURN::integer[8]):
strftime('date', 40, "%Y-%m-%d", tm), date;
divide := d('div', a::integer[4], b::integer[4], RETURN::STRUCT(quot::integer[4], rem::integer[4], LIST)): divide(-17, 5);
ldiv := d('ldiv', a::integer[8], b::integer[8], RETURN::STRUCT(quot::integer[8], rem::integer[8], LIST)): ldiv(10^15, 7);

# texts: lengths, places, comparison; a null pointer is no text
strlen := d('strlen', s::string[], RETURN::integer[8]): strlen(""), strlen("twelve chars"), strlen(a_name), strlen(cat("", seq("x", i = 1..5000)));
strstr := d('strstr', s::string[], t::string[], RETURN::string[]): strstr("haystack", "st"), [strstr("haystack", "needle")];
strcmp := d('strcmp', s::string[], t::string[], RETURN::integer[4]): evalb(strcmp("a", "b") < 0), strcmp("a", "a");
toupper := d('toupper', c::integer[4], RETURN::integer[4]): toupper(97);
getenv := d('getenv', s::string[], RETURN::string[]): [getenv("KOREL_NO_SUCH_VARIABLE")]; evalb(strlen(getenv("KOREL")) > 0);
strtol := d('strtol', s::string[], rest::REF(integer[8], RETURN_ONLY), base::integer[4], RETURN::integer[8]): strtol("ff", 'rest', 16);
snprintf := d('snprintf', buffer::REF(string[30], RETURN_ONLY), most::integer[8], format::string[], n::integer[4], RETURN::integer[4]): snprintf('shown', 30, "%05d", 42), shown;

# sorting and searching with procedures of the language
Value := REF(float[8], CALL_ONLY): Comparison := PROC(a::Value, b::Value, RETURN::integer[4]):
qsort := d('qsort', data::ARRAY(1..n, float[8]), n::integer[8], bytes::integer[8], order::Comparison):
A := Array(1..7, [3, 1, 4, 1, 5, 9, 2], datatype = float[8]): before := (a, b) -> if a < b then -1 elif a = b then 0 else 1 end if:
qsort(A, 7, 8, before): seq(A[i], i = 1..7);
qsort(A, 7, 8, proc(a, b) before(b, a) end proc): seq(A[i], i = 1..7);
B := Array(1..3, [3, 2, 1], datatype = float[8]):
qsort(A, 7, 8, proc(a, b) qsort(B, 3, 8, before); before(a, b) end proc): seq(A[i], i = 1..7), seq(B[i], i = 1..3);
bsearch := d('bsearch', key::Value, data::ARRAY(1..n, float[8]), n::integer[8], bytes::integer[8], order::Comparison, RETURN::REF(float[8])):
bsearch(5, A, 7, 8, before), bsearch(6, A, 7, 8, before);
count := 0: qsort(A, 7, 8, proc(a, b) global count; count := count + 1; if count = 3 then error "enough: %1", count end if; before(a, b) end proc);
to 5 do traperror(qsort(A, 7, 8, proc() error "again" end proc)) end do: qsort(A, 7, 8, before): A[1], A[7];

# float[4] and the mathematical library
libm := proc(f) define_external(f, args[2..-1], LIB = "libm.so.6") end proc:
powf := libm('powf', x::float[4], y::float[4], RETURN::float[4]): powf(2, 10);
frexp := libm('frexp', x::float[8], e::REF(integer[4], RETURN_ONLY), RETURN::float[8]): frexp(48, 'e'), e;
modf := libm('modf', x::float[8], whole::REF(float[8], RETURN_ONLY), RETURN::float[8]): modf(-3.25, 'whole'), whole;
fma := libm('fma', x::float[8], y::float[8], z::float[8], RETURN::float[8]): fma(2, 3, 4); sin_ := libm('sin', x::float[8], RETURN::float[8]): sin_(Pi/6);
