#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

#include "kernel_fixture.h"
#include "session/driver.h"
#include "session/interface.h"
#include "store/constants.h"
#include "text/raw_object.h"
#include "text/read/input.h"
#include "text/read/source.h"

namespace korel::test {
namespace {

/// A file of these bytes for the time of a test.
struct File {
  char path[32] = "/tmp/korel_input_XXXXXX";
  explicit File(const std::string& bytes) {
    int fd = mkstemp(path);
    EXPECT_EQ(write(fd, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    close(fd);
  }
  ~File() { unlink(path); }
  std::string statement() const { return "read \"" + std::string(path) + "\";"; }
  std::string read() const { return say(statement().c_str()); }
};

/// The message, source line and caret of an error, without what is said about the file.
std::string report(const std::string& bytes) {
  std::string shown = File(bytes).read();
  return shown.substr(0, shown.find("Error, while"));
}

/// The lines that a terminal would give, for the time of a test.
const char* const* terminalLines;
int linesAsked;
int nextTerminalLine(char* buffer, int size) {
  if (*terminalLines == nullptr) return 0;
  ++linesAsked;
  std::snprintf(buffer, static_cast<std::size_t>(size), "%s", *terminalLines++);
  return static_cast<int>(std::strlen(buffer));
}
struct Terminal {
  explicit Terminal(const char* const* lines) {
    static const char* const none[] = {nullptr};
    setTerminalSource(nextTerminalLine);
    // An error that gave up a file leaves an empty statement where the file was read from.
    terminalLines = none;
    outputOf([] {
      while (!hasTag(doparse(), CONTROL)) continue;
    });
    terminalLines = lines;
    linesAsked = 0;
  }
  ~Terminal() { setTerminalSource(nullptr); }
};

// A zero byte hides what follows it on the line: the file is given up, wherever the byte stands.
TEST(Input, ZeroBytesEndTheFile) {
  for (std::string bytes : {std::string("1;\n2\0 3;\n4;\n", 11), std::string("1;\n\0;\n4;\n", 8)}) {
    std::string shown = File(bytes).read();
    EXPECT_NE(shown.find("1\n"), std::string::npos);
    EXPECT_NE(shown.find("invalid characters in input"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("\n4"), std::string::npos) << shown;
    EXPECT_EQ(r_unit0, 0);
  }
}

// Typed or piped input has no file to give up: the next line is read, also behind a comment or a shell
// command with a zero byte in it.
TEST(Input, ZeroBytesLoseNoLine) {
  const std::string pieces[] = {"1;\n", std::string("2\0 3;\n", 6),    "4;\n", std::string("# a\0b\n", 6),
                                "5;\n", std::string("!true \0;\n", 9), "6;\n"};
  static std::string all;
  static std::size_t at;
  all.clear();
  at = 0;
  for (const std::string& piece : pieces) all += piece;
  const char* const nothing[] = {nullptr};
  Terminal terminal(nothing);
  setTerminalSource([](char* buffer, int size) {
    int count = 0;
    while (at < all.size() && count < size - 1)
      if ((buffer[count++] = all[at++]) == '\n') break;
    buffer[count] = 0;
    return count;
  });
  std::string objects;
  std::string shown = outputOf([&] {
    for (DAG x; !hasTag(x = doparse(), CONTROL);) objects += raw(x) + " ";
  });
  EXPECT_EQ(objects, "1 NULL NULL 4 5 6 ");
  EXPECT_NE(shown.find("line 2, syntax error, invalid characters in input"), std::string::npos) << shown;
}

// Lines are counted through chunks, comments, and continued comments.
TEST(Input, LineNumbersStayTrue) {
  const std::string error = "syntax error, `;` unexpected:\n1+;\n  ^\n";
  const std::string prefix = "Error, on line ";
  EXPECT_EQ(report("\n\n1+;\n"), prefix + "3, " + error);
  EXPECT_EQ(report("a := 1 +" + std::string(400, ' ') + "1:\n1+;\n"), prefix + "2, " + error);
  // A line counts from its first chunk on.
  for (int length : {10, 60, 70, 75, 76, 77, 78, 79, 80, 81, 100, 500}) {
    std::string behind(static_cast<std::size_t>(length), 'x');
    std::string shown = File("1:\n1+; " + behind + ";\n2+;\n").read();
    EXPECT_EQ(shown.substr(0, prefix.size() + 1), prefix + "2") << length;
    EXPECT_NE(shown.find("on line 3"), std::string::npos) << shown;
  }
  for (int length : {75, 76, 77, 78, 79, 80, 81, 160, 500}) {
    std::string comment = "#" + std::string(length - 1, 'c');
    EXPECT_EQ(report(comment + "\n1+;\n"), prefix + "2, " + error) << length;
    EXPECT_EQ(report(comment + "\\\nx(\n1+;\n"), prefix + "3, " + error) << length;
  }
}

// A line of any length is read whole, whatever chunk its characters fall into.
TEST(Input, ChunksJoin) {
  for (int blanks = 60; blanks < 150; ++blanks) {
    std::string line = "[abc," + std::string(blanks, ' ') + "\"de\", 12345678];\n7;";
    EXPECT_EQ(File(line).read(), "[abc, \"de\", 12345678]\n7") << blanks;
  }
}

TEST(Input, UnprintableCharactersAreBlanksInTheReport) {
  std::string shown = report("a \xe4 \x01 b;\n");
  EXPECT_EQ(shown.substr(0, shown.find("Warning")),
            "Error, on line 1, syntax error, missing operator or `;`:\na     b;\n  ^\n");
  EXPECT_NE(shown.find("Warning, unprintable characters in input"), std::string::npos) << shown;
}

// What stands behind a `read` on its line is read when the file is through.
TEST(Input, ReadingGoesOnBehindARead) {
  File inner("10;\n11;\n"), unterminated("20");
  EXPECT_EQ(File("1; " + inner.statement() + " 2;\n3;\n").read(), "1\n10\n11\n2\n3");
  EXPECT_EQ(File(inner.statement() + inner.statement() + "4:5;").read(), "10\n11\n10\n11\n5");
  EXPECT_EQ(say("if true then 1 fi;"), "1");
  EXPECT_NE(File("1; " + unterminated.statement() + " 2;\n").read().find("\n2"), std::string::npos);
}

// An error of a statement drops the file when `errorbreak` is below 2, one of the text when it is
// below 1.
TEST(Input, ErrorbreakDecidesWhetherReadingStops) {
  const int before = defaultNerinVariables.errorbreak;
  auto lastShown = [](const char* text) {
    std::string shown = File(text).read();
    return shown.size() > 1 && shown.substr(shown.size() - 2) == "\n3";
  };
  const bool statementGoesOn[] = {false, false, true}, textGoesOn[] = {false, true, true};
  for (int level = 0; level <= 2; ++level) {
    defaultNerinVariables.errorbreak = level;
    EXPECT_EQ(lastShown("1;\nerror \"e\";\n3;\n"), statementGoesOn[level]) << level;
    EXPECT_EQ(lastShown("1;\n2 +;\n3;\n"), textGoesOn[level]) << level;
  }
  defaultNerinVariables.errorbreak = before;
  EXPECT_EQ(r_unit0, 0);
}

TEST(Input, EchoFollowsTheSettings) {
  const InterfaceVariables before = defaultNerinVariables;
  const std::string bytes = "# c\n\n1:\n";
  struct Row {
    int quiet, echo;
    const char* shown;
  };
  const Row rows[] = {
      {0, 0, ""}, {0, 1, ""}, {0, 2, "# c\n> \n> 1:"}, {0, 3, "# c\n> \n> 1:"}, {1, 4, ""}, {0, 4, "# c\n> \n> 1:"}};
  for (const Row& row : rows) {
    defaultNerinVariables.quiet = row.quiet;
    defaultNerinVariables.echo = row.echo;
    EXPECT_EQ(File(bytes).read(), row.shown) << row.quiet << row.echo;
  }
  // A long prompt leaves less room for the line, never none.
  defaultNerinVariables.echo = 0;
  std::memset(defaultNerinVariables.prompt, 'p', 127);
  EXPECT_EQ(File("['far'," + std::string(200, ' ') + "'away'];\n").read(), "[far, away]");
  defaultNerinVariables = before;
}

TEST(Input, ShellLinesRunUnlessSecure) {
  File target("old");
  auto content = [&] {
    char text[64] = {};
    std::FILE* file = std::fopen(target.path, "r");
    EXPECT_GE(std::fread(text, 1, sizeof text - 1, file), 0u);
    std::fclose(file);
    return std::string(text);
  };
  std::string command = "  ! echo new " + std::string(100, ' ') + "> " + target.path + "\n";
  EXPECT_EQ(File("1;\n" + command + "2;\n").read(), "1\n!\n2");
  EXPECT_EQ(content(), "new\n");
  EXPECT_EQ(callsys("exit 3"), 3);
  EXPECT_EQ(callsys("kill -9 $$"), 128 + 9);

  std::string worse = "! echo worse > " + std::string(target.path) + "\n";
  const char* const lines[] = {worse.c_str(), "a;\n", nullptr};
  Terminal terminal(lines);
  secureMode = 1;
  std::string shown = outputOf([] {
    EXPECT_EQ(doparse(), null);
    EXPECT_EQ(doparse(), null);  // the rest of the line
    EXPECT_EQ(raw(doparse()), "a");
  });
  secureMode = 0;
  EXPECT_NE(shown.find("system calls are disabled"), std::string::npos) << shown;
  EXPECT_EQ(content(), "new\n");
}

// Several statements on a line, one over several lines; what stands behind a `quit` or an error; and no
// line is asked for before it is needed.
TEST(Input, TheTerminalIsReadLineByLine) {
  const char* const lines[] = {"a; b: c\n", " + d; \"e\n", "f\"; quit; g;\n", "1 ) 2; h;\n", "i;", nullptr};
  struct Row {
    const char* object;
    int asked;
  };
  const Row rows[] = {{"a", 1},          {"b", 1},         {"SUM(c,1,d,1)", 2}, {"\"e\nf\"", 3}, {"STOP()", 3},
                      {"NULL", 3},       {"g", 3},         {"NULL", 4},         {"NULL", 4},     {"i", 5},
                      {"CONTROL(1)", 5}, {"CONTROL(1)", 5}};
  Terminal terminal(lines);
  int statements = 0;
  outputOf([&] {
    for (const Row& row : rows) {
      EXPECT_EQ(raw(doparse()), row.object) << statements;
      EXPECT_EQ(linesAsked, row.asked) << statements;
      ++statements;
    }
  });
}

}  // namespace
}  // namespace korel::test
