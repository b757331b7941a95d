// The printer: each kind of object as text, under every style.

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/integer/integer.h"
#include "session/interface.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/print/printer.h"
#include "text/print/sinks.h"
#include "text/printed_text.h"
#include "text/read/source.h"

namespace korel::test {

std::string printed(DAG x, int flags, int width) {
  std::string result;
  PrintKorel(x, appendTo, appendFailureTo, width, &result, flags);
  return result;
}
std::string printedRaw(const char* source, int flags) { return printed(parsestring(source, 1), flags); }
std::string printedSimple(const char* source, int flags) { return printed(simpl(parsestring(source, 1)), flags); }

namespace {

DAG named(const char* text) { return naminstall(text); }
DAG flt(std::int32_t mantissa, std::int32_t exponent) { return new3(FLOAT, Newint(mantissa), Newint(exponent)); }
DAG pairs(Tag tag, std::initializer_list<DAG> fields) {
  DAG x = newl2(static_cast<Word>(fields.size() + 1), tag);
  Word i = 1;
  for (DAG field : fields) x[i++] = field;
  return x;
}

struct Row {
  const char* source;
  const char* text;
};

// ---- numbers

TEST(Printer, Integers) {
  for (const char* digits : {"0", "7", "9999", "10000", "1073741823", "1073741824", "100000000", "1000000000000",
                             "10000000000000001", "123456789012345678901234567890", "10002000300040005000"}) {
    EXPECT_EQ(printedRaw(digits), digits);
    DAG negative = negateint(CopyAlg(parsestring(digits, 1)));
    if (negative == cons0) continue;
    EXPECT_EQ(printed(negative), std::string("-") + digits);
  }
  EXPECT_EQ(printed(consm0), "-0");
  EXPECT_EQ(printed(Newint(std::numeric_limits<std::int32_t>::min())), "-2147483648");
}

TEST(Printer, Floats) {
  struct FloatRow {
    std::int32_t mantissa, exponent;
    const char* text;
  };
  constexpr FloatRow rows[] = {
      {15, -1, "1.5"},         {15, 0, "15."},
      {15, -2, ".15"},         {15, -3, ".15e-1"},
      {15, 2, ".15e4"},        {0, 0, "0."},
      {0, -1, ".0"},           {0, 3, ".0e4"},
      {-15, -1, "-1.5"},       {-15, 2, "-.15e4"},
      {1, 1, ".1e2"},          {123456, -6, ".123456"},
      {123456, -3, "123.456"}, {7, -1000000, ".7e-999999"},
      {10, -1, "1.0"},
  };
  for (const FloatRow& row : rows) EXPECT_EQ(printed(flt(row.mantissa, row.exponent)), row.text);
  EXPECT_EQ(printed(new3(FLOAT, consm0, cons0)), "-0.");
  EXPECT_EQ(printed(consfmaxrep), ".9e2147483647");
  EXPECT_EQ(printed(new3(FLOAT, parsestring("123456789012345678901234567890", 1), Newint(-7))),
            "12345678901234567890123.4567890");
  EXPECT_EQ(printed(consfinf), "Float(infinity)");
  EXPECT_EQ(printed(consfminf), "Float(-infinity)");
  EXPECT_EQ(printed(consfNaN), "Float(undefined)");
  EXPECT_EQ(printed(new3(FLOAT, Newint(-3), named("undefined"))), "Float(-3,undefined)");
  EXPECT_EQ(printed(new3(FLOAT, cons1, named("wrong"))), "<<invalid float structure>>");
  EXPECT_EQ(printed(new3(FLOAT, cons1, emptylist)), "<<invalid float structure>>");
}

TEST(Printer, HardwareFloats) {
  auto text = [](double x) { return printed(NewHFloat(x, false)); };
  EXPECT_EQ(text(1.5), "1.5");
  EXPECT_EQ(text(-2), "-2.");
  EXPECT_EQ(text(1e20), "1.0e+20");
  EXPECT_EQ(text(-1.25e-300), "-1.25e-300");
  EXPECT_EQ(text(-0.0), "-0.");
  EXPECT_EQ(text(std::numeric_limits<double>::infinity()), "Float(infinity)");
  EXPECT_EQ(text(-std::numeric_limits<double>::infinity()), "Float(-infinity)");
  EXPECT_EQ(text(std::nan("")), "Float(undefined)");
}

TEST(Printer, ComplexNumbers) {
  auto complex = [](DAG re, DAG im) { return new3(COMPLEX, re, im); };
  auto imaginary = [](DAG im) { return new2(COMPLEX, im); };
  DAG half = new3(RATIONAL, cons1, Newint(2)), x = named("x");
  EXPECT_EQ(printed(imaginary(cons1)), "I");
  EXPECT_EQ(printed(imaginary(consm1)), "-I");
  EXPECT_EQ(printed(imaginary(Newint(-5))), "-5*I");
  EXPECT_EQ(printed(imaginary(half)), "1/2*I");
  EXPECT_EQ(printed(complex(cons1, consm1)), "1-I");
  EXPECT_EQ(printed(complex(Newint(-2), Newint(3))), "-2+3*I");
  EXPECT_EQ(printed(complex(flt(15, -1), flt(-25, -1))), "1.5-2.5*I");
  EXPECT_EQ(printed(complex(consminf, consminf)), "-infinity-infinity*I");
  EXPECT_EQ(printed(conscxinf), "infinity+infinity*I");
  // In a sum and a product: the sign goes into the operator, never behind one.
  EXPECT_EQ(printed(pairs(SUM, {x, cons1, imaginary(consm1), cons1})), "x-I");
  EXPECT_EQ(printed(pairs(SUM, {x, cons1, complex(consm1, cons1), cons1})), "x-1+I");
  EXPECT_EQ(printed(pairs(PROD, {x, cons1, imaginary(consm1), cons1})), "x*(-I)");
  EXPECT_EQ(printed(pairs(PROD, {imaginary(consm1), cons1, x, cons1})), "-I*x");
  EXPECT_EQ(printed(pairs(PROD, {imaginary(cons1), Newint(2)})), "I^2");
  EXPECT_EQ(printed(pairs(PROD, {complex(cons1, cons1), Newint(2)})), "(1+I)^2");
  DAG negated = pairs(PROD, {complex(Newint(-1), Newint(2)), cons1, x, cons1});
  EXPECT_EQ(printed(pairs(SUM, {named("y"), cons1, negated, cons1})), "y-(1-2*I)*x");
  EXPECT_EQ(printed(complex(cons1, consm1), printProgramText), "Complex(1,-1)");
  EXPECT_EQ(printed(imaginary(cons1), printProgramText), "Complex(1)");

  std::string unit = defaultNerinVariables.imaginaryunit;
  std::snprintf(defaultNerinVariables.imaginaryunit, sizeof defaultNerinVariables.imaginaryunit, "%s", "_i");
  EXPECT_EQ(printed(complex(cons1, consm1)), "1-_i");
  std::snprintf(defaultNerinVariables.imaginaryunit, sizeof defaultNerinVariables.imaginaryunit, "%s", unit.c_str());
}

// ---- names and strings

TEST(Printer, WhatNeedsQuotes) {
  for (const char* bare : {"x", "_", "_x1", "a%b", "x2_", "%", "%%", "%x?$", "~a", "~1$_", "If"})
    EXPECT_FALSE(NeedsQuotes(bare)) << bare;
  for (const char* quoted : {"", "if", "description", "end", "a b", "1", "2x", "a~b", "~", "~a%", "%a b", "a/b", "a.b",
                             "\xc3\xa9", "x\n", "$"})
    EXPECT_TRUE(NeedsQuotes(quoted)) << quoted;
}

TEST(Printer, QuotingByStyle) {
  DAG blank = named("a b"), list = new2(LIST, newSequence({blank, strinstall("s")}));
  EXPECT_EQ(printed(blank), "`a b`");
  EXPECT_EQ(printed(blank, printBareOutermost), "a b");
  EXPECT_EQ(printed(blank, printBare), "a b");
  EXPECT_EQ(printed(blank, printBare | printBareOutermost), "a b");
  EXPECT_EQ(printed(list), "[`a b`, \"s\"]");
  EXPECT_EQ(printed(list, printBareOutermost), "[`a b`, \"s\"]");
  EXPECT_EQ(printed(list, printBare), "[a b, s]");
  EXPECT_EQ(printed(strinstall("s"), printBareOutermost), "\"s\"");
  EXPECT_EQ(printed(strinstall("s"), printBare), "s");
  // Inside a procedure nothing is ever bare that would not read back.
  EXPECT_EQ(printedSimple("proc () `a b` end", printBare), "proc () `a b` end proc");
}

TEST(Printer, EscapesInQuotedText) {
  EXPECT_EQ(printed(strinstall("a\"b\\c`")), R"("a\"b\\c`")");
  EXPECT_EQ(printed(named("a`b\"")), R"(`a\`b"`)");
  EXPECT_EQ(printed(strinstall("\a\b\x1b\f\n\r\t\v")), R"("\a\b\e\f\n\r\t\v")");
  EXPECT_EQ(printed(strinstall("\xc3\xa9")), "\"\xc3\xa9\"");
}

TEST(Printer, TildesAtTheEndOfNames) {
  EXPECT_EQ(printed(named("x~")), "x");
  EXPECT_EQ(printed(named("x~~")), "x");
  EXPECT_EQ(printed(named("x~~"), printWithTildes), "x~~");
  EXPECT_EQ(printed(named("~~")), "`~~`");
  EXPECT_EQ(printed(named("a b~")), "`a b~`");
  // Program text reads back as the same name.
  EXPECT_EQ(printed(named("x~"), printProgramText), "`x~`");
  EXPECT_EQ(printed(named("~x"), printProgramText), "`~x`");
  EXPECT_EQ(printed(named("x%"), printProgramText), "`x%`");
  char text[] = "x~~";
  char* cut = StripTilde(text);
  ASSERT_NE(cut, nullptr);
  EXPECT_STREQ(text, "x");
  *cut = '~';
  EXPECT_STREQ(text, "x~~");
  char bare[] = "~~", plain[] = "x";
  EXPECT_EQ(StripTilde(bare), nullptr);
  EXPECT_EQ(StripTilde(plain), nullptr);
}

// ---- operators. The source is simplified first where the row says so.

TEST(Printer, SimplifiedExpressions) {
  constexpr Row rows[] = {
      {"a-b", "a-b"},
      {"a+(-2)*b", "a-2*b"},
      {"2*(a+b)*c", "2*(a+b)*c"},
      {"c-(a+b)*d", "c-(a+b)*d"},
      {"-x", "-x"},
      {"-2*x", "-2*x"},
      {"x/2", "1/2*x"},
      {"-x/2", "-1/2*x"},
      {"1/2", "1/2"},
      {"-1/2", "-1/2"},
      {"x^(-1)", "1/x"},
      {"x^(-2)", "1/x^2"},
      {"y/x^2", "y/x^2"},
      {"x^(1/2)", "x^(1/2)"},
      {"x^(-1/2)", "1/x^(1/2)"},
      {"3/x^2", "3/x^2"},
      {"2^(-x)", "2^(-x)"},
      {"(-1)^x", "(-1)^x"},
      {"(-2.5)^x", "(-2.5)^x"},
      {"x^y", "x^y"},
      {"(a^b)^c", "(a^b)^c"},
      {"a^(b^c)", "a^(b^c)"},
      {"(a+b)^2", "(a+b)^2"},
      {"(a*b)^c", "(a*b)^c"},
      {"f(x)^2", "f(x)^2"},
      {"{}", "{}"},
      {"[]", "[]"},
      {"[x,[y],{1}]", "[x, [y], {1}]"},
      {"f()", "f()"},
      {"f(x,y)(z)", "f(x,y)(z)"},
      {"t[1,x]", "t[1,x]"},
      {"t[]", "t[]"},
      {"m:-e", "m:-e"},
      {"n!", "n!"},
      {"(n+1)!", "(n+1)!"},
      {"x=1", "x = 1"},
      {"x<>y", "x <> y"},
      {"x<=y", "x <= y"},
      {"x>=y", "y <= x"},
      {"x<y", "x < y"},
      {"1..n", "1 .. n"},
      {"x=1..n", "x = 1 .. n"},
      {"(x=1)..n", "(x = 1) .. n"},
      {"a::integer", "a::integer"},
      {"'f(x)'", "'f(x)'"},
      {"''x''", "''x''"},
      {"a.b.c", "a.b.c"},
      {"a.(b+c)", "a.(b+c)"},
      {"a mod b", "`mod`(a,b)"},
      {"a &+ b", "`&+`(a,b)"},
      {"a union b", "`union`(a,b)"},
      {"1.5*x", "1.5*x"},
      {"x-1.5", "x-1.5"},
  };
  for (const Row& row : rows) EXPECT_EQ(printedSimple(row.source), row.text) << row.source;
}

TEST(Printer, UnsimplifiedExpressions) {
  constexpr Row rows[] = {
      {"2+3", "2+3"},
      {"2-(-3)", "2-(-3)"},
      {"-(a+b)", "-(a+b)"},
      {"y-(a-b)", "y-(a-b)"},
      {"2*(-3)", "2*(-3)"},
      {"1/2", "1/2"},
      {"a/(b/c)", "a/(b/c)"},
      {"a/(b*c)", "a/(b*c)"},
      {"x^2.5", "x^2.5"},
      {"(x^2)^3", "(x^2)^3"},
      {"a and b or c", "a and b or c"},
      {"a and (b or c)", "a and (b or c)"},
      {"a and (b and c)", "a and b and c"},
      {"not (a or b)", "not (a or b)"},
      {"not a = b", "not a = b"},
      {"(a=b)=c", "(a = b) = c"},
      {"a||b", "a || b"},
      {"a||1||(i+1)", "a || 1 || (i+1)"},
      {"\"a\"||b", "\"a\" || b"},
      {"(2.5).x", "(2.5).x"},
      {"(a+b).c", "(a+b).c"},
      {"a.b*c", "a.b*c"},
      {"c*(a.b)", "c*(a.b)"},
      {"(a.b)^2", "(a.b)^2"},
      {"n!!", "n!!"},
      {"x^n!", "x^n!"},
      {"[1,2]", "[1, 2]"},
      {"<1,2>", "<1,2>"},
      {"<1|2>", "<1|2>"},
      {"a,b", "a, b"},
      {"(a,b)[1]", "(a, b)[1]"},
      {"x$3", "`$`(x,3)"},
      {":-x", ":-x"},
  };
  for (const Row& row : rows) EXPECT_EQ(printedRaw(row.source), row.text) << row.source;
  EXPECT_EQ(printedRaw("(n!)(x)"), "(n!)(x)");
  EXPECT_EQ(printedRaw("(2)[1]"), "(2)[1]");
  EXPECT_EQ(printedRaw("a*(1/2)"), "a*1/2");
  EXPECT_EQ(printedRaw("y+(-x)"), "y+(-x)");
}

TEST(Printer, SequencesAndOddCalls) {
  EXPECT_EQ(printed(null), "NULL");
  EXPECT_EQ(printed(newSequence({named("a"), named("b")})), "a, b");
  EXPECT_EQ(printed(DAG()), "");
  EXPECT_EQ(printed(new3(FUNCTION, named("f"), named("x"))), "f((x))");
  EXPECT_EQ(printed(new2(UNEVAL, null)), "''");
  EXPECT_EQ(printed(newCall(named("."), {named("a")})), "`.`(a)");
  EXPECT_EQ(printed(newCall(named("RTABLE"), {Newint(12)}), printRtableNumbers), "_rtable[12]");
  EXPECT_EQ(printed(newCall(named("RTABLE"), {Newint(12)})), "RTABLE(12)");
}

TEST(Printer, Series) {
  auto series = [](DAG variable, std::initializer_list<std::pair<DAG, int>> terms) {
    DAG x = newl2(static_cast<Word>(2 + 2 * terms.size()), SERIES);
    x[1] = variable;
    Word i = 2;
    for (auto [coefficient, exponent] : terms) {
      x[i] = coefficient;
      rawField(x, i + 1) = static_cast<Word>(exponent);
      i += 2;
    }
    return x;
  };
  DAG x = named("x"), half = new3(RATIONAL, consm1, Newint(2)), a = named("a");
  EXPECT_EQ(printed(series(x, {{cons1, 0}, {cons1, 1}, {half, 2}, {order1, 3}})), "series(1+x-1/2*x^2+O(x^3),x)");
  EXPECT_EQ(printed(series(x, {{cons1, -2}, {Newint(3), 0}, {a, 1}})), "series(x^(-2)+3*1+a*x,x,1)");
  EXPECT_EQ(
      printed(series(pairs(SUM, {x, cons1, a, consm1}), {{pairs(SUM, {a, cons1, cons1, cons1}), 1}, {order1, 2}})),
      "series((a+1)*(x-a)+O((x-a)^2),x=a)");
  EXPECT_EQ(printed(series(x, {})), "series(0,x)");
}

TEST(Printer, ModularPolynomials) {
  DAG x = named("x"), y = named("y");
  auto small = [](DAG variable, std::initializer_list<Word> coefficients) {
    DAG p = newl2(static_cast<Word>(3 + coefficients.size()), ZPPOLY);
    p[1] = variable;
    p[2] = Newint(7);
    Word i = 3;
    for (Word c : coefficients) rawField(p, i++) = c;
    return p;
  };
  EXPECT_EQ(printed(small(x, {3, 0, 1, 5})), "modp1(ConvertIn(5*x^3+x^2+3,x),7)");
  EXPECT_EQ(printed(small(x, {1, 1})), "modp1(ConvertIn(x+1,x),7)");
  EXPECT_EQ(printed(small(x, {})), "modp1(ConvertIn(0,x),7)");
  DAG big = pairs(ZPPOLY, {x, parsestring("100000000000", 1), Newint(2), parsestring("12345678901", 1)});
  EXPECT_EQ(printed(big), "modp1(ConvertIn(12345678901*x+2,x),100000000000)");
  DAG two = pairs(ZPPOLY, {newSequence({x, y}), Newint(7), small(y, {1, 2}), small(y, {}), small(y, {0, 1})});
  EXPECT_EQ(printed(two), "modp2(ConvertIn(x^2*y+2*y+1,x,y),7)");
}

TEST(Printer, Tables) {
  DAG table = new4(TABLE, null, named("false"), newhashtab(4));
  EXPECT_EQ(printed(table), "table([])");
  hashinsert(newSequence({cons1}).word, named("a b"), table[3]);
  EXPECT_EQ(printed(table), "table([(1)=`a b`])");
  DAG bounds = newSequence({new3(RANGE, cons1, Newint(2)), new3(RANGE, cons0, Newint(3))});
  DAG array = new4(TABLE, named("symmetric"), bounds, newhashtab(1));
  hashinsert(newSequence({cons1, cons0}).word, new3(EQUATION, named("x"), cons1), array[3]);
  EXPECT_EQ(printed(array), "array(symmetric,1 .. 2,0 .. 3,[(1,0)=(x = 1)])");
  hashunique(array[3][1][1].word, null, array[3]);
  EXPECT_EQ(printed(array), "array(symmetric,1 .. 2,0 .. 3,[(1,0)=NULL])");
}

// A rectangular rtable with its elements in a block, read by rows and by columns.
TEST(Printer, Rtables) {
  DAG block = newl2(7, BINARY);
  for (Word i = 1; i <= 6; ++i) block[i] = Newint(static_cast<std::int32_t>(i));
  block[6] = null;
  DAG r = newl2(11, RTABLE);
  rawField(r, 1) = block.word + 4;
  r[2] = named("anything");
  r[3] = newSequence({r});
  r[4] = null;
  rawField(r, 6) = 6;
  rawField(r, 7) = 1, rawField(r, 8) = 2, rawField(r, 9) = 1, rawField(r, 10) = 3;
  rawField(r, 5) = 2u | 1u << 21 | 4u << 22 | 1u << 26;
  EXPECT_EQ(printed(r),
            "Matrix(2,3,[[1,2,3],[4,5,'']],datatype = anything,storage = rectangular,"
            "order = C_order,shape = [])");
  rawField(r, 5) = 2u | 1u << 20 | 4u << 22;
  EXPECT_EQ(printed(r),
            "Array(1..2,1..3,[[1,3,5],[2,4,'']],datatype = anything,storage = rectangular,"
            "order = Fortran_order,readonly)");
}

// ---- procedures and statements

TEST(Printer, Procedures) {
  constexpr Row rows[] = {
      {"proc () end", "proc () end proc"},
      {"proc (x, y::integer) x+y end", "proc (x, y::integer) x+y end proc"},
      {"proc (x) local a, b; global c; option remember, system; description \"d\"; a := x; b := a "
       "end",
       "proc (x) local a, b; global c; options remember, system; description \"d\"; "
       "a := x; b := a end proc"},
      {"proc () option remember; nargs, args, procname end", "proc () option remember; nargs, args, procname end proc"},
      {"proc (x) local a; proc (y) a+x+y end end", "proc (x) local a; proc (y) a+x+y end proc end proc"},
      {"x -> (x+1)^2", "proc (x) options operator, arrow; (x+1)^2 end proc"},
      {"proc (`a b`) `a b`^2 end", "proc (`a b`) `a b`^2 end proc"},
  };
  for (const Row& row : rows) EXPECT_EQ(printedSimple(row.source), row.text) << row.source;
  EXPECT_EQ(printedRaw("module () local a; export b; a := 1 end"), "module () local a; export b; a := 1 end module");
  EXPECT_EQ(printedRaw("module m () end"), "module m () end module");
  auto reference = [](Tag tag, int n) {
    DAG x = newl2(2, tag);
    rawField(x, 1) = static_cast<Word>(n);
    return printed(x);
  };
  EXPECT_EQ(reference(LOCAL, 2), "loc[2]");
  EXPECT_EQ(reference(PARAM, 3), "args[3]");
  EXPECT_EQ(reference(LEXICAL, -1), "lex[-1]");
}

TEST(Printer, TheRememberTableFollowsAnAssignedProcedure) {
  DAG procedure = simpl(parsestring("proc (x) option remember; x end", 1));
  procedure[4] = newhashtab(4);
  hashinsert(newSequence({Newint(3), named("y")}).word, Newint(6), procedure[4]);
  DAG assignment = new3(ASSIGN, named("f"), procedure);
  EXPECT_EQ(printed(assignment), "f := proc (x) option remember; x end proc; f(3,y) := 6");
  EXPECT_EQ(printed(procedure), "proc (x) option remember; x end proc");
}

TEST(Printer, Statements) {
  constexpr Row rows[] = {
      {"x := y", "x := y"},
      {"x := x", "x := 'x'"},
      {"a, b := 1, 2", "a, b := 1, 2"},
      {"for i from 2 by 3 to n while c do f(i) end do", "for i from 2 by 3 to n while c do f(i) end do"},
      {"for i to 3 do od", "for i to 3 do end do"},
      {"do x od", "do x end do"},
      {"while c do x; y od", "while c do x; y end do"},
      {"to 3 do break od", "to 3 do break end do"},
      {"for x in e do next od", "for x in e do next end do"},
      {"for x in e while c do x od", "for x in e while c do x end do"},
      {"if a then b elif c then d else e fi", "if a then b elif c then d else e end if"},
      {"if a then fi", "if a then end if"},
      {"read f", "read f"},
      {"save a, b", "save a, b"},
      {"error", "error"},
      {"error \"x %1\", 3", "error \"x %1\", 3"},
      {"return", "return"},
      {"return a, b", "return a, b"},
      {"try x catch \"a\", \"b\": y finally z end", "try x catch \"a\", \"b\": y finally z end try"},
      {"try x catch: y end", "try x catch: y end try"},
      {"try x; y finally z end", "try x; y finally z end try"},
      {"use m, a=b in x end", "use m, a = b in x end use"},
      {"quit", "quit"},
  };
  for (const Row& row : rows) EXPECT_EQ(printedRaw(row.source), row.text) << row.source;
  EXPECT_EQ(printedRaw("x := x", printBareOutermost), "x := x");
  EXPECT_EQ(printedRaw("proc () x := x end"), "proc () x := x end proc");
  EXPECT_EQ(printed(new4(DEBUG, cons1, named("f"), cons10)), "DEBUG(1 f 10)");
}

// ---- attributes, addresses, failures

TEST(Printer, Attributes) {
  DAG list = new3(LIST, newSequence({cons1}), named("foo"));
  EXPECT_EQ(printed(list), "[1]");
  EXPECT_EQ(printed(list, printProgramText), "setattribute([1],foo)");
  DAG call = newObject(FUNCTION, named("f"), newSequence({list}), newSequence({named("a"), named("b")}));
  EXPECT_EQ(printed(call, printProgramText), "setattribute(f(setattribute([1],foo)),a,b)");
  EXPECT_EQ(printed(new3(LIST, newSequence({cons1}), null), printProgramText), "[1]");

  DAG name = newLocalName("v");
  DAG assignment = new3(ASSIGN, name, cons1);
  name[2] = named("protected");
  EXPECT_EQ(printed(assignment), "unprotect('v'); v := 1; protect('v')");
  EXPECT_EQ(printed(new2(STATSEQ, assignment)), "unprotect('v'); v := 1; protect('v')");
  name[2] = newSequence({named("foo"), named("protected")});
  EXPECT_EQ(printed(assignment, printProgramText), "unprotect('v'); v := 1; setattribute(v,foo); protect('v')");
  name[2] = newSequence({new3(EQUATION, named("modulename"), named("M"))});
  EXPECT_EQ(printed(name, printProgramText), "M:-v");
  EXPECT_EQ(printed(name), "v");
}

TEST(Printer, Addresses) {
  char expected[64];
  std::snprintf(expected, sizeof expected, "\\0x%x\\x", named("x").word);
  EXPECT_EQ(printed(named("x"), printWithAddresses), expected);
}

TEST(Printer, FailuresEndThePrintingAndAreReported) {
  DAG list = new2(LIST, newSequence({named("x"), newl2(3, BINARY), named("y")}));
  EXPECT_EQ(printed(list), "[x, <<unprintable data structure>>");
  // The next printing starts clean.
  EXPECT_EQ(printed(strinstall("ab"), 0, 5), "\"ab\"");
}

TEST(Printer, ListsWithASeparator) {
  auto printedList = [](DAG x, int flags, const char* separator) {
    std::string result;
    PrintKorelList(x, appendTo, appendFailureTo, 0, &result, flags, separator);
    return result;
  };
  DAG sequence = newSequence({named("a b"), strinstall("s"), new2(LIST, newSequence({named("a b")}))});
  EXPECT_EQ(printedList(sequence, printBareOutermost, ", "), "a b, \"s\", [`a b`]");
  EXPECT_EQ(printedList(sequence, 0, "|"), "`a b`|\"s\"|[`a b`]");
  EXPECT_EQ(printedList(null, 0, ", "), "");
  EXPECT_EQ(printedList(named("x"), 0, ", "), "x");
}

// ---- lines

TEST(Printer, LinesEndAtTheWidth) {
  DAG list = simpl(parsestring("[alpha,beta,gamma]", 1));
  EXPECT_EQ(printed(list, 0, 20), "[alpha, beta, gamma\n]");
  EXPECT_EQ(printed(list, 0, 21), "[alpha, beta, gamma]");
  EXPECT_EQ(printed(list, 0, 14), "[alpha, beta,\ngamma]");
  EXPECT_EQ(printed(list, 0, 8), "[alpha,\nbeta, \ngamma]");
  // A word longer than the line breaks with a mark in the last column; digits without one.
  EXPECT_EQ(printed(named("abcdefghij"), 0, 7), "abcdef\\\nghij");
  EXPECT_EQ(printed(parsestring("12345678901", 1), 0, 7), "123456\n78901");
  EXPECT_EQ(printed(strinstall("abcdefghij"), 0, 7), "\"abcde\\\nfghij\"");
  EXPECT_EQ(printed(strinstall("abcdefghij"), printBare, 7), "abcdef\nghij");
  EXPECT_EQ(printed(flt(123456789, -3), 0, 7), "123456\\\n.789");
  // Characters of several bytes count once, and no line ends inside one.
  EXPECT_EQ(printed(strinstall("\u00e9\u20ac\u00e9\u00e9\u00e9"), 0, 8), "\"\u00e9\u20ac\u00e9\u00e9\u00e9\"");
  EXPECT_EQ(printed(strinstall("\u00e9\u20ac\u00e9\u00e9\u00e9"), 0, 5), "\"\u00e9\u20ac\u00e9\\\n\u00e9\u00e9\"");
}

TEST(Printer, SourceLinesNeverStartWithAMark) {
  std::string result;
  SourceSink source{appendTo, &result};
  for (const char* text : {"!a\n", "  #b!\n", "a!\n", "\t?", "?\n"})
    for (const char* c = text; *c != '\0'; ++c) SourceLineSink(&source, static_cast<unsigned char>(*c));
  EXPECT_EQ(result, "\\!a\n  \\#b!\na!\n\t\\??\n");
}

TEST(Printer, BindingStrengths) {
  EXPECT_EQ(ParenLevel(consm1), 7);
  EXPECT_EQ(ParenLevel(cons1), 12);
  EXPECT_EQ(ParenLevel(consfminf), 11);
  EXPECT_EQ(ParenLevel(consfm1), 7);
  EXPECT_EQ(ParenLevel(consh), 9);
  EXPECT_EQ(ParenLevel(sqrtm1), 12);
  EXPECT_EQ(ParenLevel(conscxinf), 8);
  EXPECT_EQ(ParenLevel(consminf), 7);
  EXPECT_EQ(ParenLevel(pairs(SUM, {named("x"), Newint(2)})), 9);
  EXPECT_EQ(ParenLevel(pairs(SUM, {emptylist, cons1})), 12);
  EXPECT_EQ(ParenLevel(pairs(SUM, {cons1, Newint(-3)})), 7);
}

}  // namespace
}  // namespace korel::test
