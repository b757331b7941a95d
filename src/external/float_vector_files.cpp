// Formatted input and output for libraries of floats, on the files of the host: by `sprintf` and `sscanf` of the
// language, whose formats they take.

#include "external/float_vector.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "external/addresses.h"
#include "frame/errors.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace floats {

namespace {

// The text of the arguments by the format.
DAG formatted(const char* format, int count, std::va_list list) {
  DAG arguments = newl3(static_cast<Word>(count) + 2, EXPSEQ, strinstall(format));
  for (int i = 0; i < count; ++i) arguments[i + 2] = simpl(fromC(va_arg(list, ALGEB)));
  DAG text = simpl(eval(simpl(new3(FUNCTION, naminstall("sprintf"), arguments))));
  if (!isTag(text, STRING)) userror("could not evaluate sprintf");
  return text;
}

// The values that the format finds in the text, as a sequence.
DAG scanned(const char* text, const char* format) {
  DAG values = simpl(eval(simpl(newCall(naminstall("sscanf"), {strinstall(text), strinstall(format)}))));
  return isTag(values, LIST) ? values[1] : values;
}

}  // namespace

long printFile(std::FILE* file, const char* format, int count, ...) {
  std::va_list list;
  va_start(list, count);
  DAG text = formatted(format, count, list);
  va_end(list);
  return std::fputs(textOf(text), file) < 0 ? -1 : static_cast<long>(std::strlen(textOf(text)));
}

long printText(char* buffer, std::size_t size, const char* format, int count, ...) {
  std::va_list list;
  va_start(list, count);
  DAG text = formatted(format, count, list);
  va_end(list);
  const std::size_t length = std::strlen(textOf(text));
  if (size != 0) {
    const std::size_t kept = length < size ? length : size - 1;
    std::memcpy(buffer, textOf(text), kept);
    buffer[kept] = '\0';
  }
  return static_cast<long>(length);
}

ALGEB scanText(const char* text, const char* format) { return toC(scanned(text, format)); }

// A line of the file; the empty sequence at its end.
ALGEB scanFile(std::FILE* file, const char* format) {
  char* line = nullptr;
  std::size_t size = 0;
  const ssize_t length = getline(&line, &size, file);
  DAG text = length < 0 ? DAG() : strinstall(line);
  std::free(line);
  return text ? toC(scanned(textOf(text), format)) : toC(null);
}

}  // namespace floats

}  // namespace korel
