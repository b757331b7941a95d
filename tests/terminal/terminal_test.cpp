// The terminal program as its users meet it: switches, exit status, pipes, files, and a real
// terminal.

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "session.h"

using terminal::Session;

namespace {

struct Ended {
  int status;
  std::string output;
};

/// Runs the program through the shell with `input` on its standard input.
Ended run(const std::string& arguments, const std::string& input) {
  char path[] = "/tmp/korel_terminal_XXXXXX";
  int fd = mkstemp(path);
  EXPECT_EQ(write(fd, input.data(), input.size()), static_cast<ssize_t>(input.size()));
  close(fd);
  std::string command = std::string(KOREL_PROGRAM) + " " + arguments + " < " + path + " 2>&1";
  std::FILE* pipe = popen(command.c_str(), "r");
  std::string output;
  char buffer[4096];
  for (std::size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) output.append(buffer, n);
  int status = pclose(pipe);
  unlink(path);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

TEST(Terminal, ExitStatus) {
  EXPECT_EQ(run("-q", "1;").status, 0);
  EXPECT_EQ(run("-q", "quit(7); 1;").status, 7);
  EXPECT_EQ(run("-q", "done").status, 0);
  EXPECT_EQ(run("-q", "error \"x\"; stop").status, 0);
  Ended missing = run("-q /nonexistent/file", "");
  EXPECT_EQ(missing.status, 2);
  EXPECT_NE(missing.output.find("/nonexistent/file"), std::string::npos);
  Ended version = run("--version", "");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.output.substr(0, 8), "korelTTY");
  Ended help = run("--help", "");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.output.find("-q"), std::string::npos);
}

TEST(Terminal, SwitchesAreChecked) {
  const char* rows[][2] = {
      {"-g 0", "korel: gc increment out of range\n"},
      {"-g 100000000", "korel: gc increment out of range\n"},
      {"-w 5", "korel: warning level must be from 0 to 4\n"},
      {"-A 3", "korel: assertion level must be 0, 1, or 2\n"},
      {"-e 3", "korel: error break level must be 0, 1, or 2\n"},
      {"-T 1,2,3,4,5", "korel: too many arguments for test limit\n"},
      {"-T ,100", "korel: data size must be at least 1024k\n"},
  };
  for (auto [arguments, message] : rows) {
    Ended ended = run(arguments, "1;");
    EXPECT_EQ(ended.output, message) << arguments;
    EXPECT_NE(ended.status, 0) << arguments;
  }
  EXPECT_EQ(run("-q -c 'a := 5:'", "a;").output, "5\n");
  EXPECT_EQ(run("-q -w 0", "proc() z := 1 end;").output, "proc () local z; z := 1 end proc\n");
  EXPECT_EQ(run("-q -z", "read \"x\"; save a, \"x\";").output, "Error, read is disabled\nError, save is disabled\n");
  EXPECT_EQ(run("-q -A 1", "ASSERT(1 = 2, \"why\");").output, "Error, assertion failed, why\n");
}

// Nothing of the input is echoed, errors do not stop what follows, and output keeps its order.
TEST(Terminal, PipesAndFiles) {
  EXPECT_EQ(run("-q", "1; 1 +;\n2; error \"e\"; 3:\n4;").output,
            "1\nError, on line 1, syntax error, `;` unexpected:\n1; 1 +;\n      ^\n2\nError, e\n4\n");
  EXPECT_EQ(run("-q", "a; b").output.substr(0, 2), "a\n");
  EXPECT_EQ(run("-q", "").output, "");
  Ended loud = run("", "1;");
  EXPECT_NE(loud.output.find("Korel"), std::string::npos);
  EXPECT_NE(loud.output.find("memory used="), std::string::npos);
}

