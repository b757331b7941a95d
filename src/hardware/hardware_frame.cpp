#include "hardware/hardware_frame.h"

#include "hardware/compiled_cache.h"
#include "store/collect/collector.h"

namespace korel {

HardwareFrame* HFStack = nullptr;
std::jmp_buf* HFjumpbuffer = nullptr;
double HFReturn = 0.0;
std::uint8_t evalhfInterruptTestMod = 0;
std::uint32_t hardwareEpoch = 0;

void ResetEvalhfInterrupt() { evalhfInterruptTestMod = 255; }

void testHardwareInterrupt() {
  evalhfInterruptTestMod = 0;
  if (askForInterrupt() || SpecialError == computationInterrupted) jumpback();
  checkTimeLimit();
}

namespace {

void walkFrames(Visitor visit) {
  for (HardwareFrame* frame = HFStack; frame != nullptr; frame = frame->link) visit(frame->proc);
}
void endEpoch() { ++hardwareEpoch; }

}  // namespace

void initializeHardware() {
  registerRootWalker(walkFrames);
  registerCollectionHook(nullptr, endEpoch);
  initializePrograms();
}

}  // namespace korel
