# What `userinfo` reports on: a name, an indexed name or a set of those, none of which is evaluated.
infolevel := table([foo = 3, foo[2] = 5]): foo := 9: k := 2:
userinfo(1, foo, "a name"); userinfo(1, 'foo', "quoted"); userinfo(4, foo, "too high");
userinfo(1, {foo, bar}, "a set"); userinfo(1, {'foo', bar}, "a set with a quoted name"); userinfo(1, '{foo}', "a quoted set");
userinfo(1, {bar}, "nobody asked"); userinfo(1, {}, "about nothing");
userinfo(5, foo[k], "indexed"); userinfo(5, {bar, foo[k]}, "indexed in a set"); userinfo(3, fo || o, "joined");
about := proc(a) local b; userinfo(1, a, "by parameter"); userinfo(1, {a, b}, "in a set") end proc:
about('foo'); about({'foo', x});
infolevel[all] := 1: userinfo(1, {}, "to all"); userinfo(1, bar, "to all, ", k + 1);
# Other kinds are refused, before anything is evaluated.
userinfo(1, [foo], loud()); userinfo(1, 7, "x"); userinfo(1, f(x), "x"); userinfo(1, {foo, 7}, "x"); userinfo(1, "foo", "x");
userinfo(x, foo, "x"); userinfo(1, foo);
# A stream call reaches the front end once, quoted or not.
streamcall(INTERFACE_GET(warnlevel)), streamcall('INTERFACE_GET(warnlevel)');
streamcall(INTERFACE_GET(nothing)); streamcall(INTERFACE_LPRINT(k, k + 1)); streamcall(f(x)); streamcall(INTERFACE_GET);
ask := proc(a) streamcall(INTERFACE_GET(a)) end proc: ask(warnlevel);
# What is no address, and addresses where nothing is.
disassemble(x); pointto(x); pointto(1.5); pointto("a"); disassemble(10^20); pointto();
