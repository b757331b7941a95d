#include "session/interface.h"

#include <climits>
#include <cstdlib>
#include <cstring>

#include "eval/simplify/simplify.h"
#include "frame/output.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

InterfaceVariables defaultNerinVariables;

namespace {

// ---- values and failures

bool isText(DAG x) { return hasTag(x, NAME) || hasTag(x, STRING); }
/// Compared by its characters: values from before a restart have names of their own.
bool isNameOf(DAG x, const char* text) { return hasTag(x, NAME) && std::strcmp(textOf(x), text) == 0; }
bool fitsBelow(DAG x, std::size_t size) { return isText(x) && std::strlen(textOf(x)) < size; }

DAG failure(const char* text, std::initializer_list<DAG> parameters = {}) {
  DAG message = newl3(static_cast<Word>(parameters.size()) + 2, EXPSEQ, strinstall(text));
  Word at = 2;
  for (DAG parameter : parameters) message[at++] = parameter;
  return new2(ERROR, message);
}

/// Value of `x` when it is an integer from `low` to `high`.
bool integerIn(DAG x, long low, long high, int& value) {
  if (!isInteger(x) || !FitIntoWord(x)) return false;
  long given = IntegerValue(x);
  if (given < low || given > high) return false;
  value = static_cast<int>(given);
  return true;
}

// ---- the variables of a kind of their own

DAG latexwidth(DAG name, DAG value, InterfaceVariables& record) {
  if (!value) return floatOfDouble(record.latexwidth);
  double width = isNumeric(value) ? FloatValue(value) : -1.0;
  if (!(width >= 0.0 && width <= 100.0))
    return failure("%1 must be a number in the range %2..%3",
                   {name, consf0, simpl(newFLOAT(Newint(1000), Newint(-1)))});
  record.latexwidth = width;
  return null;
}

DAG plotdevice(DAG, DAG value, InterfaceVariables& record) {
  constexpr std::size_t size = sizeof record.plotdevice;
  if (!value) return naminstall(record.plotdevice);
  if (!fitsBelow(value, size))
    return failure("plotdevice must be a symbol or string of at most %1 characters", {Newint(size - 1)});
  const char* text = textOf(value);
  if (std::strcmp(text, "default") == 0) text = "char";
  if (std::strcmp(text, "postscript") == 0) text = "ps";
  std::strcpy(record.plotdevice, text);
  return null;
}

DAG plotoptions(DAG, DAG value, InterfaceVariables& record) {
  if (!value) return naminstall(record.plotoptions != nullptr ? record.plotoptions : "");
  if (!isText(value)) return failure("plotoptions must be a symbol or string");
  setIFStringVar(&record.plotoptions, textOf(value));
  return null;
}

/// `preplot` and `postplot`: the second letter tells which.
DAG plotBytes(DAG name, DAG value, InterfaceVariables& record) {
  constexpr Word most = sizeof record.preplot - 1;
  unsigned char* bytes = textOf(name)[1] == 'r' ? record.preplot : record.postplot;
  if (!value) {
    DAG body = newl2(bytes[0] + Word{1}, EXPSEQ);
    for (Word i = 1; i <= bytes[0]; ++i) body[i] = immediate(bytes[i]);
    return simpl(new2(LIST, body));
  }
  DAG body = hasTag(value, LIST) ? value[1] : DAG();
  if (body && !hasTag(body, EXPSEQ)) body = new2(EXPSEQ, body);
  bool small = bool(body);
  for (Word i = 1; small && i < lengthOf(body); ++i) small = isImmediate(body[i]);
  if (!small) return failure("%1 must be a list of small integers", {name});
  Word count = lengthOf(body) - 1;
  if (count > most) return failure("%1 list can have at most %2 entries", {name, Newint(most)});
  for (Word i = 1; i <= count; ++i)
    if (immediateValue(body[i]) < -128 || immediateValue(body[i]) > 255)
      return failure("%1 values must be in the range -128..255", {name});
  bytes[0] = static_cast<unsigned char>(count);
  for (Word i = 1; i <= count; ++i) bytes[i] = static_cast<unsigned char>(immediateValue(body[i]));
  return null;
}

bool isProtected(DAG name) {
  DAG attribute = name[2];
  if (!attribute || attribute == null) return false;
  if (!hasTag(attribute, EXPSEQ)) return attribute == ini("protected");
  for (Word i = 1; i < lengthOf(attribute); ++i)
    if (attribute[i] == ini("protected")) return true;
  return false;
}

DAG imaginaryunit(DAG, DAG value, InterfaceVariables& record) {
  constexpr std::size_t size = sizeof record.imaginaryunit;
  if (!value) return naminstall(record.imaginaryunit);
  bool isUnit = hasTag(value, COMPLEX) && lengthOf(value) == 2 && value[1] == cons1;
  if (isUnit) return null;
  if (!fitsBelow(value, size))
    return failure(
        "imaginaryunit must be a symbol or a string representing a symbol, of at most %1 "
        "characters",
        {Newint(size - 1)});
  DAG symbol = hasTag(value, STRING) ? naminstall(textOf(value)) : value;
  if (isProtected(symbol))
    return failure("the symbol `%1` is protected and cannot be used for the imaginary unit", {symbol});
  std::strcpy(record.imaginaryunit, textOf(symbol));
  return null;
}

const char* nerinversion() { return "Local kernel server test program"; }

DAG version(DAG name, DAG value, InterfaceVariables&) {
  return value ? failure("%1 cannot be set", {name}) : naminstall(nerinversion());
}

// ---- the table

enum class Kind : std::uint8_t { boolean, range, rangeOrBoolean, rangeOrInfinity, text, own };

struct VariableRow {
  const char* name;
  Kind kind;
  int InterfaceVariables::*number;
  int low, high;  // of a range
  char* (*text)(InterfaceVariables& record);
  std::size_t size;  // of a text, with its terminator
  DAG (*own)(DAG name, DAG value, InterfaceVariables& record);
};

using Record = InterfaceVariables;
constexpr VariableRow booleanRow(const char* name, int Record::*number) {
  return {name, Kind::boolean, number, 0, 1, nullptr, 0, nullptr};
}
constexpr VariableRow rangeRow(const char* name, Kind kind, int Record::*number, int low, int high) {
  return {name, kind, number, low, high, nullptr, 0, nullptr};
}
constexpr VariableRow textRow(const char* name, char* (*text)(Record&), std::size_t size) {
  return {name, Kind::text, nullptr, 0, 0, text, size, nullptr};
}
constexpr VariableRow ownRow(const char* name, DAG (*own)(DAG, DAG, Record&)) {
  return {name, Kind::own, nullptr, 0, 0, nullptr, 0, own};
}

constexpr VariableRow variableRows[] = {
    booleanRow("ansi", &Record::ansi),
    rangeRow("echo", Kind::range, &Record::echo, 0, 4),
    rangeRow("errorbreak", Kind::range, &Record::errorbreak, 0, 2),
    booleanRow("errorcursor", &Record::errorcursor),
    ownRow("imaginaryunit", imaginaryunit),
    rangeRow("indentamount", Kind::range, &Record::indentamount, 0, INT_MAX),
    booleanRow("labeling", &Record::labelling),
    booleanRow("labelling", &Record::labelling),
    rangeRow("labelwidth", Kind::range, &Record::labelwidth, 0, INT_MAX),
    ownRow("latexwidth", latexwidth),
    booleanRow("longdelim", &Record::longdelim),
    ownRow("plotdevice", plotdevice),
    ownRow("plotoptions", plotoptions),
    textRow(
        "plotoutput", [](Record& r) { return r.plotoutput; }, sizeof Record::plotoutput),
    ownRow("postplot", plotBytes),
    ownRow("preplot", plotBytes),
    rangeRow("prettyprint", Kind::rangeOrBoolean, &Record::prettyprint, 0, 3),
    textRow(
        "prompt", [](Record& r) { return r.prompt; }, sizeof Record::prompt),
    booleanRow("quiet", &Record::quiet),
    rangeRow("rtablesize", Kind::rangeOrInfinity, &Record::rtablesize, 0, INT_MAX),
    rangeRow("screenheight", Kind::rangeOrInfinity, &Record::screenheight, 1, 9999),
    rangeRow("screenwidth", Kind::rangeOrInfinity, &Record::screenwidth, 10, 9999),
    rangeRow("showassumed", Kind::range, &Record::showassumed, 0, 2),
    rangeRow("verboseproc", Kind::range, &Record::verboseproc, 0, 3),
    ownRow("version", version),
    rangeRow("warnlevel", Kind::range, &Record::warnlevel, 0, 4),
};

DAG readVariable(const VariableRow& row, InterfaceVariables& record) {
  switch (row.kind) {
    case Kind::boolean: return record.*row.number != 0 ? ini("true") : ini("false");
    case Kind::rangeOrInfinity:
      if (record.*row.number == row.high) return ini("infinity");
      [[fallthrough]];
    default: return simpl(NewInteger(record.*row.number));
    case Kind::text: return naminstall(row.text(record));
  }
}

DAG setVariable(const VariableRow& row, DAG name, DAG value, InterfaceVariables& record) {
  int number;
  switch (row.kind) {
    case Kind::boolean:
      if (!isNameOf(value, "true") && !isNameOf(value, "false")) return failure("%1 must be true or false", {name});
      record.*row.number = isNameOf(value, "true");
      return null;
    case Kind::text:
      if (!fitsBelow(value, row.size))
        return failure("%1 must be a string or symbol of at most %2 characters",
                       {name, Newint(static_cast<std::int32_t>(row.size - 1))});
      std::strcpy(row.text(record), textOf(value));
      return null;
    default: break;
  }
  if (row.kind == Kind::rangeOrInfinity && isNameOf(value, "infinity")) {
    number = row.high;
  } else if (row.kind == Kind::rangeOrBoolean && isNameOf(value, "true")) {
    number = 1;
  } else if (row.kind == Kind::rangeOrBoolean && isNameOf(value, "false")) {
    number = 0;
  } else if (!integerIn(value, row.low, row.high, number)) {
    return failure(row.kind == Kind::rangeOrInfinity ? "%1 must be an integer in the range %2..%3, or infinity"
                                                     : "%1 must be an integer in the range %2..%3",
                   {name, NewInteger(row.low), NewInteger(row.high)});
  }
  record.*row.number = number;
  return null;
}

/// Reads the variable when `value` is 0, sets it otherwise.
DAG interfaceVariable(DAG name, DAG value, InterfaceVariables& record) {
  for (const VariableRow& row : variableRows) {
    if (!isNameOf(name, row.name)) continue;
    if (row.kind == Kind::own) return row.own(name, value, record);
    return value ? setVariable(row, name, value, record) : readVariable(row, record);
  }
  return failure("unknown interface variable, %1", {name});
}

/// True for an EXPSEQ of `count` members, the first of which is a NAME.
bool namesVariable(DAG arguments, Word count) {
  return isObject(arguments) && hasTag(arguments, EXPSEQ) && lengthOf(arguments) == count + 1 &&
         hasTag(arguments[1], NAME);
}

}  // namespace

DAG setinterface(DAG arguments, InterfaceVariables& record) {
  if (!namesVariable(arguments, 2)) return failure("INTERFACE_SET stream expects a name and value");
  return interfaceVariable(arguments[1], arguments[2], record);
}

DAG getinterface(DAG arguments, InterfaceVariables& record) {
  if (!namesVariable(arguments, 1)) return failure("INTERFACE_GET stream expects a name");
  return interfaceVariable(arguments[1], DAG(), record);
}

// ---- records

InterfaceVariables* newIFVars() {
  auto* record = static_cast<InterfaceVariables*>(std::malloc(sizeof(InterfaceVariables)));
  if (record == nullptr) return nullptr;
  std::memcpy(record, &defaultNerinVariables, sizeof *record);
  record->plotoptions = nullptr;  // each record owns its text
  if (setIFStringVar(&record->plotoptions, defaultNerinVariables.plotoptions) == 0) return record;
  std::free(record);
  return nullptr;
}

void deleteIFVars(InterfaceVariables* record) {
  if (record == nullptr) return;
  std::free(record->plotoptions);
  std::free(record);
}

int setIFStringVar(char** field, const char* text) {
  if (field == nullptr) return -1;
  char* copy = nullptr;
  if (text != nullptr) {
    copy = strdup(text);
    if (copy == nullptr) return -1;
  }
  std::free(*field);
  *field = copy;
  return 0;
}

