// Ctrl-C in whatever takes long: the statement ends within a second of processor time, and the session
// goes on with everything in order. Time limits reach the same places.

#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// A kernel behind two pipes, which lasts over all statements of a test.
class Kernel {
 public:
  Kernel() {
    int down[2], up[2];
    EXPECT_EQ(pipe(down), 0);
    EXPECT_EQ(pipe(up), 0);
    child_ = fork();
    if (child_ == 0) {
      dup2(down[0], 0);
      dup2(up[1], 1);
      dup2(up[1], 2);
      for (int fd : {down[0], down[1], up[0], up[1]}) close(fd);
      execl(KOREL_PROGRAM, KOREL_PROGRAM, "-q", "-s", static_cast<char*>(nullptr));
      _exit(127);
    }
    close(down[0]);
    close(up[1]);
    in_ = down[1];
    out_ = up[0];
  }
  ~Kernel() {
    close(in_);
    close(out_);
    if (child_ == 0) return;
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }

  void say(const std::string& text) {
    EXPECT_EQ(write(in_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  void interrupt() { kill(child_, SIGINT); }
  /// Asks the program to end, and gives the status that `waitpid` tells; -1 when it goes on for 10 seconds.
  int terminate() {
    kill(child_, SIGTERM);
    int status = -1;
    for (int tenths = 0; tenths < 100; ++tenths, usleep(100000))
      if (waitpid(child_, &status, WNOHANG) == child_) {
        child_ = 0;
        return status;
      }
    return -1;
  }
  /// The end of the output, once `mark` stands there; what has come after `seconds` otherwise. Output of
  /// megabytes is read and let go.
  std::string outputUntil(const std::string& mark, int seconds) {
    std::string tail;
    for (int tenths = 0; tenths < 10 * seconds;) {
      pollfd ready = {out_, POLLIN, 0};
      if (poll(&ready, 1, 100) <= 0) {
        ++tenths;
        continue;
      }
      char buffer[65536];
      ssize_t n = read(out_, buffer, sizeof buffer);
      if (n <= 0) break;
      tail.append(buffer, static_cast<std::size_t>(n));
      if (tail.size() > 2000) tail.erase(0, tail.size() - 2000);
      if (tail.find(mark) != std::string::npos) break;
    }
    return tail;
  }
  /// Lets the output run for about `milliseconds` of the kernel's processor time.
  void letRun(double milliseconds) {
    double end = processorSeconds() + milliseconds / 1000;
    for (int rounds = 0; rounds < 1000 && processorSeconds() < end; ++rounds) {
      pollfd ready = {out_, POLLIN, 0};
      char buffer[65536];
      if (poll(&ready, 1, 10) == 1 && read(out_, buffer, sizeof buffer) <= 0) return;
    }
  }
  double processorSeconds() const {
    char path[64], text[1024] = "";
    std::snprintf(path, sizeof path, "/proc/%d/stat", child_);
    std::FILE* file = std::fopen(path, "r");
    if (file == nullptr) return 0;
    std::size_t n = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);
    text[n] = '\0';
    unsigned long user = 0, system = 0;
    const char* fields = std::strrchr(text, ')');
    if (fields == nullptr ||
        std::sscanf(fields, ") %*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %lu %lu", &user, &system) != 2)
      return 0;
    return double(user + system) / double(sysconf(_SC_CLK_TCK));
  }

 private:
  pid_t child_;
  int in_, out_;
};

// Each would run for seconds at least.
constexpr const char* longStatements[] = {
    "do od:",
    "for i from 1 do x := [i, f(i)] od:",
    "for i in [seq(i, i = 1..10^7)] do [f(i)] od:",
    "seq(i, i = 1..6*10^7):",
    "seq(f(i), i = 1..6*10^7):",
    "add(i, i = 1..10^9):",
    "mul(i, i = 1..10^7):",
    "f(i) $ i = 1..6*10^7:",
    "3^(10^8):",
    "iquo(7^(4*10^7), 3^(2*10^7)):",
    "igcd(3^(10^6) - 1, 7^(10^6) - 1):",
    "isqrt(7^(4*10^7)):",
    "print(seq(i, i = 1..3*10^7)):",
    "proc() local l; l := [seq([i], i = 1..300000)]; do gc() od end proc():",
    "proc(n) local s; s := 1; do s := s*3 od end proc(1):",
};

// Processor seconds within which an interrupt must show. Far below what the statements take; the
// sanitizers slow everything down.
#ifdef __SANITIZE_ADDRESS__
constexpr double patience = 15;
#else
constexpr double patience = 3;
#endif

TEST(Interrupt, EndsWhateverTakesLong) {
  Kernel kernel;
  for (const char* statement : longStatements) {
    kernel.say(std::string(statement) + "\n");
    kernel.letRun(200);
    double before = kernel.processorSeconds();
    kernel.interrupt();
    std::string output = kernel.outputUntil("Warning, computation interrupted\n", 60);
    // On a line of its own, wherever the output was.
    std::size_t at = output.find("Warning, computation interrupted\n");
    EXPECT_TRUE(at != std::string::npos && (at == 0 || output[at - 1] == '\n'))
        << statement << " ends by " << output.substr(output.size() < 200 ? 0 : output.size() - 200);
    EXPECT_LT(kernel.processorSeconds() - before, patience) << statement;
    // The heap is in order: the collector walks it and finds nothing amiss.
    kernel.say("gc(): 2^70 + nops([seq(g(i), i = 1..1000)]); \"alive\";\n");
    output = kernel.outputUntil("\"alive\"\n", 60);
    ASSERT_EQ(output, "1180591620717411304424\n\"alive\"\n") << statement;
  }
}

TEST(Interrupt, TimeLimitsReachTheSamePlaces) {
  Kernel kernel;
  for (const char* expression : {"proc(n) 3^n end proc(10^8)", "seq(f(i), i = 1..6*10^7)",
                                 "igcd(3^(10^6) - 1, 7^(10^6) - 1)", "proc() do od end proc()"}) {
    double before = kernel.processorSeconds();
    kernel.say(std::string("timelimit(0.3, ") + expression + "):\n\"alive\";\n");
    std::string output = kernel.outputUntil("\"alive\"\n", 60);
    EXPECT_NE(output.find("time expired\n\"alive\"\n"), std::string::npos) << expression << output;
    EXPECT_LT(kernel.processorSeconds() - before, 1.5) << expression;
  }
}

// SIGTERM ends the program with status 0, whatever it is at: a statement that would run for ever, a long operation
// of the kernel, or the wait for a line. What has been said by then is out.
TEST(Interrupt, TerminationEndsCleanly) {
  for (const char* statement : {"do od:", "3^(10^8):", "try do od catch: 1 end try:", ""}) {
    Kernel kernel;
    kernel.say(std::string("print(on): ") + statement + "\n");
    EXPECT_NE(kernel.outputUntil("on\n", 10).find("on\n"), std::string::npos);
    usleep(50000);
    EXPECT_EQ(kernel.terminate(), 0) << statement;
    EXPECT_EQ(kernel.outputUntil("nothing", 1), "");
  }
}

}  // namespace
