#include "rtable/scan_block.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evalf.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/boolean.h"
#include "eval/statements/statements.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "numbers/float/ieee_functions.h"
#include "numbers/integer/integer.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/offsets.h"
#include "rtable/selection.h"
#include "rtable/stored_positions.h"
#include "store/append.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- what a function keeps while the block is walked

struct Scan {
  DAG procedure;  // of the user; 0 for the functions of the table
  DAG value;      // the accumulator: a number, a truth, or 0 for none yet; of a procedure its name
  DAG terms;      // EXPSEQ of what no number adds up
  std::int64_t count = 0;
  bool isOver = false;
};

bool isZeroElement(DAG x) { return isZeroValue(x); }

// ---- the functions of the table

void addTerm(Scan& s, DAG x) {
  ++s.count;
  if (isNumeric(x)) {
    s.value = simpl(add(s.value, x));
  } else {
    if (!s.terms) s.terms = new1(EXPSEQ);
    s.terms = Append2(s.terms, x);
  }
}
void addNonZero(Scan& s, DAG x) {
  if (!isZeroElement(x)) addTerm(s, x);
}

bool isAtMost(DAG a, DAG b) {
  if (isImmediate(a) && isImmediate(b)) return immediateValue(a) <= immediateValue(b);
  DAG truth = evalbool(simpl(new3(LESSEQ, a, b)));
  // What is undefined stands in no order; symbols are refused.
  if (truth != ini("true") && truth != ini("false") && truth != ini("FAIL"))
    KernelException("cannot evaluate boolean: %1", truth);
  return truth == ini("true");
}
void takeLarger(Scan& s, DAG x) {
  if (!s.value || isAtMost(s.value, x)) s.value = x;
}
void takeSmaller(Scan& s, DAG x) {
  if (!s.value || isAtMost(x, s.value)) s.value = x;
}
void takeLargerNonZero(Scan& s, DAG x) {
  if (!isZeroElement(x)) takeLarger(s, x);
}
void takeSmallerNonZero(Scan& s, DAG x) {
  if (!isZeroElement(x)) takeSmaller(s, x);
}
void noteZero(Scan& s, DAG x) {
  if (isZeroElement(x)) s.value = ini("true");
}
void noteNonZero(Scan& s, DAG x) {
  if (!isZeroElement(x)) s.value = ini("true");
}
void countNonZero(Scan& s, DAG x) { s.count += !isZeroElement(x); }

DAG totalOf(const Scan& s) {
  if (!s.terms) return s.value;
  const Word n = memberCount(s.terms);
  DAG sum = newl2(2 * n + 3, SUM);
  sum[1] = s.value;
  sum[2] = cons1;
  for (Word i = 1; i <= n; ++i) {
    sum[2 * i + 1] = s.terms[i];
    sum[2 * i + 2] = cons1;
  }
  return simpl(sum);
}
DAG averageOf(const Scan& s) {
  if (s.count == 0) return ini("undefined");
  return simpl(evalf(simpl(new5(PROD, totalOf(s), cons1, simpl(NewInteger(s.count)), consm1))));
}
DAG extremeOf(const Scan& s) { return s.value ? s.value : ini("FAIL"); }
DAG valueOf(const Scan& s) { return s.value; }
DAG countOf(const Scan& s) { return simpl(NewInteger(s.count)); }

struct ScanFunction {
  const char* name;
  DAG (*start)();
  void (*take)(Scan& s, DAG element);
  DAG (*result)(const Scan& s);
};
DAG fromZero() { return cons0; }
DAG fromNothing() { return DAG(); }
DAG fromFalse() { return ini("false"); }
constexpr ScanFunction scanFunctions[] = {
    // name            start        element             result
    {"Average",        fromZero,    addTerm,            averageOf},
    {"Sum",            fromZero,    addTerm,            totalOf},
    {"NonZeroAverage", fromZero,    addNonZero,         averageOf},
    {"NonZeroSum",     fromZero,    addNonZero,         totalOf},
    {"Maximum",        fromNothing, takeLarger,         extremeOf},
    {"Minimum",        fromNothing, takeSmaller,        extremeOf},
    {"NonZeroMaximum", fromNothing, takeLargerNonZero,  extremeOf},
    {"NonZeroMinimum", fromNothing, takeSmallerNonZero, extremeOf},
    {"HasZero",        fromFalse,   noteZero,           valueOf},
    {"HasNonZero",     fromFalse,   noteNonZero,        valueOf},
    {"NonZeros",       fromZero,    countNonZero,       countOf},
};

// ---- procedures of the user

// The accumulator is a name of its own, which the procedure assigns.
void callProcedure(Scan& s, DAG element) {
  DAG value = isImmediate(element) ? element : new2(UNEVAL, new2(EXPSEQ, element));
  ++evaluationLevel;
  DAG answer = simpl(eval(newCall(s.procedure, {value, new2(UNEVAL, s.value)})));
  --evaluationLevel;
  if (answer == ini("false")) s.isOver = true;
}
DAG accumulated(const Scan& s) { return simpl(eval(s.value)); }
constexpr ScanFunction userFunction = {nullptr, nullptr, callProcedure, accumulated};

// ---- arguments

struct Block {
  DAG r;
  std::int32_t bounds[2 * maxDimensions];
};

void readRanges(Block& block, DAG list) {
  if (!isTag(list, LIST)) KernelException("list of ranges expected");
  const Word n = dimensionsOf(block.r), given = memberCount(list[1]);
  if (given > n) KernelException("range expected for each dimension");
  std::copy(boundsOf(block.r), boundsOf(block.r) + 2 * n, block.bounds);
  for (Word k = 0; k < given; ++k) {
    DAG range = list[1][k + 1];
    if (!isTag(range, RANGE)) KernelException("range expected for each dimension");
    if (!isInteger(range[1]) || !isInteger(range[2])) KernelException("integer range expected for each dimension");
    auto within = [&](DAG x) { return FitIntoWord(x) && isWithinBounds(block.r, k, LongLongValue(x)); };
    if (!within(range[1]) || !within(range[2])) KernelException("range out of bounds");
    block.bounds[2 * k] = static_cast<std::int32_t>(LongLongValue(range[1]));
    block.bounds[2 * k + 1] = static_cast<std::int32_t>(LongLongValue(range[2]));
    if (block.bounds[2 * k + 1] < block.bounds[2 * k]) KernelException("inverted range");
  }
}

const ScanFunction* readFunction(DAG f, Scan& scan) {
  if (!isName(f) && !isTag(f, PROC)) KernelException("invalid scan function %1", f);
  if (isName(f))
    for (const ScanFunction& row : scanFunctions)
      if (hasText(f, row.name)) {
        scan.value = row.start();
        return &row;
      }
  DAG value = isName(f) ? valuenv(f, true) : f;
  if (!isTag(value, PROC)) KernelException("unrecognized scan function %1", f);
  scan.procedure = f;
  scan.value = newLocalName("result");
  return &userFunction;
}

// ---- the walk

constexpr Word mostFunctions = 64;
struct Scans {
  Word count;
  const ScanFunction* functions[mostFunctions];
  Scan scans[mostFunctions];
};

void takeElement(Scans& all, DAG element) {
  for (Word i = 0; i < all.count; ++i)
    if (!all.scans[i].isOver) all.functions[i]->take(all.scans[i], element);
}

// Accumulators live in this frame, where no barrier follows them from step to step.
void keepAccumulators(Scans& all) {
  for (Word i = 0; i < all.count; ++i) {
    updategen(all.scans[i].value);
    if (all.scans[i].terms) updategen(all.scans[i].terms);
  }
}

void scanByElements(Block& block, Scans& all) {
  DAG r = block.r;
  const bool plain = functionCount(r) == 0;
  forEachIndex(block.bounds, dimensionsOf(r), [&](const std::int32_t* index) {
    passWork(objectSteps);
    DAG element = !plain || isStoredPosition(r, index) ? selectElement(r, index) : RTableZero(r);
    takeElement(all, element ? element : null);
    keepAccumulators(all);
    collectInLoop();
  });
}

// ---- blocks of machine numbers

// What the functions of the table ask of runs of numbers. Each figure has a loop of its own, in lanes that don't wait
// for each other (bench/rtables.sh, "sum", "maximum").
struct Wanted {
  bool total, extremes, nonZero;
};
constexpr int lanes = 8;

template <class T>
struct Figures {
  using Total = std::conditional_t<std::is_same_v<T, double>, double, __int128>;
  Wanted wanted;
  Total total = 0;
  std::int64_t count = 0, nonZero = 0;
  T largest{}, least{}, largestNonZero{}, leastNonZero{};

  void addUp(const T* run, std::int64_t n) {
    // Sums of integers fit: a run has at most 2^16 of them, and those of 64 bits are added one by one.
    using Lane = std::conditional_t<std::is_same_v<T, double>, double,
                                    std::conditional_t<sizeof(T) == 8, __int128, std::int64_t>>;
    Lane sums[lanes] = {};
    std::int64_t i = 0;
    for (; i + lanes <= n; i += lanes)
      for (int k = 0; k < lanes; ++k) sums[k] += run[i + k];
    for (; i < n; ++i) sums[0] += run[i];
    for (Lane sum : sums) total += sum;
  }
  void compare(const T* run, std::int64_t n) {
    if (count == 0) largest = least = run[0];
    T most[lanes], fewest[lanes];
    std::fill_n(most, lanes, largest);
    std::fill_n(fewest, lanes, least);
    std::int64_t i = 0;
    for (; i + lanes <= n; i += lanes)
      for (int k = 0; k < lanes; ++k) {
        most[k] = most[k] < run[i + k] ? run[i + k] : most[k];
        fewest[k] = run[i + k] < fewest[k] ? run[i + k] : fewest[k];
      }
    for (; i < n; ++i) {
      most[0] = most[0] < run[i] ? run[i] : most[0];
      fewest[0] = run[i] < fewest[0] ? run[i] : fewest[0];
    }
    for (int k = 0; k < lanes; ++k) {
      largest = largest < most[k] ? most[k] : largest;
      least = fewest[k] < least ? fewest[k] : least;
    }
  }
  void compareNonZero(const T* run, std::int64_t n) {
    for (std::int64_t i = 0; i < n; ++i) {
      const T x = run[i];
      if (x == T{0}) continue;
      if (nonZero++ == 0) largestNonZero = leastNonZero = x;
      largestNonZero = largestNonZero < x ? x : largestNonZero;
      leastNonZero = x < leastNonZero ? x : leastNonZero;
    }
  }
  void take(const T* run, std::int64_t n) {
    if (n == 0) return;
    if (wanted.total) addUp(run, n);
    if (wanted.extremes) compare(run, n);
    if (wanted.nonZero) compareNonZero(run, n);
    count += n;
  }
};

DAG numberOf(double x) { return floatOfDouble(x); }
DAG numberOf(std::int64_t x) { return simpl(NewInteger(x)); }
DAG numberOf(std::int8_t x) { return numberOf(std::int64_t{x}); }
DAG numberOf(std::int16_t x) { return numberOf(std::int64_t{x}); }
DAG numberOf(std::int32_t x) { return numberOf(std::int64_t{x}); }
DAG numberOf(__int128 x) {
  constexpr std::int64_t part = std::int64_t{1} << 62;
  DAG high = numberOf(static_cast<std::int64_t>(x / part)), low = numberOf(static_cast<std::int64_t>(x % part));
  return simpl(add(simpl(mul(high, numberOf(part))), low));
}

// Rounded once, to `Digits`, where elements one by one would be at each step.
template <class Total>
DAG roundedTotal(Total total) {
  return simpl(add(cons0, numberOf(total)));
}

template <class T>
void answer(const Figures<T>& figures, const ScanFunction& function, Scan& scan) {
  auto isCalled = [&](const char* name) { return std::strcmp(function.name, name) == 0; };
  if (function.take == addTerm || function.take == addNonZero) {
    scan.value = roundedTotal(figures.total);
    scan.count = function.take == addTerm ? figures.count : figures.nonZero;
    return;
  }
  scan.count = figures.nonZero;
  if (isCalled("HasZero")) scan.value = truth(figures.nonZero < figures.count);
  if (isCalled("HasNonZero")) scan.value = truth(figures.nonZero > 0);
  if (figures.count > 0 && isCalled("Maximum")) scan.value = numberOf(figures.largest);
  if (figures.count > 0 && isCalled("Minimum")) scan.value = numberOf(figures.least);
  if (figures.nonZero > 0 && isCalled("NonZeroMaximum")) scan.value = numberOf(figures.largestNonZero);
  if (figures.nonZero > 0 && isCalled("NonZeroMinimum")) scan.value = numberOf(figures.leastNonZero);
}

Wanted wantedBy(const Scans& all) {
  Wanted wanted{false, false, false};
  for (Word i = 0; i < all.count; ++i) {
    const auto take = all.functions[i]->take;
    wanted.total |= take == addTerm || take == addNonZero;
    wanted.extremes |= take == takeLarger || take == takeSmaller;
    wanted.nonZero |= take != addTerm && take != takeLarger && take != takeSmaller;
  }
  return wanted;
}

template <class T>
void scanRuns(const Block& block, Scans& all) {
  DAG r = block.r;
  const auto* data = reinterpret_cast<const T*>(dataOf(r));
  const Word n = dimensionsOf(r);
  Figures<T> figures{wantedBy(all)};
  if (std::equal(block.bounds, block.bounds + 2 * n, boundsOf(r))) {
    constexpr std::int64_t longestRun = 1 << 16;
    for (std::int64_t at = 0, count = rawField(r, rtableCount); at < count; at += longestRun) {
      passWork(longestRun);
      figures.take(data + at, std::min(longestRun, count - at));
    }
  } else {
    const OffsetFunction offset = offsetFunction(r);
    forEachIndex(block.bounds, n, [&](const std::int32_t* index) { figures.take(data + offset(r, index), 1); });
  }
  for (Word i = 0; i < all.count; ++i) answer(figures, *all.functions[i], all.scans[i]);
}

// True when the whole answer comes from machine numbers. Short blocks of floats go by elements, each sum rounded.
bool scanNumbers(const Block& block, Scans& all) {
  DAG r = block.r;
  if (functionCount(r) != 0 || storageOf(r) != storageRectangular || rawField(r, rtableData) == 0) return false;
  for (Word i = 0; i < all.count; ++i)
    if (all.functions[i]->name == nullptr) return false;
  constexpr std::int64_t longFrom = 1000;
  std::int64_t positions = 1;
  for (Word k = 0; k < dimensionsOf(r); ++k) positions *= extentOf(block.bounds, k);
  switch (datatypeOf(r)) {
    case dataInteger8: scanRuns<std::int8_t>(block, all); return true;
    case dataInteger16: scanRuns<std::int16_t>(block, all); return true;
    case dataInteger32: scanRuns<std::int32_t>(block, all); return true;
    case dataInteger64: scanRuns<std::int64_t>(block, all); return true;
    case dataFloat64:
      if (positions < longFrom) return false;
      scanRuns<double>(block, all);
      return true;
    default: return false;
  }
}

}  // namespace

DAG builtin::rtable_scanblock(const BuiltinCall& call) {
  const Word given = argumentCount(call);
  if (given < 3) KernelException("too few arguments");
  DAG arguments = call.arguments;
  if (!isTag(arguments[1], RTABLE)) KernelException("rtable expected");
  Block block{arguments[1], {}};
  readRanges(block, arguments[2]);
  if (given - 2 > mostFunctions) KernelException("too many arguments");
  Scans all;
  all.count = given - 2;
  for (Word i = 0; i < all.count; ++i) {
    all.scans[i] = Scan();
    all.functions[i] = readFunction(arguments[i + 3], all.scans[i]);
  }
  if (!scanNumbers(block, all)) scanByElements(block, all);
  DAG results = newl2(all.count + 1, EXPSEQ);
  for (Word i = 0; i < all.count; ++i) results[i + 1] = all.functions[i]->result(all.scans[i]);
  return all.count == 1 ? results[1] : simpl(results);
}

}  // namespace korel
