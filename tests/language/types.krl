# Each built-in type name with those of a row of objects that match it.
T := table([1 = 2]): P := proc(x) x end proc: M := module() export f; f := 3 end module: T["p"] := P: T["t"] := table():
constants := false, gamma, infinity, true, Catalan, FAIL, Pi:
S := [0, 5, -4, 10^20 + 1, 1/2, -2/3, 2.5, -1.5, 0., -0., Float(infinity), Float(-infinity), Float(undefined), infinity, -infinity, undefined, I, 2.5*I, 3 + 4*I, 0. + 2.5*I, 2.5 + 0.*I, 0. + 0.*I, infinity + 2*I, "text", x, x[1], x::integer, Pi, true]:
matching := proc(S, t) lprint([t], [seq(`if`(type(_e, t), _e, NULL), _e = S)]) end proc:
for t in [anything, integer, posint, negint, nonnegint, nonposint, even, odd, fraction, rational, extended_rational, float, sfloat, numeric, extended_numeric, positive, negative, nonnegative, nonpositive, poszero, negzero] do matching(S, t) end do:
for t in [real_infinity, pos_infinity, neg_infinity, 'infinity', cx_infinity, cx_zero, 'undefined', finite, imaginary, embedded_real, embedded_imaginary, embedded_axis, nonreal] do matching(S, t) end do:
for t in [constant, literal, string, symbol, name, indexed, atomic, algebraic, boolean, filedesc] do matching(S, t) end do:
S := [x, x[1], x + y, 2*x, 2*x*y, x*y, x^2, x^(1/2), x^y, x^(-2), f(x), n!, a.b, true, FAIL, x = y, x <> y, x < y, x <= y, x and y, x or y, not x, 1 .. 2, x::y, [x], {x}, "s", 'T', 'P', 'M', sin, type, 7]:
for t in [function, indexed, atomic, algebraic, boolean, relation, equation, `=`, `<>`, `<`, `<=`, `and`, `or`, `not`, `+`, `*`, `**`, `^`, radical, `||`, `::`, `..`, range, `.`, `!`, uneval, list, set, sequential, table, tabular, indexable, procedure, `module`, moduledefinition, polynom, ratpoly, constant] do matching(S, t) end do:
# What a list of values can't hold: quotes, sequences, indexed tables and procedures, definitions.
type(''x'', uneval); type('a || x[1/2] || b', `||`); f := proc(e) type(e, sequential), type(e, indexable) end proc: f(T), f([1]);
type(T["p"], procedure), type(T["p"], table), type(T["t"], table), type(T["t"], tabular), type(T[1], procedure), type('M'[f], `module`), type(T[7], table);
type(eval(T), table), type(eval(T), atomic), type(eval(M), `module`), type(op(2, eval(M)), moduledefinition);
type(sin, protected), type(5, protected);
s := pointto(assemble(15, addressof(x), addressof(1), 0, addressof(2), 1)): type(s, series), type(s, algebraic), type(x, series), type(s, 'series(integer)'), type(s, 'series(symbol)'), type(s, s);
z := pointto(assemble(17, addressof(x), addressof(7), 1, 2)): type(z, zppoly), type(z, modp1), type(z, modp2), type(z, evalgf1), type(x, zppoly);
type([], array), type([], Array), type([], rtable), type([], hfarray);
# Numbers, strings and empty sequences match themselves alone; what is no type is an error.
type(3, 3), type(3, 4), type("a", "a"), type(x, "a"), type(1/2, 1/2), type(2.50, 2.5), type(2.5, 2.5), type(I, I), type(2 = NULL, 2 = NULL), type(2 = 3, 2 = NULL);
type(x, x + y); type(x, 2*x); type(x, x*y); type(x, eval(P)); type(x, eval(T)); type(x, eval(M)); try type(x, a*b) catch "testing": "caught" end try;
type(x); type(NULL, integer); type(); type(1, integer, 2);
# Choices, and types that match part by part.
type(3, {string, integer}), type(x, {string, integer}), type(x, {}), type([x, 1], [symbol, {symbol, integer}]);
type(3, [integer]), type([3], [integer]), type([3, 4], [integer]), type([], []), type([[1, x], y], [[integer, name], name]), type({1}, [integer]);
type(a = 2, symbol = integer), type(a = 2, integer = symbol), type(a <> 2, symbol <> 2), type(a < 2, symbol < integer), type(a <= 2, symbol <= integer), type(a = 2, a <> 2);
type(x and y, symbol and name), type(x or 'f(y)', symbol or function), type(not x, not symbol), type(not x, not integer), type(1 .. n, integer .. name), type(1 .. n, integer .. integer), type(''f(x)'', ''function'');
type(x^2, name^integer), type(x^y, name^name), type(x^2, name^2), type(x^2, name^3), type(x*y, name^integer), type(3, integer^integer), type((x + y)^(1/2), `+`^fraction);
type(x::integer, symbol::identical(integer)), type(x::integer, symbol::name), type(3, symbol::integer);
# Indexed names.
type(x[1], symbol[integer]), type(x[1, 2], symbol[integer]), type(x[1, 2], symbol[integer, 2]), type(x[1][2], indexed[2]), type(x[1], float[8]), type(2.5, float[8]), type(2.5, float[]), type(x[y], '{symbol, string}[name]'), type(k(x), symbol[symbol]);
type(x[1], x[integer]);
# Calls as types.
type(2.5 + 0.*I, embedded_real(float)), type(3, embedded_real(integer)), type(3 + 4*I, embedded_real(integer)), type(x, embedded_real(name));
type(4*I, embedded_imaginary(integer)), type(0. + 2.5*I, embedded_imaginary(float)), type(3 + 4*I, embedded_imaginary(integer)), type(4, embedded_imaginary(integer));
type(4*I, embedded_axis(integer)), type(4, embedded_axis(integer)), type(3 + 4*I, embedded_axis(integer)), type(2.5 + 0.*I, embedded_axis(float));
type(4*I, imaginary(integer)), type(4*I, imaginary(float)), type(3 + 4*I, imaginary(integer));
type(3 + 4*I, nonreal(integer)), type(3 + 4*I, nonreal(even)), type(4*I, nonreal(integer)), type(3, nonreal(integer));
type(3 + 4*I, complex(integer)), type(3 + 4*I, complex(odd)), type(3, complex(odd)), type(2.5*I, complex(float)), type(infinity + 2*I, complex(extended_numeric)), type(3 + 4*I, complex({integer, float})), type(x, complex(name));
type(x, identical(x)), type(y, identical(x)), type([1, x], identical([1, x])), type(k(x), identical(k(x)));
type(g(1, x), anyfunc(integer, name)), type(g(1), anyfunc(integer, name)), type(g(), anyfunc()), type(g(x, x), anyfunc(integer, name)), type([1], anyfunc(integer));
type(g(1, 2), specfunc(integer, g)), type(g(1, 2), specfunc(integer, {f, g})), type(g(1, x), specfunc(integer, g)), type(h(1), specfunc(integer, g)), type(g(), specfunc(integer, g));
type(3*x + y + 1, `&+`(`*`, symbol, integer)), type(3*x + y + 1, `&+`(symbol, `*`, integer)), type(x + y, `&+`(name, name)), type(x + y, `&+`(name)), type(x*y, `&+`(name, name)), type(x, `&+`(name));
type(3*x*y, `&*`(integer, name, name)), type(3*x, `&*`(integer, name)), type(x*y^2, `&*`(name, name^2)), type(3*x, `&*`(name, integer)), type(x + y, `&*`(name, name)), type(x^2, `&*`(name, integer));
v := 5: type('v', name(integer)), type('v', 'evaln(integer)'), type('v', name(string)), type('v', name()), type(x[1], name(indexed)), type(5, name(integer)), type('v', 'evaln()'); v := 'v':
type(f, And(name, symbol)), type(f, And(name, integer)), type(f, Or(integer, name)), type(f, Or(integer, float)), type(f, Not(integer)), type(f, Non(name)), type([f], [And(name, Not(identical(g)))]);
# A name with one argument asks it of every operand.
type(x + 2*y, '`+`(algebraic)'), type(x + 2*y, '`+`(name)'), type(3*x, '`*`({integer, name})'), type(3*x, '`*`(name)'), type(x^2, '`^`({name, 2})'), type(x^y, '`**`(name)'), type(x^2, '`^`(name)'), type(x^(1/2), radical({name, fraction}));
type(x[1, 2], indexed(integer)), type(x[1, y], indexed(integer)), type(g(1, 2), function(integer)), type(g(1, x), function(integer)), type([1, 2], list(integer)), type([1, x], list(integer)), type([], list(integer)), type({1, 2}, set(posint)), type({1, x}, set(posint)), type([1], set(integer));
type(x = y, equation(name)), type(x = 1, '`=`(name)'), type(x <> y, '`<>`(name)'), type(x < 2, '`<`(name)'), type(x <= y, '`<=`(name)'), type(x < y, relation(name)), type(1 .. 2, range(integer)), type(1 .. x, `..`(integer)), type(x::y, `::`(name));
type(x and y, '`and`(name)'), type(x or 'g(1)', '`or`(name)'), type(not x, '`not`(name)'), type(n!, `!`(name)), type(a.b, `.`(name)), type(a.b, `.`(integer)), type(''x'', uneval(name)), type(5, algebraic(integer)), type(5, constant(float)), type('T', 'table(table)'), type(x, 'table(integer)');
# A head that is a type itself, and a quoted head.
type(g(1), '{identical(g), string}(integer)'), type(g(x), '{identical(g), string}(integer)'), type(h(1), '{identical(g), string}(integer)'), type(x[1](2), 'symbol[integer](integer)'), type(x[1][2], 'symbol[integer](integer)'), type(x[1], 'identical(x)(integer)'), type(k(1), 'identical(k)(posint)');
type(k(3), ''k'(integer)'), type(k(x), ''k'(integer)'), type([3], ''list'(integer)');
# Any other name is a call's own.
type(sin(3), sin(integer)), type(sin(x), sin(integer)), type(cos(3), sin(integer)), type('sin'(3, 4), sin(integer)), type(sin(sin(3)), sin(sin(integer)));
# Counts of arguments that no type has.
for t in ['embedded_real()', 'embedded_imaginary(integer, integer)', 'embedded_axis()', 'imaginary()', 'nonreal(integer, 1)', 'complex()', 'polynom()', 'ratpoly(integer, x, y)', 'identical()', 'specfunc(integer)', 'list()', 'set(integer, integer)', 'And()', 'Or()', 'Not()', 'Non(integer, float)', 'name(integer, integer)', ''{f}'(integer, integer)', ''{f}'()'] do try type(x, t); lprint(t) catch: lprint(lastexception[2], t) end try end do:
