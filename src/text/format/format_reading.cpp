#include "text/format/format_reading.h"

#include <cstdint>

#include "frame/errors.h"
#include "session/interface.h"
#include "store/names.h"

namespace korel {

int readFormatInteger(const char*& at) {
  std::int64_t value = 0;
  for (; isDigit(*at); ++at) {
    value = 10 * value + (*at - '0');
    if (value > INT32_MAX) userror("integer overflow in format specification");
  }
  return static_cast<int>(value);
}

DAG characterText(int c) { return charinstall(static_cast<char>(c)); }

const char* imaginaryUnitText() { return defaultNerinVariables.imaginaryunit; }

bool readModifiers(const char*& at, ComplexMark& mark) {
  for (;; ++at) {
    ComplexForm form = ComplexForm::none;
    switch (*at) {
      case 'l': case 'L': continue;
      case 'z': form = ComplexForm::separated; break;
      case 'Z': form = ComplexForm::withUnit; break;
      default: return true;
    }
    if (mark.form != ComplexForm::none && mark.form != form) userror("z and Z printf modifiers are mutually exclusive");
    mark.form = form;
    if (form != ComplexForm::separated) continue;
    if (*++at == 0) return false;
    if (*at == 'Z') userror("z and Z printf modifiers are mutually exclusive");
    mark.separator = *at;
  }
}

void unknownFormatCode(int c) { KernelException("unknown format code `%1`", characterText(c)); }

DAG FormatArguments::next(const char* missing) {
  if (atEnd()) userror(missing);
  return sequence[++used];
}

}  // namespace korel
