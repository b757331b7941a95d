#pragma once
// A filter for program text that is read back line by line: a character that would mean something
// else at the start of a line gets a backslash in front.

#include "text/print/emit.h"

namespace korel {

struct SourceSink {
  Sink sink;
  void* closure;
  bool atLineStart = true;  // nothing but blanks on the line so far
};

/// A sink whose closure is a SourceSink. Passes each character on, with a backslash before a `!`,
/// `?` or `#` that is the first on its line: a shell escape, a help request or a comment to the
/// reader.
void SourceLineSink(void* sourceSink, int c);

}  // namespace korel
