#pragma once
// The names of the output streams (frame/streams.def).

#include <cstdint>
#include <cstring>

#include "store/dag.h"

namespace korel {

enum class Stream : std::uint8_t {
#define KOREL_STREAM(name, preparation) name,
#include "frame/streams.def"
#undef KOREL_STREAM
  other,  // a name that the kernel gives no meaning
};

constexpr const char* streamNames[] = {
#define KOREL_STREAM(name, preparation) "INTERFACE_" #name,
#include "frame/streams.def"
#undef KOREL_STREAM
};
constexpr int streamCount = static_cast<int>(Stream::other);

/// The name in the language; not of `other`.
constexpr const char* streamName(Stream stream) { return streamNames[static_cast<int>(stream)]; }
/// Whether a call of `x` is sent to whoever drives the kernel.
inline bool isStreamName(DAG x) { return isTag(x, NAME) && std::strncmp(textOf(x), "INTERFACE_", 10) == 0; }
/// The stream with this name.
inline Stream streamNamed(const char* name) {
  int i = 0;
  while (i < streamCount && std::strcmp(streamNames[i], name) != 0) ++i;
  return static_cast<Stream>(i);
}

/// Whether `x` is a call of the stream.
inline bool isStreamCall(DAG x, Stream stream) {
  return isTag(x, FUNCTION) && isStreamName(x[1]) && streamNamed(textOf(x[1])) == stream;
}

}  // namespace korel
