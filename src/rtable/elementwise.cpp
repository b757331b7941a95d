// What the library does element by element with whole rtables: sums with factors, and products of Arrays.

#include <algorithm>

#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "numbers/float/hardware_float.h"
#include "rtable/create.h"
#include "rtable/element_access.h"
#include "rtable/element_formats.h"
#include "rtable/element_walks.h"
#include "rtable/stored_positions.h"
#include "store/generations.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// Writable, without functions; floats of the hardware stay such, everything else goes by objects.
DAG newResult(DAG a, bool isSparse, Word datatype) {
  RTableSettings settings = CopyRTableSettings(a, false);
  settings.datatype = datatype;
  settings.elementType = ini("anything");
  settings.attributes = null;
  settings.dimensions = static_cast<int>(dimensionsOf(a));
  if (isSparse) {
    settings.storage = storageSparse;
    settings.b2 = wholeSparse;
  }
  std::int32_t bounds[2 * maxDimensions];
  std::copy(boundsOf(a), boundsOf(a) + 2 * dimensionsOf(a), bounds);
  return RTableCreate(settings, DAG(), bounds, DataMode::cleared);
}

bool isPlainSparse(DAG r) { return storageOf(r) == storageSparse && functionCount(r) == 0; }
bool isPlainFloat(DAG r) {
  return datatypeOf(r) == dataFloat64 && functionCount(r) == 0 && storageOf(r) == storageRectangular;
}
bool isRealFactor(DAG x) { return isNumeric(x); }

// Where nothing is stored and no shape tells more, zero.
DAG elementOf(DAG r, const std::int32_t* index) {
  DAG element = functionCount(r) != 0 || isStoredPosition(r, index) ? selectElement(r, index) : RTableZero(r);
  return element ? element : cons0;
}

struct Term {
  DAG r, factor;
};

DAG scaled(DAG x, DAG factor) {
  if (factor == cons1) return x;
  return isNumeric(x) && isNumeric(factor) ? simpl(mul(x, factor)) : simpl(NewPROD(x, factor));
}
DAG sumOf(DAG x, DAG y) {
  return isNumeric(x) && isNumeric(y) ? simpl(add(x, y)) : simpl(new5(SUM, x, cons1, y, cons1));
}

DAG combineFloats(const Term* terms, int count) {
  DAG result = newResult(terms[0].r, false, dataFloat64);
  if (rawField(result, rtableData) == 0) return result;
  auto* to = reinterpret_cast<double*>(dataOf(result));
  const std::int64_t n = rawField(result, rtableCount);
  for (int t = 0; t < count; ++t) {
    const auto* from = reinterpret_cast<const double*>(dataOf(terms[t].r));
    const double factor = FloatValue(terms[t].factor);
    passWork(n);
    if (t == 0) std::transform(from, from + n, to, [factor](double x) { return factor * x; });
    else std::transform(from, from + n, to, to, [factor](double x, double y) { return factor * x + y; });
  }
  return result;
}

DAG combine(const Term* terms, int count) {
  auto every = [&](auto test) { return std::all_of(terms, terms + count, test); };
  const bool floats = every([](const Term& t) { return datatypeOf(t.r) == dataFloat64 && isRealFactor(t.factor); });
  if (floats && every([&](const Term& t) { return isPlainFloat(t.r) && isCOrder(t.r) == isCOrder(terms[0].r); }))
    return combineFloats(terms, count);
  const bool isSparse = every([](const Term& t) { return isPlainSparse(t.r); });
  DAG result = newResult(terms[0].r, isSparse, floats ? Word{dataFloat64} : Word{dataDag});
  updategen(result);
  auto store = [&](const std::int32_t* index) {
    passWork(objectSteps);
    DAG total = scaled(elementOf(terms[0].r, index), terms[0].factor);
    if (count == 2) total = sumOf(total, scaled(elementOf(terms[1].r, index), terms[1].factor));
    assignElement(result, index, total);
    collectInLoop();
  };
  if (!isSparse) forEachIndex(boundsOf(result), dimensionsOf(result), store);
  for (int t = 0; isSparse && t < count; ++t) forEachEntry(terms[t].r, store);
  return result;
}

}  // namespace

DAG native::rtableCombine(const BuiltinCall& call) {
  const Word n = argumentCount(call);
  if (n != 2 && n != 4) wrongParameters(call);
  Term terms[2];
  for (Word i = 0; i < n / 2; ++i) {
    terms[i] = {call.arguments[2 * i + 1], call.arguments[2 * i + 2]};
    if (!isTag(terms[i].r, RTABLE) || dimensionsOf(terms[i].r) != dimensionsOf(terms[0].r)) wrongParameters(call);
    if (!std::equal(boundsOf(terms[0].r), boundsOf(terms[0].r) + 2 * dimensionsOf(terms[0].r), boundsOf(terms[i].r)))
      wrongParameters(call);
  }
  return combine(terms, static_cast<int>(n / 2));
}

DAG native::rtableMultiply(const BuiltinCall& call) {
  if (argumentCount(call) != 2) wrongParameters(call);
  DAG a = call.arguments[1], b = call.arguments[2];
  if (!isTag(a, RTABLE) || !isTag(b, RTABLE) || dimensionsOf(a) != dimensionsOf(b)) wrongParameters(call);
  if (!std::equal(boundsOf(a), boundsOf(a) + 2 * dimensionsOf(a), boundsOf(b))) wrongParameters(call);
  const bool floats = datatypeOf(a) == dataFloat64 && datatypeOf(b) == dataFloat64;
  DAG result = newResult(a, false, floats ? Word{dataFloat64} : Word{dataDag});
  updategen(result);
  forEachIndex(boundsOf(a), dimensionsOf(a), [&](const std::int32_t* index) {
    passWork(objectSteps);
    assignElement(result, index, scaled(elementOf(a, index), elementOf(b, index)));
    collectInLoop();
  });
  return result;
}

}  // namespace korel
