# Numbers as texts: roman numerals, scientific and engineering notation, digits in a base; simple fractions.

`convert/roman` := proc(n::posint)
  description "convert(n, roman): the string of the roman numeral of n, from 1 to 3999";
  local row, rest, all;
  if n > 3999 then error "integer from 1 to 3999 expected, but received %1", n end if;
  rest := n;
  all := "";
  for row in `number_texts/roman` do
    all := cat(all, repeattext(row[2], iquo(rest, row[1])));
    rest := irem(rest, row[1])
  end do;
  all
end proc:
`number_texts/roman` := [
  [1000, "M"], [900, "CM"], [500, "D"], [400, "CD"], [100, "C"], [90, "XC"], [50, "L"], [40, "XL"],
  [10, "X"], [9, "IX"], [5, "V"], [4, "IV"], [1, "I"]
]:

# What reads as a numeral is one only if it is written as `convert/roman` writes it.
`convert/arabic` := proc(s::{string, symbol})
  description "convert(s, arabic): the integer of a roman numeral";
  local row, rest, n, text;
  text := uppertext(cat("", s));
  rest := text;
  n := 0;
  for row in `number_texts/roman` do
    while beginstext(row[2], rest) do
      n := n + row[1];
      rest := `if`(length(rest) = length(row[2]), "", substring(rest, length(row[2]) + 1..-1))
    end do
  end do;
  if n = 0 or n > 3999 or `convert/roman`(n) <> text then error "%1 is no roman numeral", s end if;
  n
end proc:

# ---- notation by powers of ten

scientifictext := proc(x, n::posint)
  description "scientifictext(x), scientifictext(x, n): the text of a real number to n digits, Digits unless told, as in 1.234e5";
  `number_texts/power`("scientifictext", 1, args)
end proc:
engineeringtext := proc(x, n::posint)
  description "engineeringtext(x), engineeringtext(x, n): the text of a real number to n digits, Digits unless told, with an exponent that 3 divides, as in 123.4e3";
  `number_texts/power`("engineeringtext", 3, args)
end proc:

`number_texts/power` := proc(who, step, x, digits)
  description "number_texts/power(who, step, x, digits): the text of x to so many digits with an exponent that step divides";
  local n, y, mantissa, text, exponent, before;
  if nargs < 3 or nargs > 4 then error "%1 expects a number and perhaps a number of digits, but received %2 arguments", who, nargs - 2 end if;
  n := `if`(nargs = 4, digits, Digits);
  y := evalf(x, n);
  if not type(y, numeric) or y = infinity or y = -infinity then error "%1 expects a real number, but received %2", who, x end if;
  if y = 0 then return "0" end if;
  mantissa := abs(SFloatMantissa(y));
  text := convert(mantissa, string);
  exponent := length(mantissa) - 1 + SFloatExponent(y);
  text := cat(text, repeattext("0", max(0, n - length(text))));
  before := 1 + modp(exponent, step);
  text := cat(text, repeattext("0", max(0, before - length(text))));
  cat(`if`(type(y, negative), "-", ""), substring(text, 1..before),
    `if`(length(text) > before, cat(".", substring(text, before + 1..-1)), ""), "e", exponent - modp(exponent, step))
end proc:

basetext := proc(n, b)
  description "basetext(n, b): the text of an integer in base b, from 2 to 36, with the digits 0 to 9 and A to Z";
  if not type([args], [integer, posint]) then return `kernel/native`("opencall", [integer, posint], args) end if;
  if b < 2 or b > 36 then error "base from 2 to 36 expected, but received %1", b end if;
  `convert/positional`(n, b)
end proc:

# ---- fractions

# The last convergent whose denominator is in bounds, or the last fraction between it and the next one.
bestfraction := proc(x, n::posint)
  description "bestfraction(x, n): the fraction nearest to a real number among those with denominators up to n";
  local q, whole, p0, q0, p1, q1, a, k, one, two;
  if type(x, numeric) then q := `evalf/aid/exact`(x)
  elif type(evalf(x), finite) and `simpl/signum`(x) <> FAIL then q := `evalf/aid/exact`(evalf(x, 2*length(n) + 20 + max(0, ilog10(evalf(x)))))
  else error "bestfraction expects a real number, but received %1", x
  end if;
  if denom(q) <= n then return q end if;
  whole := q;
  p0, q0, p1, q1 := 0, 1, 1, 0;
  do
    a := floor(q);
    if q0 + a*q1 > n then break end if;
    p0, p1 := p1, p0 + a*p1;
    q0, q1 := q1, q0 + a*q1;
    q := 1/(q - a)
  end do;
  k := iquo(n - q0, q1);
  one, two := (p0 + k*p1)/(q0 + k*q1), p1/q1;
  `if`(abs(two - whole) <= abs(one - whole), two, one)
end proc:
