#include "eval/evaluate/environment_variables.h"

#include <cstring>

#include "numbers/arithmetic.h"
#include "eval/evaluate/evaluate.h"
#include "frame/precision.h"
#include "eval/procedures/procedures.h"
#include "library/repository/lookup.h"
#include "eval/simplify/simplify.h"
#include "eval/evaluate/known_values.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "numbers/events/numeric_events.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

DAG HashEnv[environmentSlotCount];

namespace {

constexpr std::int64_t maxDigits = 268435448;

const StandardName fixedNames[] = {
    "%", "%%", "%%%", "Digits", "UseHardwareFloats", "Rounding", "Order", "mod",
    "Testzero", "Normalizer", "index/newtable", "NumericEventHandlers", "printlevel",
};


Frame& currentFrame() { return *Environment->frame; }

// Position of an open name's pair in the block, or 0.
Word openPosition(DAG block, DAG name) {
  for (std::int64_t i = std::int64_t{lengthOf(block)} - 2; i >= envFirstOpen; i -= 2)
    if (block[i] == name) return static_cast<Word>(i);
  return 0;
}

DAG settle(DAG value, bool full, DAG* lastName) { return full ? eval(value, lastName) : value; }

DAG openValue(DAG x, bool full, DAG* lastName, bool& found) {
  Frame& frame = currentFrame();
  found = true;
  if (frame.previousFrame != nullptr) {
    Word at = openPosition(frame.envVars, x);
    if (at != 0) {
      DAG value = frame.envVars[at + 1];
      return value ? settle(value, full, lastName) : x;
    }
  }
  found = false;
  return DAG();
}

DAG fixedValue(DAG x, bool full, DAG* lastName) {
  Frame& frame = currentFrame();
  DAG block = frame.envVars;
  if (x == ini("%")) return settle(frame.ditto1, full, lastName);
  if (x == ini("%%")) return settle(frame.ditto2, full, lastName);
  if (x == ini("%%%")) return settle(frame.ditto3, full, lastName);
  if (x == ini("printlevel")) return Newint(frame.printLevel);
  if (x == ini("NumericEventHandlers")) return simpl(CopyAlg(block[envNumericEventHandlers]));
  struct Row {
    StandardName name;
    EnvironmentWord word;
    bool procedure;  // a procedure, evaluated, or absent
  };
  static const Row rows[] = {
      {"Digits", envDigits, false},       {"UseHardwareFloats", envUseHardwareFloats, false},
      {"Rounding", envRounding, false},   {"Order", envOrder, false},
      {"mod", envMod, false},             {"Testzero", envTestzero, true},
      {"Normalizer", envNormalizer, true}, {"index/newtable", envNewtable, true},
  };
  for (const Row& row : rows)
    if (x == ini(row.name)) {
      DAG value = block[row.word];
      if (!value) return x;
      return row.procedure ? settle(value, full, lastName) : value;
    }
  return x;
}

// ---- writing

void setWord(EnvironmentWord word, DAG value) {
  DAG block = privateEnvironmentBlock();
  updategen(value);
  block[word] = value;
}

void checkDigits(DAG v) {
  if (!isInteger(v) || consneg(v) || v == cons0) KernelException("invalid assignment to Digits");
  if (!isImmediate(v) || immediateValue(v) > maxDigits)
    KernelException("Digits cannot exceed %1", Newint(static_cast<std::int32_t>(maxDigits)));
}
void checkHardwareFloats(DAG v) {
  if (v != ini("true") && v != ini("false"))
    KernelException("UseHardwareFloats must be true or false");
}
void checkRounding(DAG v) {
  bool negative = isTag(v, SUM) && lengthOf(v) == 3 && v[1] == ini("infinity") && v[2] == consm1;
  if (v != ini("nearest") && v != cons0 && v != ini("infinity") && !negative)
    KernelException("Rounding must be nearest, 0, infinity, or -infinity");
}
void checkOrder(DAG v) {
  if (v == ini("infinity")) return;
  if (!isInteger(v) || consneg(v) || !FitIntoWord(v))
    KernelException("invalid assignment to Order");
}
void checkMod(DAG v) {
  if (v != ini("modp") && v != ini("mods")) KernelException("invalid assignment to mod");
}
void checkTestzero(DAG v) {
  bool composed = isTag(v, FUNCTION) && v[1] == ini("@");
  if (!NAMED_PROC(v) && !composed) KernelException("invalid assignment to Testzero");
}
void checkNormalizer(DAG v) {
  if (!NAMED_PROC(v)) KernelException("invalid assignment to Normalizer");
}
void checkNewtable(DAG v) {
  if (!NAMED_PROC(v)) KernelException("invalid assignment to index/newtable");
}

struct BlockVariable {
  StandardName name;
  EnvironmentWord word;
  bool clearable;  // assigned to itself, it is absent
  void (*check)(DAG value);
};
const BlockVariable blockVariables[] = {
    // name               word                   clearable  check
    {"Digits", envDigits, false, checkDigits},
    {"UseHardwareFloats", envUseHardwareFloats, false, checkHardwareFloats},
    {"Rounding", envRounding, false, checkRounding},
    {"Order", envOrder, false, checkOrder},
    {"mod", envMod, false, checkMod},
    {"Testzero", envTestzero, true, checkTestzero},
    {"Normalizer", envNormalizer, true, checkNormalizer},
    {"index/newtable", envNewtable, true, checkNewtable},
};

void assignOpen(DAG x, DAG v) {
  Frame& frame = currentFrame();
  DAG value = v == x ? DAG() : v;
  stepEvaluationClock();
  if (frame.previousFrame == nullptr) {
    if (value) updategen(value);
    x[1] = value;
    return;
  }
  Word at = openPosition(frame.envVars, x);
  if (at == 0) {
    frame.envVars = space_insert(frame.envVars, envFirstOpen - 1, 2);
    updategen(frame.envVars);
    updategen(x);
    at = envFirstOpen;
    frame.envVars[at] = x;
  } else {
    privateEnvironmentBlock();
  }
  if (value) updategen(value);
  frame.envVars[at + 1] = value;
}

void assignPrintlevel(DAG v) {
  if (!isInteger(v) || !FitIntoWord(v)) KernelException("printlevel must be a word size integer");
  currentFrame().printLevel = isImmediate(v) ? immediateValue(v) : SoftIntValue(v);
  updategen(v);
  ini("printlevel")[1] = v;
}

}  // namespace

