# Written on one line.
x := proc(t, f) sprintf(cat("%", `if`(nargs > 1, f, ""), "M"), t) end proc:
x(OM_OMI(5)), x(foo()), x(f(OM_g(), "a", -3, 2^70)), x(COMMENT(" c ")), x(CDATA("<&>")), x(SPECIAL_DOCTYPE("x")), x("text"), x(-0), x(-2^70);
x(f("a b", "ab", "a<b&c>\"d'")), x(f("a b", "ab", "a<b&c>\"d'"), 1), x(f("a b", "a<b&c>\"d'"), 2), x(f("a b<"), 3);
t := setattribute(f(1), "a" = "x<", "b-2" = 3, "c" = -2^70): x(t), x(t, 2), x(t, 4); x(setattribute(f(), "a" = "1"));
x(COMMENT(3)); x(COMMENT()); x(CDATA("a", "b")); x(SPECIAL_X(1)); x(`a b`(1)); x(`1a`()); x(OM_()); x(f(1.5)); x([1]); x(y); x(f(y + 1)); x(f[1](2)); x((a -> a)(1/2)); x(setattribute(f(), "a b" = 1)); x(setattribute(f(), a = 1)); x(setattribute(f(), "a" = 1.5)); x(setattribute(f(), "a")); printf("%M\n", f(1, y));
# Read back.
r := proc(s, f) op(sscanf(s, cat("%", `if`(nargs > 1, f, ""), "M"))) end proc:
r("<foo> 3 <bar/> </foo>"), r("<foo> 3 <bar/> </foo>", 4), r("<a b=1/>"), r("  <a/>"), r("<a></a>"), r("<a >b</a >"), r("<a.b-c_1/>"), r("<_/>");
r("<a> x  y \n</a>"), r("<a> x </a>", 1), r("<a> <b/> </a>", 1), r("<a>-12</a>", 4), r("<a>- 12</a>", 4), r("<a>123456789012345678901234567890</a>", 4), r("<a>007</a>", 4), r("<a>1 2</a>", 4);
r("<a>&lt;&gt;&amp;&quot;&apos;&amp;lt;&x;&</a>"), r("<a>&lt;&gt;&amp;&quot;&apos;&amp;lt;&x;&</a>", 2), r("<a><!--&lt;--><![CDATA[&lt;]]><!x &lt;></a>", 2);
t := r("<a b='1' c=\"x y\" d=2 e=a/b f=&lt;>t</a>", 6): t, [attributes(t)]; [attributes(r("<a b=''/>"))], [attributes(r("<a b = '>' />"))];
r("<!-- c -- d -->"), r("<![CDATA[a]]b]]>"), r("<!DOCTYPE a [<!ELEMENT b>] >"), r("<!x>"), r("<!x >"), r("<a><!-- <b> --></a>"), sscanf("<a/> <b/>rest", "%M%M%s"), sscanf("", "%M"), sscanf("  ", "%M");
# What is wrong, and in which line.
r("<a b/>"); r("<a></b>"); r("<1>"); r("<a 1=2/>"); r("<?xml version='1.0'?><a/>"); r("x"); r("<a>\n\n</b>"); r("<a></a x>"); r("<!?>"); r("<!-x>"); r("<![CDAT[x]]>"); r("</a>"); r("<a / >"); r("< a/>"); r("<a b=1 / >");
r("<a"); r("<a b"); r("<a b="); r("<a b='1"); r("<a>"); r("<a><b></b>"); r("<a>text"); r("</"); r("<"); r("<a>\n</a"); r("<!--"); r("<!-- -"); r("<![CDATA[ ]]"); r("<!x"); r("<!x <"); r("<!");
deep := cat("<a>"$10^5): r(deep); r(cat(deep, "</a>"$10^5)); length(r(cat("<a>"$1000, "</a>"$1000)));
# Trees and text, both ways.
samples := [f(), OM_f("a", g(1, -2, 3), COMMENT("x"), CDATA("<"), SPECIAL_d("e f")), setattribute(OM_h(OM_k()), "p" = "q & r", "s" = 12)]: for s in samples do printf("%a %a\n", x(r(x(s, 2), 6), 2) = x(s, 2), evalb(x(r(x(s, 2), 6), 2) = x(s, 2))) end do:
