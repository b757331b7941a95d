# Texts: strings, and names in the place of strings. Results are strings. Characters are bytes, letters those of ASCII.

splittext := proc(s::{string, symbol}, separator::{string, symbol})
  description "splittext(s), splittext(s, separator): the list of the words of s, or of what stands between separators; an empty separator splits into characters";
  `kernel/native`("splittext", args)
end proc:

jointext := proc(a::list, separator::{string, symbol})
  description "jointext(a), jointext(a, separator): the texts of the members of the list, one behind the other";
  `kernel/native`("jointext", args)
end proc:

trimtext := proc(s::{string, symbol}, characters::{string, symbol})
  description "trimtext(s), trimtext(s, characters): s without the blanks, or those characters, at both ends";
  `kernel/native`("trimtext", args)
end proc:

lowertext := proc(s::{string, symbol})
  description "lowertext(s): s in lower-case letters";
  `kernel/native`("lowertext", s)
end proc:

uppertext := proc(s::{string, symbol})
  description "uppertext(s): s in upper-case letters";
  `kernel/native`("uppertext", s)
end proc:

reversetext := proc(s::{string, symbol})
  description "reversetext(s): the characters of s in the opposite order";
  `kernel/native`("reversetext", s)
end proc:

padtext := proc(s::{string, symbol}, n::integer, character::{string, symbol})
  description "padtext(s, n), padtext(s, n, character): s filled up to n characters with blanks behind it, or to -n in front of it";
  if nargs > 2 and length(character) <> 1 then error "one character expected to pad with, but received %1", character end if;
  `kernel/native`("padtext", args)
end proc:

replacetext := proc(s::{string, symbol}, old::{string, symbol}, new::{string, symbol})
  description "replacetext(s, old, new): s with new in the place of each old";
  if length(old) = 0 then error "the text to replace is empty" end if;
  `kernel/native`("replacetext", s, old, new)
end proc:

repeattext := proc(s::{string, symbol}, n::nonnegint)
  description "repeattext(s, n): n times s";
  `kernel/native`("repeattext", s, n)
end proc:

counttext := proc(pattern::{string, symbol}, s::{string, symbol})
  description "counttext(pattern, s): how often the pattern occurs in s, without overlaps";
  if length(pattern) = 0 then error "the text to count is empty" end if;
  `kernel/native`("counttext", pattern, s)
end proc:

beginstext := proc(start::{string, symbol}, s::{string, symbol})
  description "beginstext(start, s): true when s begins with start";
  local n;
  n := length(start);
  evalb(n = 0 or n <= length(s) and cat("", substring(s, 1..n)) = cat("", start))
end proc:

endstext := proc(final::{string, symbol}, s::{string, symbol})
  description "endstext(final, s): true when s ends with final";
  local n;
  n := length(final);
  evalb(n = 0 or n <= length(s) and cat("", substring(s, -n..-1)) = cat("", final))
end proc:

textcodes := proc(s::{string, symbol, list(posint)})
  description "textcodes(s), textcodes([n, ...]): the bytes of a text as a list of numbers, or the string of such a list";
  `kernel/native`("textcodes", s)
end proc:
