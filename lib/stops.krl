# Break points, watches and error stops, set and listed by number, at the prompt or in the debugger's dialogue.

setbreak := proc(f, n::posint, condition::uneval)
  description "setbreak(f), setbreak(f, n), setbreak(f, n, condition): stops before statement n of the procedure f, its first one if none is given, when the condition on its variables holds";
  `debugger/say`(`stops/text`(`stops/break`(f, `if`(nargs > 1, n, 1), `if`(nargs > 2, 'condition', NULL))))
end proc:

clearbreak := proc(f, n::posint)
  description "clearbreak(f), clearbreak(f, n): takes away the break points of the procedure f, or that before statement n";
  local places, entry, name;
  if nargs > 1 then places := [n] else places := map(proc(b) b[1] end proc, `kernel/native`("debugger/breaks", f)) end if;
  for entry in places do debugopts('stopat' = [f, -entry]) end do;
  name := `debugger/whole`(f);
  `stops/keep`(proc(s) s[2] <> "break" or s[3] <> name or not member(s[4], places) end proc)
end proc:

setwatch := proc(a)
  description "setwatch('a'), setwatch([f, 'a']): stops when a value is assigned to the global name a, or to the local a of the procedure f";
  `debugger/say`(`stops/text`(`stops/watch`(a)))
end proc:

clearwatch := proc(a)
  description "clearwatch('a'), clearwatch([f, 'a']), clearwatch(): takes away a watch, or all";
  local name;
  if nargs = 0 then
    debugopts('watchtable' = []);
    return `stops/keep`(proc(s) s[2] <> "watch" end proc)
  end if;
  debugopts('delwatch' = a);
  name := `debugger/whole`(a);
  `stops/keep`(proc(s) s[2] <> "watch" or s[3] <> name end proc)
end proc:

setcatch := proc(message)
  description "setcatch(), setcatch(\"message\"), setcatch(traperror), setcatch(traperror[\"message\"]): stops at uncaught errors, all or with that message, or at errors that are caught";
  `debugger/say`(`stops/text`(`stops/error`(`if`(nargs = 0, 'all', message))))
end proc:

clearcatch := proc(message)
  description "clearcatch(\"message\"), clearcatch(): takes away an error stop, or all";
  if nargs = 0 then
    debugopts('errortable' = []);
    return `stops/keep`(proc(s) s[2] <> "error" end proc)
  end if;
  debugopts('delerror' = message);
  `stops/keep`(proc(s) s[2] <> "error" or s[3] <> message end proc)
end proc:

stops := proc()
  description "stops(): lists the break points, watches and error stops, with their numbers";
  `stops/show`()
end proc:

clearstops := proc()
  description "clearstops(): takes away all break points, watches and error stops";
  `stops/clear`()
end proc:

listing := proc(f, n::{posint, range})
  description "listing(f), listing(f, n), listing(f, n..m): shows the procedure f with the numbers of its statements, or those statements";
  INTERFACE_CHAR(`debugger/marked`(debugopts('procdump' = `if`(nargs > 1, [f, n], f))));
  NULL
end proc:

# ---- the register: [number, "break", procedure, statement], [number, "watch", name], [number, "error", message]
#
# Procedures and watched names are texts: the names may have values.

`stops/register` := proc()
  description "stops/register(): the stops that are set";
  global `debugger/memory`;
  if not type(`debugger/memory`, table) then `debugger/forget`() end if;
  `debugger/memory`["stops"]
end proc:

`stops/add` := proc(kind)
  description "stops/add(kind, what, ...): enters a stop, or finds it; its entry";
  local entry, known;
  global `debugger/memory`;
  known := `stops/register`();
  for entry in known do if [op(2..-1, entry)] = [args] then return entry end if end do;
  `debugger/memory`["number"] := `debugger/memory`["number"] + 1;
  entry := [`debugger/memory`["number"], args];
  `debugger/memory`["stops"] := [op(known), entry];
  entry
end proc:

`stops/keep` := proc(test)
  description "stops/keep(test): forgets the stops that fail the test";
  global `debugger/memory`;
  `debugger/memory`["stops"] := select(test, `stops/register`());
  NULL
