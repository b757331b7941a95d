#include "external/call_external.h"

#include <algorithm>
#include <alloca.h>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "external/addresses.h"
#include "external/faults.h"
#include "external/kernel_vector.h"
#include "external/vector_functions.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/integer/integer.h"
#include "rtable/rtable_object.h"
#include "session/driver.h"
#include "store/allocator.h"
#include "store/collect/collector.h"
#include "store/generations.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

// ---- wrappers and their static storage

namespace {

struct Wrapper {
  void* address;
  const MWrapperStatic* statics;
  bool isPlain;
  Wrapper* next;
};
Wrapper* wrappers = nullptr;

const Wrapper* wrapperAt(void* address) {
  const Wrapper* w = wrappers;
  while (w != nullptr && w->address != address) w = w->next;
  return w;
}
const MWrapperStatic* staticsOf(void* address) {
  const Wrapper* w = wrapperAt(address);
  return w != nullptr ? w->statics : nullptr;
}

// Procedures of plain wrappers that have been called before, by their bodies, which stay alive.
constexpr std::size_t plainCodeCount = 256;
ExternalCode plainCode[plainCodeCount];

void visitStatics(Visitor visit) {
  for (const ExternalCode& code : plainCode)
    if (code.body) visit(code.body);
  for (const Wrapper* w = wrappers; w != nullptr; w = w->next)
    for (const MWrapperStatic* s = w->statics; s->place != nullptr; ++s) {
      if (!s->objects) continue;
      const auto* first = static_cast<const ALGEB*>(s->place);
      for (std::size_t i = 0; i < s->bytes / sizeof(ALGEB); ++i)
        if (first[i] != nullptr) visit(fromC(first[i]));
    }
}

std::size_t bytesOf(const MWrapperStatic* statics) {
  std::size_t bytes = 0;
  for (const MWrapperStatic* s = statics; s->place != nullptr; ++s) bytes += s->bytes;
  return bytes;
}

}  // namespace

void registerWrapper(void* wrapper, const void* statics, bool isPlain) {
  if (statics == nullptr || wrapperAt(wrapper) != nullptr) return;
  auto* entry = static_cast<Wrapper*>(std::malloc(sizeof(Wrapper)));
  if (entry == nullptr) userror("out of memory");
  *entry = {wrapper, static_cast<const MWrapperStatic*>(statics), isPlain, wrappers};
  wrappers = entry;
}

void forgetWrappers() {
  std::fill(std::begin(plainCode), std::end(plainCode), ExternalCode{});
  while (wrappers != nullptr) {
    Wrapper* next = wrappers->next;
    std::free(wrappers);
    wrappers = next;
  }
}

// ---- the state around a call

