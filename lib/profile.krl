# Where the time of a program goes: procedures whose statements are counted.

profile := proc()
  description "profile(f, ...): from now on the statements of the procedures are counted and timed";
  local f;
  for f in [args] do
    `profile/clear`(f);
    debugopts('traceproc' = [f, 'true'])
  end do;
  NULL
end proc:

unprofile := proc()
  description "unprofile(f, ...), unprofile(): the procedures run as before; without arguments, all";
  local f;
  for f in `if`(nargs = 0, `profile/all`(), [args]) do debugopts('traceproc' = [f, 'false']) end do;
  NULL
end proc:

showprofile := proc()
  description "showprofile(f, ...), showprofile(): shows calls, seconds and words of the procedures, and of their statements, the most expensive first";
  local all, procedures, rows, row, total, f;
  procedures := `if`(nargs = 0, `profile/all`(), [args]);
  if procedures = [] then error "no procedure is profiled" end if;
  rows := [seq([f, `profile/row`(f, 1)], f = procedures)];
  rows := sort(rows, proc(a, b) `profile/before`(a[2], b[2]) end proc);
  total := add(row[2][2], row = rows);
  `profile/head`("procedure");
  for row in rows do `profile/line`(row[2], total, convert(row[1], string)) end do;
  for row in rows do `profile/statements`(row[1]) end do;
  NULL
end proc:

`profile/vector` := proc(f)
  description "profile/vector(f): the name of the array of counts of a procedure";
  cat(`TRACE/`, convert(f, string))
end proc:
`profile/clear` := proc(f)
  description "profile/clear(f): the counts of a procedure begin anew";
  local vector;
  vector := `profile/vector`(f);
  unassign(vector)
end proc:

`profile/all` := proc()
  description "profile/all(): the procedures that have counts";
  local name;
  [seq(parse(substring(cat("", name), 7..length(name))),
       name = sort(select(proc(n) beginstext("TRACE/", n) end proc, [anames('rtable')]), proc(a, b) lexorder(a, b) end proc))]
end proc:

`profile/row` := proc(f, k)
  description "profile/row(f, k): calls, milliseconds and words of row k of the counts";
  local vector;
  vector := eval(`profile/vector`(f));
  if not type(vector, rtable) then error "%1 is not profiled", f end if;
  [vector[k, 1], vector[k, 2], vector[k, 3]]
end proc:

`profile/before` := proc(a, b)
  description "profile/before(a, b): whether the costs a come before the costs b";
  evalb(a[2] > b[2] or a[2] = b[2] and (a[3] > b[3] or a[3] = b[3] and a[1] >= b[1]))
end proc:

`profile/head` := proc(what)
  description "profile/head(what): the heads of the columns";
  `debugger/say`(padtext("calls", -10), padtext("seconds", -10), padtext("words", -12), padtext("share", -8), "  ", what)
end proc:

`profile/decimal` := proc(n, digits)
  description "profile/decimal(n, digits): n / 10^digits as a decimal number";
  local text;
  text := padtext(convert(n, string), -digits - 1, "0");
  cat(substring(text, 1..length(text) - digits), ".", substring(text, length(text) - digits + 1..length(text)))
end proc:

`profile/line` := proc(costs, total, what)
  description "profile/line(costs, total, what): a line of the table";
  local share;
  share := `if`(total = 0, 0, iquo(1000*costs[2] + iquo(total, 2), total));
  `debugger/say`(padtext(convert(costs[1], string), -10), padtext(`profile/decimal`(costs[2], 3), -10),
                 padtext(convert(costs[3], string), -12), padtext(cat(`profile/decimal`(share, 1), "%"), -8), "  ", what)
end proc:

`profile/statements` := proc(f)
  description "profile/statements(f): the statements of a procedure, the most expensive first";
  local count, rows, row, total, text, k;
  count := debugopts('statcount' = f);
  rows := [seq([k, `profile/row`(f, k + 1)], k = 1..count)];
  rows := sort(rows, proc(a, b) `profile/before`(a[2], b[2]) end proc);
  total := `profile/row`(f, 1)[2];
  `debugger/say`("");
  `profile/head`(cat("statement of ", convert(f, string)));
  for row in rows do
    text := splittext(debugopts('procdump' = [f, row[1]]), "\n");
    text := text[1];
    `profile/line`(row[2], total, cat(padtext(convert(row[1], string), -4), "  ", `profile/text`(text)))
  end do;
  NULL
end proc:
`profile/text` := proc(text)
  description "profile/text(text): the text of a statement without the numbers in front of it";
  local at, prefix;
  at := searchtext("|", text);
  prefix := 7;
  if at > 0 then prefix := at + searchtext("|", substring(text, at + 1..length(text))) end if;
  trimtext(substring(text, prefix + 1..length(text)), " ;")
end proc:
