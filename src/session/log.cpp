#include "session/log.h"

#include <cstdarg>
#include <unistd.h>

#include "text/print/printer.h"

namespace korel {

namespace {

bool enabled = false;
std::FILE* logStream = nullptr;  // null: standard error

std::FILE* stream() { return logStream != nullptr ? logStream : stderr; }

/// The byte writer of the printer.
void writeNextDAGch(void*, int c) { std::fputc(c, stream()); }
void writeFailure(void*, const char* text) { std::fputs(text, stream()); }

}  // namespace

void enablelogf() { enabled = true; }
void disablelogf() { enabled = false; }
void setlogf(std::FILE* target) { logStream = target; }

bool openlogf(const char* path) {
  std::FILE* file = std::fopen(path, "w");
  if (file == nullptr) return false;
  logStream = file;
  return true;
}

void closelogf() {
  if (logStream != nullptr && logStream != stderr) std::fclose(logStream);
  logStream = nullptr;
}

void m_logf(const char* format, ...) {
  if (!enabled) return;
  static const unsigned processId = static_cast<unsigned>(getpid());
  char text[2048];
  int prefix = std::snprintf(text, sizeof text, "%u: ", processId);
  std::va_list values;
  va_start(values, format);
  std::vsnprintf(text + prefix, sizeof text - static_cast<std::size_t>(prefix), format, values);
  va_end(values);
  std::fputs(text, stream());
  std::fflush(stream());
}

void logdag(DAG x) {
  if (!enabled) return;
  if (!x) {
    std::fputs("0 (pointer is 0)\n", stream());
  } else {
    PrintKorel(x, writeNextDAGch, writeFailure, 0, nullptr, 0);
    std::fputc('\n', stream());
  }
  std::fflush(stream());
}

}  // namespace korel
