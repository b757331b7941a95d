# Mathematics as OpenMath: expressions to and from trees of elements, which the formats %M write as XML and read.
#
# A tree is a call: <OMA> is OM_OMA(...), and the symbol plus of arith1 is OM_OMS() with the attributes "cd" = "arith1",
# "name" = "plus". What no dictionary here has a symbol for is a variable of its name, applied to its operands.

openmath := proc(x)
  description "openmath(x): the expression as the text of an OpenMath object";
  sprintf("%2M", toopenmath(x))
end proc:

parseopenmath := proc(s::{string, symbol})
  description "parseopenmath(s): the expression that the text of an OpenMath object stands for";
  local text, last, tree;
  text := trimtext(s);
  # Instructions, comments and a document type before the object are passed over.
  do
    if beginstext("<?", text) then
      last := searchtext("?>", text) + 1;
      if last = 1 then error "no element in the text" end if
    elif beginstext("<!", text) then last := sscanf(text, "%M%n")[2]
    else break
    end if;
    text := trimtext(cat("", substring(text, last + 1..-1)))
  end do;
  tree := sscanf(text, "%2M");
  if tree = 0 or tree = [] then error "no element in the text" end if;
  fromopenmath(op(tree))
end proc:

readopenmath := proc(name::{string, symbol})
  description "readopenmath(name): the expression in a file with an OpenMath object";
  parseopenmath(readtext(name))
end proc:

writeopenmath := proc(name::{string, symbol}, x)
  description "writeopenmath(name, x): writes the expression as an OpenMath object into the file; the count of bytes";
  writetext(name, cat("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", openmath(x), "\n"))
end proc:

# ---- the dictionaries

# Functions that have one symbol: name here, dictionary, name there.
`openmath/functions` := proc()
  description "openmath/functions(): the list of the symbols for functions, each with the name of the function here";
  option remember;
  [['`+`', "arith1", "plus"], ['`*`', "arith1", "times"], ['`^`', "arith1", "power"], ['abs', "arith1", "abs"],
   ['igcd', "arith1", "gcd"], ['ilcm', "arith1", "lcm"], ['`-`', "arith1", "minus"],
   ['`=`', "relation1", "eq"], ['`<>`', "relation1", "neq"], ['`<`', "relation1", "lt"], ['`<=`', "relation1", "leq"],
   ['exp', "transc1", "exp"], ['ln', "transc1", "ln"], ['sin', "transc1", "sin"], ['cos', "transc1", "cos"],
   ['tan', "transc1", "tan"], ['sec', "transc1", "sec"], ['csc', "transc1", "csc"], ['cot', "transc1", "cot"],
   ['sinh', "transc1", "sinh"], ['cosh', "transc1", "cosh"], ['tanh', "transc1", "tanh"],
   ['sech', "transc1", "sech"], ['csch', "transc1", "csch"], ['coth', "transc1", "coth"],
   ['arcsin', "transc1", "arcsin"], ['arccos', "transc1", "arccos"], ['arctan', "transc1", "arctan"],
   ['arcsec', "transc1", "arcsec"], ['arccsc', "transc1", "arccsc"], ['arccot', "transc1", "arccot"],
   ['arcsinh', "transc1", "arcsinh"], ['arccosh', "transc1", "arccosh"], ['arctanh', "transc1", "arctanh"],
   ['`and`', "logic1", "and"], ['`or`', "logic1", "or"], ['`not`', "logic1", "not"], ['`xor`', "logic1", "xor"],
   ['`implies`', "logic1", "implies"],
   ['`union`', "set1", "union"], ['`intersect`', "set1", "intersect"], ['`minus`', "set1", "setdiff"],
   ['`in`', "set1", "in"], ['`subset`', "set1", "subset"],
   ['factorial', "integer1", "factorial"], ['iquo', "integer1", "quotient"], ['irem', "integer1", "remainder"],
   ['floor', "rounding1", "floor"], ['ceil', "rounding1", "ceiling"], ['trunc', "rounding1", "trunc"],
   ['round', "rounding1", "round"],
   ['Re', "complex1", "real"], ['Im', "complex1", "imaginary"], ['conjugate', "complex1", "conjugate"],
   ['argument', "complex1", "argument"], ['binomial', "combinat1", "binomial"]]
end proc:

`openmath/constants` := proc()
  description "openmath/constants(): the list of the symbols for constants, each with the constant here";
  option remember;
  [['Pi', "nums1", "pi"], ['infinity', "nums1", "infinity"], ['gamma', "nums1", "gamma"],
   ['true', "logic1", "true"], ['false', "logic1", "false"]]