// Arrays of every format and storage that one process saves are equal to those that another one makes.
TEST(Terminal, ArraysPassFromProcessToProcess) {
  char path[] = "/tmp/korel_arrays_XXXXXX.m";
  close(mkstemps(path, 2));
  const std::string text =
      "all := [seq(seq(seq(rtable(1..4, 1..3, (i, j) -> 10*i - j, storage = s, datatype = d, order = o),"
      " o = [Fortran_order, C_order]), s = [sparse, sparse[upper], diagonal, band[1, 2], rectangular,"
      " triangular[upper], triangular[lower, strict], Hessenberg[upper], Hessenberg[lower], scalar, empty]),"
      " d = [anything, integer[1], integer[2], integer[4], integer[8], float[8], complex[8], sfloat,"
      " complex(sfloat), integer]),"
      " rtable(symmetric, 1..3, 1..3, (i, j) -> x^(i + j)), rtable(unit[2], 1..3), rtable()]:";
  const std::string file = std::string("\"") + path + "\"";
  EXPECT_EQ(run("-q", text + " save all, " + file + "; nops(all);").output, "223\n");
  EXPECT_EQ(run("-q", text + " mine := all: read " + file +
                          ": {seq(evalb(mine[k] = all[k] and [rtable_options(mine[k])] = [rtable_options(all[k])]),"
                          " k = 1..nops(all))}, EqualEntries(mine[1], all[2]);")
                .output,
            "{true}, true\n");
  unlink(path);
}

