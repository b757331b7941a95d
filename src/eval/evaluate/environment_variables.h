#pragma once
// Environment variables: names whose value belongs to the running procedure.
//
// The values stand in the frame's block (frame/environment_block.h). `HashEnv` holds the fixed names, found by a
// perfect hash of their first characters; names that begin with `_Env` are the open kind.

#include <cstring>

#include "frame/environment_block.h"
#include "store/dag.h"

namespace korel {

/// Value of the name `x`; evaluated when `full`. An unassigned name gives itself.
DAG valuenv(DAG x, bool full, DAG* lastName = nullptr);
/// Stores into an environment variable or name, after checking the value.
void assignenv(DAG x, DAG value);
/// The fixed names, each at the slot that its first characters give, with no collision.
constexpr int environmentSlotCount = 64;
extern DAG HashEnv[environmentSlotCount];
inline int environmentSlot(DAG name) {
  const char* text = textOf(name);
  int c0 = static_cast<unsigned char>(text[0]);
  int c1 = c0 != 0 ? static_cast<unsigned char>(text[1]) : 0;
  int c2 = c1 != 0 ? static_cast<unsigned char>(text[2]) : 0;
  return (c1 + c2 + 2 * c0) & (environmentSlotCount - 1);
}
inline bool isFixedEnvironmentName(DAG name) { return HashEnv[environmentSlot(name)] == name; }
/// Open environment names begin with these four characters, compared as one word.
inline bool isOpenEnvironmentName(DAG name) { return std::memcmp(textOf(name), "_Env", 4) == 0; }
/// True for a name of the fixed or the open kind.
inline bool isEnvironmentName(DAG name) { return isFixedEnvironmentName(name) || isOpenEnvironmentName(name); }
/// All fixed names in slot order, then the open ones of the current block, last first.
DAG EnvNameSeq();
/// Builds the table of names and the top frame's block; part of the start.
void initializeEnvironmentVariables();

}  // namespace korel
