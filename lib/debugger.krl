# The debugger's dialogue. The kernel calls `debugger` where a program stops: docs/debugger.md.

debugger := proc()
  description "debugger(value, ..., [DEBUGINFO, name, statement, kind]): the dialogue where a program has stopped; the kernel calls it";
  local level, report, info, place, line, answer, waiting;
  global `debugger/memory`;
  level := kernelopts('level') - 21;
  report := [args];
  place := `debugger/topplace`;
  if nargs > 0 and type(args[-1], list) and nops(args[-1]) = 4 and args[-1][1] = 'DEBUGINFO' then
    info := args[-1];
    report := [args[1..-2]];
    place := [info[2], info[3], level]
  end if;
  if not type(`debugger/memory`, table) then `debugger/forget`() end if;
  # The dialogues that wait for a command, by level and chosen call: one of them may have led to this stop.
  waiting := select(proc(w) w[1] <= level end proc, `debugger/memory`["waits"]);
  if waiting <> [] and waiting[-1][1] = level then
    `debugger/memory`["call"] := waiting[-1][2];
    `debugger/memory`["waits"] := waiting[1..-2];
    `debugger/showvalue`(report)
  else
    `debugger/memory`["waits"] := waiting;
    `debugger/memory`["call"] := 0;
    `debugger/memory`["listed"] := 0;
    `debugger/showstop`(report, place)
  end if;
  do
    line := [INTERFACE_DEBUG_READLINE(0)];
    answer := `debugger/obey`(line, place);
    if answer = 'GOON' then return NULL end if;
    if answer <> 'STAY' then
      `debugger/memory`["waits"] := [op(`debugger/memory`["waits"]), [level, `debugger/memory`["call"]]];
      return answer
    end if
  end do
end proc:
`debugger/topplace` := ["", 0, 0]:

`debugger/forget` := proc()
  description "debugger/forget(): the dialogue remembers nothing of earlier ones";
  global `debugger/memory`;
  `debugger/memory` := table(["waits" = [], "call" = 0, "last" = "", "listed" = 0, "stops" = [], "number" = 0]);
  NULL
end proc:

`debugger/say` := proc()
  description "debugger/say(text, ...): writes the texts and ends the line";
  INTERFACE_CHAR(cat("", args, "\n"));
  NULL
end proc:

`debugger/whole` := proc(x)
  description "debugger/whole(x): x as text that reads back";
  `kernel/native`("debugger/text", x)
end proc:
`debugger/text` := proc()
  description "debugger/text(x, ...): how the values print, cut where they are long";
  local text;
  text := `kernel/native`("debugger/text", args);
  `if`(length(text) > 72, cat(substring(text, 1..69), "..."), text)
end proc:

# ---- what is shown

`debugger/showstop` := proc(report, place)
  description "debugger/showstop(report, place): why and where the program has stopped";
  local item;
  for item in report do
    if type(item, list) and nops(item) > 0 and item[1] = 'DEBUGWATCH' and nops(item) >= 2 then
      `debugger/say`(`kernel/native`("debugger/assignment", item))
    elif type(item, list) and nops(item) > 1 and item[1] = 'DEBUGERROR' then
      # A program that a signal has stopped may have no error.
      if debugopts('lastexception') <> `(none)` then INTERFACE_EXCEPT(debugopts('lastexception')) end if
    else
      INTERFACE_RESULT(item)
    end if
  end do;
  `debugger/showplace`(place)
end proc:

`debugger/showplace` := proc(place)
  description "debugger/showplace(place): the procedure and the statement before which the program stands";
  if place[2] <> 0 then
    INTERFACE_CHAR(cat("", convert(place[1], string), ":\n", `debugger/marked`(debugopts('procdump' = place[1 .. 2]))))
  end if;
  NULL
end proc:
`debugger/marked` := proc(text)
  description "debugger/marked(text): the text of statements, with a line end";
  `if`(endstext("\n", text), text, cat(text, "\n"))
end proc:

