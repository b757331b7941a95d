# Help: what `?name` shows at a terminal. The first words of a description are the ways to call.

help := proc(topic::{string, symbol}, near::string)
  description "help(\"name\"): shows how a built-in or a procedure of the library is called, and what it does";
  local name, text;
  name := cat("", topic);
  text := `help/builtin`(name);
  if text = "" then text := `help/description`(cat(``, topic)) end if;
  if text = "" and nargs > 1 and near <> "" then error "no help is known for `%1`; names like it: %2", topic, near end if;
  if text = "" then error "no help is known for `%1`", topic end if;
  `help/write`(text);
  NULL
end proc:

`help/write` := proc(text)
  description "help/write(text): writes the ways to call on a line of their own, and what stands behind them in lines of a screen";
  local at, word, line;
  at := searchtext("): ", text);
  if at > 0 then INTERFACE_CHAR(cat("  ", substring(text, 1..at), "\n")) end if;
  line := "  ";
  for word in splittext(`if`(at > 0, substring(text, at + 3..length(text)), text)) do
    if length(line) + length(word) > 78 then
      INTERFACE_CHAR(cat(line, "\n"));
      line := "  "
    end if;
    line := cat(line, `if`(line = "  ", "", " "), word)
  end do;
  INTERFACE_CHAR(cat(line, "\n"));
  NULL
end proc:

`help/builtin` := proc(name)
  description "help/builtin(name): the ways to call a built-in and what it does, or an empty text";
  local row;
  for row in `help/builtins` do if member(name, row[1]) then return cat(row[2], ": ", row[3]) end if end do;
  ""
end proc:

`help/description` := proc(name)
  description "help/description(name): the description of a procedure, or an empty text";
  local value;
  value := traperror(eval(name));
  if type(eval(value), procedure) and [op(5, eval(value))] <> [] then return op(5, eval(value)) end if;
  if type(eval(value), procedure) then cat("", name, "(...): a procedure without a description")
  elif assigned(name) and eval(value) <> name then cat("", name, ": a name that has a value")
  else ""
  end if
end proc:

