#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

#include "kernel_fixture.h"
#include "text/read/input.h"
#include "text/read/source.h"

namespace korel::test {
namespace {

/// A file of these bytes for the time of a test.
struct File {
  char path[32] = "/tmp/korel_source_XXXXXX";
  explicit File(const std::string& bytes) {
    int fd = mkstemp(path);
    EXPECT_EQ(write(fd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    close(fd);
  }
  ~File() { unlink(path); }
  std::string read() const { return say(("read \"" + std::string(path) + "\";").c_str()); }
};

std::string twoByte(const std::string& text, bool lowFirst) {
  std::string bytes = lowFirst ? "\xff\xfe" : "\xfe\xff";
  for (char c : text) bytes += lowFirst ? std::string{c, 0} : std::string{0, c};
  return bytes;
}

TEST(Source, FilesAreReadStatementByStatement) {
  EXPECT_EQ(File("a := 1: a + 1;\nb :=\n  2; # a comment\na + b;").read(), "2\nb := 2\n3");
  std::string open = File("5;\na + b").read();
  EXPECT_EQ(open.substr(0, open.find("Error, while")),
            "5\nError, on line 2, syntax error, unexpected end of input:\na + b\n    ^\n");
  EXPECT_EQ(File("# 1;\n1;\n# long " + std::string(500, 'x') + "\n2;\n").read(), "1\n2");
  EXPECT_EQ(File("# continued \\\n1;\n2;\n").read(), "2");
  EXPECT_EQ(File("x := \\\n 5;\n").read(), "x := 5");
  EXPECT_EQ(File("y := " + std::string(300, ' ') + "6;\n").read(), "y := 6");
}

TEST(Source, TwoByteFilesHoldAscii) {
  EXPECT_EQ(File(twoByte("1+1;\n2;\n", true)).read(), "2\n2");
  EXPECT_EQ(File(twoByte("1+1;\n2;\n", false)).read(), "2\n2");
  std::string bad = File("\xff\xfe\x31\x01;\x00").read();
  EXPECT_NE(bad.find("non-ASCII character in Unicode file"), std::string::npos) << bad;
}

TEST(Source, WhatIsNoTextIsRefused) {
  File empty(""),
      binary(
          "\x7f"
          "ELF"),
      half(
          "\xff"
          "1;");
  EXPECT_EQ(empty.read(), "Error, \"" + std::string(empty.path) + "\" is an empty file");
  EXPECT_EQ(binary.read(), "Error, \"" + std::string(binary.path) + "\" is not a text file");
  EXPECT_EQ(half.read(), "Error, \"" + std::string(half.path) + "\" is not a text file");
  EXPECT_EQ(say("read \"/nonexistent/file\";"), "Error, unable to read `/nonexistent/file`");
  EXPECT_EQ(say("read 3;"), "Error, read must have a file name");
}

// The caret stands under the token, also on a line longer than the buffer; the rest of the line goes.
TEST(Source, ErrorsShowTheLine) {
  std::string shown = File("1;\n\tx := := 2; 3;\n4;\n").read();
  EXPECT_EQ(shown.substr(0, shown.find("Error, while")),
            "1\nError, on line 2, syntax error, `:=` unexpected:\n\tx := := 2; 3;\n\t      ^\n")
      << shown;
  std::string longLine = File(std::string(200, ' ') + "a b;\n").read();
  std::size_t caret = longLine.find('^');
  ASSERT_NE(caret, std::string::npos);
  std::size_t line = longLine.rfind('\n', caret);
  std::size_t above = longLine.rfind('\n', line - 1);
  EXPECT_EQ(longLine[above + (caret - line)], 'b');
}

TEST(Source, ReadsNestToTheLimit) {
  char path[] = "/tmp/korel_nested_XXXXXX";
  int fd = mkstemp(path);
  std::string text = "depth := depth + 1: read \"" + std::string(path) + "\";\n";
  ASSERT_EQ(write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  close(fd);
  say("depth := 0:");
  std::string shown = say(("read \"" + std::string(path) + "\";").c_str());
  unlink(path);
  EXPECT_EQ(shown.substr(0, shown.find('\n')), "Error, too many files simultaneously open for reading");
  EXPECT_EQ(say("depth;"), "46");
  EXPECT_EQ(r_unit0, 0);
}

// The answers of `parse`, with the state of an outer reader untouched.
TEST(Source, StringsParseInsideFiles) {
  EXPECT_EQ(File("parse(\"1+\"); parse(\"2+3\"); 4;\n").read().substr(0, 60),
            "Error, incorrect syntax in parse: `;` unexpected (4)\nError, ");
  const std::string warning = "Warning, extra characters at end of parsed string\n";
  for (const char* more : {"u; v", "u;v", "u;\tv # c", "u: ;"})
    EXPECT_EQ(say(("parse(\"" + std::string(more) + "\");").c_str()), warning + "u") << more;
  for (const char* whole : {"u", "u;", "u;   ", "u ; ", "u:\t\n", "u; # c", "u;#c"})
    EXPECT_EQ(say(("parse(\"" + std::string(whole) + "\");").c_str()), "u") << whole;
}

}  // namespace
}  // namespace korel::test