`debugger/showvalue` := proc(report)
  description "debugger/showvalue(report): the value of a command, or the error that it has raised";
  if nops(report) = 1 and type(report[1], list) and nops(report[1]) > 0 and report[1][1] = 'DEBUGVALUE' then
    if nops(report[1]) > 1 then INTERFACE_RESULT(op(2..-1, report[1])) end if
  else
    # An error of the text itself has no procedure.
    INTERFACE_EXCEPT(`if`(report[1] = '`debugger/value`', 0, report[1]), op(2..-1, report))
  end if;
  NULL
end proc:

# ---- commands

`debugger/commands` := [
  # name        short      procedure              arguments, what it does
  ["next",     "n",       `debugger/next`,     "",                    "run to the next statement, over calls"],
  ["step",     "s",       `debugger/step`,     "",                    "run to the very next statement, into calls"],
  ["finish",   "fin",     `debugger/finish`,   "",                    "run until this procedure has returned"],
  ["continue", "c",       `debugger/continue`, "",                    "run to the next stop"],
  ["where",    "w",       `debugger/where`,    "",                    "the calls under way, the innermost first; also: backtrace, bt"],
  ["up",       "up",      `debugger/up`,       "[n]",                 "look at the variables of the caller"],
  ["down",     "down",    `debugger/down`,     "[n]",                 "back toward the procedure that has stopped"],
  ["list",     "l",       `debugger/list`,     "[procedure] [n [m]]", "statements with their numbers"],
  ["print",    "p",       `debugger/print`,    "expression",          "its value; also for variables with the name of a command"],
  ["info",     "i",       `debugger/info`,     "[locals|args|stops]", "variables of this call, or what is set"],
  ["break",    "b",       `debugger/break`,    "[procedure] [n] [if condition]", "stop before statement n"],
  ["watch",    "wa",      `debugger/watch`,    "name",                "stop when a value is assigned to it"],
  ["catch",    "cat",     `debugger/catch`,    "[trapped] [\"message\"]", "stop at errors: uncaught ones, or those that are caught"],
  ["delete",   "del",     `debugger/delete`,   "number|all",          "take away a stop by its number in `info stops`"],
  ["quit",     "q",       `debugger/quit`,     "",                    "end the program"],
  ["help",     "h",       `debugger/help`,     "",                    "this list"]
]:
`debugger/synonyms` := [["backtrace", "where"], ["bt", "where"], ["cont", "continue"], ["exit", "quit"], ["stop", "quit"], ["?", "help"]]:

`debugger/obey` := proc(line, place)
  description "debugger/obey([line], place): runs a line of the dialogue; GOON when the program is to go on, STAY for another line, else a command for the kernel";
  local text, word, rest, command;
  global `debugger/memory`;
  if not type(line, [string]) then return `debugger/quit`("", place) end if;
  text := trimtext(line[1], " \t\r\n");
  if text = "" then text := `debugger/memory`["last"] else `debugger/memory`["last"] := text end if;
  if text = "" then return 'STAY' end if;
  word, rest := op(`debugger/split`(text));
  command := `debugger/command`(word, rest);
  if command = 'NONE' then return `debugger/value/call`(text) end if;
  try
    return command(rest, place)
  catch:
    INTERFACE_EXCEPT(0, op(2..-1, [lastexception]))
  end try;
  'STAY'
end proc:

`debugger/split` := proc(text)
  description "debugger/split(text): the first word of a line, and the rest without blanks around it";
  local i, n;
  n := length(text);
  for i to n while not member(substring(text, i..i), {" ", "\t"}) do NULL end do;
  [substring(text, 1..i - 1), `if`(i > n, "", trimtext(substring(text, i..n), " \t"))]
end proc:

`debugger/command` := proc(word, rest)
  description "debugger/command(word, rest): the procedure of a command, or NONE when the line is an expression";
  local row, name, found;
  name := cat("", word);
  for row in `debugger/synonyms` do if row[1] = name then name := row[2] end if end do;
  # `n := 1`, `s + 2` are expressions, whatever their first word.
  if rest <> "" and searchtext(substring(rest, 1..1), ":+-*/^=<>,;.") > 0 then return 'NONE' end if;
  for row in `debugger/commands` do
    if name = row[1] or name = row[2] then
      if row[4] = "" and rest <> "" then return 'NONE' end if;
      return row[3]
    end if
  end do;
  found := select(proc(row) length(name) > 1 and beginstext(name, row[1]) end proc, `debugger/commands`);
  `if`(nops(found) = 1, found[1][3], 'NONE')