namespace {

// What a call finds and leaves as it was. It lies on the native stack of the call.
struct CallState {
  ExternalCall call;
  FaultLanding landing;
  const FramelessCall* frameless;
  EnvironmentBlock* environment;
  std::int32_t trapSet;
  int errorProcs;
  bool inExternalCall;
  bool blockWasOut;
  std::int64_t cusedextBefore;
  const MWrapperStatic* statics;  // of a nested call, else null
  char* saved;                    // their bytes
};

void copyStatics(const MWrapperStatic* statics, char* saved, bool putsBack) {
  for (const MWrapperStatic* s = statics; s->place != nullptr; ++s) {
    if (putsBack) std::memcpy(s->place, saved, s->bytes);
    else std::memcpy(saved, s->place, s->bytes);
    saved += s->bytes;
  }
}

inline void leaveCall(CallState& state) {
  if (state.statics != nullptr) copyStatics(state.statics, state.saved, true);
  InExternalCall = state.inExternalCall;
  vector::objectBlockIsOut = vector::objectBlockIsOut || state.blockWasOut;
  innermostCall = state.call.outer;
  faultLanding = state.landing.outer;
  if (InExternalCall) return;
  // The outermost call: what it has left counts for the collector from now on.
  cused += cusedext - state.cusedextBefore;
  cusedext = state.cusedextBefore;
}

void leaveCallByError(const char*) {
  leaveCall(*reinterpret_cast<CallState*>(errorProcParam));
  restoreSignalMask();
}

// The block that C takes for the argument sequence: word 0 stands for the header. Behind the arguments there are null
// pointers, so that a function whose arguments nobody counts finds something.
constexpr Word spareArguments = 8;
void fillBlock(ALGEB* block, DAG arguments) {
  const Word n = lengthOf(arguments);
  block[0] = toC(null);
  for (Word i = 1; i < n; ++i) block[i] = toC(arguments[i]);
  std::memset(block + n, 0, spareArguments * sizeof(ALGEB));
}

// ---- what C may have written

void simplifyElements(DAG r) {
  if (isKorelSparse(r) || rawField(r, rtableData) == 0 || datatypeOf(r) > dataComplexFloat) return;
  std::int64_t count = rawField(r, rtableCount);
  auto* words = reinterpret_cast<DAG*>(dataOf(r));
  if (storageOf(r) == storageSparse) words += count * dimensionsOf(r);
  if (datatypeOf(r) == dataComplexFloat) count *= 2;
  for (std::int64_t i = 0; i < count; ++i)
    if (words[i] && !isSimplified(words[i])) words[i] = simpl(words[i]);
}

// Floats in the arguments that C has made in place become simplified objects.
void SimplifyFLOATs(DAG arguments) {
  for (Word i = 1; i < lengthOf(arguments); ++i) {
    DAG x = vector::valueOf(toC(arguments[i]));
    if (isTag(x, RTABLE)) simplifyElements(x);
  }
}

using WrapperFunction = ALGEB (*)(MKernelVector kv, void* external, ALGEB arguments);
using KernelFunction = ALGEB (*)(MKernelVector kv, ALGEB arguments);

// A fault leaves whatever ran inside of the call, be it C or a callback, at once. The error is raised from here, on the
// ordinary stack.
[[noreturn]] void landFromFault(CallState& state) {
  if (Environment != state.environment) RestoreEnvironment(state.environment);
  dropErrorProcs(state.errorProcs);
  trapSet = state.trapSet;
  const char* message = state.landing.message;
  leaveCall(state);
  restoreSignalMask();
  if (state.frameless != nullptr) PushFramelessCall(*state.frameless);
  userror(message);
}

}  // namespace

DAG CallExternal(const ExternalCode& code, DAG arguments, const FramelessCall* frameless) {
  const auto [body, wrapper, external, returnsValue] = code;
  prepareForFaults();
  CallState state;
  auto* block = static_cast<ALGEB*>(alloca((lengthOf(arguments) + spareArguments) * sizeof(ALGEB)));
  fillBlock(block, arguments);
  state.call = {block, arguments, innermostCall};
  state.inExternalCall = InExternalCall;
  state.blockWasOut = vector::objectBlockIsOut;
  state.cusedextBefore = cusedext;
  state.statics = nullptr;
  if (InExternalCall && wrapper != nullptr) {
    state.statics = staticsOf(wrapper);
    if (state.statics != nullptr) {
      state.saved = static_cast<char*>(alloca(bytesOf(state.statics)));
      copyStatics(state.statics, state.saved, false);
    }
  }
  state.environment = Environment;
  state.trapSet = trapSet;
  state.errorProcs = errorProcCount;
  state.landing.outer = faultLanding;
  state.frameless = frameless;
  if (_setjmp(state.landing.place) != 0) landFromFault(state);
  PushStateKeeper(leaveCallByError, &state, frameless);
  faultLanding = &state.landing;
  innermostCall = &state.call;
  InExternalCall = true;
  vector::objectBlockIsOut = false;
  auto* sequence = reinterpret_cast<ALGEB>(block);
  ALGEB result = wrapper != nullptr
                     ? reinterpret_cast<WrapperFunction>(wrapper)(&ExternalSupportVector, external, sequence)
                     : reinterpret_cast<KernelFunction>(external)(&ExternalSupportVector, sequence);
  const bool blockWasOut = vector::objectBlockIsOut;
  DAG value = returnsValue ? simpl(fromC(result)) : null;
  PopErrorProc();
  leaveCall(state);
  if (blockWasOut) SimplifyFLOATs(arguments);
  if (pollWanted != 0 && TestInterrupt()) jumpback();
  return value;
}

