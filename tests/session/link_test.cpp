#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "kernel_fixture.h"
#include "session/link/arguments.h"
#include "session/link/direct_kernel.h"
#include "session/link/kernel_link.h"
#include "session/link/pipe_client.h"
#include "session/link/pipe_stream.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/read/source.h"

namespace korel {
namespace {

using test::text;

std::string joined(const Args& args) {
  std::string result;
  for (int i = 0; i < args.count(); ++i) result += std::string(i > 0 ? " " : "") + args[i];
  EXPECT_EQ(args.vector()[args.count()], nullptr);
  return result;
}

// Each switch goes to the side that knows it, with its value; the program's name to both.
TEST(Link, CommandLinesAreDivided) {
  struct Case {
    std::vector<const char*> given;
    const char* program;
    const char* kernel;
  };
  const Case cases[] = {
      {{"k"}, "k", "k"},
      {{"k", "file", "-q", "other"}, "k file other", "k -q"},
      {{"k", "-b", "dir", "-bdir", "file"}, "k file", "k -b dir -bdir"},
      {{"k", "-x", "-T", "-q", "-s"}, "k -x", "k -T -q -s"},
      {{"k", "-w", "2", "-", "--kernel", "-c"}, "k - --kernel", "k -w 2 -c"},
  };
  for (const Case& row : cases) {
    Args all(static_cast<int>(row.given.size()), row.given.data());
    Args program, kernel;
    all.getPgmArgs(program);
    all.getKernelArgs(kernel);
    EXPECT_EQ(joined(program), row.program);
    EXPECT_EQ(joined(kernel), row.kernel);
  }
  const char* given[] = {"k", "-a", "one", "two", "-b", "-c", "three"};
  Args all(7, given);
  argIterator next(all);
  std::string pairs;
  for (switchPair pair; next(pair);)
    pairs += std::string(pair.letters) + "=" + (pair.value != nullptr ? pair.value : "") + ";";
  EXPECT_EQ(pairs, "a=one;b=;c=three;");
}

/// A pipe and what stands in it.
struct Pipe {
  int ends[2];
  Pipe() {
    EXPECT_EQ(pipe(ends), 0);
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
  }
  ~Pipe() {
    close(ends[0]);
    close(ends[1]);
  }
  std::size_t waiting() {
    static char buffer[1 << 17];
    ssize_t n = read(ends[0], buffer, sizeof buffer);
    last.assign(buffer, n > 0 ? static_cast<std::size_t>(n) : 0);
    return last.size();
  }
  std::string last;
};

// What is written waits for the flush, for a full buffer, or for data without room; the order stays.
TEST(Link, OutputIsBuffered) {
  Pipe pipe;
  PipeStream stream(-1, pipe.ends[1]);
  const std::string kilobyte(1024, 'a');
  EXPECT_EQ(stream.Write(kilobyte.data(), 1024), 0);
  EXPECT_EQ(pipe.waiting(), 0u);
  EXPECT_EQ(stream.Write("\1", 1), 0);
  EXPECT_EQ(pipe.waiting(), 1025u);
  // Exactly the room that is left: out at once.
  EXPECT_EQ(stream.Write(kilobyte.data(), 1024), 0);
  EXPECT_EQ(stream.Write(kilobyte.data(), 1024), 0);
  EXPECT_EQ(pipe.waiting(), 2048u);
  // More than the room: what waits, then the data.
  const std::string large(5000, 'b');
  EXPECT_EQ(stream.Write("xyz", 3), 0);
  EXPECT_EQ(stream.Write(large.data(), large.size()), 0);
  EXPECT_EQ(pipe.waiting(), 5003u);
  EXPECT_EQ(pipe.last.substr(0, 5), "xyzbb");
  close(pipe.ends[1]);
  EXPECT_EQ(stream.Write("x\1", 2), -1);
  EXPECT_TRUE(stream.isClosed());
  EXPECT_EQ(stream.Write("x", 1), -1);
  pipe.ends[1] = dup(pipe.ends[0]);
}

/// Both ends of a link in one process, over one pipe.
class Loop : public KL_Base {
 public:
  Loop() : KL_Base(ServerSpec()), stream_(pipe_.ends[0], pipe_.ends[1]) {}
  int m_interrupt() override { return 0; }
  int query() override { return stream_.hasInput() ? 1 : 0; }
  int ReadCh() override { return stream_.ReadCh(); }
  int Write(const char* data, std::size_t n) override { return stream_.Write(data, n); }
  void fail(KernelErrorCode code, int osError) {
    kError_ = code;
    osError_ = osError;
  }
  void say(const char* words) { fmtErrorText("%s", words); }

 private:
  Pipe pipe_;
  PipeStream stream_;
};

TEST(Link, MessagesPassWholeOrNotAtAll) {
  Loop loop;
  auto sendBytes = [&](const std::string& bytes) { loop.Write(bytes.data(), bytes.size()); };
  auto passes = [&](const char* source) {
    EXPECT_EQ(loop.sendDAG(parsestring(source, 1)), 0);
    return text(loop.receiveDAG());
  };
  EXPECT_EQ(passes("f(\"a b\", [x, x], 2^100)"), text(parsestring("f(\"a b\", [x, x], 2^100)", 1)));
  sendBytes("7$\1");
  EXPECT_EQ(loop.receiveDAG(), DAG());
  EXPECT_EQ(passes("y"), "y");
  sendBytes("\"\"& and more\1");
  EXPECT_EQ(loop.receiveDAG(), DAG());
  EXPECT_EQ(passes("z"), "z");
  // What has no record leaves no byte of itself.
  DAG deep = immediate(1);
  for (int i = 0; i < 1000000; ++i) deep = new2(UNEVAL, deep);
  EXPECT_EQ(loop.sendDAG(deep), -1);
  EXPECT_STREQ(loop.unsendable(), "too many levels of recursion");
  EXPECT_EQ(passes("z"), "z");
}

TEST(Link, StatusFollowsTheMessages) {
  Loop loop;
  EXPECT_EQ(loop.getServerStatus(), serverIdle);
  EXPECT_EQ(loop.startComputation(immediate(5), 1), 0);
  EXPECT_EQ(loop.getServerStatus(), serverComputing);
  EXPECT_EQ(loop.getResult(0), DAG());
  EXPECT_EQ(loop.ReadCh(), 1);
  EXPECT_EQ(loop.getServerStatus(), serverReady);
  EXPECT_EQ(loop.getResult(0), immediate(5));
  EXPECT_EQ(loop.getServerStatus(), serverComputing);
  loop.sendDAG(newCall(naminstall("INTERFACE_DONE"), {}));
  loop.getResult(1);
  EXPECT_EQ(loop.getServerStatus(), serverIdle);
}

TEST(Link, FailuresHaveTexts) {
  Loop loop;
  EXPECT_STREQ(loop.getErrorText(), "no error information available");
  loop.fail(cannotStart, 0);
  EXPECT_STREQ(loop.getErrorText(), "unable to start server process");
  loop.fail(systemError, 12);
  EXPECT_STREQ(loop.getErrorText(), "server encountered OS error 12");
  loop.fail(static_cast<KernelErrorCode>(9), 0);
  EXPECT_STREQ(loop.getErrorText(), "unexpected server error 9, no information");
  loop.say("the kernel's own words");
  EXPECT_STREQ(loop.getErrorText(), "the kernel's own words");
}

}  // namespace
}  // namespace korel
