#pragma once
// A session at a pseudo-terminal, for tests that type and watch.

#include <chrono>
#include <cstdlib>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace terminal {

/// A session at a pseudo-terminal, with a home directory that lasts as long as the name is wanted.
class Session {
 public:
  explicit Session(const std::string& home = "/nonexistent") {
    child_ = forkpty(&master_, nullptr, nullptr, nullptr);
    if (child_ == 0) {
      setenv("HOME", home.c_str(), 1);
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
  void signal(int number) { EXPECT_EQ(kill(child_, number), 0); }
  /// Waits until `text` has come behind what was waited for before; false after ten seconds.
  bool shows(const std::string& text) {
    // The bound is one of time: an echo may come byte by byte, in any number of reads.
    auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (std::chrono::steady_clock::now() < end) {
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

}  // namespace terminal
