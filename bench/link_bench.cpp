// Round trips over the pipes of a kernel process, beside an echo of as many bytes by a process that does nothing else.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "client/korel_client.h"
#include "session/driver.h"
#include "store/constants.h"
#include "store/objects.h"
#include "text/read/source.h"

using namespace korel;

namespace {

std::size_t messages = 0;

DAG answer(void*, DAG) {
  ++messages;
  return null;
}

double seconds() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

/// A process that sends each block of `size` bytes back.
class Echo {
 public:
  Echo() {
    int down[2], up[2];
    if (pipe(down) != 0 || pipe(up) != 0) std::abort();
    child_ = fork();
    if (child_ == 0) {
      close(down[1]);
      close(up[0]);
      std::vector<char> block(1 << 16);
      for (ssize_t n; (n = read(down[0], block.data(), block.size())) > 0;)
        if (write(up[1], block.data(), static_cast<std::size_t>(n)) != n) break;
      _exit(0);
    }
    close(down[0]);
    close(up[1]);
    out_ = down[1];
    in_ = up[0];
  }
  ~Echo() {
    close(out_);
    close(in_);
    waitpid(child_, nullptr, 0);
  }
  void trip(std::size_t size) {
    std::vector<char>& block = block_;
    block.resize(size);
    if (write(out_, block.data(), size) != static_cast<ssize_t>(size)) std::abort();
    for (std::size_t got = 0; got < size;) {
      ssize_t n = read(in_, block.data(), size - got);
      if (n <= 0) std::abort();
      got += static_cast<std::size_t>(n);
    }
  }

 private:
  pid_t child_;
  int out_, in_;
  std::vector<char> block_;
};

/// Round trips per second: a message of the kernel and its reply, in a loop of the kernel's own.
void measureMessages(KorelProcess& kernel, Echo& echo, const char* name, const char* source, std::size_t bytes) {
  double best = 0, bestEcho = 0;
  for (int run = 0; run < 3; ++run) {
    messages = 0;
    double start = seconds();
    kernel.evaluate(parsestring(source, 1), 1);
    double took = seconds() - start;
    best = std::max(best, static_cast<double>(messages) / took);
    start = seconds();
    for (std::size_t i = 0; i < messages; ++i) echo.trip(bytes);
    bestEcho = std::max(bestEcho, static_cast<double>(messages) / (seconds() - start));
  }
  std::printf("%-44s %8.0f / s %8.0f / s %8.2f  %s\n", name, best, bestEcho, bestEcho / best, "pipe echo");
}

}  // namespace

int main(int, char** argv) {
  Echo echo;  // before this process has a store
  char skip[] = "-s";
  char* arguments[] = {argv[0], skip, nullptr};
  if (InitializeKorel(2, arguments) != nullptr) return 1;
  ServerSpec spec(serverGiven);
  spec.args = Args(2, arguments);
  KorelProcess kernel(spec);
  kernel.setHandlers(answer, nullptr, nullptr);
  if (!kernel.start() || !kernel.evaluate(null, 0)) {
    std::fprintf(stderr, "%s\n", kernel.getErrorText());
    return 1;
  }
  // The echo sends half of the bytes of message and reply each way.
  measureMessages(kernel, echo, "link: a message and its reply, 20 bytes", "to 30000 do INTERFACE_OWN(1) end do:", 24);
  measureMessages(
      kernel, echo, "link: a message and its reply, 10 kilobytes",
      "proc() local l; l := [seq(10^8 + i, i = 1..1500)]; to 3000 do INTERFACE_OWN(l) end do end proc():", 5000);
  double start = seconds();
  constexpr int statements = 10000;
  messages = 0;
  for (int i = 0; i < statements; ++i) kernel.evaluate(immediate(i), 1);
  double took = seconds() - start;
  start = seconds();
  for (std::size_t i = 0; i < messages; ++i) echo.trip(24);
  double echoTook = seconds() - start;
  std::printf("%-44s %8.0f / s %8.0f / s %8.2f  %s\n", "link: statements with a result", statements / took,
              statements / echoTook, took / echoTook, "as many echoes as messages");
}
