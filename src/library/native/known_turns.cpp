#include "library/native/known_turns.h"

#include "library/assumptions/known.h"
#include "library/native/exact_expressions.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

bool hasFactorPi(DAG x) {
  if (!isTag(x, PROD)) return false;
  DAG pi = ini("Pi");
  for (Word i = 1, n = lengthOf(x); i < n; i += 2)
    if (x[i] == pi && x[i + 1] == cons1) return true;
  return false;
}

// Most arguments have nothing of the kind, and are done with.
bool mayHaveTurns(DAG x) {
  if (!isTag(x, SUM)) return hasFactorPi(x);
  for (Word i = 1, n = lengthOf(x); i < n; i += 2)
    if (hasFactorPi(x[i])) return true;
  return false;
}

}  // namespace

QuarterTurns quarterTurnsIn(DAG x, TurnUnit unit) {
  if (!mayHaveTurns(x)) return {};
  DAG pi = ini("Pi");
  DAG quarter = productOf(quotientOf(1, 2), unit == TurnUnit::imaginary ? productOf(sqrtm1, pi) : pi);
  DAG inverse = powerOf(quarter, consm1), count, rest = cons0;
  const auto take = [&](DAG term) {
    DAG turns = productOf(term, inverse);
    if (isKnown(turns, Property::integer)) count = count ? sumOf(count, turns) : turns;
    else rest = sumOf(rest, term);
  };
  if (!isTag(x, SUM)) {
    take(x);
  } else {
    // A number stands in a sum as it is, times 1.
    for (Word i = 1, n = lengthOf(x); i < n; i += 2) {
      DAG term = productOf(x[i + 1], x[i]);
      if (hasFactorPi(x[i])) take(term);
      else rest = sumOf(rest, term);
    }
  }
  if (!count) return {};
  return {count, rest};
}

bool halfTurnsOf(DAG count, int& r, DAG& sign) {
  const bool odd = isKnown(count, Property::odd);
  if (!odd && !isKnown(count, Property::even)) return false;
  r = odd ? 1 : 0;
  DAG k = productOf(quotientOf(1, 2), sumOf(count, immediate(-r)));
  sign = isKnown(k, Property::even) ? cons1 : isKnown(k, Property::odd) ? consm1 : powerOf(consm1, k);
  return true;
}

}  // namespace korel
