#include "hardware/machine.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <emmintrin.h>

#include "frame/environment.h"
#include "frame/errors.h"
#include "hardware/compiled_cache.h"
#include "hardware/hardware_arrays.h"
#include "hardware/hardware_calls.h"
#include "hardware/hardware_power.h"
#include "hardware/hardware_statements.h"
#include "hardware/hardware_value.h"
#include "hardware/interpreter.h"
#include "hardware/special_functions.h"
#include "rtable/rtable_object.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- elements

// Where the elements of the array in a register lie; `bits` is the reference, `noArray` for none.
constexpr std::uint64_t noArray = ~std::uint64_t{0};
struct ArrayView {
  std::uint64_t bits;
  double* elements;
  std::int64_t low[2];
  std::uint64_t extent[2];
  std::int64_t stride[2];
  bool isWritable;
};

void setView(ArrayView& view, double reference, Word rank) {
  DAG array = hfarraydes(reference);
  checkIndexCount(array, rank);
  view.elements = reinterpret_cast<double*>(dataOf(array));
  view.isWritable = rtableFlag(array, rtableReadOnly) == 0;
  for (Word k = 0; k < rank && k < 2; ++k) {
    view.low[k] = lowerBound(array, k);
    view.extent[k] = static_cast<std::uint64_t>(extentOf(array, k));
    view.stride[k] = 1;
  }
  if (rank == 2) view.stride[isCOrder(array) ? 0 : 1] = extentOf(array, isCOrder(array) ? 1 : 0);
  view.bits = std::bit_cast<std::uint64_t>(reference);
}

[[noreturn, gnu::noinline]] void refuseIndices(double first, double second) {
  requireNumber(first);
  requireNumber(second);
  refuseIndex();
}

// Numbers that no integer holds become the least one, which is out of bounds.
inline std::int64_t truncated(double x) { return _mm_cvttsd_si64(_mm_set_sd(x)); }

inline double* element1(ArrayView& view, double array, double index) {
  if (view.bits != std::bit_cast<std::uint64_t>(array)) [[unlikely]]
    setView(view, array, 1);
  const auto offset = static_cast<std::uint64_t>(truncated(index) - view.low[0]);
  if (offset >= view.extent[0]) [[unlikely]]
    refuseIndices(index, 0.0);
  return view.elements + offset;
}

inline double* element2(ArrayView& view, double array, double first, double second) {
  if (view.bits != std::bit_cast<std::uint64_t>(array)) [[unlikely]]
    setView(view, array, 2);
  const auto i = static_cast<std::uint64_t>(truncated(first) - view.low[0]);
  const auto j = static_cast<std::uint64_t>(truncated(second) - view.low[1]);
  if (i >= view.extent[0] || j >= view.extent[1]) [[unlikely]]
    refuseIndices(first, second);
  return view.elements + static_cast<std::int64_t>(i) * view.stride[0] + static_cast<std::int64_t>(j) * view.stride[1];
}

[[noreturn, gnu::noinline]] void refuseStore(const ArrayView& view) {
  requireWritable(hfarraydes(std::bit_cast<double>(view.bits)));
  std::abort();  // it has raised an error
}
inline double* writable(const ArrayView& view, double* place) {
  if (!view.isWritable) [[unlikely]]
    refuseStore(view);
  return place;
}

[[gnu::noinline]] double* elementOfMany(double array, const double* index, Word count, bool forStore) {
  DAG object = hfarraydes(array);
  checkIndexCount(object, count);
  double* place = arrayElement(object, index);
  if (forStore) requireWritable(object);
  return place;
}

// ---- calls

// The procedure that the call site's head stands for; null when the call is to be left to the plain walk.
[[gnu::noinline]] CompiledProcedure* lookUpCallee(CallSite& site) {
  DAG head = site.call[1];
  if (isName(head) && !isTag(head[1], PROC)) return nullptr;
  DAG procedure = calleeOf(head);
  checkCallLimits(procedure, isSequence(site.call[2]) ? memberCount(site.call[2]) : 1);
  CompiledProcedure* compiled = compiledProcedure(procedure);
  site.procedure = isName(head) && head[1] == procedure ? procedure : DAG();
  site.compiled = compiled;
  site.generation = programGeneration;
  return compiled;
}

inline CompiledProcedure* calleeAt(CallSite& site) {
  DAG head = site.call[1];
  if (site.procedure && site.generation == programGeneration && head[1] == site.procedure) [[likely]]
    return site.compiled;
  return lookUpCallee(site);
}

double runProgram(const CompiledProcedure& compiled, const double* arguments, int count);