end proc:

`stops/break` := proc(f, n, condition)
  description "stops/break(f, n), stops/break(f, n, condition): sets a break point; its entry";
  if nargs > 2 then debugopts('stopat' = [f, n, condition]) else debugopts('stopat' = [f, n]) end if;
  `stops/add`("break", `debugger/whole`(f), n)
end proc:
`stops/watch` := proc(a)
  description "stops/watch(a): sets a watch; its entry";
  debugopts('addwatch' = a);
  `stops/add`("watch", `debugger/whole`(a))
end proc:
`stops/error` := proc(message)
  description "stops/error(message): sets an error stop; its entry";
  debugopts('adderror' = message);
  `stops/add`("error", message)
end proc:

`stops/condition` := proc(entry)
  description "stops/condition(entry): the break point of an entry as [statement, condition text], or NULL when the procedure has been defined anew";
  local b;
  for b in traperror([op(`kernel/native`("debugger/breaks", parse(entry[3])))]) do if type(b, list) and b[1] = entry[4] then return b end if end do;
  NULL
end proc:

`stops/text` := proc(entry)
  description "stops/text(entry): an entry as a person reads it";
  local b, text;
  text := cat("stop ", convert(entry[1], string), ": ");
  if entry[2] = "break" then
    b := `stops/condition`(entry);
    cat(text, entry[3], ", statement ", convert(entry[4], string), `if`(nops([b]) = 1 and nops(b) > 1, cat(" if ", b[2]), ""))
  elif entry[2] = "watch" then
    b := parse(entry[3]);
    if type(b, list) then b := splittext(trimtext(entry[3], "[]"), ", "); cat(text, "assignments to ", b[2], " in ", b[1])
    else cat(text, "assignments to ", entry[3])
    end if
  elif entry[3] = 'all' then cat(text, "uncaught errors")
  elif entry[3] = 'traperror' then cat(text, "caught errors")
  elif type(entry[3], string) then cat(text, "the uncaught error \"", entry[3], "\"")
  else cat(text, "the caught error \"", op(entry[3]), "\"")
  end if
end proc:

`stops/refresh` := proc()
  description "stops/refresh(): forgets break points of procedures that have been defined anew, with a warning";
  local entry;
  for entry in `stops/register`() do
    if entry[2] = "break" and [`stops/condition`(entry)] = [] then
      INTERFACE_WARN(2, "the break point at %1, statement %2, is gone: the procedure has another body", entry[3], entry[4])
    end if
  end do;
  `stops/keep`(proc(s) s[2] <> "break" or [`stops/condition`(s)] <> [] end proc)
end proc:

`stops/show` := proc()
  description "stops/show(): writes the stops";
  local entry;
  `stops/refresh`();
  if `stops/register`() = [] then `debugger/say`("no stops are set") end if;
  for entry in `stops/register`() do `debugger/say`(`stops/text`(entry)) end do;
  NULL
end proc:

`stops/remove` := proc(entry)
  description "stops/remove(entry): takes a stop away, whatever has become of it";
  if entry[2] = "break" then traperror(debugopts('stopat' = [parse(entry[3]), -entry[4]]))
  elif entry[2] = "watch" then traperror(debugopts('delwatch' = parse(entry[3])))
  else traperror(debugopts('delerror' = entry[3]))
  end if;
  NULL
end proc:

`stops/delete` := proc(number)
  description "stops/delete(number): takes the stop of that number away";
  local found;
  found := select(proc(s) s[1] = number end proc, `stops/register`());
  if found = [] then error "there is no stop %1", number end if;
  `stops/remove`(found[1]);
  `stops/keep`(proc(s) s[1] <> number end proc)
end proc:

`stops/clear` := proc()
  description "stops/clear(): takes all stops away";
  global `debugger/memory`;
  map(`stops/remove`, `stops/register`());
  debugopts('watchtable' = [], 'errortable' = []);
  `debugger/memory`["stops"] := [];
  `debugger/memory`["number"] := 0;
  NULL
end proc:
