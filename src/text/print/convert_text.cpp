#include "text/print/convert_text.h"

#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "store/long_string.h"
#include "store/names.h"
#include "store/vocabulary.h"
#include "text/print/printer.h"

namespace korel {

namespace {

// Gives the text back when an error passes.
void disposeOnError(const char*) {
  auto* text = reinterpret_cast<char**>(errorProcParam);
  DisposeString(*text);
  *text = nullptr;
}

// Appends the text of `object` to `text`; a sequence prints with its members at the outermost
// level.
void printTo(char** text, DAG object, int flags) {
  PrintKorelList(object, LongStringSink, raisePrintError, 0, text, flags, ", ");
}

// The members of the values, one after the other.
struct Values {
  DAG all;
  Word used = 0;

  DAG next() {
    bool sequence = isSequence(all);
    Word count = sequence ? memberCount(all) : 1;
    if (used >= count) userror("number of parameters does not match format");
    ++used;
    return sequence ? all[used] : all;
  }
};

char* textOfObject(DAG object, int flags) {
  char* text = NewLongString();
  PushParamErrorProc(disposeOnError, &text);
  printTo(&text, object, flags);
  PopErrorProc();
  return text;
}

}  // namespace

DAG ConvertToString(DAG object) {
  if (isTag(object, STRING)) return object;
  return StringToMString(textOfObject(object, printBare));
}

DAG ConvertToName(DAG object, bool quoted) {
  if (!quoted && isName(object)) return object;
  return StringToName(textOfObject(object, quoted ? 0 : printBare));
}

DAG FormattedConvertToString(const char* format, DAG values) {
  Values rest{values};
  char* text = NewLongString();
  PushParamErrorProc(disposeOnError, &text);
  for (const char* at = format; *at != '\0'; ++at) {
    if (*at != '%') {
      text = AppendToString(text, *at);
      continue;
    }
    switch (*++at) {
      case '%': text = AppendToString(text, '%'); break;
      case 'a': printTo(&text, rest.next(), 0); break;
      case 'A': printTo(&text, rest.next(), printBare); break;
      case 'd': {
        DAG value = rest.next();
        if (!isInteger(value)) userror("integer expected for integer format");
        printTo(&text, value, 0);
        break;
      }
      case 's': {
        DAG value = rest.next();
        if (!isText(value)) userror("string expected for string format");
        text = AppendStringToString(text, textOf(value));
        break;
      }
      default: {
        const char code[2] = {*at, '\0'};
        KernelException("unknown format code `%1`", strinstall(code));
      }
    }
  }
  PopErrorProc();
  return StringToMString(text);
}

}  // namespace korel
