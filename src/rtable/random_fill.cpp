#include "rtable/random_fill.h"

#include <cstdint>

#include "eval/evaluate/evalf.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "hardware/constant_double.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "rtable/create.h"
#include "rtable/element_formats.h"
#include "rtable/stored_positions.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr std::uint64_t firstState = 0x6023EAF1, multiplier = 0x5DEECE66D, increment = 11;
constexpr std::uint64_t modulus = std::uint64_t{1} << 48;
std::uint64_t state = firstState;

std::uint64_t nextState() { return state = (state * multiplier + increment) % modulus; }
std::uint64_t integerDraw() { return (nextState() >> 16) & 0x7fffffff; }
double floatDraw() { return static_cast<double>(nextState()) / static_cast<double>(modulus); }

struct Draw {
  bool isFloat;
  bool hasRange = false;
  double density = 1;
  std::int64_t low = 0, high = 0;
  double least = 0, width = 1;
};

double doubleOf(DAG x) {
  if (double constant; constantDouble(x, constant)) return constant;
  DAG value = simpl(evalf(x));
  if (!isNumeric(value)) KernelException("invalid argument to random(), %1", x);
  return FloatValue(value);
}

void takeRange(Draw& draw, DAG range) {
  draw.hasRange = true;
  if (draw.isFloat) {
    draw.least = doubleOf(range[1]);
    draw.width = doubleOf(range[2]) - draw.least;
    if (!(draw.width > 0)) KernelException("inverted or empty range in random()");
    return;
  }
  const bool integers = isInteger(range[1]) && isInteger(range[2]);
  if (!integers || !readLongLong(range[1], draw.low) || !readLongLong(range[2], draw.high))
    KernelException("integer range expected");
  if (draw.high < draw.low) KernelException("inverted range in random()");
}

Draw readArguments(DAG arguments, bool isFloat) {
  if (memberCount(arguments) > 2) KernelException("too many parameters to random()");
  Draw draw{isFloat};
  for (Word i = 1; i < lengthOf(arguments); ++i) {
    DAG argument = arguments[i];
    if (isTag(argument, RANGE)) {
      takeRange(draw, argument);
    } else if (isInteger(argument) || isFloatNumber(argument)) {
      draw.density = FloatValue(argument);
      if (!(draw.density >= 0 && draw.density <= 1)) KernelException("random density must be between 0 and 1");
    } else {
      KernelException("invalid argument to random(), %1", argument);
    }
  }
  return draw;
}

double drawnFloat(const Draw& draw) { return draw.least + draw.width * floatDraw(); }
std::int64_t drawnInteger(const Draw& draw) {
  const std::uint64_t drawn = integerDraw();
  if (!draw.hasRange) return static_cast<std::int64_t>(drawn);
  // A range of all 64-bit integers has no count that fits; every draw lies within it.
  const std::uint64_t count = static_cast<std::uint64_t>(draw.high) - static_cast<std::uint64_t>(draw.low) + 1;
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(draw.low) + (count == 0 ? drawn : drawn % count));
}
DAG drawnValue(const Draw& draw) {
  return simpl(draw.isFloat ? HardwareToSoftwareFloat(drawnFloat(draw)) : NewInteger(drawnInteger(draw)));
}

bool skips(const Draw& draw) { return draw.density != 1 && floatDraw() > draw.density; }

// Numbers go straight into a block of their own kind: an integer that fits, a double.
void storeDrawn(DAG r, std::int64_t at, const Draw& draw) {
  const Word datatype = datatypeOf(r);
  RawElement element;
  if (draw.isFloat && datatype == dataFloat64) {
    element.real = drawnFloat(draw);
    return storeRaw(r, at, element);
  }
  if (draw.isFloat || datatype < dataInteger8 || datatype > dataInteger64)
    return RTableSetDagToDataOffset(r, at, drawnValue(draw));
  const int spare = 64 - 8 * rtableElementBytes[datatype];
  const std::int64_t value = drawnInteger(draw);
  element.integer64 = value;
  const bool fits = static_cast<std::int64_t>(static_cast<std::uint64_t>(value) << spare) >> spare == value;
  if (fits) storeRaw(r, at, element);
  else RTableSetDagToDataOffset(r, at, simpl(NewInteger(value)));
}

}  // namespace

void ResetRTableRand() { state = firstState; }

void RandomizeRTable(DAG r, DAG arguments, bool isFloat) {
  const Draw draw = readArguments(arguments, isFloat);
  if (storageOf(r) != storageSparse && functionCount(r) == 0) {
    for (std::int64_t at = rawField(r, rtableCount); at-- > 0;) {
      passWork(objectSteps);
      if (!skips(draw)) storeDrawn(r, at, draw);
    }
    return;
  }
  forEachStoredPosition(r, [&](const std::int32_t* index) {
    if (!skips(draw)) storeInitial(r, index, drawnValue(draw));
  });
}

}  // namespace korel
