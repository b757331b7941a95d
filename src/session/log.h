#pragma once
// The kernel's own log, off until it is enabled.

#include <cstdio>

#include "store/dag.h"

namespace korel {

/// Writes "<process id>: " and the formatted text, when enabled.
[[gnu::format(printf, 1, 2)]] void m_logf(const char* format, ...);
void enablelogf();
void disablelogf();
void setlogf(std::FILE* stream);
/// Opens `path` for the log; false when that fails.
bool openlogf(const char* path);
/// Closes the stream and goes back to standard error.
void closelogf();
/// Writes an object and a newline.
void logdag(DAG x);

}  // namespace korel
