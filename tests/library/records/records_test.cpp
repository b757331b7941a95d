// The record format: its bytes, worked out by hand from the tables, and objects that come back the same.

#include <gtest/gtest.h>
#include <random>
#include <rapidcheck/gtest.h>
#include <string>
#include <vector>

#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "library/records/records.h"
#include "numbers/integer/integer.h"
#include "random_expressions.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel::test {
namespace {

bool append(void* target, int c) { return static_cast<std::string*>(target)->push_back(static_cast<char>(c)), true; }
void appendText(void* target, const char* text) { *static_cast<std::string*>(target) += std::string("!") + text; }

std::string written(DAG x, int flags = 0, int width = 0) {
  std::string bytes;
  PrintDotM(x, append, appendText, width, flags, nullptr, &bytes);
  return bytes;
}

struct Source {
  std::string bytes;
  std::size_t at = 0;
  std::string told;
};
int take(void* context) {
  auto& s = *static_cast<Source*>(context);
  return s.at < s.bytes.size() ? static_cast<unsigned char>(s.bytes[s.at++]) : -1;
}
void tellEnd(void* context, long) { static_cast<Source*>(context)->told += "unexpected end of file"; }
void tell(void* context, long, const char* text) { static_cast<Source*>(context)->told += text; }

DAG readBack(const std::string& bytes, std::string* told = nullptr, int flags = 0) {
  Source source{bytes, 0, ""};
  DAG x = ParseDotM(take, tellEnd, tell, tell, flags, nullptr, &source);
  if (told != nullptr) *told = source.told;
  return x;
}
std::string complaint(const std::string& bytes) {
  std::string told;
  EXPECT_EQ(readBack(bytes, &told), DAG()) << bytes;
  return told;
}
std::string shortInt(std::int64_t value) {
  std::string bytes;
  PrintINT(value, append, appendText, 0, &bytes);
  return bytes;
}

// ---- bytes

TEST(Records, ShortIntegers) {
  EXPECT_EQ(shortInt(0), "!");
  EXPECT_EQ(shortInt(57), "Z");
  EXPECT_EQ(shortInt(58), "en");
  EXPECT_EQ(shortInt(100), "_q");
  EXPECT_EQ(shortInt(-3), "~$");
  for (std::int64_t value : {0L, 1L, 57L, 58L, 255L, 256L, 4095L, 0x7fffffffL, -1L, -58L, -0x7fffffffL}) {
    Source source{shortInt(value), 0, ""};
    EXPECT_EQ(ParseINT(take, tellEnd, tell, &source), value);
  }
}

TEST(Records, BytesOfEachKind) {
  struct Row {
    const char* object;
    const char* bytes;
  };
  const Row rows[] = {
      {"12345", "\"&XB\""},
      {"0", "\"\"!"},
      {"-7", "!\"("},
      {"99", "\"#**"},
      {"x", "I\"xG6\""},
      {"\"a b\"", "Q$a~b6\""},
      {"[x, x]", "7$%\"xGF#"},
      {"{}", "<\""},
      {"[]", "7\""},
      {"x = y", "/%\"xG%\"yG"},
      {"x..y", ";%\"xG%\"yG"},
      {"f(x)", "-%\"fG6#%\"xG"},
      {"t[1]", "&%\"tG6#\"\"\""},
      {"`a{b`", "I$a|frbG6\""},
      {"'x'", ".%\"xG"},
  };
  for (const Row& row : rows) EXPECT_EQ(written(parsed(row.object)), row.bytes) << row.object;
  EXPECT_EQ(written(simpl(new3(RATIONAL, cons1, immediate(2)))), "#\"\"\"\"\"#");
  EXPECT_EQ(written(consm0), "!\"!");
  EXPECT_EQ(written(DAG()), "G");
  EXPECT_EQ(written(null), "6\"");
}

// The record of an integer, digit by digit as the table has it.
std::string integerRecord(std::int64_t value) {
  std::string digits = std::to_string(value < 0 ? -value : value), record(value < 0 ? "!" : "\"");
  record += static_cast<char>(33 + digits.size());
  for (std::size_t left = digits.size(); left > 0;) {
    int d = digits[left - 1] - '0', e = left > 1 ? digits[left - 2] - '0' : 9;
    record += static_cast<char>(e < 8 ? 43 + d + 10 * e : 33 + d);
    left -= e < 8 ? 2 : 1;
  }
  return record;
}

// Alone, and where the buffer or the line ends in the midst of them.
TEST(Records, IntegersOfEachLength) {
  std::mt19937 random(11);
  std::string whole = "7" + shortInt(5001);
  for (int round = 1; round <= 5000; ++round) {
    // No two are equal: the low digits tell the round.
    const auto high = static_cast<std::int64_t>(random() >> (round % 32));
    const std::int64_t value = (round % 3 == 0 ? -1 : 1) * (100000 * high + round);
    EXPECT_EQ(written(simpl(NewInteger(value))), integerRecord(value));
    EXPECT_EQ(readBack(integerRecord(value) + std::string(round % 13, '6')), simpl(NewInteger(value)));
    whole += integerRecord(value);
  }
  DAG list = readBack(whole);
  EXPECT_EQ(written(list), whole);
  std::string lines = written(list, 0, 79), joined;
  for (std::size_t at = 0; at < lines.size(); at += 80) {
    joined += lines.substr(at, 79);
    EXPECT_EQ(lines.size() < at + 80 ? '\n' : lines[at + 79], '\n');
  }
  EXPECT_EQ(joined, whole);
  EXPECT_EQ(readBack(lines), list);
}

TEST(Records, TheTopNameCarriesItsValue) {
  say("x9 := 5;");
  EXPECT_EQ(written(naminstall("x9")), "I#x9\"\"&6\"");
  EXPECT_EQ(written(naminstall("x9"), recordBareName), "I#x9G6\"");
  say("x9 := 'x9';");
  EXPECT_EQ(readBack("I#x9\"\"&6\""), naminstall("x9"));
  EXPECT_EQ(say("x9;"), "5");
  say("x9 := 'x9';");
}

TEST(Records, LineBreaksChangeNothing) {
  DAG x = parsed("f(x + 2*y, [a, b, c], \"text with blanks\", 123456789012345678901234567890)");
  std::string whole = written(x), broken = written(x, 0, 7);
  EXPECT_EQ(broken.find('\n'), 7u);
  EXPECT_EQ(readBack(broken), readBack(whole));
  EXPECT_EQ(readBack(whole), x);
}

// ---- round trips

RC_GTEST_PROP(Records, ExpressionsComeBackTheSame, ()) {
  const auto recipe = *recipes(4, 14 + 7);
  DAG x;
  if (!hasSimplifiedForm(recipe, &x)) return;
  std::string bytes = written(x);
  std::string told;
  DAG back = readBack(bytes, &told);
  RC_ASSERT(told == "");
  RC_ASSERT(back == x);
}

TEST(Records, LongAndDeepObjects) {
  for (const char* source : {"[seq([i, f(i), x^i], i = 1..100000)]", "{seq(i*x, i = 1..1000)}",
                             "add(i*x^i, i = 1..1000)", "2^100000", "-3^5000"}) {
    DAG x = valueOf(source);
    EXPECT_EQ(readBack(written(x)), x) << source;
  }
  DAG deep = naminstall("x");
  for (int i = 0; i < 1000; ++i) deep = simpl(newCall(naminstall("f"), {deep, deep}));
  std::string bytes = written(deep);
  EXPECT_LT(bytes.size(), 30000u);
  EXPECT_EQ(readBack(bytes), deep);
}

TEST(Records, ProceduresTablesAndModules) {
  say("p9 := proc(x::integer, y) local a, b; global g; option remember; description \"d\"; a := x + 1; "
      "try b := y catch \"e\": error end try; for a to 3 do if a = 2 then next end if end do; u -> u + a end proc:");
  say("p9r := proc(n) option remember; n^2 end proc:");
  say("p9r(3), p9r(x):");
  say("t9 := table([1 = 2, (x, y) = z]):");
  say("a9 := array(1..2, [5, 6]):");
  for (const char* name : {"p9", "p9r", "t9", "a9"}) {
    std::string shown = say((std::string("print(") + name + "); eval(" + name + ");").c_str());
    std::string bytes = written(naminstall(name));
    say((std::string(name) + " := '" + name + "';").c_str());
    std::string told;
    EXPECT_EQ(readBack(bytes, &told), naminstall(name));
    EXPECT_EQ(told, "");
    EXPECT_EQ(say((std::string("print(") + name + "); eval(" + name + ");").c_str()), shown);
    EXPECT_EQ(written(naminstall(name)), bytes);
  }
  // The order of the entries is that of addresses.
  EXPECT_EQ(say("op(4, eval(p9r))[3], op(4, eval(p9r))[x], nops([indices(op(4, eval(p9r)))]);"), "9, x^2, 2");
  EXPECT_EQ(say("t9[x, y];"), "z");
  const char* fault = checkHeap();
  EXPECT_EQ(fault, nullptr) << fault;
}

TEST(Records, BuiltinsAreKnownByTheirNames) {
  std::string bytes = written(ini("nops"));
  std::size_t at = bytes.rfind("nops");
  ASSERT_NE(at, std::string::npos);
  EXPECT_EQ(readBack(bytes), ini("nops"));
  EXPECT_EQ(say("nops([1, 2]);"), "2");
  // Another version's number, and a built-in that this one lacks.
  DAG proc = CopyAlg(ini("nops")[1]);
  bodyOf(proc) = immediate(79);
  std::string other = written(proc);
  std::string told;
  EXPECT_NE(readBack(other, &told), DAG());
  other.replace(other.rfind("ASSERT"), 6, "nsuchb");
  EXPECT_EQ(readBack(other, &told), DAG());
  EXPECT_EQ(told, "unknown built-in function `nsuchb` ignored");
}

// Objects are simplified some records late: those that hold them, and refer back to them, get what they have become.
TEST(Records, ObjectsBecomeOthersWhileTheyWait) {
  // [x + x, f of the same, the same, {y, x, y}, (x, y), z] as no writer would have it.
  DAG x = readBack("7(,&%\"xG\"\"\"F$F%-%\"fG6#F#F#<%%\"yGF$F*6$F$F*%\"zG");
  EXPECT_EQ(x, parsed("[2*x, f(2*x), 2*x, {x, y}, x, y, z]"));
  // Of a record that breaks off nothing is kept, not even what had all its parts.
  std::string told;
  EXPECT_EQ(readBack("7$,&%\"xG\"\"\"F$F%", &told, recordKeepNumbers), DAG());
  EXPECT_EQ(told, "unexpected end of file");
  EXPECT_EQ(readBack("F#", &told, recordContinueNumbers), DAG());
  EXPECT_EQ(told, "invalid back reference");
}

// ---- bad input

TEST(Records, EachFailureHasItsText) {
  EXPECT_EQ(complaint(""), "unexpected end of file");
  EXPECT_EQ(complaint("7$%\"xG"), "unexpected end of file");
  EXPECT_EQ(complaint("F\""), "invalid back reference");
  EXPECT_EQ(complaint("7#F\""), "invalid back reference");  // a list in itself
  EXPECT_EQ(complaint("6!"), "invalid dag length");
  EXPECT_EQ(complaint("7!"), "invalid dag length");
  EXPECT_EQ(complaint("7~\""), "invalid dag length");
  EXPECT_EQ(complaint("\"#"), "unexpected end of file");
  EXPECT_EQ(complaint("\"\"X"), "too many digits in digit encoding");
  EXPECT_EQ(complaint("6[[[[[[[[[k"), "short integer too large for this system");
  EXPECT_EQ(complaint("6{"), "invalid character in short integer encoding");
  EXPECT_EQ(complaint("i"), "unexpected DAG type: 0,105,(i)");
  EXPECT_EQ(complaint("]"), "unexpected DAG type: 5,93,(])");
  EXPECT_EQ(complaint("#%\"xG%\"yG"), "syntax error while reading file");
  EXPECT_EQ(complaint("6jjjjjj~"), "invalid character in short integer encoding");
}

// Flipped, lost and strange bytes: an object, or a message, and a heap in order.
TEST(Records, DamagedRecordsAreRefused) {
  say("p8 := proc(x::integer) local a; option remember; a := x; try a/0 catch \"e\": end try; for a in [x] do next end "
      "do end proc:");
  say("t8 := table([1 = [x, y], z = 2.5]):");
  say("m8 := module() export e; local l; e := () -> l end module:");
  std::vector<std::string> records = {written(naminstall("p8")), written(naminstall("t8")), written(naminstall("m8"))};
  for (const char* source :
       {"[x, 1/2, 3.5, 2 + I, \"text\", f(y)^2 + 3*t[1, 2], {a, b, c}, x -> x^2, 'q', a .. b, u::v, m:-e]",
        "[12345678901234567890, -7, x < y, a and b or not c, `a b`]"})
    records.push_back(written(parsed(source)));
  std::mt19937 random(5);
  int refused = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string bytes = records[random() % records.size()];
    for (unsigned k = 0, n = 1 + random() % 3; k < n; ++k) {
      std::size_t at = random() % bytes.size();
      switch (random() % 4) {
        case 0: bytes[at] = static_cast<char>(33 + random() % 94); break;
        case 1: bytes.erase(at, 1 + random() % 4); break;
        case 2: bytes.insert(at, 1, static_cast<char>(33 + random() % 94)); break;
        default: bytes.resize(at); break;
      }
      if (bytes.empty()) bytes = "!";
    }
    std::string told;
    std::string error = errorOf([&] { readBack(bytes, &told, round % 2 == 0 ? 0 : recordOnLink); });
    refused += !told.empty() || !error.empty();
    // What has been assigned by accident is not to be run by what follows.
    if (round % 200 == 199) {
      say("0:");
      for (const char* name : {"p8", "t8", "m8"}) naminstall(name)[1] = DAG();
      const char* fault = checkHeap();
      ASSERT_EQ(fault, nullptr) << fault;
    }
  }
  EXPECT_GT(refused, 5000);
}

}  // namespace
}  // namespace korel::test