end proc:

# Both as tables, by the name here, and by dictionary and name there.
`openmath/to` := proc()
  description "openmath/to(): the table of symbols by the names here";
  option remember;
  local t, row;
  t := table();
  for row in [op(`openmath/functions`()), op(`openmath/constants`())] do t[row[1]] := `openmath/symbol`(row[2], row[3]) end do;
  eval(t)
end proc:
`openmath/from` := proc()
  description "openmath/from(): the table of the names here by dictionary and name of the symbol";
  option remember;
  local t, row;
  t := table();
  for row in [op(`openmath/functions`()), op(`openmath/constants`())] do t[row[2], row[3]] := row[1] end do;
  eval(t)
end proc:

`openmath/symbol` := proc(cd, name)
  description "openmath/symbol(cd, name): the element of a symbol";
  setattribute('OM_OMS'(), "cd" = cd, "name" = name)
end proc:
`openmath/apply` := proc(cd, name)
  description "openmath/apply(cd, name, x, ...): the element of a symbol applied to elements";
  'OM_OMA'(`openmath/symbol`(cd, name), args[3..-1])
end proc:
`openmath/variable` := proc(name)
  description "openmath/variable(name): the element of a variable";
  setattribute('OM_OMV'(), "name" = cat("", name))
end proc:

# ---- expressions to trees

toopenmath := proc(x)
  description "toopenmath(x): the expression as a tree of elements, one object";
  'OM_OMOBJ'(`openmath/tree`(x))
end proc:

`openmath/tree` := proc(x)
  description "openmath/tree(x): the element of one expression";
  local y, symbols;
  if type(x, integer) then return 'OM_OMI'(x) end if;
  if type(x, fraction) then return `openmath/apply`("nums1", "rational", 'OM_OMI'(op(1, x)), 'OM_OMI'(op(2, x))) end if;
  if type(x, float) then return `openmath/float`(x) end if;
  if type(x, string) then return 'OM_OMSTR'(x) end if;
  symbols := `openmath/to`();
  if type(x, symbol) then return `if`(assigned(symbols[x]), symbols[x], `openmath/variable`(x)) end if;
  if x = exp(1) then return `openmath/symbol`("nums1", "e") end if;
  if x = I then return `openmath/symbol`("nums1", "i") end if;
  if type(x, complex(numeric)) then
    return `openmath/apply`("complex1", "complex_cartesian", `openmath/tree`(Re(x)), `openmath/tree`(Im(x)))
  end if;
  if type(x, list) then return `openmath/apply`("list1", "list", seq(`openmath/tree`(y), y = x)) end if;
  if x = {} then return `openmath/symbol`("set1", "emptyset") end if;
  if type(x, set) then return `openmath/apply`("set1", "set", seq(`openmath/tree`(y), y = x)) end if;
  if type(x, range) then return `openmath/apply`("interval1", "interval", `openmath/tree`(op(1, x)), `openmath/tree`(op(2, x))) end if;
  if type(x, rtable) then return `openmath/array`(x) end if;
  if type(x, indexed) then
    return `openmath/apply`("linalg1", `if`(nops(x) = 1, "vector_selector", "matrix_selector"), seq(`openmath/tree`(y), y = [op(x)]), `openmath/tree`(op(0, x)))
  end if;
  if type(x, procedure) then return `openmath/lambda`([op(1, eval(x))], x(op(1, eval(x)))) end if;
  if type(x, function) and op(0, x) = 'diff' and nops(x) = 2 and type(op(2, x), symbol) then
    return 'OM_OMA'(`openmath/apply`("calculus1", "diff", `openmath/lambda`([op(2, x)], op(1, x))), `openmath/tree`(op(2, x)))
  end if;
  if type(x, function) and op(0, x) = 'int' and nops(x) = 2 then return `openmath/integral`(op(x)) end if;
  if type(x, function) and nops(x) = 2 and `openmath/binds`(op(2, x)) then
    if member(op(0, x), ['sum', 'product']) and type(op([2, 2], x), range) then return `openmath/series`(op(0, x), op(x)) end if;
    if op(0, x) = 'limit' then return `openmath/limit`(op(x)) end if
  end if;
  if type(x, function) and member(op(0, x), ['max', 'min']) then
    return `openmath/apply`("minmax1", cat("", op(0, x)), `openmath/tree`({op(x)}))
  end if;
  if type(x, function) and op(0, x) = 'piecewise' then return `openmath/pieces`(op(x)) end if;
  `openmath/operator`(x, symbols)
end proc:

