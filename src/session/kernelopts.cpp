#include "session/kernelopts.h"

#include <cstdio>
#include <cstring>

#include "builtins/builtins.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "session/driver.h"
#include "session/resource_limits.h"
#include "store/allocator.h"
#include "store/check/verify.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

namespace {

constexpr const char* versionText = "Korel 6.01";
constexpr const char* hostText = "SGI MIPS UNIX";
constexpr const char* dateLine = "Nov 24 2026";

DAG integerOf(std::int64_t n) { return simpl(NewInteger(n)); }
DAG truth(bool x) { return ini(x ? StandardName("true") : StandardName("false")); }

/// The boolean that `value` is; anything else raises `message`.
bool requireBoolean(DAG value, const char* message) {
  if (value != ini("true") && value != ini("false")) userror(message);
  return value == ini("true");
}

/// The positive word that `value` is; anything else raises `message`. A positive integer of any
/// other size raises "integer too large in context".
std::int64_t requirePositive(DAG value, const char* message) {
  if (!hasTag(value, INTPOS) || value == cons0) userror(message);
  return IntegerValue(value);
}

// ---- settings

void setASSERT(DAG value) { optASSERT = requireBoolean(value, "ASSERT option must be set to a boolean value"); }
void setassertlevel(DAG value) {
  if (value != cons0 && value != cons1 && value != immediate(2)) userror("assertlevel must be 0, 1, or 2");
  optASSERT = immediateValue(value);
}
void setcpulimit(DAG value) {
  std::int64_t seconds = requirePositive(value, "cpulimit must have a positive integer value");
  setProcessLimit(ProcessLimit::cpu, seconds);
}
void setdatalimit(DAG value) {
  std::int64_t kilobytes = requirePositive(value, "datalimit must have a positive integer value");
  setProcessLimit(ProcessLimit::data, 1024 * kilobytes);
}
void setgcfreq(DAG value) {
  std::int64_t words = requirePositive(value, "gcfreq option must be set to a positive integer");
  // A word in the layout that `gcfreq` reports, so that its bound is one.
  std::int64_t between = 3 * words / (2042 - 2 * gcgen) + 1;
  if (between < 0 || 3 * words > INT32_MAX) userror("integer too large in context");
  setCollectionInterval(words);
  incrgen = between;
  demandCollection();
}
void setinline(DAG value) { optionInline = requireBoolean(value, "inline must have a boolean value"); }
void setprintbytes(DAG value) { printgcstatus = requireBoolean(value, "printbytes option must be set to a boolean"); }
void setprintlevel(DAG value) {
  requirePositive(value, "printlevel must be set to a positive integer");
  assignenv(ini("printlevel"), value);
}
void setprofile(DAG value) { optprofile = requireBoolean(value, "profile option must be set to a boolean value"); }
void setstacklimit(DAG value) {
  std::int64_t kilobytes = requirePositive(value, "stacklimit must have a positive integer value");
  setProcessLimit(ProcessLimit::stack, 1024 * kilobytes);
  recordStackBounds();
}
/// Forgets the name's value, so that the next look fetches it from the library again.
void setunread(DAG value) {
  if (!hasTag(value, NAME)) userror("name required");
  value[1] = DAG();
  value[2] = null;
  controlWord(value) |= deferredBit;
}

// ---- values

DAG bytesUsed() { return simpl(NewInteger(4 * (ocused * 100000000 + cused))); }
DAG stackLimit() { return integerOf((korelLimitStack != 0 ? korelLimitStack : maxKorelStackSize) / 1024); }
DAG versionName() {
  char text[128];
  std::snprintf(text, sizeof text, "%s%s%s, %s, %s", versionText, "", "", hostText, dateLine);
  return naminstall(text);
}

/// The translation between tags (numbers or header words) and their names; `value` is what is asked for.
DAG dagtag(DAG value) {
  if (isInteger(value)) {
    const std::int64_t number = FitIntoLongLong(value) ? LongLongValue(value) : 0;
    const char* name = number == static_cast<Word>(number) ? DagIDToName(static_cast<Word>(number)) : nullptr;
    if (name == nullptr) userror("invalid data structure tag");
    return naminstall(name);
  }
  if (!hasTag(value, NAME)) userror("name or integer required");
  return integerOf(DagNameToID(textOf(value)));
}

// ---- the table

enum class Setting : std::uint8_t {
  readOnly,
  old,      // an assignment reports the value before
  newOnly,  // an assignment reports nothing
};

struct OptionRow {
  const char* name;
  DAG (*read)();
  Setting setting;
  void (*set)(DAG value);
};
constexpr OptionRow readOnlyRow(const char* name, DAG (*read)()) { return {name, read, Setting::readOnly, nullptr}; }

constexpr OptionRow optionRows[] = {
    {"ASSERT", [] { return truth(optASSERT > 0); }, Setting::old, setASSERT},
    {"assertlevel", [] { return immediate(optASSERT); }, Setting::old, setassertlevel},
    readOnlyRow("bytesalloc", [] { return integerOf(4 * totalmem); }),
    readOnlyRow("bytesused", bytesUsed),
    readOnlyRow("cputime", cpuSeconds),
    {"cpulimit", [] { return integerOf(korelLimitCPU); }, Setting::newOnly, setcpulimit},
    {"datalimit", [] { return integerOf(korelLimitData / 1024); }, Setting::newOnly, setdatalimit},
    readOnlyRow("dirsep", [] { return strinstall("/"); }),
    readOnlyRow("gcbytesavail", [] { return integerOf(4 * totalfree); }),
    readOnlyRow("gcbytesreturned", [] { return integerOf(4 * wret); }),
    {"gcfreq", [] { return integerOf(incrgc); }, Setting::old, setgcfreq},
    readOnlyRow("gctimes", [] { return integerOf(totgcs); }),
    readOnlyRow("gcwordsavail", [] { return integerOf(totalfree); }),
    readOnlyRow("gcwordsreturned", [] { return integerOf(wret); }),
    {"inline", [] { return truth(optionInline); }, Setting::old, setinline},
    readOnlyRow("level", [] { return integerOf(evaluationLevel); }),
    readOnlyRow("maxdigits", [] { return integerOf(maxDecimalDigits); }),
    readOnlyRow("maximmediate", [] { return immediate(maxImmediate); }),
    readOnlyRow("memusage", MemoryUsage),
    readOnlyRow("platform", [] { return strinstall("unix"); }),
    {"printbytes", [] { return truth(printgcstatus != 0); }, Setting::old, setprintbytes},
    {"printlevel", [] { return integerOf(Environment->frame->printLevel); }, Setting::old, setprintlevel},
    {"profile", [] { return truth(optprofile != 0); }, Setting::old, setprofile},
    {"stacklimit", stackLimit, Setting::newOnly, setstacklimit},
    {"unread", [] { return DAG(); }, Setting::newOnly, setunread},
    readOnlyRow("version", versionName),
    readOnlyRow("wordsize", [] { return immediate(32); }),
};

/// `ASSERT` and `inline` are the global names themselves; the others go by their characters.
bool isNameOfRow(DAG name, const OptionRow& row) {
  if (std::strcmp(textOf(name), row.name) != 0) return false;
  if (row.set == setASSERT) return name == ini("ASSERT");
  if (row.set == setinline) return name == ini("inline");
  return true;
}

/// What one argument reports; 0 for nothing.
DAG applyOption(DAG argument) {
  bool assigns = !isImmediate(argument) && hasTag(argument, EQUATION);
  DAG name = assigns ? argument[1] : argument;
  DAG value = assigns ? argument[2] : DAG();
  if (!hasTag(name, NAME)) KernelException("unrecognized kernelopts option name, %1", name);
  if (std::strcmp(textOf(name), "dagtag") == 0) {
    if (!assigns) userror("name or integer required");
    return dagtag(value);
  }
  for (const OptionRow& row : optionRows) {
    if (!isNameOfRow(name, row)) continue;
    if (!assigns) return row.read();
    if (row.setting == Setting::readOnly) {
      char text[80];
      std::snprintf(text, sizeof text, "kernelopts cannot set %s value", row.name);
      userror(text);
    }
    DAG before = row.setting == Setting::old ? row.read() : DAG();
    row.set(value);
    return before;
  }
  KernelException("unrecognized option name for kernelopts, %1", name);
}

struct RememberedOptions {
  std::int32_t assertLevel = -1;  // -1: nothing is remembered
  std::int32_t inlining, printStatus, printLevel, profile;
};
RememberedOptions remembered;

}  // namespace

DAG builtin::kernelopts(const BuiltinCall& call) {
  DAG values = newl2(lengthOf(call.arguments), EXPSEQ);
  Word found = 0;
  for (Word i = 1; i < lengthOf(call.arguments); ++i) {
    DAG value = applyOption(call.arguments[i]);
    if (value) values[++found] = value;
  }
  if (found == 1) return values[1];
  shorten(values, lengthOf(values), found + 1);
  return simpl(values);
}

void RememberKernelOpts() {
  remembered = {optASSERT, optionInline, printgcstatus, Environment->frame->printLevel, optprofile};
}

void ResetKernelOpts() {
  if (remembered.assertLevel < 0) return;
  optASSERT = remembered.assertLevel;
  optionInline = remembered.inlining != 0;
  printgcstatus = remembered.printStatus;
  assignenv(ini("printlevel"), integerOf(remembered.printLevel));
  optprofile = remembered.profile;
}

DAG builtin::gc(const BuiltinCall& call) {
  if (argumentCount(call) != 0) wrongParameters(call);
  korel::gc();
  return null;
}

}  // namespace korel
