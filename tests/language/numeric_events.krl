# What float operations with infinities, undefined values and zeros give, and which events they raise:
# `ask` takes an operation that is only done when it is called, and shows its value and the flags.
ask := proc(operation, a, b) local r; NumericStatus(false); r := operation(a, b); r, seq(`if`(rhs(e), lhs(e), NULL), e = [NumericStatus()]) end:
plus := proc(a, b) a + b end: times := proc(a, b) a*b end: over := proc(a, b) a/b end: power := proc(a, b) a^b end:
inf := Float(infinity): minf := Float(-infinity): nan := Float(undefined):
# Sums: equal infinities, opposite ones, an infinity beside any number.
ask(plus, inf, inf); ask(plus, minf, minf); ask(plus, inf, minf); ask(plus, minf, inf);
ask(plus, inf, 3); ask(plus, -1/2, minf); ask(plus, inf, infinity); ask(plus, nan, 1); ask(plus, 2., undefined); ask(plus, inf, nan);
# Products: signs, a zero of any form, a number.
ask(times, inf, inf); ask(times, minf, minf); ask(times, inf, minf);
ask(times, inf, 0.); ask(times, -0., minf); ask(times, inf, 0); ask(times, inf, -2.5); ask(times, 3, minf); ask(times, -3, minf); ask(times, nan, 0.);
# Quotients.
ask(over, 2., 0); ask(over, -2., 0); ask(over, undefined, 0); ask(over, 3, infinity); ask(over, 2.5, infinity);
ask(over, inf, minf); ask(over, inf, 0.); ask(over, minf, 0.); ask(over, inf, -0.); ask(over, inf, 2.); ask(over, inf, -2.);
ask(over, 0., inf); ask(over, 0., minf); ask(over, -0., inf); ask(over, 0., 0.);
ask(over, 2., inf); ask(over, 2., minf); ask(over, -2., inf); ask(over, 2., 0.); ask(over, -2., 0.); ask(over, 2., -0.);
# Powers.
ask(power, infinity, 0); ask(power, infinity, -2); ask(power, inf, 0); ask(power, inf, -1); ask(power, inf, 3); ask(power, inf, 1/2);
ask(power, minf, 3); ask(power, minf, -3); ask(power, minf, 2); ask(power, minf, -2); ask(power, minf, 2.5);
ask(power, -0., 3); ask(power, -0., 2); ask(power, -0., -3); ask(power, -0., -2); ask(power, -0., 1/2);
ask(power, 0., inf); ask(power, 0., 0); ask(power, 0., -2); ask(power, 0., 2);
ask(power, 2., 0); ask(power, -.5, inf); ask(power, 2., inf); ask(power, .5, inf); ask(power, 2., minf); ask(power, .5, minf);
# Overflow and underflow are inexact as well; rounding raises one event.
ask(times, 1e2147483640, 1e2147483640); ask(times, -1e-2147483640, 1e-2147483640); ask(plus, 1., 1e-20); ask(over, 1., 3); ask(over, 1., 4);
# The same events under `exception`.
NumericEventHandler(exception);
ask(plus, inf, minf);
ask(over, 2., 0.);
ask(over, 2., 0);
ask(times, 1e2147483640, 1e2147483640);
ask(over, 1., 3);
NumericEventHandler(default);
# Flags stay until they are set back; a failure leaves what was set.
NumericStatus(false): times(inf, 0.): NumericStatus();
NumericStatus(invalid_operation = false, overflow = true), NumericStatus(overflow, inexact);
NumericStatus(false);
NumericStatus(overflow = 1); NumericStatus(3 = true); NumericStatus(nothing); NumericStatus([overflow]); NumericStatus(true);
NumericStatus(overflow);
# Handlers: procedures by name and as they are, one for each event, the value that they give.
h := proc(operation, operands, standard) print(operation, operands, standard); standard end:
NumericEventHandler(invalid_operation = h, overflow = exception); NumericEventHandler(overflow), NumericEventHandler(underflow);
ask(times, inf, 0.);
ask(plus, infinity, -infinity);
NumericEventHandler(3); NumericEventHandler(overflow = 3); NumericEventHandler(3 = default); NumericEventHandler(flood); NumericEventHandler(overflow = nothing);
NumericEventHandler(default): NumericEventHandler();
NumericEventHandler(invalid_operation = proc(o, x, d) 42. end): ask(times, inf, 0.);
ask(plus, infinity, -infinity);
NumericEventHandler(invalid_operation = proc(o, x, d) 7/3 end): ask(plus, infinity, -infinity);
ask(times, inf, 0.);
# An error in a handler ends the operation, the flag stays; the session goes on.
NumericEventHandler(invalid_operation = proc(o, x, d) error "no %1 for me", o end): NumericStatus(false):
times(inf, 0.);
NumericStatus(invalid_operation);
try times(inf, 0.) catch "no": "caught" end try;
# An event in a handler: here of another kind, then the handler's own kind, which ends at the stack's end.
NumericEventHandler(invalid_operation = proc(o, x, d) times(1e2147483640, 1e2147483640) end, overflow = proc(o, x, d) print(o); 5. end):
times(inf, 0.);
depth := 0: NumericEventHandler(invalid_operation = proc(o, x, d) global depth; depth := depth + 1; if depth < 5 then times(x[1], x[2]) else 1.5 end if end):
times(inf, 0.), depth;
NumericEventHandler(default):
# A handler set in a procedure ends with it; NumericEventLocation tells where the last event was.
inner := proc() NumericEventHandler(invalid_operation = exception); traperror(times(inf, 0.)) end: inner(); NumericEventHandler(invalid_operation);
outer := proc() inner(); NumericEventHandler(invalid_operation) end: outer();
times(inf, 0.): NumericEventLocation;
# Events of the library's own making.
NumericEvent(overflow, `+`, [1, 2], 4); NumericStatus(overflow);
NumericEvent(division_by_zero, `/`, [1, 0], infinity);
NumericEvent(division_by_zero, `/`, [1., 0], inf);
lib := proc(x) NumericEvent(invalid_operation, 17) end: lib(1, 2);
NumericEventHandler(invalid_operation = proc(o, x, d) x end): lib(1, 2); NumericEventHandler(default):
NumericEvent(overflow, 3); NumericEvent(1, `+`, [1], 2); NumericEvent(overflow, 1, [1], 2); NumericEvent(overflow, `+`, 1, 2); NumericEvent(flood, `+`, [1], 2); NumericEvent();
# An exact quotient by zero: an error by default, with the flag; otherwise what the handler makes of it.
ask(over, 1, 0); ask(over, x, 0); ask(over, -2/3, 0); ask(over, 1 + I, 0); ask(over, 0, 0); ask(power, 0, -1); ask(power, 0, -1/2); ask(power, 0, -1 + I);
NumericStatus(false): traperror(over(3, 0)), NumericStatus(division_by_zero); p := proc() try over(3, 0) catch "numeric exception: division by zero": "caught" end try end: p();
NumericEventHandler(division_by_zero = proc(o, x, d) print(x, d); d end): over(1, 0); over(-1, 0); over(2/3, 0); over(-2/3, 0); over(1 + I, 0); over(0, 0); over(x*y, 0); over(-x, 0); power(0, -2); power(0, -1/2); power(0, -1 + I);
NumericEventHandler(division_by_zero = proc(o, x, d) 7 end): over(1, 0), over(x, 0), over(2*x, 0), power(0, -3); NumericEventHandler(default):
# A float infinity as exponent gives floats.
power(2, inf), power(2, minf), power(1/2, inf), power(2, nan), power(-2, inf);