// ---- over a restart

namespace {

// `labelwidth` isn't among them.
constexpr const char* rememberedVariables[] = {
    "ansi",         "echo",        "errorbreak",  "errorcursor", "imaginaryunit", "indentamount",
    "labelling",    "latexwidth",  "longdelim",   "plotdevice",  "plotoptions",   "plotoutput",
    "preplot",      "postplot",    "prettyprint", "prompt",      "quiet",         "rtablesize",
    "screenheight", "screenwidth", "showassumed", "verboseproc", "warnlevel",
};

/// EXPSEQ of the calls that set each variable to what was reported; 0 before. It outlives the
/// tables that a restart throws away: its names are those of old, and only copies of it are sent.
DAG InitialInterface;

}  // namespace

void RememberInterface() {
  // Kept from the first reply on: answering may take statements of the front end's own.
  registerRoot(&InitialInterface);
  DAG calls = newl2(static_cast<Word>(std::size(rememberedVariables)) + 1, EXPSEQ);
  InitialInterface = calls;
  Word at = 1;
  for (const char* variable : rememberedVariables) {
    DAG name = naminstall(variable);
    DAG value = sendStream(Stream::GET, {name});
    calls[at++] = newStreamCall(Stream::SET, newSequence({name, value}));
  }
  updategens(calls);
}

void ResetInterface() {
  if (!InitialInterface) return;
  for (Word i = 1; i < lengthOf(InitialInterface); ++i) switch2(CopyDAG(InitialInterface[i]));
}

}  // namespace korel