// A front end keeps one process and two pipes: each answer comes before the next statement is sent,
// an interrupt ends the running statement, and one that comes too late does nothing. A file's run
// ends with the statement that was interrupted.
TEST(Terminal, FrontEndsTalkThroughPipes) {
  int down[2], up[2];
  ASSERT_EQ(pipe(down), 0);
  ASSERT_EQ(pipe(up), 0);
  pid_t child = fork();
  if (child == 0) {
    dup2(down[0], 0);
    dup2(up[1], 1);
    for (int fd : {down[0], down[1], up[0], up[1]}) close(fd);
    execl(KOREL_PROGRAM, KOREL_PROGRAM, "-q", "-s", static_cast<char*>(nullptr));
    _exit(127);
  }
  close(down[0]);
  close(up[1]);
  auto ask = [&](const std::string& text) {
    EXPECT_EQ(write(down[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
  };
  auto answer = [&] {
    std::string line;
    char c;
    pollfd ready = {up[0], POLLIN, 0};
    while (poll(&ready, 1, 10000) == 1 && read(up[0], &c, 1) == 1 && c != '\n') line += c;
    return line;
  };
  ask("1 + 1;\n");
  EXPECT_EQ(answer(), "2");
  ask("print(on): do od;\n");
  EXPECT_EQ(answer(), "on");
  kill(child, SIGINT);
  EXPECT_EQ(answer(), "Warning, computation interrupted");
  ask("%;\n");
  EXPECT_EQ(answer(), "2");
  usleep(100000);
  kill(child, SIGINT);
  usleep(100000);
  ask("3;\n");
  EXPECT_EQ(answer(), "3");
  close(down[1]);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  close(up[0]);

  std::FILE* stopped = popen(("f=$(mktemp); echo '1; do od; 2;' > $f; "
                              "timeout --preserve-status -s INT 0.5 " +
                              std::string(KOREL_PROGRAM) + " -q -s $f; echo $?; rm -f $f")
                                 .c_str(),
                             "r");
  char output[128];
  std::size_t n = fread(output, 1, sizeof output, stopped);
  pclose(stopped);
  EXPECT_EQ(std::string(output, n), "1\nWarning, computation interrupted\n130\n");
}

// What follows `quit` in a pipe or a file belongs to whoever reads next.
TEST(Terminal, TheRestOfTheInputIsLeft) {
  const std::string program = std::string("(") + KOREL_PROGRAM + " -q -s; cat)";
  for (const std::string& command :
       {"printf '1;\nquit\nrest\n' | " + program, "printf '1;\nquit\nrest\n' > \"$f\"; " + program + " < \"$f\""}) {
    std::FILE* pipe = popen(("f=$(mktemp); " + command + "; rm -f \"$f\"").c_str(), "r");
    char output[64];
    std::size_t n = fread(output, 1, sizeof output, pipe);
    pclose(pipe);
    EXPECT_EQ(std::string(output, n), "1\nrest\n") << command;
  }
}

// The rest of the line that a program stands in is the statements', however long; the program is given the lines behind
// it, each whole, and what a scan has left of one.
TEST(Terminal, ProgramsReadTheLinesBehindTheirOwn) {
  const std::string gap(6000, ' '), text(5000, 'x');
  const std::string input = "s := readline():" + gap + "t := readline(): lprint(s, t, length(\"" + text + "\"));\n" +
                            "first\n\n" + "u := scanf(\"%d %s\"):" + gap + "v := readline(): lprint(u, v);\n" +
                            "12 abc the rest\n" + "length(readline());\n" + text + text + "\n" +
                            "INTERFACE_READLINE(); readline(\"terminal\"); readline();\nlast";
  const std::string output = "\"first\", \"\", 5000\n[12, \"abc\"], \" the rest\"\n10000\n\"last\"\n0\n0\n";
  for (const char* switches : {"-q", "-q --kernel"}) EXPECT_EQ(run(switches, input).output, output) << switches;
}

TEST(Terminal, TheLibraryIsThatOfTheSwitchTheVariableOrTheProgram) {
  const std::string own = "\"" KOREL_BUILD_DIRECTORY "/lib\"\n";
  const std::string show = " -q -s -c 'print(libname)'";
  auto shown = [&](const std::string& before, const std::string& switches) {
    std::FILE* pipe = popen((before + KOREL_PROGRAM + switches + show + " < /dev/null").c_str(), "r");
    char output[512];
    std::size_t n = fread(output, 1, sizeof output, pipe);
    pclose(pipe);
    return std::string(output, n);
  };
  EXPECT_EQ(shown("cd / && env -u KOREL ", ""), own);
  EXPECT_EQ(shown("KOREL=/usr ", ""), "\"/usr/lib\"\n");
  EXPECT_EQ(shown("KOREL=/usr ", " -b /tmp,/usr"), "\"/tmp\", \"/usr\"\n");
}

// The streams that want an answer: settings, lines of the input, redirection; and the forms of the
// rest.
TEST(Terminal, StreamsAreAnswered) {
  EXPECT_EQ(run("-q",
                "INTERFACE_SET(warnlevel, 1); INTERFACE_GET(warnlevel);\n"
                "INTERFACE_WARN(2, \"no\"): INTERFACE_WARN(1, \"a %1 %-2 %0 %%\", `x y`, 11):\n"
                "INTERFACE_GET(foo);\nINTERFACE_SET(warnlevel, 9);\n")
                .output,
            "1\nWarning, a x y 11th x y, 11 %\nError, unknown interface variable, foo\n"
            "Error, warnlevel must be an integer in the range 0..4\n");
  EXPECT_EQ(run("-q", "INTERFACE_READLINE(0);\na line\nprint(): lprint(`a b`, [`a b`], \"s\"):").output,
            "\"a line\\n\"\n\na b, [`a b`], \"s\"\n");
  EXPECT_EQ(run("-q", "INTERFACE_INFO(\"a \", [`b c`]): INTERFACE_CHAR(\"d\\n\"): INTERFACE_FOO(1):").output,
            "a [b c]\nd\n");
  char path[] = "/tmp/korel_redirect_XXXXXX";
  close(mkstemp(path));
  std::string file = std::string("\"") + path + "\"";
  EXPECT_EQ(run("-q", "INTERFACE_REDIRECT(" + file + ", 0): 1; INTERFACE_REDIRECT(): 2;\n" + "INTERFACE_REDIRECT(" +
                          file + ", 1): 3; INTERFACE_REDIRECT():\n" + "INTERFACE_REDIRECT(\"/nonexistent/x\", 0);")
                .output,
            "2\nfalse\n");
  std::FILE* written = std::fopen(path, "r");
  char text[64];
  std::size_t n = fread(text, 1, sizeof text, written);
  std::fclose(written);
  EXPECT_EQ(std::string(text, n), "1\n3\n");
  unlink(path);
}

TEST(Terminal, SessionsPromptAndGoOn) {
  Session session;
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  session.type("2^70;\r");
  ASSERT_TRUE(session.shows("1180591620717411303424")) << session.seen();
  session.type("1 +\r");
  session.type("2;\r");
  ASSERT_TRUE(session.shows("3\r\n")) << session.seen();
  // Ctrl-C ends the running statement and nothing else.
  session.type("do od; 111*111;\r");
  usleep(300000);
  session.type("\x03");
  ASSERT_TRUE(session.shows("Warning, computation interrupted")) << session.seen();
  // ... and with it what else was typed on the line.
  session.type("1000 + 1;\r");
  ASSERT_TRUE(session.shows("1001\r\n")) << session.seen();
  EXPECT_EQ(session.seen().find("12321"), std::string::npos) << session.seen();
  session.type("?seq\r");
  ASSERT_TRUE(session.shows("seq")) << session.seen();
  // The prompt begins a line of its own.
  session.type("printf(\"half a %s\", line);\r");
  ASSERT_TRUE(session.shows("half a line\r\n")) << session.seen();
  session.type("40 + 2;\r");
  ASSERT_TRUE(session.shows("42\r\n")) << session.seen();
  session.type("quit(3)\r;\r");
  EXPECT_EQ(session.exitStatus(), 3) << session.seen();
}

// A person sees exponents raised and fractions stacked; prettyprint = 0 gives the plain form back.
TEST(Terminal, ResultsAreLaidOutInTwoDimensions) {
  struct Row {
    const char* statement;
    const char* picture;
  };
  const Row rows[] = {
      {"x^2 - 1/2*x;", " 2\nx  - 1/2 x\n"},
      {"2/3*a/(1+b)^2;", "   2 a\n----------\n         2\n3 (1 + b)\n"},
      {"-(a+b)/(c-d);", "  a + b\n- -----\n  c - d\n"},
      {"q := f(1/x, [y^n]);", "      /1  [ n]\\\nq := f|-, [y ]|\n      \\x      /\n"},
      {"(x^2+1)^(a/2);", "        1/2 a\n/ 2    \\\n\\x  + 1/\n"},
      {"y - 2*I*x/z;", "    2*I x\ny - -----\n      z\n"},
      {"x^2 - (1-2*I);", " 2\nx  - 1 + 2*I\n"},
      {"(a . b)^2;", "     2\n(a.b)\n"},
      {"<1/x, c>;", "[1]\n[-]\n[x]\n[ ]\n[c]\n"},
      {"Matrix([[1, x^2], [a, -33]]);", "[    2 ]\n[1  x  ]\n[      ]\n[a  -33]\n"},
      {"v := Vector[row]([1, 2, 30]);", "v := [1  2  30]\n"},
      {"[Vector([1, 2]), x];", "[[1], x]\n[[2]   ]\n"},
      {"Matrix(20, 3, storage = sparse);", "[20 x 3 Matrix, anything, sparse]\n"},
      // Lines end between terms.
      {"expand((alphabeta + gammadelta)^5);", "gammadelta  +\n\n            2           3"},
      {"INTERFACE_SET(prettyprint, 0): x^2;", "x^2\n"},
  };
  Session session;
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  for (const Row& row : rows) {
    session.type(std::string(row.statement) + "\r");
    std::string expected;
    for (const char* c = row.picture; *c != 0; ++c) expected += *c == '\n' ? "\r\n" : std::string(1, *c);
    EXPECT_TRUE(session.shows(expected)) << row.statement << "\n" << session.seen();
  }
}

// Ctrl-C at the prompt drops the line, and the statement that it would have gone on with.
TEST(Terminal, CtrlCDropsWhatIsTyped) {
  Session session;
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  session.type("10 +\r");
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  usleep(300000);
  session.type("garbage (\x03");
  ASSERT_TRUE(session.shows("Warning, computation interrupted")) << session.seen();
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  session.type("more garbage\x03");
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  usleep(300000);
  session.type("40 + 2;\r");
  ASSERT_TRUE(session.shows("42\r\n")) << session.seen();
}

TEST(Terminal, HistoryIsKeptOverRuns) {
  char home[] = "/tmp/korel_home_XXXXXX";
  ASSERT_NE(mkdtemp(home), nullptr);
  std::string file = std::string(home) + "/.korel_history";
  {
    Session session(home);
    ASSERT_TRUE(session.shows("> ")) << session.seen();
    session.type("2^70;\r");
    ASSERT_TRUE(session.shows("1180591620717411303424\r\n")) << session.seen();
    // Ended without notice: what has been entered is kept.
  }
  if (access(file.c_str(), R_OK) == 0) {  // not when built without line editing
    Session session(home);
    ASSERT_TRUE(session.shows("> ")) << session.seen();
    usleep(200000);
    session.type("\x10\r");  // the line before
    EXPECT_TRUE(session.shows("1180591620717411303424\r\n")) << session.seen();
    unlink(file.c_str());
  }
  rmdir(home);
}

TEST(Terminal, EndOfInputEndsTheSession) {
  Session session;
  ASSERT_TRUE(session.shows("> "));
  // The line editor takes the terminal over a moment after its prompt.
  int status = -2;
  for (int tries = 0; tries < 5 && status == -2; ++tries) {
    usleep(200000);
    session.type("\x04");
    status = session.exitStatus(20);
  }
  EXPECT_EQ(status, 0) << session.seen();
}

}  // namespace