# What has operands: a symbol, or a variable, applied to them.
`openmath/operator` := proc(x, symbols)
  description "openmath/operator(x, symbols): the element of a sum, relation, call or the like";
  local head, y;
  head := op(0, x);
  if type(head, symbol) and assigned(symbols[head]) then return 'OM_OMA'(symbols[head], seq(`openmath/tree`(y), y = [op(x)])) end if;
  if type(x, function) then return 'OM_OMA'(`openmath/tree`(head), seq(`openmath/tree`(y), y = [op(x)])) end if;
  error "%1 has no form in OpenMath", x
end proc:

`openmath/float` := proc(x)
  description "openmath/float(x): the element of a float";
  if x = Float(infinity) then return setattribute('OM_OMF'(), "dec" = "INF") end if;
  if x = -Float(infinity) then return setattribute('OM_OMF'(), "dec" = "-INF") end if;
  if type(x, undefined) then return setattribute('OM_OMF'(), "dec" = "NaN") end if;
  setattribute('OM_OMF'(), "dec" = trimtext(csvtext([[x]]), "\n"))
end proc:

`openmath/lambda` := proc(variables, body)
  description "openmath/lambda(variables, body): the element of a function of these variables";
  local v;
  'OM_OMBIND'(`openmath/symbol`("fns1", "lambda"), 'OM_OMBVAR'(seq(`openmath/variable`(v), v = variables)), `openmath/tree`(body))
end proc:

`openmath/integral` := proc(f, x)
  description "openmath/integral(f, x), openmath/integral(f, x = a..b): the element of an integral";
  if type(x, symbol) then
    return 'OM_OMA'(`openmath/apply`("calculus1", "int", `openmath/lambda`([x], f)), `openmath/tree`(x))
  end if;
  `openmath/apply`("calculus1", "defint", `openmath/tree`(op(2, x)), `openmath/lambda`([op(1, x)], f))
end proc:

`openmath/binds` := proc(x)
  description "openmath/binds(x): true for an equation whose left side is a variable";
  type(x, `=`) and type(op(1, x), symbol)
end proc:

`openmath/series` := proc(name, f, x)
  description "openmath/series(name, f, x = a..b): the element of a sum or product over a range of integers";
  `openmath/apply`("arith1", cat("", name), `openmath/apply`("interval1", "integer_interval", `openmath/tree`(op([2, 1], x)), `openmath/tree`(op([2, 2], x))), `openmath/lambda`([op(1, x)], f))
end proc:

`openmath/limit` := proc(f, x)
  description "openmath/limit(f, x = a): the element of a limit";
  `openmath/apply`("limit1", "limit", `openmath/tree`(op(2, x)), `openmath/symbol`("limit1", "both_sides"), `openmath/lambda`([op(1, x)], f))
end proc:

`openmath/pieces` := proc()
  description "openmath/pieces(condition, value, ..., otherwise): the element of a function in pieces";
  local k;
  `openmath/apply`("piece1", "piecewise", seq(`openmath/apply`("piece1", "piece", `openmath/tree`(args[2*k]), `openmath/tree`(args[2*k - 1])), k = 1..iquo(nargs, 2)),
    `if`(irem(nargs, 2) = 1, `openmath/apply`("piece1", "otherwise", `openmath/tree`(args[nargs])), NULL))
end proc:

`openmath/array` := proc(x)
  description "openmath/array(x): the element of a vector or matrix";
  local row, y;
  if rtable_num_dims(x) = 1 then
    return `openmath/apply`("linalg2", "vector", seq(`openmath/tree`(op(row)), row = matrixrows(x)))
  end if;
  `openmath/apply`("linalg2", "matrix", seq(`openmath/apply`("linalg2", "matrixrow", seq(`openmath/tree`(y), y = row)), row = matrixrows(x)))
end proc:

# ---- trees to expressions

fromopenmath := proc(tree)
  description "fromopenmath(tree): the expression that a tree of elements stands for";
  local head, children;
  if not type(tree, function) then error "element expected, but received %1", tree end if;
  head := op(0, tree);
  children := remove(x -> type(x, function) and op(0, x) = 'COMMENT', [op(tree)]);
  if head = 'OM_OMOBJ' then
    _EnvOpenmathShared := `openmath/shared`(tree);
    return fromopenmath(`openmath/only`(children))
  elif head = 'OM_OMR' then return `openmath/referred`(`openmath/attribute`(tree, "href"))
  elif head = 'OM_OMI' then return `openmath/integer`(`openmath/only`(children))
  elif head = 'OM_OMSTR' then return `if`(children = [], "", cat("", op(children)))
  elif head = 'OM_OMF' and member("hex", map(lhs, [attributes(tree)])) then return `openmath/bits`(`openmath/attribute`(tree, "hex"))
  elif head = 'OM_OMF' then return `openmath/number`(`openmath/attribute`(tree, "dec"))
  elif head = 'OM_OMV' then return cat(``, `openmath/attribute`(tree, "name"))
  elif head = 'OM_OMS' then return `openmath/constant`(`openmath/attribute`(tree, "cd"), `openmath/attribute`(tree, "name"))
  elif head = 'OM_OMATTR' then return fromopenmath(children[-1])
  elif head = 'OM_OMBIND' then return `openmath/function`(children[2], children[3])
  elif head = 'OM_OMA' and children <> [] then return `openmath/application`(children[1], children[2..-1])
  end if;
  error "%1 is no element of an OpenMath object", cat("", head)