`help/builtins` := [
  # names, ways to call, what it does
  [["ASSERT"], "ASSERT(c, message, ...)", "raises an error unless the condition holds, at assertion level 1 and 2"],
  [["Array"], "Array(ranges, initial values, options)", "an array, as `rtable` makes it"],
  [["ArrayOptions"], "ArrayOptions(a)", "the options with which an array could be made again"],
  [["CopySign"], "CopySign(x, y)", "x with the sign of y"],
  [["DEBUG"], "DEBUG(value, ...)", "the debugger stops at the next statement"],
  [["Default0"], "Default0(event, ...)", "what a numeric event gives by default"],
  [["DefaultOverflow"], "DefaultOverflow(...)", "what an overflow gives by default"],
  [["DefaultUnderflow"], "DefaultUnderflow(...)", "what an underflow gives by default"],
  [["ERROR"], "ERROR(message, parameter, ...)", "raises an error, as the statement `error`"],
  [["EqualEntries"], "EqualEntries(a, b)", "whether two arrays have equal elements"],
  [["EqualStructure"], "EqualStructure(a, b)", "whether two arrays have the same form"],
  [["Im"], "Im(z)", "the imaginary part of a number"],
  [["MPFloat"], "MPFloat(name, ...)", "calls the library of floats outside"],
  [["MorrBrilCull"], "MorrBrilCull(...)", "a step of the factorization of polynomials"],
  [["NextAfter"], "NextAfter(x, y)", "the float next to x in the direction of y"],
  [["NumericClass"], "NumericClass(x)", "the class of a number: zero, finite, infinite, undefined, with its sign"],
  [["NumericEvent"], "NumericEvent(event, ...)", "raises a numeric event"],
  [["NumericEventHandler"], "NumericEventHandler(event = procedure, ...)", "sets and asks for the handlers of numeric events"],
  [["NumericStatus"], "NumericStatus(event, ...)", "whether numeric events have occurred"],
  [["OrderedNE"], "OrderedNE(x, y)", "whether numbers are ordered and not equal"],
  [["RETURN"], "RETURN(value, ...)", "returns from a procedure, as the statement `return`"],
  [["Re"], "Re(z)", "the real part of a number"],
  [["SFloatExponent"], "SFloatExponent(x)", "the exponent of a float"],
  [["SFloatMantissa"], "SFloatMantissa(x)", "the mantissa of a float, an integer"],
  [["Scale10"], "Scale10(x, n)", "x times 10^n"],
  [["Scale2"], "Scale2(x, n)", "x times 2^n"],
  [["SearchText"], "SearchText(pattern, text, range)", "where a pattern stands in a text, letters as they are"],
  [["TRACE"], "TRACE(vector, k, statement)", "a statement whose cost is counted"],
  [["Unordered"], "Unordered(x, y)", "whether one of two numbers is undefined"],
  [["abs"], "abs(x)", "the absolute value"],
  [["add"], "add(f, i = a..b), add(f, i = list)", "the sum of the values of f"],
  [["addressof"], "addressof(x)", "the number of an object"],
  [["alias"], "alias(name = expression, ...)", "names under which expressions are read and shown"],
  [["anames"], "anames(), anames(type)", "the names that have values, or values of a type"],
  [["appendto"], "appendto(\"file\")", "output goes to the end of a file"],
  [["array"], "array(ranges, values)", "an array of the older kind, a table with bounds"],
  [["assemble"], "assemble(...)", "the object with these words"],
  [["assigned"], "assigned(name)", "whether a name has a value"],
  [["attributes"], "attributes(x)", "the attributes of an object"],
  [["bind"], "bind(name = value, ...)", "what names mean in the text that follows"],
  [["call_external"], "call_external(...)", "calls a function of a shared object"],
  [["callback"], "callback(...)", "evaluates an expression on behalf of a front end"],
  [["cat"], "cat(a, b, ...)", "names and strings joined, of the kind of the first"],
  [["coeff"], "coeff(p, x), coeff(p, x, n)", "a coefficient of a polynomial"],
  [["coeffs"], "coeffs(p, x)", "all coefficients of a polynomial"],
  [["conjugate"], "conjugate(z)", "the complex conjugate"],
  [["convert"], "convert(x, form, ...)", "x in another form"],
  [["debugopts"], "debugopts(option, option = value)", "what the debugger knows, sets and shows"],
  [["define_external"], "define_external(...)", "makes a procedure of a function of a shared object"],
  [["degree"], "degree(p, x)", "the degree of a polynomial"],
  [["denom"], "denom(x)", "the denominator"],
  [["diff"], "diff(f, x, ...)", "the derivative"],
  [["disassemble"], "disassemble(n)", "the words of an object"],
  [["divide"], "divide(p, q, 'r')", "whether a polynomial divides another; the quotient is assigned"],
  [["done", "quit", "stop"], "done(), quit(), stop()", "ends the session"],
  [["entries"], "entries(t)", "the entries of a table, each as a list"],
  [["eval"], "eval(x), eval(x, a = b)", "the value of an expression, also at a point"],
  [["evalb"], "evalb(x)", "the truth of a relation"],
  [["evalf"], "evalf(x), evalf[n](x)", "the numeric value, to n digits"],
  [["evalgf1"], "evalgf1(...)", "arithmetic in algebraic extensions of integers modulo a prime"],
  [["evalhf"], "evalhf(x)", "the value in hardware floats"],
  [["evaln"], "evaln(x)", "the name that x is"],
  [["expand"], "expand(x)", "the expression multiplied out"],
  [["exports"], "exports(m)", "the names that a module exports"],
  [["frem"], "frem(x, y)", "the remainder of floats, toward the nearest multiple"],
  [["frontend"], "frontend(f, [a, ...])", "calls f with parts it does not know replaced by names"],
  [["gc"], "gc()", "collects what nothing refers to any more"],
  [["genpoly"], "genpoly(n, b, x)", "the polynomial whose value at b is n"],
  [["goto"], "goto(name)", "goes on at the statement that is the name"],
  [["has"], "has(x, y)", "whether y is part of x"],
  [["hastype"], "hastype(x, t)", "whether a part of x has the type"],
  [["hfarray"], "hfarray(...)", "an array of hardware floats"],
  [["icontent"], "icontent(p)", "the greatest common divisor of the coefficients"],
  [["if"], "if(c, a, b)", "a if the condition holds, else b; the name is written in backquotes"],
  [["igcd"], "igcd(a, b, ...)", "the greatest common divisor of integers"],
  [["ilog10"], "ilog10(x)", "the exponent of the leading decimal digit"],
  [["ilog2"], "ilog2(x)", "the exponent of the leading binary digit"],
  [["indets"], "indets(x), indets(x, type)", "the indeterminates of an expression"],
  [["indices"], "indices(t)", "the indices of a table, each as a list"],
  [["iolib"], "iolib(n, ...)", "the operations on files, by number"],
  [["iquo"], "iquo(a, b, 'r')", "the integer quotient; the remainder is assigned"],
  [["irem"], "irem(a, b, 'q')", "the integer remainder; the quotient is assigned"],
  [["isqrt"], "isqrt(n)", "the integer nearest to the square root"],
  [["kernelopts"], "kernelopts(name), kernelopts(name = value)", "what the kernel counts and how it is set"],
  [["lcoeff"], "lcoeff(p, x)", "the leading coefficient"],
  [["ldegree"], "ldegree(p, x)", "the lowest degree"],
  [["length"], "length(x)", "how many digits, characters or words"],
  [["lexorder"], "lexorder(a, b)", "whether names stand in the order of the alphabet"],
  [["lhs"], "lhs(e)", "the left side of an equation, relation or range"],
  [["lprint"], "lprint(x, ...)", "shows values on one line, as they are typed"],
  [["macro"], "macro(name = expression, ...)", "names that stand for expressions while statements are read"],
  [["map"], "map(f, x, ...)", "f of each operand"],
  [["map2"], "map2(f, a, x, ...)", "f of a and each operand"],
  [["max"], "max(a, b, ...)", "the largest"],
  [["maxnorm"], "maxnorm(p)", "the largest absolute value of the coefficients"],
  [["member"], "member(x, list, 'k')", "whether x is a member; its place is assigned"],
  [["min"], "min(a, b, ...)", "the least"],
  [["modp"], "modp(x, n)", "x modulo n, from 0 to n - 1"],
  [["modp1"], "modp1(operation, p)", "dense polynomials modulo a prime"],
  [["modp2"], "modp2(operation, p)", "dense polynomials in two indeterminates modulo a prime"],
  [["mods"], "mods(x, n)", "x modulo n, about 0"],
  [["mul"], "mul(f, i = a..b), mul(f, i = list)", "the product of the values of f"],
  [["mvMultiply"], "mvMultiply(...)", "products of polynomials in several indeterminates"],
  [["negate"], "negate(x)", "-x"],
  [["nops"], "nops(x)", "how many operands"],
  [["normal"], "normal(x)", "the rational function in lowest terms"],
  [["numboccur"], "numboccur(x, y)", "how often y occurs in x"],
  [["numer"], "numer(x)", "the numerator"],
  [["op"], "op(x), op(i, x), op(i..j, x)", "the operands"],
  [["order"], "order(s)", "the order of a series"],
  [["parse"], "parse(\"text\", statement)", "the expression of a text, or the value of its statement"],
  [["pointto"], "pointto(n)", "the object of a number"],
  [["print"], "print(x, ...)", "shows values"],
  [["readlib"], "readlib(name)", "loads a procedure of the library"],
  [["remove"], "remove(test, x, ...)", "x without the operands that pass the test"],
  [["rhs"], "rhs(e)", "the right side of an equation, relation or range"],
  [["rtable"], "rtable(ranges, initial values, options)", "an array"],
  [["rtableInfo"], "rtableInfo(a)", "how an array is stored"],
  [["rtable_indfns"], "rtable_indfns(a)", "the indexing functions of an array"],
  [["rtable_is_zero"], "rtable_is_zero(a)", "whether all elements are 0"],
  [["rtable_normalize_index"], "rtable_normalize_index(a, ...)", "an index of an array in full"],
  [["rtable_num_dims"], "rtable_num_dims(a)", "the number of dimensions"],
  [["rtable_num_elems"], "rtable_num_elems(a)", "the number of elements"],
  [["rtable_options"], "rtable_options(a, name, ...)", "the options of an array"],
  [["rtable_scanblock"], "rtable_scanblock(a, ranges, ...)", "a block of an array looked at"],
  [["rtable_sort_indices"], "rtable_sort_indices(a)", "the entries of a sparse array in order"],
  [["searchtext"], "searchtext(pattern, text, range)", "where a pattern stands in a text, whatever the size of letters"],
  [["select"], "select(test, x, ...)", "x with the operands that pass the test"],
  [["selectremove"], "selectremove(test, x, ...)", "both"],
  [["seq"], "seq(f, i = a..b), seq(f, i = list)", "the sequence of the values of f"],
  [["series"], "series(f, x = a, n)", "the series about a point"],
  [["setattribute"], "setattribute(x, a, ...)", "the object with attributes"],
  [["sign"], "sign(p)", "the sign of the leading coefficient"],
  [["sort"], "sort(list, test)", "the list in order"],
  [["ssystem"], "ssystem(\"command\")", "runs a command of the system and gives its output"],
  [["streamcall"], "streamcall(stream(...))", "calls a stream of the front end"],
  [["subs"], "subs(a = b, ..., x)", "x with parts replaced"],
  [["subsop"], "subsop(i = b, ..., x)", "x with operands replaced"],
  [["substring"], "substring(text, i..j)", "a part of a text"],
  [["system"], "system(\"command\")", "runs a command of the system"],
  [["table"], "table([i = x, ...])", "a table"],
  [["taylor"], "taylor(f, x = a, n)", "the series of a function without poles"],
  [["tcoeff"], "tcoeff(p, x)", "the trailing coefficient"],
  [["time"], "time(), time(x)", "processor time in seconds, also of an evaluation"],
  [["timelimit"], "timelimit(t, x)", "x, unless it takes longer than t seconds"],
  [["traperror"], "traperror(x)", "x, or the text of its error"],
  [["trunc"], "trunc(x)", "the integer part, toward 0"],
  [["type"], "type(x, t)", "whether x is of the type"],
  [["typematch"], "typematch(x, t, 's')", "the same with names for parts of the type"],
  [["unames"], "unames()", "the names without values"],
  [["unbind"], "unbind(name, ...)", "takes bindings back"],
  [["userinfo"], "userinfo(level, name, x, ...)", "shows values when `infolevel` asks for it"],
  [["writeto"], "writeto(\"file\")", "output goes to a file"],
  [["inner"], "inner(...)", "a function that stands for others until they are known"],
  [["and"], "a and b", "whether both hold"],
  [["or"], "a or b", "whether one of them holds"],
  [["not"], "not a", "whether it doesn't hold"],
  [["union"], "s union t", "the members of both sets"],
  [["intersect"], "s intersect t", "the common members of sets"],
  [["minus"], "s minus t", "the members of s that t lacks"]
]:
