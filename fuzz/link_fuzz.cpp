// Any bytes as what a front end sends: arguments, then statements, each read, copied, simplified and written again.
//
// What must hold for every input: each message ends in an object or is passed over up to its flush; the bytes' end
// ends the reading; nothing crashes, hangs or takes memory that the bytes don't account for. What has been written
// reads back. Statements are not run.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "frame/output.h"
#include "fuzz_kernel.h"
#include "session/link/pipe_client.h"
#include "store/constants.h"
#include "store/objects.h"

using namespace korel;
using namespace korel::fuzzing;

namespace {

/// A front end that has sent all it will.
class Bytes : public KL_BaseClient {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  int ReadCh() override { return at_ < size_ ? data_[at_++] : (at_ = size_ + 1, -1); }
  int Write(const char*, std::size_t) override { return 0; }
  bool isClosed() const override { return at_ > size_; }

 private:
  const std::uint8_t* data_;
  std::size_t size_, at_ = 0;
};

Bytes* frontEnd;
bool gotStatement;


void writeAndReadBack(DAG x) {
  static MessageWriter writer;
  static MessageReader reader;
  if (!writer.compose(x)) return;
  const auto* bytes = reinterpret_cast<const unsigned char*>(writer.data());
  ByteSource source{bytes, bytes + writer.size()};
  DAG again = reader.next(source);
  if (!again && x) std::abort();
}

DAG receive() {
  DAG statement = frontEnd->getNextDAGFromNerin();
  gotStatement = bool(statement);
  if (!statement) return null;
  writeAndReadBack(statement);
  DAG copy = CopyDAG(statement);
  if (copy == DAG(2)) return null;
  writeAndReadBack(nerintokorel(statement));
  return null;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  startKernel();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(data, size);
  frontEnd = &bytes;
  startClock();
  Args arguments;
  // The first byte tells whether arguments come first.
  if (size > 0 && data[0] == 'a') (void)bytes.receiveKernelArgs(arguments);
  for (int statements = 0; statements < 20 && !bytes.isClosed(); ++statements) run(receive);
  collectEvery(64);
  return 0;
}