end proc:

`openmath/only` := proc(children)
  description "openmath/only(children): the one child of an element";
  if nops(children) <> 1 then error "one child expected in an element, but received %1", nops(children) end if;
  children[1]
end proc:

`openmath/attribute` := proc(tree, name)
  description "openmath/attribute(tree, name): the value of an attribute of the element";
  local a;
  for a in [attributes(tree)] do if lhs(a) = name then return rhs(a) end if end do;
  error "the attribute %1 is missing", name
end proc:

`openmath/integer` := proc(s)
  description "openmath/integer(s): the value of decimal digits, or of hexadecimal ones behind x";
  local text, value;
  if type(s, integer) then return s end if;
  text := replacetext(cat("", s), " ", "");
  value := `if`(searchtext("x", text) > 0, sscanf(replacetext(text, "x", "0x"), "%x%s"), sscanf(text, "%d%s"));
  if not type(value, [integer]) then error "integer expected, but received %1", s end if;
  value[1]
end proc:

`openmath/number` := proc(s)
  description "openmath/number(s): the float of decimal digits";
  local value;
  if s = "INF" then return Float(infinity) elif s = "-INF" then return -Float(infinity) elif s = "NaN" then return Float(undefined) end if;
  value := parsecsv(cat("", s));
  if not type(value, [[numeric]]) then error "number expected, but received %1", s end if;
  `if`(type(value[1][1], integer), Float(value[1][1], 0), value[1][1])
end proc:

`openmath/bits` := proc(s)
  description "openmath/bits(s): the float of the 16 hexadecimal digits of a double";
  local value;
  value := sscanf(s, "%y%s");
  if nops(value) <> 1 then error "16 hexadecimal digits expected, but received %1", s end if;
  eval(op(value))
end proc:

# Elements that others refer to are translated once: an object may double its size with each of its lines.
`openmath/shared` := proc(tree)
  description "openmath/shared(tree): the table of the elements that have an id";
  local e, a, shared;
  shared := table();
  for e in indets(tree, 'function') do
    for a in [attributes(e)] do if lhs(a) = "id" then shared[rhs(a)] := [e] end if end do
  end do;
  eval(shared)
end proc:

`openmath/referred` := proc(href)
  description "openmath/referred(href): the value of the element of the same object that a reference names";
  local id, entry, shared;
  id := substring(href, 2..-1);
  shared := _EnvOpenmathShared;
  if not beginstext("#", href) or not type(shared, table) or not assigned(shared[id]) then error "no element of the object is %1", href end if;
  entry := shared[id];
  if nops(entry) = 0 then error "the element %1 refers to itself", href end if;
  if nops(entry) = 1 then
    shared[id] := [];
    entry := [op(entry), fromopenmath(op(entry))];
    shared[id] := entry
  end if;
  entry[2]
end proc:

`openmath/constant` := proc(cd, name)
  description "openmath/constant(cd, name): what a symbol stands for";
  local names;
  names := `openmath/from`();
  if assigned(names[cd, name]) then return names[cd, name] end if;
  if cd = "nums1" and name = "e" then return exp(1)
  elif cd = "nums1" and name = "i" then return I
  elif cd = "nums1" and name = "NaN" then return undefined
  elif cd = "set1" and name = "emptyset" then return {}
  end if;
  cat(``, name)
end proc:

`openmath/function` := proc(variables, body)
  description "openmath/function(variables, body): the procedure of a lambda";
  local names;
  names := map(fromopenmath, [op(variables)]);
  parse(cat("(", sprintf("%q", op(names)), ") -> ", sprintf("%a", fromopenmath(body))), statement)
end proc:

