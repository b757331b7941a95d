#pragma once
// How large an expanded product or power becomes at least: one that no memory holds is refused before it is begun.

#include "store/dag.h"

namespace korel {

/// Words that a term of a sum takes at least: its pair, a power, and its place in the table of simplified objects.
constexpr double wordsOfSmallTerm = 8;
/// Error "object too large": more terms than a sum can have, or more words than there are.
void checkRoom(double terms, double words);

/// Fewest terms of the expanded power p^n of a sum, n > 0: so many only chance could cancel.
double fewestTermsOfPower(DAG sum, double n);
/// Refuses p^n when even its fewest terms, with `wordsOfCoefficient` beside each, are too much.
/// Error: "object too large".
void checkSizeOfPower(DAG sum, double n, double wordsOfCoefficient);
/// Refuses a PROD of sums, as it stands, that is too much when it is expanded. Factors that share no variable multiply
/// their terms without a chance of like ones, and positive coefficients never cancel. Error: "object too large".
void checkSizeOfProduct(DAG product);

}  // namespace korel
