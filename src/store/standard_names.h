#pragma once
// The standard names: the 325 names that exist from the start, addressed by index.
//
// Code names one by its text, `ini("infinity")`, which the compiler turns into the index; a text that
// is no standard name does not compile.

#include <string_view>

#include "store/dag.h"

namespace korel {

inline constexpr std::string_view inistrings[] = {
#define KOREL_NAME(index, text) text,
#include "store/standard_names.def"
#undef KOREL_NAME
};
constexpr int standardNameCount = 325;
constexpr int maxinin = standardNameCount - 1;
static_assert(std::size(inistrings) == standardNameCount);
constexpr int firstBuiltin = 78;
constexpr int lastBuiltin = 257;

/// `ininame[i]` is the NAME of `inistrings[i]`; filled at start-up.
extern DAG ininame[standardNameCount];

/// Index of a standard name, found while compiling.
struct StandardName {
  int index;
  consteval StandardName(const char* text) : index(-1) {
    for (int i = 0; i < standardNameCount; ++i)
      if (inistrings[i] == text) index = i;
    if (index < 0) noSuchStandardName();
  }
  static void noSuchStandardName() {}  // not constexpr: reaching it stops the compilation
};

/// The standard name of that text.
inline DAG ini(StandardName name) { return ininame[name.index]; }
/// The built-in number of that text (the index of a name from 78 to 257).
consteval int builtinNumber(StandardName name) { return name.index; }

}  // namespace korel
