#pragma once
// Sinks: where text goes, one character at a time.
//
// A sink is a function and a closure that it interprets. The printer, messages and the layout send to any
// sink; here stand the types and the sinks that several callers use.

namespace korel {

/// Receives each character.
using Sink = void (*)(void* closure, int c);
/// Receives the text of a failure.
using ErrorSink = void (*)(void* closure, const char* text);

/// The characters of `text`, one by one.
void sendText(const char* text, Sink sink, void* closure);

/// Appends to a growable text: the closure is the address of the text's pointer.
void LongStringSink(void* longString, int c);
/// Raises the failure as an error of the caller.
void raisePrintError(void*, const char* text);
void ignorePrintError(void*, const char*);

/// Passes program text on that is read back line by line.
struct SourceSink {
  Sink sink;
  void* closure;
  bool atLineStart = true;  // no character on the line so far at which the reader looks
};
/// A sink whose closure is a SourceSink. A `!`, `?` or `#` that would be a shell escape, a help request or
/// a comment to the reader, as the first mark of its line, gets a backslash in front.
void SourceLineSink(void* sourceSink, int c);

}  // namespace korel