DAG valuenv(DAG x, bool full, DAG* lastName) {
  if (isOpenEnvironmentName(x)) {
    bool found = false;
    DAG value = openValue(x, full, lastName, found);
    if (found) return value;
  } else if (isFixedEnvironmentName(x)) {
    return fixedValue(x, full, lastName);
  }
  if ((controlWord(x) & deferredBit) != 0) RetrieveName(x);
  DAG value = x[1];
  if (!value) return x;
  return settle(value, full, lastName);
}

void assignenv(DAG x, DAG v) {
  Frame& frame = currentFrame();
  DAG* ditto = x == ini("%")     ? &frame.ditto1
               : x == ini("%%")  ? &frame.ditto2
               : x == ini("%%%") ? &frame.ditto3
                                 : nullptr;
  if (ditto != nullptr) {
    updategen(v);
    *ditto = v;
  } else if (isOpenEnvironmentName(x)) {
    assignOpen(x, v);
  } else if (x == ini("printlevel")) {
    assignPrintlevel(v);
  } else if (x == ini("NumericEventHandlers")) {
    KernelException(
        "NumericEventHandlers cannot be assigned to; use the NumericEventHandler function instead");
  } else {
    for (const BlockVariable& row : blockVariables)
      if (x == ini(row.name)) {
        if (row.clearable && v == x) {
          privateEnvironmentBlock()[row.word] = DAG();
        } else {
          row.check(v);
          setWord(row.word, v);
        }
        return;
      }
    updategen(v);
    stepEvaluationClock();
    x[1] = v == x ? DAG() : v;
  }
}

DAG EnvNameSeq() {
  DAG block = currentFrame().envVars;
  Word open = (lengthOf(block) - environmentBlockLength) / 2;
  DAG names = newl2(static_cast<Word>(std::size(fixedNames)) + open + 1, EXPSEQ);
  Word at = 1;
  for (DAG name : HashEnv)
    if (name) names[at++] = name;
  for (std::int64_t i = std::int64_t{lengthOf(block)} - 2; i >= envFirstOpen; i -= 2)
    names[at++] = block[i];
  return simpl(names);
}

void initializeEnvironmentVariables() {
  for (DAG& slot : HashEnv) slot = DAG();
  for (StandardName name : fixedNames) HashEnv[environmentSlot(ini(name))] = ini(name);
  DAG block = newl2(environmentBlockLength, EXPSEQ);
  block[envDigits] = immediate(10);
  block[envUseHardwareFloats] = ini("true");
  block[envRounding] = ini("nearest");
  block[envOrder] = immediate(6);
  block[envMod] = ini("modp");
  block[envTestzero] = DefTestzero;
  block[envNormalizer] = ini("normal")[1];
  DAG handlers = newl2(numericEventCount + 1, EXPSEQ);
  for (int code = 1; code <= numericEventCount; ++code) handlers[code] = ini("default");
  block[envNumericEventHandlers] = handlers;
  TopLevelStack.envVars = block;
  TopLevelStack.printLevel = 1;
  ini("printlevel")[1] = cons1;
}

std::int64_t currentDigits() { return immediateValue(Environment->frame->envVars[envDigits]); }

}  // namespace korel