// Whether the code can take these arguments: there are enough, and no reference where it wants a number.
inline bool takesArguments(const Program& program, const double* arguments, int count) {
  if (count < program.parameters) return false;
  for (std::uint32_t rest = program.numericParameters; rest != 0; rest &= rest - 1)
    if (isReferenceValue(arguments[std::countr_zero(rest)])) return false;
  return true;
}

inline double runCompiled(const CompiledProcedure& compiled, double* arguments, int count) {
  if (compiled.program != nullptr && takesArguments(*compiled.program, arguments, count)) [[likely]]
    return runProgram(compiled, arguments, count);
  return walkProcedure(compiled.procedure, arguments, count);
}

double checkedWholePower(double x, unsigned n) {
  const double result = wholePower(x, n);
  return std::fabs(result) <= DBL_MAX ? result : hfpow(x, n);
}
double checkedSquareRoot(double x) { return x < 0 ? hfsqrt(x) : std::sqrt(x); }
[[noreturn, gnu::noinline]] void refuseDivision() { KernelException("division by zero"); }

// ---- the machine

struct Activation {
  double* R;
  ArrayView* views;
  CallSite* sites;
  int viewCount;
  std::uint32_t epoch;
};

// After other code has run: arrays may have changed.
[[gnu::noinline]] void forgetViews(Activation& at) {
  for (int i = 0; i < at.viewCount; ++i) at.views[i].bits = noArray;
  at.epoch = hardwareEpoch;
}
inline void checkEpoch(Activation& at) {
  if (at.epoch != hardwareEpoch) [[unlikely]]
    forgetViews(at);
}

[[gnu::noinline]] void evaluateObject(Activation& at, const Instruction& i) {
  at.R[i.a] = i.op == Op::evaluate ? hfeval(i.object) : hfboolean(i.object) ? 1.0 : 0.0;
  checkEpoch(at);
}

// True when the call is to be skipped, since its value is there.
inline bool resolveCall(Activation& at, const Instruction& i) {
  countHardwareStep();
  CallSite& site = at.sites[i.tail.d];
  if (CompiledProcedure* callee = calleeAt(site)) [[likely]] {
    at.R[i.a] = std::bit_cast<double>(reinterpret_cast<std::uintptr_t>(callee));
    return false;
  }
  at.R[i.b] = hfeval(site.call);
  checkEpoch(at);
  return true;
}

inline void callProcedure(Activation& at, const Instruction& i) {
  double* R = at.R;
  const auto* callee = reinterpret_cast<CompiledProcedure*>(std::bit_cast<std::uintptr_t>(R[i.b]));
  R[i.a] = runCompiled(*callee, R + i.c, i.tail.e);
  checkEpoch(at);
}

inline bool isWithin(double v, double by, double to) { return by < 0 ? v >= to : v <= to; }

double execute(Activation& at, const Instruction* i) {
  double* const R = at.R;
  ArrayView* const views = at.views;
#define NEXT_INSTRUCTION \
  ++i;                   \
  break
#define JUMP_WHEN(test)             \
  i += (test) ? i->tail.target : 1; \
  break
  for (;;) {
    switch (i->op) {
      case Op::move: R[i->a] = R[i->b]; NEXT_INSTRUCTION;
      case Op::add: R[i->a] = R[i->b] + R[i->c]; NEXT_INSTRUCTION;
      case Op::subtract: R[i->a] = R[i->b] - R[i->c]; NEXT_INSTRUCTION;
      case Op::multiply: R[i->a] = R[i->b] * R[i->c]; NEXT_INSTRUCTION;
      case Op::divide:
        if (R[i->c] == 0.0) [[unlikely]]
          refuseDivision();
        R[i->a] = R[i->b] / R[i->c];
        NEXT_INSTRUCTION;
      case Op::square: {
        const double x = R[i->b], square = x * x;
        R[i->a] = square <= DBL_MAX ? square : hfpow(x, 2.0);
        NEXT_INSTRUCTION;
      }
      case Op::wholePower: R[i->a] = checkedWholePower(R[i->b], i->tail.d); NEXT_INSTRUCTION;
      case Op::power: R[i->a] = hfpow(R[i->b], R[i->c]); NEXT_INSTRUCTION;
      case Op::squareRoot: R[i->a] = checkedSquareRoot(R[i->b]); NEXT_INSTRUCTION;
      case Op::apply1: R[i->a] = i->one(R[i->b]); NEXT_INSTRUCTION;
      case Op::apply2: R[i->a] = i->two(R[i->b], R[i->c]); NEXT_INSTRUCTION;
      case Op::checkNumber: requireNumber(R[i->a]); NEXT_INSTRUCTION;
      case Op::evaluate: case Op::evaluateTruth: evaluateObject(at, *i); NEXT_INSTRUCTION;
      case Op::jump: i += i->tail.target; break;
      case Op::jumpIfLess: JUMP_WHEN(R[i->a] < R[i->b]);
      case Op::jumpUnlessLess: JUMP_WHEN(!(R[i->a] < R[i->b]));
      case Op::jumpIfLessEqual: JUMP_WHEN(R[i->a] <= R[i->b]);
      case Op::jumpUnlessLessEqual: JUMP_WHEN(!(R[i->a] <= R[i->b]));
      case Op::jumpIfEqual: JUMP_WHEN(R[i->a] == R[i->b]);
      case Op::jumpUnlessEqual: JUMP_WHEN(!(R[i->a] == R[i->b]));
      case Op::jumpIfTrue: JUMP_WHEN(truthOfNumber(R[i->a]));
      case Op::jumpUnlessTrue: JUMP_WHEN(!truthOfNumber(R[i->a]));
      case Op::jumpIfZero: JUMP_WHEN(R[i->a] == 0.0);
      case Op::jumpUnlessZero: JUMP_WHEN(R[i->a] != 0.0);
      case Op::test: R[i->a] = i->test(R[i->b]) ? 1.0 : 0.0; NEXT_INSTRUCTION;
      case Op::leaveLoop: JUMP_WHEN(!isWithin(R[i->a], R[i->b], R[i->c]));
      case Op::nextUp: countHardwareStep(); JUMP_WHEN((R[i->a] += R[i->b]) <= R[i->c]);
      case Op::nextDown: countHardwareStep(); JUMP_WHEN((R[i->a] += R[i->b]) >= R[i->c]);
      case Op::nextEither: countHardwareStep(); JUMP_WHEN(isWithin(R[i->a] += R[i->b], R[i->b], R[i->c]));
      case Op::nextUnbounded:
        countHardwareStep();
        R[i->a] += R[i->b];
        i += i->tail.target;
        break;
      case Op::view: setView(views[i->tail.d], R[i->a], i->c); NEXT_INSTRUCTION;
      case Op::load1: R[i->a] = *element1(views[i->tail.d], R[i->b], R[i->c]); NEXT_INSTRUCTION;
      case Op::load2: R[i->a] = *element2(views[i->tail.d], R[i->b], R[i->c], R[i->tail.e]); NEXT_INSTRUCTION;
      case Op::store1:
        *writable(views[i->tail.d], element1(views[i->tail.d], R[i->b], R[i->c])) = R[i->a];
        NEXT_INSTRUCTION;
      case Op::store2:
        *writable(views[i->tail.d], element2(views[i->tail.d], R[i->b], R[i->c], R[i->tail.e])) = R[i->a];
        NEXT_INSTRUCTION;
      case Op::loadMany: R[i->a] = *elementOfMany(R[i->b], R + i->c, i->tail.e, false); NEXT_INSTRUCTION;
      case Op::storeMany: *elementOfMany(R[i->b], R + i->c, i->tail.e, true) = R[i->a]; NEXT_INSTRUCTION;
      case Op::resolve: JUMP_WHEN(resolveCall(at, *i));
      case Op::call: callProcedure(at, *i); NEXT_INSTRUCTION;
      case Op::raise: raiseHardwareError(i->object);
      case Op::strayBreak: KernelException("break outside for loop in evalhf");
      case Op::strayNext: KernelException("next outside for loop in evalhf");
      case Op::leave: return R[i->a];
    }
  }
#undef NEXT_INSTRUCTION
#undef JUMP_WHEN
}

double runProgram(const CompiledProcedure& compiled, const double* arguments, int count) {
  checkStack();
  const Program& p = *compiled.program;
  auto* R =
      static_cast<double*>(__builtin_alloca(sizeof(double) * static_cast<std::size_t>(p.registers + p.constantCount)));
  auto* views = static_cast<ArrayView*>(__builtin_alloca(sizeof(ArrayView) * static_cast<std::size_t>(p.views)));
  for (int i = 0; i < p.parameters; ++i) R[i] = arguments[i];
  for (int i = 0; i < p.locals; ++i) R[p.parameters + i] = 0.0;
  for (int i = 0; i < p.constantCount; ++i) R[p.registers + i] = p.constants[i];
  for (int i = 0; i < p.views; ++i) views[i].bits = noArray;
  HardwareFrame frame{{}, HFStack, R, R + p.parameters, count, compiled.procedure, p.locals, nullptr, false};
  HFStack = &frame;
  Activation activation{R, views, p.sites, p.views, hardwareEpoch};
  const double result = execute(activation, p.code);
  HFStack = frame.link;
  return result;
}

}  // namespace

double runProcedure(DAG procedure, double* arguments, int count) {
  if (!hardwareCompiles) return walkProcedure(procedure, arguments, count);
  return runCompiled(*compiledProcedure(procedure), arguments, count);
}

}  // namespace korel
