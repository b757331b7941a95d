// The character layer: where lines end, to the column.

#include <gtest/gtest.h>
#include <string>

#include "store/long_string.h"
#include "text/print/emit.h"
#include "text/printed_text.h"

namespace korel::test {
namespace {

std::string emitted(int width, void (*body)()) {
  std::string result;
  InitializeOutput(appendTo, appendFailureTo, nullptr, width, &result);
  body();
  return result;
}

TEST(Emit, CharactersBreakAtTheWidthWithAMark) {
  EXPECT_EQ(emitted(5, [] { EmitString("abcde"); }), "abcde");
  EXPECT_EQ(emitted(5, [] { EmitString("abcdef"); }), "abcde\\\nf");
  EXPECT_EQ(emitted(5, [] { EmitString("ab\ncdefgh"); }), "ab\ncdefg\\\nh");
  EXPECT_EQ(emitted(0, [] { EmitString("abcdefghijklm"); }), "abcdefghijklm");
  EXPECT_EQ(emitted(-1, [] { EmitString("abcdefghijklm"); }), "abcdefghijklm");
}

TEST(Emit, ABlankInTheLastColumnIsALineEnd) {
  EXPECT_EQ(emitted(5, [] { EmitString("abc"), EmitSpace(), EmitString("d"); }), "abc d");
  EXPECT_EQ(emitted(5, [] { EmitString("abcd"), EmitSpace(), EmitString("d"); }), "abcd\nd");
  EXPECT_EQ(emitted(5, [] { EmitString("abcde"), EmitSpace(), EmitString("d"); }), "abcde\nd");
}

TEST(Emit, WordsMoveToALineOnWhichTheyFit) {
  EXPECT_EQ(emitted(6, [] { EmitString("abc"), EmitToken("def"); }), "abcdef");
  EXPECT_EQ(emitted(6, [] { EmitString("abcd"), EmitToken("def"); }), "abcd\ndef");
  EXPECT_EQ(emitted(6, [] { EmitString("abcd"), EmitToken("123456"); }), "abcd\n123456");
  // Longer than a line: begins where it stands, and is marked where it breaks.
  EXPECT_EQ(emitted(6, [] { EmitString("abcd"), EmitToken("1234567"); }), "abcd12\\\n34567");
  EXPECT_EQ(emitted(6, [] { EmitString("abcd"), EmitInteger(-123); }), "abcd\n-123");
}

TEST(Emit, AWordInsideATokenLeavesRoomForTheMark) {
  EXPECT_EQ(emitted(6, [] { EmitString("abc"), ++printAtomic, EmitToken("def"), --printAtomic; }), "abc\\\ndef");
  EXPECT_EQ(emitted(6, [] { EmitString("ab"), ++printAtomic, EmitToken("def"), --printAtomic; }), "abdef");
}

TEST(Emit, AnEscapeStaysTogether) {
  EXPECT_EQ(emitted(5, [] { EmitString("abc"), EmitEscape('n'); }), "abc\\n");
  EXPECT_EQ(emitted(5, [] { EmitString("abcd"), EmitEscape('n'); }), "abcd\\\n\\n");
}

TEST(Emit, WidthsAndFailures) {
  std::string result;
  InitializeOutput(appendTo, appendFailureTo, nullptr, 0, &result);
  EXPECT_EQ(MaximumEmitWidth(), 999999);
  EmitString("abc");
  EXPECT_EQ(CurrentEmitWidth(), 3);
  EmitError("no good");
  EXPECT_EQ(result, "abc<<no good>>");
  InitializeOutput(appendTo, appendFailureTo, nullptr, 78, &result);
  EXPECT_EQ(MaximumEmitWidth(), 78);
  EXPECT_EQ(CurrentEmitWidth(), 0);
}

// Every size around the growth steps, by either way of appending, agrees with std::string.
TEST(LongString, GrowsByCharactersAndByTexts) {
  for (int piece : {1, 2, 7, 254, 255, 256, 257, 1000}) {
    std::string expected, chunk(static_cast<std::size_t>(piece), 'x');
    char* text = NewLongString();
    for (int i = 0; i < 40; ++i) {
      chunk[0] = static_cast<char>('a' + i % 26);
      text = AppendStringToString(text, chunk.c_str());
      text = AppendToString(text, '0' + i % 10);
      expected += chunk + static_cast<char>('0' + i % 10);
      ASSERT_EQ(LongStringLength(text), expected.size());
      ASSERT_EQ(text, expected);
    }
    DAG name = StringToName(text);
    EXPECT_EQ(textOf(name), expected);
    EXPECT_EQ(tagOf(name), NAME);
  }
  char* text = AppendStringToString(NewLongString(), "");
  EXPECT_STREQ(text, "");
  EXPECT_EQ(tagOf(StringToMString(text)), STRING);
}

}  // namespace
}  // namespace korel::test
