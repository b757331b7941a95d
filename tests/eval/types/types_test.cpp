// Types seen from inside: the laws that hold for any expression and type, objects that the language
// can't write down yet, and what a match leaves behind.

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <string>
#include <vector>

#include "algebra/polynomial_types.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/structure/attributes.h"
#include "eval/structure/equality.h"
#include "eval/structure/map.h"
#include "eval/structure/operands.h"
#include "eval/structure/select_elements.h"
#include "eval/structure/sort.h"
#include "eval/structure/subsop.h"
#include "eval/structure/substitute.h"
#include "eval/tables/tables.h"
#include "eval/types/constant_expressions.h"
#include "eval/types/type_match.h"
#include "eval/types/type_names.h"
#include "eval/types/types.h"
#include "eval/walk/has.h"
#include "eval/walk/measure.h"
#include "kernel_fixture.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {
namespace {

DAG simple(const std::string& source) { return parsed(source.c_str()); }
bool matches(const std::string& e, const std::string& t) { return type(simple(e), simple(t)); }

// ---- random expressions and types

using Text = std::string;
rc::Gen<Text> numbers() {
  return rc::gen::element<Text>("0", "1", "-7", "12", "10^30", "1/2", "-5/3", "1.5", "-2.25", "0.", "I", "2+3*I",
                                "2.5*I", "infinity", "-infinity", "undefined");
}
rc::Gen<Text> expressions(int depth) {
  auto leaf = rc::gen::oneOf(numbers(), rc::gen::element<Text>("x", "y", "t[1]", "\"s\"", "true", "Pi"));
  if (depth == 0) return leaf;
  auto sub = expressions(depth - 1);
  auto wrapped = [sub](const char* before, const char* between, const char* after) {
    return rc::gen::map(rc::gen::pair(sub, sub),
                        [=](const std::pair<Text, Text>& p) { return before + p.first + between + p.second + after; });
  };
  // Sums and products take names, so that no operand is one that arithmetic refuses.
  auto names = rc::gen::element<Text>("x", "y", "f(x)", "t[1]", "2*x", "3", "x^2", "x^(1/2)");
  auto arithmetic = rc::gen::map(rc::gen::tuple(names, rc::gen::element<Text>("+", "*", "-", "/"), names),
                                 [](const std::tuple<Text, Text, Text>& p) {
                                   return "(" + std::get<0>(p) + std::get<1>(p) + std::get<2>(p) + ")";
                                 });
  return rc::gen::oneOf(leaf, arithmetic, wrapped("[", ",", "]"), wrapped("{", ",", "}"), wrapped("f(", ",", ")"),
                        wrapped("(", ")=(", ")"), wrapped("(", ")<>(", ")"), wrapped("g(", ")(", ")"));
}
rc::Gen<Text> types(int depth) {
  auto leaf = rc::gen::oneOf(
      rc::gen::element<Text>("integer", "posint", "even", "rational", "float", "numeric", "extended_numeric",
                             "positive", "infinity", "undefined", "finite", "nonreal", "constant", "literal", "string",
                             "symbol", "name", "indexed", "function", "atomic", "algebraic", "boolean", "relation",
                             "equation", "list", "set", "sequential", "polynom", "ratpoly", "radical", "anything"),
      rc::gen::element<Text>("`+`", "`*`", "`^`", "1", "\"s\"", "identical(x)", "complex(integer)",
                             "polynom(integer,x)", "f(anything,anything)", "`+`(algebraic)", "`*`(name)"));
  if (depth == 0) return leaf;
  auto sub = types(depth - 1);
  auto wrapped = [sub](const char* before, const char* between, const char* after) {
    return rc::gen::map(rc::gen::pair(sub, sub),
                        [=](const std::pair<Text, Text>& p) { return before + p.first + between + p.second + after; });
  };
  auto one = [sub](const char* before) { return rc::gen::map(sub, [=](const Text& t) { return before + t + ")"; }); };
  return rc::gen::oneOf(leaf, wrapped("[", ",", "]"), wrapped("{", ",", "}"), wrapped("anyfunc(", ",", ")"),
                        wrapped("And(", ",", ")"), wrapped("Or(", ",", ")"), one("Not("), one("list("), one("set("),
                        one("function("));
}

TEST(Types, LogicOfTypes) {
  EXPECT_TRUE(rc::check([] {
    Text e = *expressions(2), a = *types(2), b = *types(2);
    bool isA, isB;
    RC_ASSERT(errorOf([&] {
                isA = matches(e, a);
                isB = matches(e, b);
              }) == "");
    auto holds = [&](const Text& t, bool expected) {
      if (matches(e, t) != expected)
        RC_FAIL("type(" + e + ", " + t + ") with " + (isA ? "first " : "") + (isB ? "second" : ""));
    };
    holds("And(" + a + "," + b + ")", isA && isB);
    holds("Or(" + a + "," + b + ")", isA || isB);
    holds("{" + a + "," + b + "}", isA || isB);
    holds("Not(" + a + ")", !isA);
    holds("Not(And(" + a + "," + b + "))", !isA || !isB);
    holds("And(Not(" + a + "),Not(" + b + "))", !isA && !isB);
    if (matches("[" + e + "," + e + "]", "[" + a + "," + b + "]") != (isA && isB)) RC_FAIL("list of " + e);
    if (matches("[" + e + "," + e + "]", "list(" + a + ")") != isA) RC_FAIL("list of " + e);
  }));
}

// A match succeeds exactly where the type holds, and binds the whole; only the expression itself is
// identical to it.
TEST(Types, MatchesAndIdentity) {
  EXPECT_TRUE(rc::check([] {
    Text e = *expressions(2), other = *expressions(2), t = *types(2);
    DAG x = simple(e), y = simple(other);
    RC_ASSERT(type(x, simple("identical(" + e + ")")));
    RC_ASSERT(type(y, simple("identical(" + e + ")")) == (x == y));
    bool expected = type(x, simple(t));
    std::string shown = say(("typematch('" + e + "', bound::'" + t + "', 'made');").c_str());
    RC_ASSERT(shown == (expected ? "true" : "false"));
    if (expected) RC_ASSERT(naminstall("made")[1][1][1][2] == x);
  }));
}

// Two walks agree about what an expression holds.
TEST(Types, HastypeOfIdenticalIsHas) {
  EXPECT_TRUE(rc::check([] {
    Text e = *expressions(3);
    DAG x = simple(e);
    for (const char* part : {"x", "y", "f(x)", "t[1]", "\"s\"", "f", "Pi"})
      if (hastype(x, simple("identical(" + Text(part) + ")")) != has(x, simple(part))) RC_FAIL(Text(part) + " in " + e);
  }));
}

// Two searches at once: a type procedure that searches, what it holds, and one that fails in the midst.
TEST(Types, SearchesInsideOfSearches) {
  for (const char* statement :
       {"`type/small` := proc(e) evalb(e = 3) end proc:",
        "`type/inner` := proc(e) hastype(e, small) and has(e, w) and numboccur(e, w) > 0 end proc:",
        "`type/fails` := proc(e) if e = 3 then error \"three\" end if; subs(w = 1, e); hastype(e, inner); false end "
        "proc:"})
    say(statement);
  DAG w = naminstall("w"), f = naminstall("f"), shared = w;
  for (int i = 0; i < 10; ++i) shared = simpl(newCall(f, {shared, simpl(newCall(naminstall("g"), {shared}))}));
  DAG with3 = simpl(new2(LIST, simpl(newSequence({shared, immediate(3), w}))));
  DAG inner = naminstall("inner"), fails = naminstall("fails");
  EXPECT_FALSE(hastype(shared, inner));
  EXPECT_TRUE(hastype(with3, inner));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(errorOf([&] { hastype(with3, fails); }), "three");
  EXPECT_TRUE(!hastype(shared, fails) && hastype(with3, inner) && has(shared, w));
}

// A polynomial made of coefficients is one over their ring, and no longer when a variable divides it.
TEST(Types, PolynomialsByConstruction) {
  EXPECT_TRUE(rc::check([] {
    auto terms = *rc::gen::nonEmpty(rc::gen::container<std::vector<std::tuple<int, int, int, int>>>(rc::gen::tuple(
        rc::gen::inRange(-9, 10), rc::gen::inRange(1, 4), rc::gen::inRange(0, 4), rc::gen::inRange(0, 3))));
    Text p = "0";
    bool fractions = false;
    for (auto [n, d, i, k] : terms)
      p += "+(" + std::to_string(n) + "/" + std::to_string(d) + ")*x^" + std::to_string(i) + "*y^" + std::to_string(k);
    DAG x = simple(p);
    if (isObject(x) && hasTag(x, SUM)) {
      for (Word i = 1; i < lengthOf(x); i += 2)
        fractions = fractions || !isInteger(x[i + 1]) || (isNumeric(x[i]) && !isInteger(x[i]));
    } else {
      fractions = isNumeric(x) && !isInteger(x);
    }
    DAG vars = simple("{x, y}");
    RC_ASSERT(typol(PolynomialForm::polynomial, x, vars, rationalTags));
    RC_ASSERT(typol(PolynomialForm::polynomial, x, DAG(), rationalTags));
    RC_ASSERT(typol(PolynomialForm::polynomial, x, vars, integerTags) == !fractions);
    RC_ASSERT(typol(PolynomialForm::polynomial, x, naminstall("x"), anyCoefficient));
    RC_ASSERT(typol(PolynomialForm::polynomial, simple("(" + p + ")^3*(x - y)"), vars, rationalTags));
    DAG quotient = simple("(" + p + ")^2/(x + 100*y)");
    RC_ASSERT(typol(PolynomialForm::rationalFunction, quotient, vars, rationalTags));
    RC_ASSERT(typol(PolynomialForm::polynomial, quotient, vars, anyCoefficient) == (quotient == cons0));
  }));
}

// ---- types decided by a tag

// Walks over many objects go by the tag alone: what it says is what the type says.
TEST(Types, TagsDecideAsTheTestsDo) {
  const char* samples[] = {"5",      "-10^30",  "1/2",          "1.5",    "HFloat(1.5)", "2+3*I",   "I",
                           "\"s\"",  "x",       "t[1]",         "x::y",   "x||y",        "x^y",     "x*y",
                           "x+y",    "2*x",     "f(x)",         "''x''",  "x=y",         "x<>y",    "x<=y",
                           "x<y",    "x and y", "not x",        "x or y", "[x]",         "{x}",     "x..y",
                           "x -> x", "table()", "module() end", "NULL",   "true",        "infinity"};
  const char* named[] = {"integer",  "fraction", "rational",
                         "float",    "sfloat",   "literal",
                         "string",   "symbol",   "name",
                         "indexed",  "function", "algebraic",
                         "relation", "equation", "=",
                         "<>",       "<",        "<=",
                         "and",      "or",       "not",
                         "||",       "::",       "..",
                         "range",    "uneval",   "list",
                         "set",      "series",   "sequential",
                         "rtable",   "zppoly",   "moduledefinition",
                         "posint",   "atomic",   "anything",
                         "+"};
  for (const char* name : named) {
    DAG t = naminstall(name);
    TagSet tags = tagsOfType(t);
    for (const char* sample : samples) {
      DAG x = simple(sample);
      if (!tags.isEmpty() && x != null) {
        EXPECT_EQ(tags.contains(tagOf(x)), type(x, t)) << sample << ", " << name;
      }
      // A search by the tag, and one that asks the type.
      DAG several = simpl(new2(LIST, simpl(newSequence({naminstall("g"), x, simple("g(h(t[3]), {4})")}))));
      EXPECT_EQ(hastype(several, t), hastype(several, simpl(new2(SET, simpl(new2(EXPSEQ, t))))))
          << sample << ", " << name;
    }
  }
  EXPECT_TRUE(tagsOfType(naminstall("nowhere")).isEmpty() && tagsOfType(ini("+")).isEmpty());
}

TEST(Types, SmallPredicates) {
  for (const char* yes : {"1", "-5", "1/2", "1.5", "I", "\"s\"", "x::y", "[x]", "1..2"})
    EXPECT_TRUE(IsNotSet(simple(yes))) << yes;
  for (const char* no : {"x", "x[1]", "x+y", "x*y", "x^y", "f(x)", "'x'", "x=y", "x<>y", "x<y", "x<=y", "x and y",
                         "x or y", "not x", "{x}"})
    EXPECT_FALSE(IsNotSet(simple(no))) << no;
  for (const char* yes : {"x", "x[1]", "x*y", "x^2", "x[1]^2*y^(-1)"}) EXPECT_TRUE(monomial(simple(yes))) << yes;
  for (const char* no : {"3", "2*x", "x+y", "f(x)", "x*f(x)", "x^y", "(x+1)^2"})
    EXPECT_FALSE(monomial(simple(no))) << no;
  say("constants := Pi, gamma:");
  EXPECT_TRUE(vname(simple("x")) && vname(simple("Pi[1]")));
  EXPECT_FALSE(vname(simple("Pi")) || vname(simple("3")) || vname(simple("f(x)")));
  say("constants := 'constants':");
}

// ---- objects that have no text of their own

TEST(Types, HardwareFloats) {
  auto is = [](double value, const char* name) { return type(NewHFloat(value, false), simple(name)); };
  for (const char* name :
       {"float", "float[8]", "float[]", "numeric", "extended_numeric", "finite", "literal", "atomic"})
    EXPECT_TRUE(is(1.5, name)) << name;
  for (const char* name : {"sfloat", "integer", "rational", "symbol", "infinity", "undefined", "poszero"})
    EXPECT_FALSE(is(1.5, name)) << name;
  EXPECT_TRUE(is(2, "positive") && !is(2, "negative") && is(-2, "negative") && !is(-2, "nonnegative"));
  EXPECT_TRUE(is(0.0, "poszero") && !is(0.0, "negzero") && is(-0.0, "negzero") && !is(-0.0, "poszero"));
  EXPECT_TRUE(is(0.0, "nonpositive") && is(-0.0, "nonnegative") && !is(-0.0, "negative"));
  double infinity = __builtin_inf(), undefined = __builtin_nan("");
  EXPECT_TRUE(is(infinity, "pos_infinity") && is(-infinity, "neg_infinity") && !is(-infinity, "pos_infinity"));
  EXPECT_FALSE(is(infinity, "numeric") || is(infinity, "finite") || is(undefined, "numeric"));
  EXPECT_TRUE(is(undefined, "undefined") && !is(undefined, "positive") && !is(undefined, "nonpositive"));
  EXPECT_TRUE(onlyconst(NewHFloat(1, false)) && !onlyconst(NewHFloat(undefined, false)));
}

DAG rtableWith(Word flags) {
  DAG r = newl2(9, RTABLE);
  r[2] = ini("anything");
  r[4] = null;
  rawField(r, 5) = flags;
  r[3] = new2(EXPSEQ, r);
  return r;
}

TEST(Types, RtablesByTheirFlags) {
  constexpr Word array = 0, matrix = 1u << 26, float8 = 6u << 28, rectangular = 4u << 22;
  DAG plain = rtableWith(rectangular | array | 1), hardware = rtableWith(float8 | rectangular | array | 1);
  DAG other = rtableWith(rectangular | matrix | 2), sparse = rtableWith(float8 | 1);
  DAG shaped = rtableWith(float8 | rectangular | 1);
  shaped[3] = new3(EXPSEQ, naminstall("symmetric"), shaped);
  for (DAG r : {plain, hardware, other, sparse})
    for (const char* name : {"rtable", "tabular", "indexable"}) EXPECT_TRUE(type(r, naminstall(name))) << name;
  EXPECT_TRUE(type(plain, ini("Array")) && type(hardware, ini("Array")) && !type(other, ini("Array")));
  EXPECT_TRUE(type(hardware, ini("hfarray")));
  EXPECT_FALSE(type(plain, ini("hfarray")) || type(sparse, ini("hfarray")) || type(shaped, ini("hfarray")));
  EXPECT_FALSE(type(plain, ini("table")) || type(plain, ini("array")) || type(naminstall("x"), ini("Array")));
  EXPECT_TRUE(type(plain, plain) && !type(plain, hardware) && !type(naminstall("x"), plain));
}

// What rtables refuse, and what has nothing to do with an rtable without data.
TEST(Types, RtablesAreRefused) {
  DAG r = rtableWith(1u);
  EXPECT_EQ(errorOf([&] { subsop(1, cons1, r); }), "subsop cannot be used for rtables; use indexing instead");
  EXPECT_EQ(subs(simpl(new3(EQUATION, ini("anything"), cons1)), r), r);
  BuiltinCall attributed{new3(EXPSEQ, r, naminstall("mark")), ini("setattribute"), null};
  EXPECT_TRUE(builtin::setattribute(attributed) == r && AttributesOf(r) == naminstall("mark"));
  DAG list = simpl(new2(LIST, simpl(new2(EXPSEQ, cons1))));
  EXPECT_EQ(errorOf([&] { korelindex(cons1, naminstall("x"), list, cons1); }), "cannot assign to a list");
}

TEST(Types, ArraysAndProtectedNames) {
  DAG array = maketable(DAG(), null);
  array[2] = simpl(new2(EXPSEQ, simple("1..3")));
  assign(naminstall("anArray"), array);
  assign(naminstall("aTable"), maketable(DAG(), null));
  for (const char* statement : {"holder := table():", "holder[a] := eval(anArray):", "holder[b] := eval(aTable):"})
    say(statement);
  EXPECT_EQ(say("type(anArray, array), type(eval(anArray), array), type(anArray, table), type(anArray, tabular);"),
            "true, true, true, true");
  EXPECT_EQ(say("type(aTable, array), type(eval(aTable), array), type('holder[a]', array), type('holder[b]', array);"),
            "false, false, true, false");
  DAG name = naminstall("guarded"), several = naminstall("guardedToo");
  name[2] = ini("protected");
  several[2] = simpl(new3(EXPSEQ, naminstall("other"), ini("protected")));
  EXPECT_TRUE(type(name, ini("protected")) && type(several, ini("protected")));
  several[2] = simpl(new3(EXPSEQ, naminstall("other"), naminstall("more")));
  EXPECT_FALSE(type(several, ini("protected")) || type(naminstall("free"), ini("protected")) ||
               type(cons1, ini("protected")));
  name[2] = several[2] = null;
}

// A local name is another name than the type it is spelled like.
TEST(Types, LocalNamesAreNoBuiltinTypes) {
  EXPECT_EQ(say("proc() local integer; type(3, integer) end proc();"),
            "Error, (in unknown) type `integer` does not exist");
  EXPECT_EQ(say("proc() local f; type('f'(1), specfunc(integer, f)), type(':-f'(1), specfunc(integer, f)) end proc();"),
            "true, false");
}

// ---- what a match keeps and leaves

// Matched terms are fresh objects that nothing else holds but the match that is put aside.
TEST(Typematch, BindingsLiveOverCollections) {
  auto collect = [] {
    for (const char* statement : {"0:", "0:", "0:", "gc():", "gc():", "[seq(z||i^2, i = 1..3000)]:"}) say(statement);
  };
  auto power = [](const char* name, int n) { return simpl(new3(PROD, naminstall(name), immediate(n))); };
  typematchI = 0;
  bindPattern(naminstall("a1"), power("u", 7));
  bindPattern(naminstall("a2"), power("v", 8));
  SuspendedBindings suspended = suspendBindings();
  EXPECT_EQ(typematchI, -1);
  EXPECT_EQ(say("typematch([1, 2], [a1::integer, a2::integer], 'made'), made;"), "true, [a1 = 1, a2 = 2]");
  collect();
  resumeBindings(suspended);
  ASSERT_EQ(typematchI, 4);
  EXPECT_EQ(text(typematchA[1]) + ", " + text(typematchA[3]), "u^7, v^8");
  EXPECT_EQ(typematchA[1], simple("u^7"));
  typematchI = -1;
  const char* fault = checkHeap();
  EXPECT_EQ(fault, nullptr) << fault;
}

// An error in the midst of a match leaves no match behind: a later parameter check binds nothing.
TEST(Typematch, ErrorsEndTheMatch) {
  say("`type/stumbles` := proc(e) typematch(1, 'inner'::nowhere) end proc:");
  for (const char* statement :
       {"typematch([1, x], [a1::integer, a2::nowhere]);", "typematch([1, x], [a1::integer, a2::stumbles]);",
        "typematch([1, x], [a1::integer, x*y]);", "traperror(typematch([1, x], [a1::integer, a2::stumbles]));"}) {
    say(statement);
    EXPECT_EQ(typematchI, -1) << statement;
    EXPECT_EQ(say("a1, proc(e::(p::integer)) e end proc(3);"),
              "Error, unknown expects its 1st argument, e, to be of type p::integer, but received 3")
        << statement;
    EXPECT_EQ(say("typematch(5, a1::integer, 'made'), made, a1;"), "true, [a1 = 5], a1") << statement;
  }
}

// Depth is bounded in every direction that a user can build.
TEST(Types, DepthIsBounded) {
  const char* deep = "too many levels of recursion";
  DAG list = naminstall("x"), sum = list, call = list, nested = ini("integer");
  for (int i = 0; i < 400000; ++i) {
    list = new2(LIST, new2(EXPSEQ, list));
    call = new3(FUNCTION, naminstall("f"), new2(EXPSEQ, call));
    sum = new3(SUM, call, cons1);
    nested = new3(FUNCTION, naminstall("Not"), new2(EXPSEQ, nested));
  }
  for (DAG x : {list, call, sum}) {
    EXPECT_EQ(errorOf([&] { hastype(x, ini("posint")); }), deep);
    EXPECT_EQ(errorOf([&] { hastype(x, ini("string")); }), "");  // the tag decides: a search without recursion
  }
  EXPECT_EQ(errorOf([&] { type(list, list); }), deep);
  EXPECT_EQ(errorOf([&] { type(cons1, nested); }), deep);
  EXPECT_EQ(errorOf([&] { onlyconst(call); }), deep);
  EXPECT_EQ(errorOf([&] { typol(PolynomialForm::polynomial, sum, DAG(), anyCoefficient); }), deep);
}

}  // namespace
}  // namespace korel::test
