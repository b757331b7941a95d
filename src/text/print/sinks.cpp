#include "text/print/sinks.h"

#include "frame/errors.h"
#include "store/long_string.h"

namespace korel {

void sendText(const char* text, Sink sink, void* closure) {
  for (; *text != '\0'; ++text) sink(closure, static_cast<unsigned char>(*text));
}

void LongStringSink(void* longString, int c) {
  auto* text = static_cast<char**>(longString);
  *text = AppendToString(*text, c);
}

void raisePrintError(void*, const char* text) { userror(text); }
void ignorePrintError(void*, const char*) {}

void SourceLineSink(void* sourceSink, int c) {
  auto* source = static_cast<SourceSink*>(sourceSink);
  if (source->atLineStart && (c == '!' || c == '?' || c == '#')) source->sink(source->closure, '\\');
  if (c == '\n') {
    source->atLineStart = true;
  } else if (static_cast<signed char>(c) >= 33) {
    // The reader passes by what is below, bytes of other alphabets included (`firstnonblank`).
    source->atLineStart = false;
  }
  source->sink(source->closure, c);
}

}  // namespace korel
