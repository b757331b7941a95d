#pragma once
// What is told of an rtable before it exists, and the options by which the language tells it.

#include <cstdint>

#include "rtable/axes.h"
#include "store/constants.h"
#include "store/dag.h"

namespace korel {

struct RTableSettings {
  Word datatype = dataDag;
  DAG elementType = ini("anything");
  Word subtype = subtypeArray;
  Word storage = storageRectangular;
  bool tellsStorage = false;  // by an option, not by a shape
  std::int32_t b1 = -1;       // of a band, or the capacity of sparse storage
  std::int32_t b2 = -1;       // of a band, or the qualifier of sparse storage
  Word order = fortranOrder;
  bool readOnly = false;
  bool foreign = false;
  int dimensions = -1;  // -1: those of the initializer
  DAG functions = null;
  DAG attributes = null;
  bool transpose = false;
  DAG fill = cons0;
};

/// Whether `float` names the format of the hardware now.
bool usesHardwareFloats();
/// All that is told of `r`; without `keepShape` neither its storage nor its functions, and writable.
RTableSettings CopyRTableSettings(DAG r, bool keepShape);
/// What an rtable as initializer hands on: format, subtype and order, and that it is sparse.
void InheritRTableSettings(RTableSettings& settings, DAG r);

/// Takes the option `argument`; false when it is none. Errors: those of each option, as "unrecognized storage
/// format, %1".
bool ParseRTableOption(DAG argument, RTableSettings& settings);
/// Takes a data type that names a format of the hardware; false when `value` names none. Errors: as "n should be 8
/// for float[n]".
bool ParseHardwareDatatypeOption(DAG value, RTableSettings& settings);
/// An equation that holds an option, or a name that stands for `name = true`; false for what is neither.
struct OptionEquation {
  DAG name, value;
};
bool readOption(DAG argument, Word subtype, OptionEquation& option);

}  // namespace korel
