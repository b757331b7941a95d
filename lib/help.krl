# Help: what `?name` shows at a terminal. The pages stand in docs/library/, and in the directory `help` beside the archive;
# a procedure without a page shows its description, whose first words are the ways to call.

help := proc(topic::{string, symbol}, near::string)
  description "help(\"name\"): shows the page about a name: how it is called, what it does, examples";
  local text, at;
  text := `help/page`(cat("", topic));
  if text = "" then text := `help/description`(cat(``, topic)) end if;
  # A call stands for the name that is called.
  at := searchtext("(", cat("", topic));
  if text = "" and at > 1 then text := `help/page`(substring(cat("", topic), 1..at - 1)) end if;
  if text = "" and nargs > 1 and near <> "" then error "no help is known for `%1`; names like it: %2", topic, near end if;
  if text = "" then error "no help is known for `%1`", topic end if;
  INTERFACE_CHAR(text);
  NULL
end proc:

`help/page` := proc(name)
  description "help/page(name): the text of the page about a name, or an empty text";
  local directory, page;
  for directory in [libname] do
    page := `kernel/native`("helppage", cat("", directory, "/help"), name);
    if page <> FAIL then return page end if
  end do;
  ""
end proc:

`help/description` := proc(name)
  description "help/description(name): the description of a procedure in lines of a screen, or an empty text";
  local value, text, at, line, word, all;
  value := [traperror(eval(name))];
  if not type(value, [procedure]) then return `if`(value = [name], "", cat(name, ": a name that has a value\n")) end if;
  if [op(5, eval(value[1]))] = [] then return cat("", name, "(...): a procedure without a description\n") end if;
  text := op(5, eval(value[1]));
  at := searchtext("): ", text);
  all := `if`(at > 0, cat("  ", substring(text, 1..at), "\n"), "");
  line := "  ";
  for word in splittext(`if`(at > 0, substring(text, at + 3..length(text)), text)) do
    if length(line) + length(word) > 78 then
      all := cat(all, line, "\n");
      line := "  "
    end if;
    line := cat(line, `if`(line = "  ", "", " "), word)
  end do;
  cat(all, line, "\n")
end proc:
