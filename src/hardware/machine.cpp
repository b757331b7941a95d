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

// How far the whole part of `x` lies above `low`. Numbers that no integer holds become the least one; what lies below
// comes out beyond any extent.
inline std::uint64_t distanceFrom(std::int64_t low, double x) {
  return static_cast<std::uint64_t>(_mm_cvttsd_si64(_mm_set_sd(x))) - static_cast<std::uint64_t>(low);
}

// The element of the array b with the index c, or c and the tail's e.
inline double* element1(ArrayView* views, const double* R, const Instruction& i) {
  ArrayView& view = views[i.tail.d];
  if (view.bits != std::bit_cast<std::uint64_t>(R[i.b])) [[unlikely]]
    setView(view, R[i.b], 1);
  const std::uint64_t offset = distanceFrom(view.low[0], R[i.c]);
  if (offset >= view.extent[0]) [[unlikely]]
    refuseIndices(R[i.c], 0.0);
  return view.elements + offset;
}

inline double* element2(ArrayView* views, const double* R, const Instruction& i) {
  ArrayView& view = views[i.tail.d];
  if (view.bits != std::bit_cast<std::uint64_t>(R[i.b])) [[unlikely]]
    setView(view, R[i.b], 2);
  const std::uint64_t first = distanceFrom(view.low[0], R[i.c]);
  const std::uint64_t second = distanceFrom(view.low[1], R[i.tail.e]);
  if (first >= view.extent[0] || second >= view.extent[1]) [[unlikely]]
    refuseIndices(R[i.c], R[i.tail.e]);
  return view.elements + static_cast<std::int64_t>(first) * view.stride[0] +
         static_cast<std::int64_t>(second) * view.stride[1];
}

[[noreturn, gnu::noinline]] void refuseStore(const ArrayView& view) {
  requireWritable(hfarraydes(std::bit_cast<double>(view.bits)));
  std::abort();  // it has raised an error
}
inline double* writable(const ArrayView* views, const Instruction& i, double* place) {
  if (!views[i.tail.d].isWritable) [[unlikely]]
    refuseStore(views[i.tail.d]);
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
// x^(-n): a zero becomes an infinity, and the error of that.
double checkedInversePower(double x, unsigned n) {
  const double result = wholePower(1.0 / x, n);
  return std::fabs(result) <= DBL_MAX ? result : hfpow(x, -static_cast<double>(n));
}
double checkedSquareRoot(double x) { return x < 0 ? hfsqrt(x) : std::sqrt(x); }
[[noreturn, gnu::noinline]] void refuseDivision() { KernelException("division by zero"); }
inline double nonZero(double divisor) {
  if (divisor == 0.0) [[unlikely]]
    refuseDivision();
  return divisor;
}
// `x`, or what `otherwise` gives or raises when that is no finite number.
template <class Otherwise>
inline double finiteOr(double x, Otherwise otherwise) {
  return std::fabs(x) <= DBL_MAX ? x : otherwise();
}

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

// Sets up the registers and runs the code. Each operation ends in a jump of its own to the next one: the processor
// foresees where that leads by where it stands (bench/hardware.sh).
double runProgram(const CompiledProcedure& compiled, const double* arguments, int count) {
  static const void* const places[] = {
#define KOREL_OPERATION(name, ...) &&name,
#include "hardware/operations.def"
#undef KOREL_OPERATION
  };
  checkStack();
  const Program& p = *compiled.program;
  const auto size = static_cast<std::size_t>(p.registers + p.constantCount);
  auto* const R = static_cast<double*>(__builtin_alloca(sizeof(double) * size));
  auto* const views = static_cast<ArrayView*>(__builtin_alloca(sizeof(ArrayView) * static_cast<std::size_t>(p.views)));
  for (int k = 0; k < p.parameters; ++k) R[k] = arguments[k];
  for (int k = 0; k < p.locals; ++k) R[p.parameters + k] = 0.0;
  for (int k = 0; k < p.constantCount; ++k) R[p.registers + k] = p.constants[k];
  for (int k = 0; k < p.views; ++k) views[k].bits = noArray;
  HardwareFrame frame{{}, HFStack, R, R + p.parameters, count, compiled.procedure, p.locals, nullptr, false};
  HFStack = &frame;
  Activation at{R, views, p.sites, p.views, hardwareEpoch};
  const Instruction* i = p.code;
  goto* places[static_cast<int>(i->op)];
#define KOREL_OPERATION(name, ...) \
  name : { __VA_ARGS__ }           \
  goto* places[static_cast<int>(i->op)];
#include "hardware/operations.def"
#undef KOREL_OPERATION
}

}  // namespace

double runProcedure(DAG procedure, double* arguments, int count) {
  if (!hardwareCompiles) return walkProcedure(procedure, arguments, count);
  return runCompiled(*compiledProcedure(procedure), arguments, count);
}

}  // namespace korel
