#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "frame/errors.h"
#include "kernel_fixture.h"
#include "text/raw_object.h"
#include "text/read/lexer.h"
#include "text/read/source.h"
#include "text/read/tokens.h"

namespace korel::test {
namespace {

/// The object that `source` is read as, or the text and position of the error.
std::string read(const std::string& source) {
  std::string result;
  std::string error = errorOf([&] { result = raw(parsestring(source.c_str(), 1)); });
  const char* intro = "incorrect syntax in parse: ";
  return error.empty() ? result : error.substr(std::strlen(intro));
}

// Each token where no rule has a place for it: the row's text, and the position behind the character
// that was looked at last.
TEST(Lexer, EveryTokenIsNamedWhereItIsUnexpected) {
  const char* rows[][2] = {
      {"and", "reserved word `and` unexpected (4)"},
      {"a := :=", "`:=` unexpected (8)"},
      {"a by", "reserved word `by` unexpected (5)"},
      {"description", "reserved word `description` unexpected (12)"},
      {"a do", "reserved word `do` unexpected (5)"},
      {"elif", "reserved word `elif` unexpected (5)"},
      {"a....b...c", "`..` unexpected (10)"},
      {"else", "reserved word `else` unexpected (5)"},
      {"end", "reserved word `end` unexpected (4)"},
      {"fi", "reserved word `fi` unexpected (3)"},
      {"a for", "reserved word `for` unexpected (6)"},
      {"a from", "reserved word `from` unexpected (7)"},
      {"global", "reserved word `global` unexpected (7)"},
      {"a + if", "reserved word `if` unexpected (7)"},
      {"a in", "reserved word `in` unexpected (5)"},
      {"local", "reserved word `local` unexpected (6)"},
      {"a b", "missing operator or `;` (4)"},
      {"a 12", "unexpected number (5)"},
      {"a 1e2", "unexpected real number (6)"},
      {"a &x &y &z b", "unexpected neutral operator (11)"},
      {"a not", "reserved word `not` unexpected (6)"},
      {"od", "reserved word `od` unexpected (3)"},
      {"options", "reserved word `option` or `options` unexpected (8)"},
      {"or", "reserved word `or` unexpected (3)"},
      {"@@", "`@@` unexpected (3)"},
      {"a proc", "reserved word `proc` unexpected (7)"},
      {"intersect", "`@` or reserved word `intersect` unexpected (10)"},
      {"@", "`@` or reserved word `intersect` unexpected (2)"},
      {"a stop", "reserved words `quit`, `done`, or `stop` unexpected (7)"},
      {"a read", "reserved word `read` unexpected (7)"},
      {"<=", "unexpected relational operator (3)"},
      {"<>", "unexpected relational operator (3)"},
      {">=", "unexpected relational operator (3)"},
      {"a save", "reserved word `save` unexpected (7)"},
      {"a \"b\"", "unexpected string (6)"},
      {"minus", "reserved words `union` or `minus` unexpected (6)"},
      {"a then", "reserved word `then` unexpected (7)"},
      {"a to", "reserved word `to` unexpected (5)"},
      {"a while", "reserved word `while` unexpected (8)"},
      {"mod", "reserved word `mod` unexpected (4)"},
      {"::", "symbol unexpected (3)"},
      {"||", "`||` unexpected (3)"},
      {"(:", "`:` unexpected (3)"},
      {",", "`,` unexpected (2)"},
      {"/", "`/` unexpected (2)"},
      {"a $ $", "`$` unexpected (6)"},
      {"=", "`=` unexpected (2)"},
      {"a # b", "unexpected end of input (8)"},
      {"!", "`!` unexpected (2)"},
      {">", "`>` unexpected (2)"},
      {"a %1", "unexpected label (4)"},
      {"a = b < c", "`<` unexpected (8)"},
      {"a {", "`{` unexpected (4)"},
      {"1[", "`[` unexpected (3)"},
      {"a -> (b) + c -> d", "`->` unexpected (16)"},
      {"proc(", "`;` unexpected (7)"},
      {"module (m", "`;` unexpected (11)"},
      {"proc((", "`(` unexpected (7)"},
      {"a &* &* &* b", "`&*` unexpected (11)"},
      {"a ^ -b", "`-` unexpected (6)"},
      {"+ +", "`+` unexpected (4)"},
      {"**", "`^` unexpected (3)"},
      {"*", "`*` unexpected (2)"},
      {"a 'b'", "unexpected single forward quote (4)"},
      {"}", "`}` unexpected (2)"},
      {"]", "`]` unexpected (2)"},
      {")", "`)` unexpected (2)"},
      {"(;", "`;` unexpected (3)"},
      {"|", "`|` unexpected (2)"},
      {"a try", "reserved word `try` unexpected (6)"},
      {"catch", "reserved word `catch` unexpected (6)"},
      {"finally", "reserved word `finally` unexpected (8)"},
      {"a break", "reserved word `break` unexpected (8)"},
      {"a next", "reserved word `next` unexpected (7)"},
      {"a error", "reserved word `error` unexpected (8)"},
      {"a return", "reserved word `return` unexpected (9)"},
      {"a module", "reserved word `module` unexpected (9)"},
      {"export", "reserved word `export` unexpected (7)"},
      {"1:-", "`:-` unexpected (4)"},
      {"a use", "reserved word `use` unexpected (6)"},
      {".a.", "missing operator or `;` (3)"},
      {"a..b . .c", "missing operator or `;` (10)"},
      {"a ^ . b", "`.` unexpected (6)"},
      {"a ^. b", "`.` unexpected (5)"},
      {"& b", "invalid neutral operator (2)"},
      {"a &1", "invalid neutral operator (4)"},
      {"?", "character `?` unexpected (2)"},
      {"\\a", "control character `\\a` unexpected (3)"},
      {"\\b", "control character `\\b` unexpected (3)"},
      {"\\e", "control character `\\e` unexpected (3)"},
      {"\x01", "control character unexpected (2)"},
      {"\x7f", "symbol unexpected (2)"},
      {"\\n", "syntax error, `\\` unexpected (3)"},
      {"a\\`", "syntax error, `\\` unexpected (4)"},
  };
  for (auto [source, error] : rows) EXPECT_EQ(read(source), error) << source;
}

// Reserved words, and their neighbours in the table that are none.
TEST(Lexer, ReservedWordsAreFoundBothWays) {
  int words = 0;
  for (int token = firstNamedToken; token < tokenEnd; ++token)
    if (const char* word = TokenToKeyWord(token)) {
      EXPECT_EQ(KeyWordToToken(word), token) << word;
      EXPECT_EQ(KeyWordToToken((std::string(word) + "x").c_str()), 0) << word;
      ++words;
    }
  EXPECT_EQ(words, 38);  // of 42: some tokens have more than one
  for (const char* word : {"done", "quit", "stop"}) EXPECT_EQ(KeyWordToToken(word), T_QUIT);
  EXPECT_STREQ(TokenToKeyWord(T_QUIT), "done");
  EXPECT_STREQ(TokenToKeyWord(T_UNION), "minus");
  for (const char* text : {"", "i", "e", "Do", "ifi", "an", "zz", "whilf"}) EXPECT_EQ(KeyWordToToken(text), 0) << text;
  EXPECT_EQ(TokenToKeyWord(T_NAME), nullptr);
}

TEST(Lexer, NamesOfEveryKind) {
  const char* rows[][2] = {
      {"_x1", "_x1"},
      {"\xe4\xff_", "\xe4\xff_"},
      {"%", "%"},
      {"%%%", "%%%"},
      {"%%%%", "missing operator or `;` (5)"},
      {"%a1?b", "%a1?b"},
      {"%?", "%?"},
      {"~", "~"},
      {"~a$1_", "~a$1_"},
      {"`if`", "if"},
      {"`a``b`", "a`b"},
      {"``", ""},
      {"`\\``", "`"},
      {"ab\\\n  cd", "missing operator or `;` (9)"},
      {"ab\\\ncd", "abcd"},
      {"a\\ b", "ab"},
      {"a &+- b", "FUNCTION(&+-,EXPSEQ(a,b))"},
      {"a&b1 c", "FUNCTION(&b1,EXPSEQ(a,c))"},
      {"a &* b &** c", "FUNCTION(&*,EXPSEQ(a,FUNCTION(&**,EXPSEQ(b,c))))"},
      {"a &^2", "FUNCTION(&^,EXPSEQ(a,2))"},
  };
  for (auto [source, object] : rows) EXPECT_EQ(read(source), object) << source;
}

TEST(Lexer, DotsByTheBlanksAroundThem) {
  const char* rows[][2] = {
      {"1.5", "FLOAT(15,-1)"},
      {"1 .5", "FUNCTION(.,EXPSEQ(1,5))"},
      {"1 . 5", "FUNCTION(.,EXPSEQ(1,5))"},
      {"1. 5", "unexpected number (5)"},
      {"1.x", "missing operator or `;` (4)"},
      {"1.5.2", "FUNCTION(.,EXPSEQ(FLOAT(15,-1),2))"},
      {"a.5", "FUNCTION(.,EXPSEQ(a,5))"},
      {"a. .5", "FUNCTION(.,EXPSEQ(a,FLOAT(5,-1)))"},
      {"1..2", "RANGE(1,2)"},
      {"1.....2", "RANGE(1,2)"},
      {"1 # c\n.5", "FUNCTION(.,EXPSEQ(1,5))"},
      {"`.`() . b . c", "FUNCTION(.,EXPSEQ(b,c))"},
  };
  for (auto [source, object] : rows) EXPECT_EQ(read(source), object) << source;
}

TEST(Lexer, NumbersAreExact) {
  const char* rows[][2] = {
      {"0", "0"},
      {"0000", "0"},
      {"0001", "1"},
      {"1073741823", "1073741823"},
      {"2147483647", "2147483647"},
      {"2147483648", "2147483648"},
      {"4294967296", "4294967296"},
      {"10000000000000000", "10000000000000000"},
      {"0e5", "FLOAT(0,5)"},
      {"00.05", "FLOAT(5,-2)"},
      {"1.005", "FLOAT(1005,-3)"},
      {"1.0000000000000000000001", "FLOAT(10000000000000000000001,-22)"},
      {"99999.000000001", "FLOAT(99999000000001,-9)"},
      {"12345678901.12345678901", "FLOAT(1234567890112345678901,-11)"},
      {"1E+5", "FLOAT(1,5)"},
      {"1.5e-2147483640", "FLOAT(15,-2147483641)"},
      {"2ex", "missing operator or `;` (4)"},
      {"1e2147483648", "exponent too large (12)"},
  };
  for (auto [source, object] : rows) EXPECT_EQ(read(source), object) << source;

  // Digits of every length on both sides of the dot, put together as text.
  for (int before = 1; before <= 20; ++before)
    for (int after = 1; after <= 20; ++after) {
      std::string whole = std::string("98765432109876543210").substr(0, before);
      std::string part = std::string("00012345678901234567").substr(20 - after, after);
      EXPECT_EQ(read(whole + "." + part), "FLOAT(" + whole + part + "," + std::to_string(-after) + ")");
    }
  std::string digits(500000, '3');
  EXPECT_EQ(read(digits + "." + digits), "FLOAT(" + digits + digits + ",-500000)");
}

TEST(Lexer, QuotedText) {
  EXPECT_EQ(read("\"\\a\\b\\e\\f\\n\\r\\t\\v\\\\\\\"\\`\\x\""), "\"\a\b\033\f\n\r\t\v\\\"`x\"");
  EXPECT_EQ(read("\"a\"\"b\""), "\"a\"b\"");
  EXPECT_EQ(read("\"a\" \n\t\"b\""), "\"ab\"");
  EXPECT_EQ(read("\"a\" # c\n\"b\""), "unexpected string (12)");
  EXPECT_EQ(read("`a` `b`"), "missing operator or `;` (8)");
  EXPECT_EQ(read("\"abc"), "unexpected end of input (7)");
  EXPECT_EQ(read("\"a\\\nb\""), "\"ab\"");

  std::string shown = outputOf([] { EXPECT_EQ(read("\"a\nb\n\""), "\"a\nb\n\""); });
  const std::string warning = "Warning, incomplete string;  use \" to end the string\n";
  EXPECT_EQ(shown, warning + warning);
  shown = outputOf([] { EXPECT_EQ(read("`a\nb`"), "a\nb"); });
  EXPECT_EQ(shown, "Warning, incomplete quoted name;  use ` to end the name\n");
  // Right behind the opening quote a line break is meant.
  EXPECT_EQ(outputOf([] { read("\"\n\""); }), "");
}

// What a string holds behind its statement, and what stands for its end.
TEST(Lexer, EndsOfStrings) {
  auto parse = [](const char* source, int addTerminator) {
    std::string result;
    std::string error = errorOf([&] { result = raw(parsestring(source, addTerminator)); });
    return error.empty() ? result : error;
  };
  const std::string ended = "incorrect syntax in parse: unexpected end of input";
  EXPECT_EQ(parse("", 0), "NULL");
  EXPECT_EQ(parse("# only", 0), "NULL");
  EXPECT_EQ(parse("a;", 0), "a");
  EXPECT_EQ(parse("a", 0).substr(0, ended.size()), ended);
  EXPECT_EQ(parse("quit", 0), "STOP()");
  for (const char* clean : {"a;", "a:", "a; # b", "a;\n\n", "quit;"})
    EXPECT_EQ(outputOf([&] { parse(clean, 1); }), "") << clean;
  for (const char* more : {"a; b", "a;b", "a:\n\n c"})
    EXPECT_EQ(outputOf([&] { parse(more, 1); }), "Warning, extra characters at end of parsed string\n") << more;
}

}  // namespace
}  // namespace korel::test
