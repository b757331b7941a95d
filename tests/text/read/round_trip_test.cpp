// Objects to text and back: random expressions, raw and simplified, and what printing leaves
// behind.

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <rapidcheck.h>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

#include "eval/simplify/simplify.h"
#include "frame/output.h"
#include "kernel_fixture.h"
#include "library/save.h"
#include "numbers/integer/integer.h"
#include "program_generator.h"
#include "random_expressions.h"
#include "session/reset_hooks.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/print/printer.h"
#include "text/printed_text.h"
#include "text/read/input.h"
#include "text/read/source.h"

namespace korel::test {
namespace {

std::string showRecipe(const Recipe& r) { return printed(build(r)); }

// Every word of an object and of what it refers to.
void collectWords(DAG x, std::set<Word>& seen, std::vector<Word>& words) {
  words.push_back(x.word);
  if (!isObject(x) || !seen.insert(x.word).second) return;
  words.push_back(headerWord(x));
  for (Word i = 1; i < lengthOf(x); ++i) {
    bool raw = hasTag(x, INTPOS) || hasTag(x, INTNEG) || ((hasTag(x, NAME) || hasTag(x, STRING)) && i > 2);
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

TEST(RoundTrip, SimplifiedObjectsReadBackAsThemselves) {
  EXPECT_TRUE(rc::check([] {
    Recipe r = *recipes(3);
    DAG object;
    RC_PRE(hasSimplifiedForm(r, &object));
    std::string text = printed(object);
    DAG again;
    std::string error = errorOf([&] { again = nerintokorel(readBack(text)); });
    if (!error.empty() || again != object) RC_LOG() << showRecipe(r) << "\n  prints " << text << "\n";
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
      RC_LOG() << text << "\n  is " << printed(object) << ", reads as " << (error.empty() ? printed(again) : error)
               << "\n";
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
    printed(object, printProgramText | printWithTildes, 20);
    RC_ASSERT(allWords(object) == before);
  }));
  DAG tilde = naminstall("n~");
  DAG quotient = newObject(PROD, tilde, NewSoftInt(Newint(-3)), naminstall("y"), simpl(parsestring("-1/2", 1)));
  auto before = allWords(quotient);
  EXPECT_EQ(printed(quotient), "1/n^3/y^(1/2)");
  EXPECT_EQ(allWords(quotient), before);
}

// Procedures and statements: the text of the text is the same text.
TEST(RoundTrip, ProgramsPrintTheSameAgain) {
  for (const char* source : {"proc (x::integer, y) local a, i; option remember; a := 0; for i from 2 to x while a < 9 "
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
  if (!errorOf([&] { object = readBack(statement); }).empty()) return;
  std::string text;
  if (!errorOf([&] { text = printed(object, printProgramText); }).empty()) return;
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
    for (const std::string& statement : fuzz::programOf(bytes.data(), bytes.size())) expectReadsBack(statement);
    if (program % 50 == 0) gc();
  }
}

// ---- saved text

/// A text in which something means more than itself to the printer, the reader of lines, or the lexer.
std::string randomText(std::mt19937& random) {
  static const std::string pieces[] = {
      "kq", "b1", "_",    "%",    "$",  "?",  "!",   "#", "~",  "~",  " ", "\t", "\n",       "\\",           "`",
      "\"", "'",  "\x1b", "\x01", "&*", "if", "end", ";", "\r", "||", ".", "1",  "\xc3\xa9", "\xe2\x82\xac", "\xff"};
  std::string text;
  std::size_t length = random() % 4 == 0 ? random() % 120 : random() % 6;
  while (text.size() < length) text += pieces[random() % std::size(pieces)];
  // `%` and its kin are the last results when they are read.
  return text.find_first_not_of('%') == std::string::npos ? "kq" + text : text;
}

DAG listOf(const std::vector<std::string>& texts) {
  DAG members = newl2(static_cast<Word>(texts.size()) + 1, EXPSEQ);
  for (std::size_t i = 0; i < texts.size(); ++i)
    members[static_cast<Word>(i) + 1] = (i % 2 == 0 ? strinstall : naminstall)(texts[i].c_str());
  return simpl(new2(LIST, simpl(members)));
}

// Every name and string that `save` writes reads back as itself: on both sides of an assignment, wherever
// the lines break.
TEST(RoundTrip, SavedTextsReadBack) {
  std::mt19937 random(7082019);
  char path[] = "/tmp/korel_saved_XXXXXX";
  close(mkstemp(path));
  for (int round = 0; round < 150 && !HasFailure(); ++round) {
    std::vector<std::string> texts(40);
    for (std::string& text : texts) text = randomText(random);
    std::string target = randomText(random);
    if (std::find(texts.begin(), texts.end(), target) != texts.end()) continue;
    DAG name = naminstall(target.c_str());
    name[1] = listOf(texts);
    EXPECT_EQ(errorOf([&] { WriteSourceFile(naminstall(path), newSequence({name})); }), "");
    name[1] = DAG();
    std::ifstream saved(path);
    for (std::string line; std::getline(saved, line);)
      ASSERT_NE(*firstnonblank(line.c_str()), '!') << line;  // it would run as a command
    EXPECT_EQ(say(("read \"" + std::string(path) + "\":").c_str()), "");
    name = naminstall(target.c_str());
    EXPECT_EQ(name[1], listOf(texts)) << round << ": " << printed(listOf(texts));
    name[1] = DAG();
  }
  unlink(path);
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
