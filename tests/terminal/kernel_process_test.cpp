// The terminal program with its kernel in a process of its own: what differs from one process, and that the session
// outlives the kernel.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Ended {
  int status;  // 128 + n for signal n
  std::string output;
};

/// Runs the program with `--kernel` and `input`, by the shell's `timeout`.
Ended run(const std::string& arguments, const std::string& input) {
  char path[] = "/tmp/korel_kernel_XXXXXX";
  int fd = mkstemp(path);
  EXPECT_EQ(write(fd, input.data(), input.size()), static_cast<ssize_t>(input.size()));
  close(fd);
  std::string command = std::string("timeout 60 ") + KOREL_PROGRAM + " --kernel " + arguments + " < " + path + " 2>&1";
  std::FILE* pipe = popen(command.c_str(), "r");
  std::string output;
  char buffer[4096];
  for (std::size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) output.append(buffer, n);
  int status = pclose(pipe);
  unlink(path);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), output};
}

std::string withoutNumbers(std::string text) {
  std::size_t at = 0;
  while ((at = text.find("process ", at)) != std::string::npos) {
    at += 8;
    while (at < text.size() && isdigit(static_cast<unsigned char>(text[at]))) text.erase(at, 1);
  }
  return text;
}

TEST(KernelProcess, SwitchesReachTheSideThatTheyConcern) {
  EXPECT_EQ(run("-q", "quit(7); 1;").status, 7);
  EXPECT_EQ(run("-q", "1; done").status, 0);
  EXPECT_EQ(run("-qc 'a := 5:' -A 1", "a; a := 6: restart; a; ASSERT(false, \"why\");").output,
            "5\n5\nError, assertion failed, why\n");
  EXPECT_EQ(run("-q -z", "read \"x\";").output, "Error, read is disabled\n");
  EXPECT_EQ(run("-q -e 9", "1;").output, "korel: error break level must be 0, 1, or 2\n");
  Ended missing = run("-q -b /nonexistent", "1;");
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.output, "korel: directory does not exist\n");
  // The limit is the kernel's: the session goes on.
  Ended limited = run("-q -T 1", "do od;\n1;");
  EXPECT_NE(limited.output.find("the kernel process has died"), std::string::npos);
  EXPECT_EQ(limited.output.substr(limited.output.size() - 2), "1\n");
}

// What the kernel asks for, and what it writes itself, keep their places.
TEST(KernelProcess, LinesAreReadAndOutputKeepsItsOrder) {
  EXPECT_EQ(run("-q", "print(1); system(\"echo from a shell\"): print(2); INTERFACE_READLINE();\nthe line\n3;").output,
            "1\nfrom a shell\n2\n\"the line\\n\"\n3\n");
  EXPECT_EQ(run("-q", "INTERFACE_SET(screenwidth, 30): INTERFACE_GET(screenwidth); seq(i, i = 10..20);").output,
            "30\n10, 11, 12, 13, 14, 15, 16, \n17, 18, 19, 20\n");
}

TEST(KernelProcess, TheSessionOutlivesItsKernel) {
  Ended ended = run("-qc 'b := 2:'",
                    "a := 1: system(\"kill -9 $PPID\"); print(a, b); system(\"kill -TERM $PPID\"): a + 1; quit(4);");
  EXPECT_EQ(ended.status, 4);
  EXPECT_EQ(withoutNumbers(ended.output),
            "Error, the kernel process has died: kernel process  was ended by signal 9 (Killed); the next statement "
            "starts a fresh one\na, 2\n"
            "Error, the kernel process has died: kernel process  has ended with status 0; the next statement starts a "
            "fresh one\na+1\n");
  // A dead kernel at the end of the input leaves nothing to stop.
  EXPECT_EQ(run("-q", "system(\"kill -9 $PPID\");").status, 0);
}

