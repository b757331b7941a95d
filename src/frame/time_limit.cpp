#include "frame/time_limit.h"

#include <sys/resource.h>

#include <limits>

#include "eval/evaluate/evalf.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/objects.h"
#include "eval/types/type_match.h"

namespace korel {

std::int32_t evalTimeLimit = 0;

namespace {

constexpr std::int32_t noLimit = std::numeric_limits<std::int32_t>::max();

DAG secondsAsFloat(double seconds) {
  auto thousandths = static_cast<std::int64_t>(seconds * 1000);
  return simpl(newFLOAT(simpl(NewInteger(thousandths)), immediate(-3)));
}

std::int32_t limitFrom(double seconds) {
  double hundredths = (cptime() + seconds) * 100;
  return hundredths >= noLimit ? noLimit : static_cast<std::int32_t>(hundredths);
}

}  // namespace

double cptime() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto seconds = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) * 1e-6; };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

bool isTimeExpired() { return evalTimeLimit != 0 && cptime() * 100 > evalTimeLimit; }

void checkTimeLimitInForce() {
  if (isTimeExpired()) raiseTimeExpired();
}

void raiseTimeExpired() {
  evalTimeLimit = 0;
  SpecialError = timeExpired;
  KernelException("time expired");
}

DAG builtin::time(const BuiltinCall& call) {
  double start = argumentCount(call) == 0 ? 0.0 : cptime();
  for (Word i = 1; i < lengthOf(call.arguments); ++i) simpl(korel::eval(call.arguments[i]));
  return secondsAsFloat(cptime() - start);
}

DAG builtin::timelimit(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  if (evalTimeLimit != 0) KernelException("timelimit already active");
  clearLastError();
  DAG t = call.arguments[1];
  if (t == consm1) {
    evalTimeLimit = noLimit;
  } else {
    DAG seconds = simpl(korel::evalf(simpl(korel::eval(t))));
    if (!isNumeric(seconds)) wrongParameters(call);
    double limit = FloatValue(seconds);
    if (!(limit >= 0)) wrongParameters(call);
    evalTimeLimit = limitFrom(limit);
  }
  DAG value = korel::traperror(call.arguments[2]);
  evalTimeLimit = 0;
  if (SpecialError == timeExpired) {
    SpecialError = noSpecialError;
    ResetTypematch();
  }
  if (ini("lasterror")[1]) jumpOut(jumpError);
  return value;
}

}  // namespace korel
