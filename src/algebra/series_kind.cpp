// Series in the operations that all objects share.
//
//   SERIES  s[1]        s[2]         s[3]
//           expansion   coefficient  exponent (raw), and so on in pairs

#include "eval/structure/kinds.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"

namespace korel {

namespace {

// Coefficients and exponents in turn; the expansion is the head.
std::int64_t seriesCount(DAG series) { return lengthOf(series) - 2; }
bool isCoefficient(std::int64_t i) { return i % 2 == 1; }

DAG seriesOperand(DAG series, std::int64_t i) {
  return isCoefficient(i) ? series[i + 1] : Newint(static_cast<std::int32_t>(rawField(series, i + 1)));
}

void replaceCoefficient(TakenApart& object, std::int64_t i, DAG replacement) {
  if (!isCoefficient(i)) KernelException("subsop cannot be applied to exponents of a series");
  object.parts[i + 1] = replacement;
}

DAG substituteInSeries(Substitution& substitution, DAG series) {
  return substituteFields(substitution, series, referenceFields(series));
}

}  // namespace

constexpr Kind seriesKind = {
    .headField = 1,
    .count = seriesCount,
    .operand = seriesOperand,
    .replace = replaceCoefficient,
    .substitute = substituteInSeries,
};

}  // namespace korel