end proc:

`debugger/value` := proc(k, text)
  description "debugger/value(k, text): [DEBUGVALUE, value of the text among the variables of call k]";
  ['DEBUGVALUE', `kernel/native`("debugger/value", k, text)]
end proc:
`debugger/value/call` := proc(text)
  description "debugger/value/call(text): the command that has a text evaluated in the chosen call";
  '`debugger/value`'(`debugger/memory`["call"], text)
end proc:

# ---- going on

`debugger/goon` := proc(level)
  description "debugger/goon(level): the program goes on to a statement that is no deeper";
  debugopts('steplevel' = level);
  'GOON'
end proc:
`debugger/next` := proc(rest, place)
  # Branches and rounds are some four levels deeper than their statement, calls twenty.
  `debugger/goon`(place[3] + 10)
end proc:
`debugger/step` := proc(rest, place) `debugger/goon`(999999999) end proc:
`debugger/continue` := proc(rest, place) `debugger/goon`(0) end proc:
`debugger/finish` := proc(rest, place)
  if place[2] = 0 then return `debugger/goon`(0) end if;
  # A statement within another is up to five levels deeper, and a caller twenty less deep.
  `debugger/goon`(place[3] - 5*`kernel/native`("debugger/nesting", place[1], place[2]) - 1)
end proc:
`debugger/quit` := proc(rest, place)
  global `debugger/memory`;
  debugopts('steplevel' = 0);
  `debugger/memory`["waits"] := [];
  debugopts('interrupt')
end proc:

# ---- looking around

`debugger/calls` := proc() `kernel/native`("debugger/calls") end proc:

`debugger/callline` := proc(k, call)
  local name;
  name := `if`(call[1] = "", "top level", cat(call[1], "(", `debugger/text`(op(call[4])), ")"));
  cat(`if`(k = `debugger/memory`["call"], "* ", "  "), padtext(convert(k, string), 3), name,
      `if`(call[2] = 0, "", cat(", statement ", convert(call[2], string))), `if`(call[3] = "", "", cat(": ", call[3])))
end proc:
`debugger/where` := proc(rest, place)
  local calls, k;
  calls := `debugger/calls`();
  for k to nops(calls) do `debugger/say`(`debugger/callline`(k - 1, calls[k])) end do;
  'STAY'
end proc:
`debugger/move` := proc(rest, direction)
  local calls, k;
  global `debugger/memory`;
  calls := `debugger/calls`();
  k := `debugger/memory`["call"] + direction*`if`(rest = "", 1, `debugger/number`(rest));
  if k < 0 then error "this is the procedure that has stopped" end if;
  if k >= nops(calls) then error "this is the outermost call" end if;
  `debugger/memory`["call"] := k;
  `debugger/say`(`debugger/callline`(k, calls[k + 1]));
  'STAY'
end proc:
`debugger/up` := proc(rest, place) `debugger/move`(rest, 1) end proc:
`debugger/down` := proc(rest, place) `debugger/move`(rest, -1) end proc:

`debugger/number` := proc(text)
  local n;
  n := traperror(parse(text));
  if not type(n, integer) then error "number expected, but received %1", text end if;
  n
end proc:

`debugger/print` := proc(rest, place)
  if rest = "" then error "print expects an expression" end if;
  `debugger/value/call`(rest)
end proc:

`debugger/list` := proc(rest, place)
  local words, name, first, last, count;
  global `debugger/memory`;
  words := splittext(rest);
  name := place[1];
  if words <> [] and not type(traperror(parse(words[1])), integer) then
    name := `debugger/procedure`(words[1]);
    words := words[2..-1]
  elif place[2] = 0 then error "list expects a procedure, since none has stopped"
  end if;
  count := debugopts('statcount' = name);
  if words <> [] then
    first := `debugger/number`(words[1]);
    last := `if`(nops(words) > 1, `debugger/number`(words[2]), first + 9)
  elif name <> place[1] or count <= 20 then
    INTERFACE_CHAR(debugopts('procdump' = name));
    return 'STAY'
  elif `debugger/memory`["listed"] > 0 then
    first := `debugger/memory`["listed"] + 1; last := first + 9
  else
    first := max(place[2] - 5, 1); last := first + 10
  end if;
  if first > count then error "%1 has %2 statements", name, count end if;
  if first < 1 then first := 1 end if;
  if name = place[1] then `debugger/memory`["listed"] := last end if;
  INTERFACE_CHAR(debugopts('procdump' = [name, first..max(last, first)]));
  'STAY'
