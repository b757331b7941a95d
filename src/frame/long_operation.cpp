#include "frame/long_operation.h"

#include <cstdlib>

#include "frame/time_limit.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "store/collect/collector.h"

namespace korel {

namespace {
// Some ten milliseconds; a look costs a call of the driver's handler and one of the system.
constexpr std::int64_t stepsBetweenLooks = 10000000;
}  // namespace

std::int64_t stepsToNextLook = stepsBetweenLooks;

bool mustEndOperation() {
  stepsToNextLook = stepsBetweenLooks;
  if (SpecialError != noSpecialError || collecting) return false;
  if (Environment == nullptr || Environment->jumpBuffer == nullptr) return false;
  pollInterruptSoon();
  if (TestInterrupt()) SpecialError = computationInterrupted;
  else if (isTimeExpired()) SpecialError = timeExpired;
  return SpecialError != noSpecialError;
}

void endOperation() {
  if (SpecialError == timeExpired) raiseTimeExpired();
  jumpback();
  std::abort();  // it has raised an error
}

}  // namespace korel
