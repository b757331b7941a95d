# Positions count in the whole text, from 1; 0 for none.
SearchText("b", "abc"), SearchText("B", "abc"), searchtext("B", "abc"), searchtext("ABC", xabcx), SearchText("", "abc"), SearchText("abcd", "abc"), SearchText("aab", "aaaaab"), SearchText("c", abcabc), SearchText("", "");
SearchText(b, "abcb", 3..4), SearchText("b", "abcb", 1..3), SearchText("c", abc, -1..-1), SearchText("bc", "abcbc", -2..-1), SearchText("bc", "abc", 1..2);
SearchText("a"); SearchText(1, "a"); searchtext("a", 1); SearchText("a", "a", 1..1, 1); SearchText("a", "b", 1); SearchText("a", "b", 1..x);
SearchText("a", "b", 1..2); SearchText("a", "bc", 2..1); SearchText("a", "b", 0..1); searchtext("a", "b", -2..1); SearchText("a", "b", 1..10^20);
# Parts of a text, of its kind.
substring("hello", 2), substring(hello, 2..3), substring("hello", -3..-1), substring("hello", 3..2), substring("hello", -1), length(substring("hello", 1..0));
substring("hello", 0); substring("hello", 6); substring("hello", 2..7); substring("hello", 4..2); substring("hello", 10^20); substring(3, 1); substring("a", x); substring("a");
lexorder(a, b), lexorder("b", "a"), lexorder(a, a), lexorder("B", a), lexorder(ab, abc);
lexorder(1, a); lexorder(a); lexorder(a, b, c);
cat(a, b), cat("a", b, c), cat(a, 1), cat(a, 1..3), cat("x", y, 2), length(cat()), cat(a, x + y);
# Conversions are procedures of the library.
`convert/double` := proc(x) 2*x end proc: `convert/plus` := proc(x, y) x + y end proc: convert(3, double), convert(3, plus, 4), convert(x, "double");
convert([1], nosuchform); convert(3); convert(1, 2); convert();
