#include "eval/evaluate/environment_variables.h"

#include <cstring>

#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/known_values.h"
#include "eval/evaluate/named_kinds.h"
#include "eval/procedures/procedures.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "library/repository/lookup.h"
#include "library/retrieve.h"
#include "numbers/arithmetic.h"
#include "numbers/events/numeric_events.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

DAG HashEnv[environmentSlotCount];

namespace {

// ---- what the fixed names accept

void checkDigits(DAG v) {
  if (!isInteger(v) || consneg(v) || v == cons0) KernelException("invalid assignment to Digits");
  if (!isImmediate(v) || immediateValue(v) > largestDigits)
    KernelException("Digits cannot exceed %1", Newint(static_cast<std::int32_t>(largestDigits)));
}
void checkHardwareFloats(DAG v) {
  if (v != ini("true") && v != ini("false")) KernelException("UseHardwareFloats must be true or false");
}
void checkRounding(DAG v) {
  bool negative = isTag(v, SUM) && lengthOf(v) == 3 && v[1] == ini("infinity") && v[2] == consm1;
  if (v != ini("nearest") && v != cons0 && v != ini("infinity") && !negative)
    KernelException("Rounding must be nearest, 0, infinity, or -infinity");
}
void checkOrder(DAG v) {
  if (v == ini("infinity")) return;
  if (!isInteger(v) || consneg(v) || !FitIntoWord(v)) KernelException("invalid assignment to Order");
}
void checkMod(DAG v) {
  if (v != ini("modp") && v != ini("mods")) KernelException("invalid assignment to mod");
}
void checkTestzero(DAG v) {
  if (!NAMED_PROC(v) && !isCallOf(v, ini("@"))) KernelException("invalid assignment to Testzero");
}
void checkNormalizer(DAG v) {
  if (!NAMED_PROC(v)) KernelException("invalid assignment to Normalizer");
}
void checkNewtable(DAG v) {
  if (!NAMED_PROC(v)) KernelException("invalid assignment to index/newtable");
}
void checkHandlers(DAG) {
  KernelException("NumericEventHandlers cannot be assigned to; use the NumericEventHandler function instead");
}

// ---- the fixed names

enum class Kept {
  ditto,       // in the frame, evaluated when asked for
  printLevel,  // in the frame, as a plain number
  handlers,    // in the block, changed in place: a reader gets a copy
  value,       // in the block
  procedure,   // in the block or absent, evaluated when asked for; assigned to itself, it is absent
};
struct FixedVariable {
  StandardName name;
  Kept kept;
  DAG Frame::*ditto;
  EnvironmentWord word;
  void (*check)(DAG value);
};
const FixedVariable fixedVariables[] = {
    // name                  kept              in the frame    in the block             check of a new value
    {"%",                    Kept::ditto,      &Frame::ditto1, {},                      nullptr},
    {"%%",                   Kept::ditto,      &Frame::ditto2, {},                      nullptr},
    {"%%%",                  Kept::ditto,      &Frame::ditto3, {},                      nullptr},
    {"printlevel",           Kept::printLevel, nullptr,        {},                      nullptr},
    {"Digits",               Kept::value,      nullptr,        envDigits,               checkDigits},
    {"UseHardwareFloats",    Kept::value,      nullptr,        envUseHardwareFloats,    checkHardwareFloats},
    {"Rounding",             Kept::value,      nullptr,        envRounding,             checkRounding},
    {"Order",                Kept::value,      nullptr,        envOrder,                checkOrder},
    {"mod",                  Kept::value,      nullptr,        envMod,                  checkMod},
    {"Testzero",             Kept::procedure,  nullptr,        envTestzero,             checkTestzero},
    {"Normalizer",           Kept::procedure,  nullptr,        envNormalizer,           checkNormalizer},
    {"index/newtable",       Kept::procedure,  nullptr,        envNewtable,             checkNewtable},
    {"NumericEventHandlers", Kept::handlers,   nullptr,        envNumericEventHandlers, checkHandlers},
};

// The row of the name `x`, or null.
const FixedVariable* fixedVariable(DAG x) {
  for (const FixedVariable& row : fixedVariables)
    if (x == ini(row.name)) return &row;
  return nullptr;
}

Frame& currentFrame() { return *Environment->frame; }

DAG settle(DAG value, bool full, DAG* lastName) { return full ? eval(value, lastName) : value; }

DAG fixedValue(DAG x, bool full, DAG* lastName) {
  const FixedVariable& row = *fixedVariable(x);
  Frame& frame = currentFrame();
  switch (row.kept) {
    case Kept::ditto: return settle(frame.*row.ditto, full, lastName);
    case Kept::printLevel: return Newint(frame.printLevel);
    case Kept::handlers: return simpl(CopyAlg(frame.envVars[row.word]));
    case Kept::value: return frame.envVars[row.word];
    default: {
      DAG value = frame.envVars[row.word];
      return value ? settle(value, full, lastName) : x;
    }
  }
}

void assignPrintlevel(DAG v) {
  if (!isInteger(v) || !FitIntoWord(v)) KernelException("printlevel must be a word size integer");
  currentFrame().printLevel = isImmediate(v) ? immediateValue(v) : SoftIntValue(v);
  updategen(v);
  ini("printlevel")[1] = v;
}

void assignFixed(const FixedVariable& row, DAG x, DAG v) {
  switch (row.kept) {
    case Kept::ditto:
      updategen(v);
      currentFrame().*row.ditto = v;
      return;
    case Kept::printLevel: return assignPrintlevel(v);
    default: break;
  }
  const bool cleared = row.kept == Kept::procedure && v == x;
  if (!cleared) row.check(v);
  DAG block = privateEnvironmentBlock();
  if (!cleared) updategen(v);
  block[row.word] = cleared ? DAG() : v;
}

// ---- the open names

// Position of an open name's pair in the block, or 0.
Word openPosition(DAG block, DAG name) {
  for (std::int64_t i = std::int64_t{lengthOf(block)} - 2; i >= envFirstOpen; i -= 2)
    if (block[i] == name) return static_cast<Word>(i);
  return 0;
}

// The pair of an open name in the running frame's block, which the top frame has none of; or 0.
Word openPair(DAG name) {
  const Frame& frame = currentFrame();
  return frame.previousFrame != nullptr ? openPosition(frame.envVars, name) : 0;
}

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

}  // namespace

