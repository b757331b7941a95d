// The terminal program as its users meet it: switches, exit status, pipes, files, and a real terminal.

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

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
  EXPECT_EQ(run("-q -z", "read \"x\"; save a, \"x\";").output,
            "Error, read is disabled\nError, save is disabled\n");
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

/// A session at a pseudo-terminal.
class Session {
 public:
  Session() {
    child_ = forkpty(&master_, nullptr, nullptr, nullptr);
    if (child_ == 0) {
      setenv("HOME", "/tmp", 1);
      setenv("TERM", "dumb", 1);
      execl(KOREL_PROGRAM, KOREL_PROGRAM, "-s", static_cast<char*>(nullptr));
      _exit(127);
    }
  }
  ~Session() {
    if (child_ > 0) {
      kill(child_, SIGKILL);
      waitpid(child_, nullptr, 0);
    }
    close(master_);
  }
  void type(const std::string& text) {
    EXPECT_EQ(write(master_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  /// Waits until `text` has come behind what was waited for before; false after ten seconds.
  bool shows(const std::string& text) {
    for (int rounds = 0; rounds < 100; ++rounds) {
      std::size_t at = seen_.find(text, from_);
      if (at != std::string::npos) {
        from_ = at + text.size();
        return true;
      }
      pollfd ready = {master_, POLLIN, 0};
      if (poll(&ready, 1, 100) <= 0) continue;
      char buffer[4096];
      ssize_t n = read(master_, buffer, sizeof buffer);
      if (n <= 0) break;
      seen_.append(buffer, static_cast<std::size_t>(n));
    }
    return false;
  }
  /// Exit status, or -2 when the program still runs after that many tenths of a second.
  int exitStatus(int tenths = 100) {
    int status = 0;
    for (int rounds = 0; rounds < tenths; ++rounds) {
      if (waitpid(child_, &status, WNOHANG) == child_) {
        child_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      }
      pollfd ready = {master_, POLLIN, 0};
      char buffer[4096];
      if (poll(&ready, 1, 100) > 0 && (ready.revents & POLLIN) != 0) {
        ssize_t n = read(master_, buffer, sizeof buffer);
        if (n > 0) seen_.append(buffer, static_cast<std::size_t>(n));
      } else {
        usleep(20000);
      }
    }
    return -2;
  }
  const std::string& seen() const { return seen_; }

 private:
  int master_ = -1;
  pid_t child_ = -1;
  std::string seen_;
  std::size_t from_ = 0;
};

TEST(Terminal, SessionsPromptAndGoOn) {
  Session session;
  ASSERT_TRUE(session.shows("> ")) << session.seen();
  session.type("2^70;\r");
  ASSERT_TRUE(session.shows("1180591620717411303424")) << session.seen();
  session.type("1 +\r");
  session.type("2;\r");
  ASSERT_TRUE(session.shows("3\r\n")) << session.seen();
  // Ctrl-C ends the running statement and nothing else.
  session.type("do od;\r");
  usleep(300000);
  session.type("\x03");
  ASSERT_TRUE(session.shows("Warning, computation interrupted")) << session.seen();
  session.type("?seq\r");
  ASSERT_TRUE(session.shows("seq")) << session.seen();
  session.type("40 + 2;\r");
  ASSERT_TRUE(session.shows("42\r\n")) << session.seen();
  session.type("quit(3)\r;\r");
  EXPECT_EQ(session.exitStatus(), 3) << session.seen();
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