# A symbol or anything else applied to operands.
`openmath/application` := proc(head, operands)
  description "openmath/application(head, operands): the value of an application";
  local cd, name, names, inner, piece;
  if type(head, function) and op(0, head) = 'OM_OMS' then
    cd, name := `openmath/attribute`(head, "cd"), `openmath/attribute`(head, "name");
    names := `openmath/from`();
    if cd = "arith1" and member(name, ["sum", "product"]) then return `openmath/overlambda`(cat(``, name), operands[2], fromopenmath(operands[1])) end if;
    if cd = "limit1" and name = "limit" then return `openmath/overlambda`('limit', operands[3], fromopenmath(operands[1])) end if;
    if cd = "piece1" and name = "piecewise" then return 'piecewise'(seq(`openmath/piece`(op(piece)), piece = operands)) end if;
    if cd = "calculus1" and name = "defint" then return `openmath/overlambda`('int', operands[2], fromopenmath(operands[1])) end if;
    if assigned(names[cd, name]) then return `openmath/call`(names[cd, name], map(fromopenmath, operands)) end if;
    return `openmath/special`(cd, name, map(fromopenmath, operands))
  end if;
  # (diff(lambda))(x) and (int(lambda))(x)
  if type(head, function) and op(0, head) = 'OM_OMA' and nops(head) = 2 and nops(operands) = 1 then
    inner := op(1, head);
    if type(inner, function) and op(0, inner) = 'OM_OMS' and `openmath/attribute`(inner, "cd") = "calculus1" then
      return `openmath/overlambda`(cat(``, `openmath/attribute`(inner, "name")), op(2, head), fromopenmath(operands[1]))
    end if
  end if;
  fromopenmath(head)(op(map(fromopenmath, operands)))
end proc:

`openmath/overlambda` := proc(name, lambda, at)
  description "openmath/overlambda(name, lambda, x): diff, int, sum, product or limit of a function of one variable";
  local v, body;
  v, body := fromopenmath(op(1, op(2, lambda))), fromopenmath(op(3, lambda));
  if type(at, range) or name = 'limit' then return `openmath/call`(name, [body, v = at]) end if;
  `openmath/call`(name, [subs(v = at, body), at])
end proc:

`openmath/piece` := proc(symbol)
  description "openmath/piece(symbol, value, condition), openmath/piece(symbol, value): the condition and value of a piece, the value of what is left";
  `if`(nargs > 2, fromopenmath(args[3]), NULL), fromopenmath(args[2])
end proc:

`openmath/call` := proc(f, operands)
  description "openmath/call(f, operands): the function, or operator, of that name called";
  if f = '`-`' then return operands[1] - operands[2] end if;
  f(op(operands))
end proc:

# Symbols that are more than a function of the same operands.
`openmath/special` := proc(cd, name, x)
  description "openmath/special(cd, name, x): the value of a symbol applied to the operands in the list x";
  local symbol;
  symbol := cat(cd, ".", name);
  if symbol = "arith1.unary_minus" then return -x[1]
  elif symbol = "arith1.divide" then return x[1]/x[2]
  elif symbol = "arith1.root" then return x[1]^(1/x[2])
  elif symbol = "relation1.gt" then return x[1] > x[2]
  elif symbol = "relation1.geq" then return x[1] >= x[2]
  elif symbol = "transc1.log" then return ln(x[2])/ln(x[1])
  elif symbol = "nums1.rational" then return x[1]/x[2]
  elif symbol = "complex1.complex_cartesian" then return x[1] + I*x[2]
  elif symbol = "complex1.complex_polar" then return x[1]*exp(I*x[2])
  elif symbol = "list1.list" then return x
  elif symbol = "set1.set" then return {op(x)}
  elif member(symbol, ["interval1.interval", "interval1.integer_interval", "interval1.interval_cc"]) then return x[1]..x[2]
  elif member(symbol, ["linalg1.vector_selector", "linalg1.matrix_selector"]) then return x[-1][op(x[1..-2])]
  elif member(symbol, ["minmax1.max", "minmax1.min"]) then
    # Of a set, or of the operands themselves.
    if nops(x) = 1 then return cat(``, name)(op(x[1])) end if
  elif symbol = "logic1.equivalent" then return not `xor`(op(x))
  elif symbol = "set1.notin" then return not `in`(op(x))
  elif symbol = "set1.size" then return nops(x[1])
  elif symbol = "linalg2.matrixrow" then return x
  elif symbol = "linalg2.matrix" then return rtable(1..nops(x), 1..nops(x[1]), x, 'subtype' = 'Matrix')
  elif symbol = "linalg2.vector" then return rtable(1..nops(x), x, 'subtype' = 'Vector'['column'])
  end if;
  cat(``, name)(op(x))
end proc:
