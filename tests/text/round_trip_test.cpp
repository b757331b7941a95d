// Objects to text and back: random expressions, raw and simplified, and what printing leaves
// behind.

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "eval/simplify.h"
#include "frame/output.h"
#include "frame/reset_hooks.h"
#include "kernel_fixture.h"
#include "numbers/integer.h"
#include "printed_text.h"
#include "program_generator.h"
#include "store/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/printer.h"
#include "text/source.h"

namespace korel::test {
namespace {

// A recipe for an expression, which RapidCheck can shrink: an operator and its operands.
struct Recipe {
  int kind;
  int number;
  std::vector<Recipe> operands;
};

constexpr int leafKinds = 8, innerKinds = 14;

DAG leaf(const Recipe& r) {
  static const char* const names[] = {"x", "y", "z", "a b", "if", "f", "_g1", "a`b"};
  int magnitude = r.number;
  switch (r.kind % leafKinds) {
    case 0:
      return naminstall(names[std::abs(magnitude) % 8]);
    case 1:
      return Newint(magnitude);
    case 2:
      return magnitude == 0 ? cons0 : new3(RATIONAL, Newint(magnitude % 50 * 7 + 1), Newint(7));
    case 3:
      return new3(FLOAT, Newint(magnitude), Newint(magnitude % 7 - 3));
    case 4:
      return strinstall(std::string("s\"\n\\" + std::to_string(magnitude)).c_str());
    case 5:
      return new2(COMPLEX, Newint(magnitude == 0 ? 1 : magnitude % 3 == 0 ? 1 : magnitude));
    case 6:
      return new3(COMPLEX, Newint(magnitude % 5 == 0 ? 2 : magnitude),
                  Newint(magnitude % 4 == 0 ? -1 : 3));
    default:
      return NewInteger(std::int64_t{magnitude} * 1000003);
  }
}

DAG build(const Recipe& r) {
  if (r.operands.empty()) return leaf(r);
  std::vector<DAG> parts;
  for (const Recipe& operand : r.operands) parts.push_back(build(operand));
  DAG a = parts[0], b = parts[parts.size() - 1];
  auto sequence = [&] {
    DAG s = newl2(static_cast<Word>(parts.size() + 1), EXPSEQ);
    for (std::size_t i = 0; i < parts.size(); ++i) s[static_cast<std::int64_t>(i) + 1] = parts[i];
    return s;
  };
  auto inPairs = [&](Tag tag, auto second) {
    DAG s = newl2(static_cast<Word>(2 * parts.size() + 1), tag);
    for (std::size_t i = 0; i < parts.size(); ++i) {
      s[static_cast<std::int64_t>(2 * i + 1)] = parts[i];
      s[static_cast<std::int64_t>(2 * i + 2)] = second(i);
    }
    return s;
  };
  switch (r.kind % innerKinds) {
    case 0:
      return inPairs(SUM, [&](std::size_t i) { return i % 2 == 0 ? cons1 : consm1; });
    case 1:
      return inPairs(SUM, [&](std::size_t i) {
        return Newint(r.number % 5 - 2 + static_cast<int>(i) * 3 == 0 ? 1 : r.number % 5 + 3);
      });
    case 2:
      return inPairs(PROD, [&](std::size_t i) { return i % 2 == 0 ? cons1 : consm1; });
    case 3:
      return inPairs(PROD, [&](std::size_t) { return Newint(r.number % 4 + 1); });
    case 4:
      return new3(POWER, a, b);
    case 5:
      return newCall(naminstall("f"), {sequence()});
    case 6:
      return new2(LIST, sequence());
    case 7:
      return new3(EQUATION, a, b);
    case 8:
      return new3(RANGE, a, b);
    case 9:
      return newCall(naminstall("."), {a, b});
    case 10:
      return new2(UNEVAL, a);
    case 11:
      return new3(TABLEREF, naminstall("t"), sequence());
    case 12:
      return new3(LESSTHAN, a, b);
    default:
      return newCall(naminstall("g h"), {a});
  }
}

rc::Gen<Recipe> recipes(int depth) {
  auto leaves =
      rc::gen::map(rc::gen::pair(rc::gen::inRange(0, leafKinds), rc::gen::inRange(-99, 100)),
                   [](std::pair<int, int> p) {
                     return Recipe{p.first, p.second, {}};
                   });
  if (depth == 0) return leaves;
  auto inner = rc::gen::map(
      rc::gen::tuple(rc::gen::inRange(0, innerKinds), rc::gen::inRange(-9, 10),
                     rc::gen::resize(3, rc::gen::nonEmpty(rc::gen::container<std::vector<Recipe>>(
                                            recipes(depth - 1))))),
      [](std::tuple<int, int, std::vector<Recipe>> t) {
        return Recipe{std::get<0>(t), std::get<1>(t), std::get<2>(t)};
      });
  return rc::gen::oneOf(leaves, inner, inner);
}

std::string showRecipe(const Recipe& r) { return printed(build(r)); }

// How RapidCheck shows a counterexample.
void showValue(const Recipe& r, std::ostream& out) { out << showRecipe(r); }

// Every word of an object and of what it refers to.
void collectWords(DAG x, std::set<Word>& seen, std::vector<Word>& words) {
  words.push_back(x.word);
  if (!isObject(x) || !seen.insert(x.word).second) return;
  words.push_back(headerWord(x));
  for (Word i = 1; i < lengthOf(x); ++i) {
    bool raw =
        hasTag(x, INTPOS) || hasTag(x, INTNEG) || ((hasTag(x, NAME) || hasTag(x, STRING)) && i > 2);
    if (raw) {
      words.push_back(rawField(x, i));
    } else {
      collectWords(x[i], seen, words);
    }
  }
}
std::vector<Word> allWords(DAG x) {
  std::set<Word> seen;
  std::vector<Word> words;
  collectWords(x, seen, words);
  return words;
}

DAG readBack(const std::string& text) { return parsestring(text.c_str(), 1); }

// Simplification may refuse an operand (a division by zero, a list in a sum): such a recipe has no
// simplified form and says nothing.
bool hasSimplifiedForm(const Recipe& r, DAG* result) {
  return errorOf([&] { *result = simpl(build(r)); }).empty();
}

TEST(RoundTrip, SimplifiedObjectsReadBackAsThemselves) {
  EXPECT_TRUE(rc::check([] {
    Recipe r = *recipes(3);
    DAG object;
    RC_PRE(hasSimplifiedForm(r, &object));
    std::string text = printed(object);
    DAG again;
    std::string error = errorOf([&] { again = nerintokorel(readBack(text)); });
    if (!error.empty() || again != object)
      RC_LOG() << showRecipe(r) << "\n  prints " << text << "\n";
    RC_ASSERT(error == "");
    RC_ASSERT(printed(again) == text);
    RC_ASSERT(again == object);
  }));
}

TEST(RoundTrip, RawObjectsReadBackAsTheSameValue) {
  EXPECT_TRUE(rc::check([] {
    Recipe r = *recipes(3);
    DAG object;
    RC_PRE(hasSimplifiedForm(r, &object));
    std::string text = printed(build(r));
    DAG again;
    std::string error = errorOf([&] { again = nerintokorel(readBack(text)); });
    if (!error.empty() || again != object)
      RC_LOG() << text << "\n  is " << printed(object) << ", reads as "
               << (error.empty() ? printed(again) : error) << "\n";
    RC_ASSERT(error == "");
    RC_ASSERT(again == object);
  }));
}

// Narrow lines change where the text breaks and nothing else.
TEST(RoundTrip, NarrowLinesReadBackTheSame) {
  EXPECT_TRUE(rc::check([] {
    Recipe r = *recipes(3);
    int width = *rc::gen::inRange(16, 60);
    DAG object;
    RC_PRE(hasSimplifiedForm(r, &object));
    std::string text = printed(object, 0, width);
    for (std::size_t from = 0, to; from < text.size(); from = to + 1) {
      to = std::min(text.find('\n', from), text.size());
      RC_ASSERT(to - from <= static_cast<std::size_t>(width));
    }
    DAG again;
    std::string error = errorOf([&] { again = nerintokorel(readBack(text)); });
    if (!error.empty() || again != object) RC_LOG() << text << "\n";
    RC_ASSERT(error == "");
    RC_ASSERT(again == object);
  }));
}

TEST(RoundTrip, PrintingChangesNoWord) {
  EXPECT_TRUE(rc::check([] {
    DAG object = build(*recipes(3));
    auto before = allWords(object);
    printed(object);
    printed(object, printWithAttributes | printWithTildes, 20);
    RC_ASSERT(allWords(object) == before);
  }));
  DAG tilde = naminstall("n~");
  DAG quotient = newObject(PROD, tilde, NewSoftInt(Newint(-3)), naminstall("y"),
                           simpl(parsestring("-1/2", 1)));
  auto before = allWords(quotient);
  EXPECT_EQ(printed(quotient), "1/n^3/y^(1/2)");
  EXPECT_EQ(allWords(quotient), before);
}

// Procedures and statements: the text of the text is the same text.
TEST(RoundTrip, ProgramsPrintTheSameAgain) {
  for (const char* source :
       {"proc (x::integer, y) local a, i; option remember; a := 0; for i from 2 to x while a < 9 "
        "do if "
        "i > y then a := a+i elif i = 3 then next else break fi od; try f(a) catch \"e\": error "
        "finally g() end; a||i := [nargs, args]; return a, procname end",
        "module () local a, b; export f; a := 1; f := proc (n) a*n! end; b := x -> x+a end",
        "proc () local x; use `+` = g in x := 1+2 end; read \"file\"; save x, y; quit end"}) {
    std::string once = printedRaw(source);
    EXPECT_EQ(printedRaw(once.c_str()), once);
    std::string simple = printedSimple(source);
    EXPECT_EQ(printedSimple(simple.c_str()), simple);
  }
}

/// What simplification makes of `raw`: its text, or that it is refused (for which of several reasons
/// depends on the order in which they are met).
std::string meaningOf(DAG raw) {
  DAG object;
  std::string error = errorOf([&] { object = nerintokorel(raw); });
  if (error.empty()) return printed(object, printWithTildes);
  runHooks(HookMoment::everyStatement);  // the error ended the statement: its bindings go
  return "error";
}

/// The characters of a text but not their order: sums and sets that hold procedures come in another one
/// each time they are read. Quotes are left out, since `x := x` prints as x := 'x', and digits, since a
/// sum of floats depends on its order.
std::string charactersOf(std::string text) {
  std::erase_if(text, [](char c) { return c == '\'' || c == '.' || (c >= '0' && c <= '9'); });
  std::sort(text.begin(), text.end());
  return text;
}

void expectReadsBack(const std::string& statement) {
  DAG object, again;
  // The tilde at the end of a name stands outside its quotes, and the dot of a product behind a power
  // would be the power's decimal point: neither reads back.
  bool oneWay = statement.find("~`") != std::string::npos || statement.find(" . ") != std::string::npos;
  if (oneWay || !errorOf([&] { object = readBack(statement); }).empty()) return;
  std::string text;
  if (!errorOf([&] { text = printed(object, printWithTildes); }).empty()) return;
  if (text.find("unprotect(") != std::string::npos) return;  // three statements instead of one
  std::string error = errorOf([&] { again = readBack(text); });
  EXPECT_EQ(error, "") << statement << "\nprints " << text;
  if (!error.empty()) return;
  std::string before = meaningOf(object), after = meaningOf(again);
  EXPECT_EQ(charactersOf(before), charactersOf(after))
      << statement << "\nprints " << text << "\nmeans  " << before << "\nthen   " << after;
}

// The whole language, as random programs: what a statement prints as reads back and means what the
// statement meant.
TEST(RoundTrip, StatementsReadBackAsThemselves) {
  std::mt19937 random(20261125);
  for (int program = 0; program < 300; ++program) {
    std::vector<std::uint8_t> bytes(200);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 8);
    for (const std::string& statement : fuzz::programOf(bytes.data(), bytes.size()))
      expectReadsBack(statement);
    if (program % 50 == 0) gc();
  }
}

TEST(RoundTrip, DeepNestingIsRefusedNotCrashed) {
  DAG x = naminstall("x");
  for (int i = 0; i < 3000; ++i) x = new2(LIST, newSequence({x}));
  EXPECT_EQ(printed(x).size(), 6001u);
  for (int i = 0; i < 2000000; ++i) x = new2(LIST, x);
  EXPECT_EQ(errorOf([&] { printed(x); }), "too many levels of recursion");
  EXPECT_EQ(printed(naminstall("y")), "y");
}

}  // namespace
}  // namespace korel::test
