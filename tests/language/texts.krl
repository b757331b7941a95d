# Pieces.
splittext("a,b,,c", ","), splittext("  ab\tc \n"), splittext(""), splittext("", ","), splittext("abc", ""), splittext(abc, b), splittext("a--b---c", "--"); jointext(["a", b, x + 1, 3], ", "), jointext([]), jointext([], "x"), jointext([1, 2]), jointext(["a"], "x");
jointext(splittext("one two  three"), " ");
splittext(3); jointext("a"); splittext("a", 3);
# Ends.
trimtext("  ab c\n"), trimtext("xyaxx", "xy"), trimtext("   "), trimtext(""), beginstext("ba", "banana"), endstext("na", banana), endstext("", "x"), beginstext("xyz", "x"), endstext("xx", "x");
padtext("ab", 5, "."), padtext("ab", -5), padtext("abc", 2), padtext("", 0), padtext("", -2, x); padtext("a", 3, "ab"); padtext("a", x);
# Letters and other bytes.
lowertext("AbC1{"), uppertext(aBc), uppertext("Größe"), reversetext("abc"), reversetext(""), textcodes("abc"), textcodes([104, 105]), textcodes(""), textcodes([]); textcodes([300]);
# Everywhere in a text.
replacetext("banana", "an", "AN"), replacetext("banana", "a", ""), replacetext("aaa", "aa", "b"), replacetext("x", "y", "z"), counttext("an", "banana"), counttext("aa", "aaaa"), repeattext("ab", 3), repeattext("", 5), repeattext("x", 0);
replacetext("a", "", "b"); counttext("", "a"); repeattext("a", 10^9); repeattext("a", -1);
text := repeattext("word ", 10^5): length(text), nops(splittext(text)), counttext("rd", text), length(replacetext(text, "word", "w")), length(jointext(splittext(text), "")), evalb(reversetext(reversetext(text)) = text);