void resetExternalCalls() {
  innermostCall = nullptr;
  faultLanding = nullptr;
  InExternalCall = false;
  vector::objectBlockIsOut = false;
}

void initializeExternalCalls() {
  std::fill(std::begin(plainCode), std::end(plainCode), ExternalCode{});
  registerRootWalker(visitStatics);
}

// ---- the built-in

namespace {

constexpr Word argsParameter = static_cast<Word>(-1);

DAG operand(DAG x) { return isImmediate(x) || hasTag(x, INTPOS) ? x : simpl(eval(x)); }
bool readAddress(DAG x, void*& address) {
  std::int64_t value;
  // An address of user space has four digits of base 10000, and each call reads two (bench/external.sh).
  constexpr Word addressLength = 5;
  if (isTag(x, INTPOS) && lengthOf(x) == addressLength) {
    const Word* digit = digitsOf(x);
    value = std::int64_t{digit[3] * BASE + digit[2]} * (std::int64_t{BASE} * BASE) + (digit[1] * BASE + digit[0]);
    address = reinterpret_cast<void*>(value);
    return true;
  }
  if (!isInteger(x) || !readLongLong(x, value)) return false;
  address = reinterpret_cast<void*>(value);
  return true;
}

}  // namespace

namespace {

// The first three operands of call_external.
ExternalCode codeIn(DAG body, DAG given) {
  constexpr const char* expected = "wrapper handle, external handle, and return flag expected";
  if (!isSequence(given) || memberCount(given) != 4) userror(expected);
  ExternalCode code;
  code.body = body;
  DAG returns = operand(given[3]);
  const bool isFlag = returns == ini("true") || returns == ini("false");
  if (!readAddress(operand(given[1]), code.wrapper) || !readAddress(operand(given[2]), code.external) || !isFlag)
    userror(expected);
  code.returnsValue = returns == ini("true");
  return code;
}
bool isArgs(DAG x) { return isTag(x, PARAM) && rawField(x, 1) == argsParameter; }

}  // namespace

const ExternalCode* framelessCode(DAG procedure) {
  DAG body = bodyOf(procedure);
  if (isImmediate(body) || secureMode) return nullptr;
  ExternalCode& entry = plainCode[body.word / 8 % plainCodeCount];
  if (entry.body == body) return &entry;
  if (!isCallOf(body, ini("call_external")) || !isTag(body[1][1], PROC) || !isBuiltinProcedure(body[1][1]))
    return nullptr;
  DAG given = body[2];
  const bool isUsual = isSequence(given) && memberCount(given) == 4 && isInteger(given[1]) && isInteger(given[2]) &&
                       (given[3] == ini("true") || given[3] == ini("false")) && isArgs(given[4]);
  if (!isUsual) return nullptr;
  const ExternalCode code = codeIn(body, given);
  const Wrapper* wrapper = wrapperAt(code.wrapper);
  if (wrapper == nullptr || !wrapper->isPlain) return nullptr;
  updategen(body);
  entry = code;
  return &entry;
}

DAG builtin::call_external(const BuiltinCall& call) {
  DAG given = call.arguments;
  const ExternalCode code = codeIn(call.form, given);
  if (!isArgs(given[4])) userror("`args` expected for fourth parameter of call_external");
  if (secureMode) userror("system calls are disabled");
  // C looks at the arguments one by one: those of a procedure need no place among the simplified objects.
  const Frame& frame = *Environment->frame;
  DAG arguments = isTag(frame.proc, PROC) ? frame.args : evparloc(given[4]);
  return CallExternal(code, asSequence(arguments));
}

}  // namespace korel