end proc:

`debugger/variables` := proc(part)
  local all, variable, count, k;
  all := `kernel/native`("debugger/variables", `debugger/memory`["call"]);
  if all = [] then `debugger/say`("no variables here") end if;
  for variable in all do
    `debugger/say`(variable[1], `if`(variable[2] = [], " has no value", cat(" = ", `debugger/text`(op(variable[2])))))
  end do;
  NULL
end proc:

`debugger/info` := proc(rest, place)
  if rest = "" or member(rest, {"locals", "args", "variables"}) then `debugger/variables`(rest)
  elif member(rest, {"stops", "break", "breaks", "breakpoints", "watch", "catch"}) then `stops/show`()
  else error "info expects locals, args or stops, but received %1", rest
  end if;
  'STAY'
end proc:

`debugger/help` := proc(rest, place)
  local row;
  for row in `debugger/commands` do
    `debugger/say`("  ", padtext(cat(row[1], `if`(row[1] = row[2], "", cat(", ", row[2]))), 15), padtext(row[4], 32), row[5])
  end do;
  `debugger/say`("  Anything else is evaluated here: an expression, or an assignment to a variable.");
  `debugger/say`("  An empty line repeats the last command.");
  'STAY'
end proc:

# ---- setting stops

`debugger/procedure` := proc(text)
  local name;
  name := traperror(parse(text));
  if not type(name, {symbol, indexed, `::`}) and not type(name, name) then error "procedure name expected, but received %1", text end if;
  name
end proc:

`debugger/break` := proc(rest, place)
  local at, condition, words, name, n;
  at := searchtext(" if ", cat(" ", rest));
  condition := NULL;
  words := rest;
  if at > 0 then
    condition := parse(substring(rest, at + 3..length(rest)));
    words := substring(cat(" ", rest), 1..at)
  end if;
  words := splittext(words);
  name := place[1];
  n := place[2];
  if words <> [] and not type(traperror(parse(words[1])), integer) then
    name := `debugger/procedure`(words[1]);
    words := words[2..-1];
    n := 1
  end if;
  if words <> [] then n := `debugger/number`(words[1]) end if;
  if n = 0 then error "break expects a procedure, since none has stopped" end if;
  `debugger/say`(`stops/text`(`stops/break`(name, n, condition)));
  'STAY'
end proc:

`debugger/watch` := proc(rest, place)
  local name, variables;
  if rest = "" then error "watch expects a name" end if;
  name := parse(rest);
  if not type(name, symbol) then error "watch expects a name, but received %1", rest end if;
  variables := `kernel/native`("debugger/variables", 0);
  if member(rest, map(proc(v) v[1] end proc, variables)) and place[2] <> 0 then name := [place[1], name] end if;
  `debugger/say`(`stops/text`(`stops/watch`(name)));
  'STAY'
end proc:

`debugger/catch` := proc(rest, place)
  local text, trapped, which;
  text := rest;
  trapped := beginstext("trapped", text);
  if trapped then text := trimtext(substring(text, 8..length(text))) end if;
  if text = "" then which := `if`(trapped, 'traperror', 'all')
  else
    which := parse(text);
    if not type(which, string) then error "catch expects a message in double quotes, but received %1", text end if;
    if trapped then which := 'traperror'[which] end if
  end if;
  `debugger/say`(`stops/text`(`stops/error`(which)));
  'STAY'
end proc:

`debugger/delete` := proc(rest, place)
  if rest = "" then error "delete expects the number of a stop, or all" end if;
  if rest = "all" then `stops/clear`() else `stops/delete`(`debugger/number`(rest)) end if;
  'STAY'
end proc:
