#include "library/assumptions/assumed_name.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "eval/walk/part_walk.h"
#include "frame/errors.h"
#include "library/assumptions/known.h"
#include "library/assumptions/ranges.h"
#include "library/native/native.h"
#include "numbers/arithmetic.h"
#include "store/append.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

bool madeAny = false;

constexpr const char* attributeName = "assumed";

/// The name `x~`.
DAG markedName(DAG origin) {
  char text[256];
  // A longer name keeps its start: it is told apart by being a name of its own.
  std::snprintf(text, sizeof text, "%.250s~", textOf(origin));
  return simpl(newLocalName(text));
}

DAG hardwareBound(double bound) { return simpl(NewHFloat(bound, false)); }
double boundBelow(DAG x) { return isInfinite(x) ? (consneg(x) ? -HUGE_VAL : HUGE_VAL) : rangeAround(x).low; }
double boundAbove(DAG x) { return isInfinite(x) ? (consneg(x) ? -HUGE_VAL : HUGE_VAL) : rangeAround(x).high; }

void setAssumption(DAG name, DAG fields) {
  DAG attribute = simpl(new3(FUNCTION, naminstall(attributeName), simpl(fields)));
  updategen(attribute);
  name[2] = attribute;
}

struct PropertyRow {
  const char* name;
  Property property;
};
constexpr PropertyRow propertyRows[] = {
    {"real", Property::real},
    {"rational", Property::rational},
    {"integer", Property::integer},
    {"even", Property::even},
    {"odd", Property::odd},
    {"prime", Property::prime},
    {"positive", Property::positive},
    {"negative", Property::negative},
    {"nonnegative", Property::nonnegative},
    {"nonpositive", Property::nonpositive},
    {"nonzero", Property::nonzero},
    {"imaginary", Property::imaginary},
};

Property propertyArgument(const BuiltinCall& call) {
  if (argumentCount(call) == 2 && isText(call.arguments[2]))
    for (const PropertyRow& row : propertyRows)
      if (hasText(call.arguments[2], row.name)) return row.property;
  wrongParameters(call);
}

}  // namespace

DAG assumptionOf(DAG x) {
  if (!isTag(x, NAME)) return DAG();
  DAG attribute = x[2];
  if (!isTag(attribute, FUNCTION) || !isTag(attribute[1], NAME) || !hasText(attribute[1], attributeName)) return DAG();
  DAG fields = attribute[2];
  // Anybody may set such an attribute: what it holds is not taken on trust.
  bool sound = isTag(fields, EXPSEQ) && lengthOf(fields) == assumedLength && isTag(fields[assumedOrigin], NAME) &&
               isImmediate(fields[assumedFlags]) && isTag(fields[assumedLowBound], HFLOAT) &&
               isTag(fields[assumedHighBound], HFLOAT);
  return sound ? fields : DAG();
}

DAG assumedNamesIn(DAG x) {
  static PartSearch search;
  DAG names = new1(EXPSEQ);
  search.any<StoragePartRules>(
      x,
      [&names](DAG part) {
        if (assumptionOf(part) && !isMember(part, names)) names = Append2(names, part);
        return false;
      },
      [](DAG) { return false; });
  return names;
}

bool assumptionsWereMade() { return madeAny; }

// assumed(origin, flags, low, lowOpen, high, highOpen, below, above, name): puts `name`, a name under assumption, or a
// new one that becomes the value of `origin` if `name` is 0, under these assumptions. `below` and `above` are numbers
// or infinities that enclose low and high. With `name` = 1 nothing is assigned. The name.
DAG native::assumed(const BuiltinCall& call) {
  if (argumentCount(call) != 9 || !isTag(call.arguments[1], NAME) || !isImmediate(call.arguments[2]))
    wrongParameters(call);
  DAG fields = newl2(assumedLength, EXPSEQ);
  for (Word i = assumedOrigin; i <= assumedHighOpen; ++i) fields[i] = call.arguments[i];
  fields[assumedLowBound] = hardwareBound(boundBelow(call.arguments[7]));
  fields[assumedHighBound] = hardwareBound(boundAbove(call.arguments[8]));
  DAG given = call.arguments[9];
  DAG name = isTag(given, NAME) ? given : markedName(call.arguments[1]);
  setAssumption(name, fields);
  madeAny = true;
  if (isImmediate(given) && isZero(given)) assign(call.arguments[1], name);
  return name;
}

// assumption(x): the list [origin, flags, low, lowOpen, high, highOpen] of a name under assumption; FAIL of
// anything else.
DAG native::assumption(const BuiltinCall& call) {
  DAG fields = argumentCount(call) == 1 ? assumptionOf(call.arguments[1]) : DAG();
  if (!fields) return ini("FAIL");
  return new2(LIST, copysub(fields, 0, assumedHighOpen));
}

// assumednames(): the list of the names `x~` that are the value of a name.
DAG native::assumednames(const BuiltinCall&) {
  struct Walk {
    DAG names;  // 0 while counting
    Word count;
  } walk{DAG(), 0};
  auto visit = [](void* arg, PairAddress pair) {
    auto& w = *static_cast<Walk*>(arg);
    DAG value = pairValue(pair)[1];
    if (!value || !assumptionOf(value)) return true;
    ++w.count;
    if (w.names) w.names[w.count] = value;
    return true;
  };
  hashforeach(nametab, visit, &walk);
  walk.names = newl2(walk.count + 1, EXPSEQ);
  walk.count = 0;
  hashforeach(nametab, visit, &walk);
  return new2(LIST, simpl(walk.names));
}

// unassume(x): the name that is typed for the name under assumption x has no value from now on.
DAG native::unassume(const BuiltinCall& call) {
  DAG fields = argumentCount(call) == 1 ? assumptionOf(call.arguments[1]) : DAG();
  if (!fields) return ini("FAIL");
  DAG origin = fields[assumedOrigin];
  if (origin[1] == call.arguments[1]) assign(origin, origin);
  return null;
}

// known(x, property), excluded(x, property): what isKnown and isExcluded say.
DAG native::known(const BuiltinCall& call) { return truth(isKnown(call.arguments[1], propertyArgument(call))); }
DAG native::excluded(const BuiltinCall& call) { return truth(isExcluded(call.arguments[1], propertyArgument(call))); }

// knownfloor(x): the greatest integer below every value of x, if it is one for all of them; else FAIL.
DAG native::knownfloor(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  const Facts f = factsAbout(call.arguments[1]);
  if (!f.has(isRealFact) || !(std::fabs(f.range.low) < 1e9) || !(std::fabs(f.range.high) < 1e9)) return ini("FAIL");
  const double last = std::floor(f.range.high);
  const double highest = last == f.range.high && f.range.highOpen ? last - 1 : last;
  if (std::floor(f.range.low) != highest) return ini("FAIL");
  return Newint(static_cast<std::int32_t>(highest));
}

}  // namespace korel
