#include "frame/environment_block.h"

#include "frame/errors.h"
#include "store/generations.h"
#include "store/objects.h"

namespace korel {

std::int64_t requireDigits() {
  std::int64_t digits = precisionDigits();
  if (digits < 1) KernelException("Digits has to be an integer greater than 0");
  return digits;
}

DAG privateEnvironmentBlock() {
  Frame& frame = *Environment->frame;
  const bool shared = frame.previousFrame != nullptr && frame.previousFrame->envVars == frame.envVars;
  if (shared) frame.envVars = CopyAlg(frame.envVars);
  else updategen(frame.envVars);
  return frame.envVars;
}

namespace {

void undo(const EnvironmentChange& change) { change.frame->envVars[change.word] = change.before; }
// The change lies on the stack below whoever raised the error, so that it is still there.
void undoChange(const char*) { undo(*reinterpret_cast<EnvironmentChange*>(errorProcParam)); }

}  // namespace

void changeEnvironmentWord(EnvironmentChange& change, EnvironmentWord word, DAG value) {
  DAG block = privateEnvironmentBlock();
  change = {Environment->frame, word, block[word]};
  PushStateKeeper(undoChange, &change);
  block[word] = value;
}

void restoreEnvironmentWord(EnvironmentChange& change) {
  PopErrorProc();
  undo(change);
}

void setDigits(EnvironmentChange& change, std::int64_t digits) {
  // Twice the largest `Digits` is still an immediate.
  changeEnvironmentWord(change, envDigits, immediate(static_cast<std::int32_t>(digits)));
}

}  // namespace korel
