#include "text/print/source_sink.h"

namespace korel {

void SourceLineSink(void* sourceSink, int c) {
  auto* source = static_cast<SourceSink*>(sourceSink);
  if (source->atLineStart && (c == '!' || c == '?' || c == '#'))
    source->sink(source->closure, '\\');
  if (c == '\n') {
    source->atLineStart = true;
  } else if (c != ' ' && c != '\t') {
    source->atLineStart = false;
  }
  source->sink(source->closure, c);
}

}  // namespace korel
