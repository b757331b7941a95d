# Numbers in other forms: exact, as floats, and in other bases.

# The simplest fraction that rounds to the float; fractions in an interval by the continued fractions of its ends
# (Stern and Brocot).
`convert/rational` := proc(x, precision)
  description "convert(x, rational), convert(x, rational, n), convert(x, rational, exact): x with simple fractions in the place of floats, equal to them in all, or n, digits, or exactly";
  local n, whole, half;
  if nargs > 1 and precision <> 'exact' and not type(precision, posint) then
    error "number of digits or `exact` expected, but received %1", precision
  end if;
  if type(x, float) then
    if not type(x, numeric) then return `if`(type(x, identical(Float(undefined))), undefined, SFloatMantissa(x)*infinity) end if;
    whole := `evalf/aid/exact`(x);
    if nargs > 1 and precision = 'exact' or type(whole, integer) then return whole end if;
    n := `if`(nargs > 1, precision, Digits);
    half := 10^(ilog10(x) + 1 - n)/2;
    `if`(type(whole, negative), -`convert/simplest`(-whole - half, -whole + half), `convert/simplest`(whole - half, whole + half))
  elif type(x, {complex(numeric), `+`, `*`, `^`, list, set, relation, range, function}) and hastype(x, float) then
    if type(x, complex(numeric)) then procname(Re(x), args[2..-1]) + I*procname(Im(x), args[2..-1])
    else map(procname, x, args[2..-1])
    end if
  else x
  end if
end proc:
`convert/fraction` := proc()
  description "convert(x, fraction): as convert(x, rational)";
  `convert/rational`(args)
end proc:

`convert/simplest` := proc(a::rational, b::rational)
  description "convert/simplest(a, b): the fraction of least denominator from a to b, 0 < a <= b";
  local least;
  least := trunc(a);
  if least = a then return least end if;
  if least + 1 <= b then least + 1 else least + 1/procname(1/(b - least), 1/(a - least)) end if
end proc:

`convert/float` := proc(x, n::posint)
  description "convert(x, float), convert(x, float, n): the numeric value of x, to n digits";
  if nargs > 1 then evalf(x, n) else evalf(x) end if
end proc:

# ---- bases

# Digits of n, least first, `count` of them with zeros behind them; long numbers in halves.
`convert/digits` := proc(n::nonnegint, b::posint, count::nonnegint)
  description "convert/digits(n, b, count): the sequence of the last count digits of n in base b, least first";
  local rest, digit, half, upper, i;
  if count <= 32 then
    rest := n;
    digit := array(1..max(count, 1));
    for i to count do digit[i] := irem(rest, b, 'rest') end do;
    return seq(digit[i], i = 1..count)
  end if;
  half := iquo(count, 2);
  rest := irem(n, b^half, 'upper');
  procname(rest, b, half), procname(upper, b, count - half)
end proc:

# The value of digits, neighbours joined until one number is left.
`convert/value` := proc(digits::list(integer), b::posint)
  description "convert/value([d, ...], b): the number with these digits in base b, the least one first";
  local d, base, n, i;
  d, base := digits, b;
  while nops(d) > 1 do
    n := nops(d);
    d := [seq(d[2*i - 1] + base*d[2*i], i = 1..iquo(n, 2)), `if`(irem(n, 2) = 1, d[-1], NULL)];
    base := base^2
  end do;
  `if`(d = [], 0, op(d))
end proc:

`convert/base` := proc(x::{integer, list(nonnegint)}, b::posint, c::posint)
  description "convert(n, base, b), convert([d, ...], base, b, c): the digits of a number in base b, or of one given by digits in base b in base c, least first";
  local n, base, count, digits;
  if type(x, list) then
    if nargs < 3 then error "two bases expected to convert digits" end if;
    if remove(`<`, x, b) <> [] then error "digits below %1 expected, but received %2", b, op(1, remove(`<`, x, b)) end if;
    n, base := `convert/value`(x, b), c
  else
    n, base := x, b
  end if;
  if base = 1 or b = 1 then error "a base is 2 at least" end if;
  if n = 0 then return [] end if;
  # An upper bound of their number, and the zeros on top taken off.
  count := 1 + trunc(evalf('ln'(abs(n))/'ln'(base), 20) + 1);
  digits := [`convert/digits`(abs(n), base, count)];
  while digits[count] = 0 do count := count - 1 end do;
  `if`(n < 0, map(d -> -d, digits[1..count]), digits[1..count])
end proc:

`convert/positional` := proc(n::integer, b::posint)
  description "convert/positional(n, b): the text of n in base b";
  local digits, names, d;
  names := "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  digits := `convert/base`(abs(n), b);
  if digits = [] then "0" else cat(`if`(n < 0, "-", ""), jointext([seq(names[d + 1], d = reverse(digits))])) end if
end proc:
`convert/binary` := proc(n::integer)
  description "convert(n, binary): the number whose decimal digits are the binary digits of n";
  parse(`convert/positional`(n, 2))
end proc:
`convert/octal` := proc(n::integer)
  description "convert(n, octal): the number whose decimal digits are the octal digits of n";
  parse(`convert/positional`(n, 8))
end proc:
`convert/hex` := proc(n::integer)
  description "convert(n, hex): the string of the hexadecimal digits of n";
  `convert/positional`(n, 16)
end proc:

`convert/decimal` := proc(x::{string, symbol, integer}, b::{posint, identical(binary), identical(octal), identical(hex)})
  description "convert(x, decimal, b): the number that the text or the digits x stand for in base b: 2 to 36, binary, octal or hex";
  local base, text, sign, digits, code;
  base := `if`(b = 'binary', 2, `if`(b = 'octal', 8, `if`(b = 'hex', 16, b)));
  if base < 2 or base > 36 then error "base from 2 to 36 expected, but received %1", b end if;
  text := uppertext(`if`(type(x, integer), `kernel/native`("objecttext", x), x));
  sign := 1;
  if beginstext("-", text) then sign, text := -1, substring(text, 2..-1) end if;
  digits := [seq(`if`(code < 58, code - 48, `if`(code < 65, -1, code - 55)), code = textcodes(text))];
  if digits = [] or min(op(digits)) < 0 or max(op(digits)) >= base then error "%1 is no number in base %2", x, base end if;
  sign*`convert/value`(reverse(digits), base)
end proc:
