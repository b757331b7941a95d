# Text taken apart and put together: words, frequencies, ciphers, numbers in words and in Roman.

text := "it was the best of times it was the worst of times it was the age of wisdom":

characters := s -> [seq(c, c = s)]:
size := s -> nops(characters(s)):
join := proc(parts::list, separator::string)
  if parts = [] then "" else cat(parts[1], seq(op([separator, p]), p = parts[2..-1])) end if
end proc:
split := proc(s::string, separator::string)
  local words, word, c;
  words := NULL; word := "";
  for c in s do
    if c = separator then words := words, word; word := "" else word := cat(word, c) end if
  end do;
  [words, word]
end proc:

words := split(text, " "):
nops(words), words[1], words[-1], size(text);
join(words[1..4], "-");
evalb(join(split(text, " "), " ") = text);
split("a,,b,", ",");

# How often each word occurs. An entry that is not there yet counts as 0.
frequencies := proc(items::list)
  local count, x;
  for x in items do count[x] := `if`(assigned(count[x]), count[x] + 1, 1) end do;
  eval(count)
end proc:
f := frequencies(words):
f["it"], f["times"], f["wisdom"];

# An insertion sort by any order; pairs by falling count, then by the word.
insertBy := proc(x, l, before)
  local k;
  for k to nops(l) do if before(x, l[k]) then return [op(l[1..k - 1]), x, op(l[k..-1])] end if end do;
  [op(l), x]
end proc:
sortBy := proc(l, before) local x, r; r := []; for x in l do r := insertBy(x, r, before) end do; r end proc:
pairs := [seq([f[w[1]], w[1]], w = [indices(f)])]:
ranked := sortBy(pairs, (a, b) -> a[1] > b[1] or a[1] = b[1] and evalb(a[2] < b[2])):
for pair in ranked[1..5] do lprint(pair[2], pair[1]) end do;

# Palindromes, by reversal.
reversed := s -> cat("", seq(s[-k], k = 1..size(s))):
reversed("stressed");
letters := s -> cat("", seq(`if`(c >= "a" and c <= "z", c, ""), c = s)):
phrase := "a man a plan a canal panama":
evalb(letters(phrase) = reversed(letters(phrase)));

# Caesar's cipher: a table from each letter to the one `k` places on.
alphabet := characters("abcdefghijklmnopqrstuvwxyz"):
caesar := proc(s, k::integer)
  local code, i;
  for i from 0 to 25 do code[alphabet[i + 1]] := alphabet[modp26(i + k) + 1] end do;
  cat("", seq(`if`(assigned(code[c]), code[c], c), c = s))
end proc:
modp26 := n -> irem(irem(n, 26) + 26, 26):
caesar("hello, world", 3);
caesar(caesar("hello, world", 3), -3);

# Run lengths, there and back.
encode := proc(s::string)
  local runs, i, n, k;
  runs := NULL; i := 1; n := size(s);
  while i <= n do
    for k from i while k < n and s[k + 1] = s[i] do end do;
    runs := runs, [k - i + 1, s[i]];
    i := k + 1
  end do;
  [runs]
end proc:
decode := runs -> cat("", seq(r[2] $ r[1], r = runs)):
encode("aaabccddddde");
decode(encode("aaabccddddde"));

# Roman numerals.
roman := proc(n::posint)
  local rest, s, step;
  rest := n; s := "";
  for step in [[1000, "M"], [900, "CM"], [500, "D"], [400, "CD"], [100, "C"], [90, "XC"], [50, "L"],
               [40, "XL"], [10, "X"], [9, "IX"], [5, "V"], [4, "IV"], [1, "I"]] do
    while rest >= step[1] do s := cat(s, step[2]); rest := rest - step[1] end do
  end do;
  s
end proc:
roman(1999), roman(2024), roman(3888);

# Numbers in words; their letters when written out from one to a hundred.
units := ["one", "two", "three", "four", "five", "six", "seven", "eight", "nine", "ten", "eleven",
          "twelve", "thirteen", "fourteen", "fifteen", "sixteen", "seventeen", "eighteen", "nineteen"]:
tens := ["ten", "twenty", "thirty", "forty", "fifty", "sixty", "seventy", "eighty", "ninety"]:
spell := proc(n::posint)
  if n < 20 then units[n]
  elif n < 100 then
    cat(tens[iquo(n, 10)], `if`(irem(n, 10) = 0, "", cat("-", units[irem(n, 10)])))
  elif n < 1000 then
    cat(units[iquo(n, 100)], " hundred", `if`(irem(n, 100) = 0, "", cat(" and ", spell(irem(n, 100)))))
  else error "too large to spell: %1", n
  end if
end proc:
spell(7), spell(40), spell(342), spell(115);
add(size(letters(spell(n))), n = 1..5);       # 19
spell(1000);