// Ten thousand messages of four kilobytes in one statement: what has been answered makes room.
TEST(KernelProcess, TheFrontEndDoesntKeepWhatItHasAnswered) {
  const std::string size =
      "system(\"p=$(awk '/PPid/ {print $2}' /proc/$PPID/status); awk '/VmRSS/ {print $2}' /proc/$p/status\"):\n";
  // The address sanitizer keeps 256 MB of what has been freed from being used again.
  const char* options = std::getenv("ASAN_OPTIONS");
  ::setenv("ASAN_OPTIONS", (std::string(options == nullptr ? "" : options) + ":quarantine_size_mb=1").c_str(), 1);
  Ended ended = run("-q", "l := [seq(10^8 + j, j = 1 .. 1000)]: INTERFACE_OWN(l):\n" + size +
                              "for i to 10000 do INTERFACE_OWN(l) end do:\n" + size);
  int before = 0, after = 0;
  ASSERT_EQ(std::sscanf(ended.output.c_str(), "%d %d", &before, &after), 2) << ended.output;
  EXPECT_LT(after - before, 20000) << ended.output;
}

/// A session behind two pipes.
class Session {
 public:
  Session() {
    int down[2], up[2];
    EXPECT_EQ(pipe2(down, 0), 0);
    EXPECT_EQ(pipe2(up, 0), 0);
    child_ = fork();
    if (child_ == 0) {
      dup2(down[0], 0);
      dup2(up[1], 1);
      dup2(up[1], 2);
      for (int fd : {down[0], down[1], up[0], up[1]}) close(fd);
      execl(KOREL_PROGRAM, KOREL_PROGRAM, "--kernel", "-q", "-s", static_cast<char*>(nullptr));
      _exit(127);
    }
    close(down[0]);
    close(up[1]);
    in_ = down[1];
    out_ = up[0];
  }
  ~Session() {
    close(in_);
    close(out_);
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  void say(const std::string& text) {
    EXPECT_EQ(write(in_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  void signal(int number) { kill(child_, number); }
  /// The next line; what there is of it when nothing comes for half a minute.
  std::string line() {
    std::string text;
    for (char c;;) {
      pollfd ready = {out_, POLLIN, 0};
      if (poll(&ready, 1, 30000) != 1 || read(out_, &c, 1) != 1 || c == '\n') return text;
      text += c;
    }
  }

 private:
  pid_t child_;
  int in_, out_;
};

// The statement that runs is stopped, and so is one that waits for a line; the state stays. An interrupt that comes
// while nothing runs does nothing.
TEST(KernelProcess, InterruptsReachTheRunningStatement) {
  Session session;
  session.say("a := 7: print(begun);\n");
  ASSERT_EQ(session.line(), "begun");
  session.signal(SIGINT);
  usleep(50000);
  session.say("print(looping); do od;\n");
  ASSERT_EQ(session.line(), "looping");
  usleep(100000);
  session.signal(SIGINT);
  EXPECT_EQ(session.line(), "Warning, computation interrupted");
  session.say("print(reading); INTERFACE_READLINE();\n");
  ASSERT_EQ(session.line(), "reading");
  usleep(100000);
  session.signal(SIGINT);
  EXPECT_EQ(session.line(), "Warning, computation interrupted");
  session.say("a;\n");
  EXPECT_EQ(session.line(), "7");
}

// A kernel whose front end is gone ends by itself, in the midst of a loop without output.
TEST(KernelProcess, EndsWithItsFrontEnd) {
  pid_t kernel = 0;
  {
    Session session;
    session.say("print(system(\"echo $PPID\")); print(looping); do od;\n");
    kernel = std::atoi(session.line().c_str());
    session.line();
    EXPECT_EQ(session.line(), "looping");
    session.signal(SIGKILL);
  }
  ASSERT_GT(kernel, 1);
  bool ended = false;
  for (int tenths = 0; tenths < 100 && !ended; ++tenths) {
    ended = kill(kernel, 0) != 0;
    if (!ended) {
      // Nobody waits for it: it may stay as a zombie.
      std::ifstream status("/proc/" + std::to_string(kernel) + "/stat");
      std::string text;
      std::getline(status, text);
      ended = text.find(") Z ") != std::string::npos;
    }
    usleep(100000);
  }
  EXPECT_TRUE(ended);
  if (!ended) kill(kernel, SIGKILL);
}

}  // namespace