DAG valuenv(DAG x, bool full, DAG* lastName) {
  if (isOpenEnvironmentName(x)) {
    if (Word at = openPair(x)) {
      DAG value = currentFrame().envVars[at + 1];
      return value ? settle(value, full, lastName) : x;
    }
  } else if (isFixedEnvironmentName(x)) {
    return fixedValue(x, full, lastName);
  }
  if ((controlWord(x) & deferredBit) != 0) RetrieveName(x);
  DAG value = x[1];
  return value ? settle(value, full, lastName) : x;
}

void assignenv(DAG x, DAG v) {
  if (isOpenEnvironmentName(x)) {
    assignOpen(x, v);
  } else if (const FixedVariable* row = fixedVariable(x)) {
    assignFixed(*row, x, v);
  } else {
    updategen(v);
    stepEvaluationClock();
    x[1] = v == x ? DAG() : v;
  }
}

DAG EnvNameSeq() {
  DAG block = currentFrame().envVars;
  Word open = (lengthOf(block) - environmentBlockLength) / 2;
  DAG names = newl2(static_cast<Word>(std::size(fixedVariables)) + open + 1, EXPSEQ);
  Word at = 1;
  for (DAG name : HashEnv)
    if (name) names[at++] = name;
  for (std::int64_t i = std::int64_t{lengthOf(block)} - 2; i >= envFirstOpen; i -= 2) names[at++] = block[i];
  return simpl(names);
}

void initializeEnvironmentVariables() {
  for (DAG& slot : HashEnv) slot = DAG();
  for (const FixedVariable& row : fixedVariables) HashEnv[environmentSlot(ini(row.name))] = ini(row.name);
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

}  // namespace korel
