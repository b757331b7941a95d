#pragma once
// Environment variables: names whose value belongs to the running procedure.
//
// A frame's `envVars` block is shared with its caller until the frame assigns one; it then gets a copy
// of its own, which ends with it. `HashEnv` holds the fixed names, found by a perfect hash of their
// first characters; names that begin with `_Env` are the open kind.

#include "store/dag.h"

namespace korel {

/// Words of the block.
enum EnvironmentWord : int {
  envDigits = 1, envUseHardwareFloats, envRounding, envOrder, envMod, envTestzero, envNormalizer,
  envNewtable, envNumericEventHandlers, envFirstOpen,
};
constexpr int environmentBlockLength = 10;

/// Value of the name `x`; evaluated when `full`. An unassigned name gives itself.
DAG valuenv(DAG x, bool full, DAG* lastName = nullptr);
/// Stores into an environment variable or name, after checking the value.
void assignenv(DAG x, DAG value);
/// True for a name of the fixed or the open kind.
bool isEnvironmentName(DAG name);
/// All fixed names in slot order, then the open ones of the current block, last first.
DAG EnvNameSeq();
/// Builds the table of names and the top frame's block; part of the start.
void initializeEnvironmentVariables();
/// Current precision in decimal digits.
std::int64_t currentDigits();

}  // namespace korel
