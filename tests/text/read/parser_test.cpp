#include <gtest/gtest.h>
#include <string>

#include "frame/errors.h"
#include "kernel_fixture.h"
#include "store/append.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/raw_object.h"
#include "text/read/parser.h"
#include "text/read/source.h"

namespace korel::test {
namespace {

std::string parsed(const std::string& source) {
  std::string result;
  std::string error = errorOf([&] {
    DAG x = parsestring(source.c_str(), 1);
    result = x ? raw(x) : "nothing";
  });
  return error.empty() ? result : error;
}

struct Production {
  const char* source;
  const char* object;
};

void expectObjects(std::initializer_list<Production> rows) {
  for (const Production& row : rows) EXPECT_EQ(parsed(row.source), row.object) << row.source;
}

TEST(Parser, OperatorsByTheirLayers) {
  expectObjects({
      {"a-b+c", "SUM(a,1,b,-1,c,1)"},
      {"(a+b)+c", "SUM(a,1,b,1,c,1)"},
      {"a+(b+c)", "SUM(a,1,SUM(b,1,c,1),1)"},
      {"-a^2", "SUM(PROD(a,2),-1)"},
      {"+a", "a"},
      {"a*b/c", "PROD(a,1,b,1,c,-1)"},
      {"a*b*c^2", "PROD(a,1,b,1,c,2)"},
      {"x^y", "POWER(x,y)"},
      {"x^2.5", "POWER(x,FLOAT(25,-1))"},
      {"x**2", "PROD(x,2)"},
      {"2^(3^4)", "POWER(2,PROD(3,4))"},
      {"a@b@c", "FUNCTION(@,EXPSEQ(FUNCTION(@,EXPSEQ(a,b)),c))"},
      {"f@@2", "FUNCTION(@@,EXPSEQ(f,2))"},
      {"a.b.c", "FUNCTION(.,EXPSEQ(a,b,c))"},
      {"a . b", "FUNCTION(.,EXPSEQ(a,b))"},
      {"a &* b", "FUNCTION(&*,EXPSEQ(a,b))"},
      {"a &x b &y c", "FUNCTION(&y,EXPSEQ(FUNCTION(&x,EXPSEQ(a,b)),c))"},
      {"&x(1, 2)", "FUNCTION(&x,EXPSEQ(1,2))"},
      {"&x()", "FUNCTION(&x,NULL)"},
      {"a+b mod c", "FUNCTION(mod,EXPSEQ(SUM(a,1,b,1),c))"},
      {"a mod b+c", "SUM(FUNCTION(mod,EXPSEQ(a,b)),1,c,1)"},
      {"a union b minus c", "FUNCTION(minus,EXPSEQ(FUNCTION(union,EXPSEQ(a,b)),c))"},
      {"a intersect b", "FUNCTION(intersect,EXPSEQ(a,b))"},
      {"n!!", "FUNCTION(factorial,EXPSEQ(FUNCTION(factorial,EXPSEQ(n))))"},
      {"a >= b", "LESSEQ(b,a)"},
      {"a > b", "LESSTHAN(b,a)"},
      {"a <> b", "INEQUAT(a,b)"},
      {"a = 1..2", "EQUATION(a,RANGE(1,2))"},
      {"a..b", "RANGE(a,b)"},
      {"a or b and not c", "OR(a,AND(b,NOT(c)))"},
      {"x $ 3", "FUNCTION($,EXPSEQ(x,3))"},
      {"$ 1..3", "FUNCTION($,EXPSEQ(RANGE(1,3)))"},
      {"x::t", "DCOLON(x,t)"},
      {"a, b, (c, d)", "EXPSEQ(a,b,EXPSEQ(c,d))"},
      {"(a, b), c", "EXPSEQ(a,b,c)"},
  });
}

TEST(Parser, Primaries) {
  expectObjects({
      {"0.5", "FLOAT(5,-1)"},
      {"1.50", "FLOAT(150,-2)"},
      {"1.", "FLOAT(1,0)"},
      {".5e2", "FLOAT(5,1)"},
      {"2e3", "FLOAT(2,3)"},
      {"2e", "FLOAT(2,0)"},
      {"1.5e-3", "FLOAT(15,-4)"},
      {"00012", "12"},
      {"1073741824", "1073741824"},
      {"123456789012345678901234567890", "123456789012345678901234567890"},
      {"f(x)(y)", "FUNCTION(FUNCTION(f,EXPSEQ(x)),EXPSEQ(y))"},
      {"t[1, 2][3]", "TABLEREF(TABLEREF(t,EXPSEQ(1,2)),EXPSEQ(3))"},
      {"f()", "FUNCTION(f,NULL)"},
      {"m:-x", "MEMBER(m,x)"},
      {":-x", "MEMBER(NULL,x)"},
      {"a||1||(b, c)", "CATENATE(CATENATE(a,1),EXPSEQ(b,c))"},
      {"\"s\"||x", "CATENATE(\"s\",x)"},
      {"'a', ''b''", "EXPSEQ(UNEVAL(a),UNEVAL(UNEVAL(b)))"},
      {"{}, [], {a}, [a, b]", "EXPSEQ(SET(NULL),LIST(NULL),SET(EXPSEQ(a)),LIST(EXPSEQ(a,b)))"},
      {"<a, b>", "FUNCTION(rtable/ConstructColumn,EXPSEQ(a,EXPSEQ(b)))"},
      {"<a | b | c>", "FUNCTION(rtable/ConstructRow,EXPSEQ(a,EXPSEQ(b,c)))"},
      {"<a>", "FUNCTION(rtable/ConstructColumn,EXPSEQ(a))"},
      {"`a b`, `if`, %, %%%, %x, ~y", "EXPSEQ(a b,if,%,%%%,%x,~y)"},
      {"`a``b`", "a`b"},
      {"\"ab\" \"cd\"", "\"abcd\""},
      {"\"\\n\\t\\\"\"", "\"\n\t\"\""},
      {"x -> x^2", "PROC(EXPSEQ(x),LIST(NULL),EXPSEQ(operator,arrow),NULL,PROD(x,2),NULL,NULL,NULL)"},
      {"() -> 1", "PROC(NULL,LIST(NULL),EXPSEQ(operator,arrow),NULL,1,NULL,NULL,NULL)"},
      {"(x, y) -> if x then y fi", "PROC(EXPSEQ(x,y),LIST(NULL),EXPSEQ(operator,arrow),NULL,IF(x,y),NULL,NULL,NULL)"},
      {"proc(a, b::t) local c, d::u; option o = 1; global g; description \"d\"; a end proc",
       "PROC(EXPSEQ(a,DCOLON(b,t)),LIST(EXPSEQ(c,DCOLON(d,u))),EXPSEQ(EQUATION(o,1)),NULL,a,"
       "EXPSEQ(\"d\"),EXPSEQ(g),NULL)"},
      {"module m() export x; local y; x := y end",
       "MODDEF(NULL,LIST(EXPSEQ(y)),NULL,EXPSEQ(x),ASSIGN(x,y),NULL,NULL,NULL,m)"},
  });
}

TEST(Parser, Statements) {
  expectObjects({
      {"", "NULL"},
      {";", "NULL"},
      {"a, b := 1, 2", "ASSIGN(EXPSEQ(a,b),EXPSEQ(1,2))"},
      {"read f", "READ(f)"},
      {"save a, f", "SAVE(EXPSEQ(a,f))"},
      {"do od", "FOR(NULL,1,1,NULL,true,NULL)"},
      {"for i to 3 do x; y od", "FOR(i,1,1,3,true,STATSEQ(x,y))"},
      {"to 3 while c by 2 from 1 do x end do", "FOR(NULL,1,2,3,c,x)"},
      {"for i in l while c do x end", "FOR(i,l,c,x)"},
      {"if a then b end", "IF(a,b)"},
      {"if a then b elif c then d else e fi", "IF(a,b,c,d,e)"},
      {"if a then fi", "IF(a,NULL)"},
      {"try x end", "TRY(x)"},
      {"try x catch \"a\", \"b\": y catch: w finally z end try", "TRY(x,EXPSEQ(\"a\",\"b\"),y,NULL,w,z)"},
      {"try x finally z end", "TRY(x,z)"},
      {"error", "ERROR(NULL)"},
      {"error \"m\", 1", "ERROR(EXPSEQ(\"m\",1))"},
      {"return", "RETURN(NULL)"},
      {"return a, b", "RETURN(EXPSEQ(a,b))"},
      {"break", "BREAK()"},
      {"next", "NEXT()"},
      {"quit", "STOP()"},
      {"use a, b = c, m:-d in x end use", "USE(EXPSEQ(a,EQUATION(b,c),MEMBER(m,d)),x)"},
      {"proc() x;; y; end", "PROC(NULL,LIST(NULL),NULL,NULL,STATSEQ(x,y),NULL,NULL,NULL)"},
      {"proc() x; quit end", "PROC(NULL,LIST(NULL),NULL,NULL,STATSEQ(x,STOP()),NULL,NULL,NULL)"},
  });
}

TEST(Parser, ErrorsNameWhatWasUnexpected) {
  const char* rows[][2] = {
      {"1 +", "`;` unexpected"},
      {"a b", "missing operator or `;`"},
      {"a^b^c", "`^` unexpected"},
      {"a^-b", "`-` unexpected"},
      {"a * -b", "`-` unexpected"},
      {"a < b < c", "`<` unexpected"},
      {"a <= b <= c", "unexpected relational operator"},
      {"f(1", "`;` unexpected"},
      {"[1)", "`)` unexpected"},
      {"1 2", "unexpected number"},
      {"1 2e3", "unexpected real number"},
      {"1 \"a\"", "unexpected string"},
      {"then", "reserved word `then` unexpected"},
      {"a and or b", "reserved word `or` unexpected"},
      {"a union", "`;` unexpected"},
      {"union a", "reserved words `union` or `minus` unexpected"},
      {"a := := b", "`:=` unexpected"},
      {"&1", "invalid neutral operator"},
      {"?", "character `?` unexpected"},
      {"%1", "undefined label"},
      {"a @@", "`;` unexpected"},
      {"\x01", "control character unexpected"},
      {"proc(x:t) end", "`:` is obsolete, use `::` instead"},
      {"proc() local a; local b; end", "repeated local part"},
      {"proc() global a; global b; end", "repeated global part"},
      {"proc() option a; options b; end", "repeated options part"},
      {"proc() description a; description b; end", "repeated description part"},
      {"module() export a; export b; end", "repeated export part"},
      {"for i from 1 from 2 do od", "repeated from part"},
      {"for i by 1 by 2 do od", "repeated by part"},
      {"for i to 1 to 2 do od", "repeated to part"},
      {"while a while b do od", "repeated while part"},
      {"1e99999999999", "exponent too large"},
  };
  for (auto [source, message] : rows) {
    std::string error = parsed(source);
    EXPECT_EQ(error.substr(0, error.rfind(" (")), "incorrect syntax in parse: " + std::string(message)) << source;
  }
}

// Whatever nests ends in the parser's own error; what only grows is read at any length.
TEST(Parser, DepthIsBoundedAndLengthIsNot) {
  auto repeated = [](const char* part, int n) {
    std::string result;
    for (int i = 0; i < n; ++i) result += part;
    return result;
  };
  const std::string overflow = "incorrect syntax in parse: yacc stack overflow";
  for (const char* part : {"(", "[", "{f(", "not ", "a^(", "if a then ", "proc() ", "x -> ", "try "}) {
    std::string error = parsed(repeated(part, 100000));
    EXPECT_EQ(error.substr(0, overflow.size()), overflow) << part;
  }
  EXPECT_NE(parsed(repeated("(", 200) + "x" + repeated(")", 200)), overflow);
  DAG sum = parsestring((repeated("x+", 100000) + "x").c_str(), 1);
  EXPECT_EQ(lengthOf(sum), 2 * 100001u + 1);
  std::string digits = repeated("7", 1000000);
  DAG big = parsestring(digits.c_str(), 1);
  EXPECT_EQ(rawInteger(big), digits);
}

// Growing objects get slack that is a well-formed block, so that the heap stays walkable.
TEST(Append, SlackIsABlockOfItsOwn) {
  DAG s = new2(EXPSEQ, cons1);
  for (int i = 2; i <= 5000; ++i) s = Append2(s, immediate(i));
  ASSERT_EQ(lengthOf(s), 5001u);
  for (int i = 1; i <= 5000; ++i) ASSERT_EQ(s[i], immediate(i));
  DAG behind(s.word + 4 * lengthOf(s) + 4);
  if (apl[0] == s) {
    EXPECT_EQ(tagOf(behind), GARBAGE);
  }
  DAG p = new3(PROD, naminstall("a"), cons1);
  for (int i = 0; i < 1000; ++i) p = Append3(p, naminstall("b"), cons1);
  EXPECT_EQ(lengthOf(p), 2003u);
}

}  // namespace
}  // namespace korel::test
