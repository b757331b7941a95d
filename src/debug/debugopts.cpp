#include "debug/debugopts.h"

#include <limits>

#include "debug/break_points.h"
#include "debug/debugger.h"
#include "debug/listing.h"
#include "debug/statement_trace.h"
#include "debug/statement_walk.h"
#include "debug/watches.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "numbers/arithmetic.h"
#include "numbers/integer/integer.h"
#include "store/names.h"

namespace korel {

namespace {

// ---- values

// The members of a list; of anything else none.
DAG membersOf(DAG x) { return isTag(x, LIST) ? asSequence(x[1]) : null; }

bool isPositive(DAG x) { return isInteger(x) && compcon(x, cons0) > 0; }

// An integer as the number of a statement: beyond the range of numbers, one that no statement has.
std::int32_t statementNumber(DAG x) {
  return isImmediate(x) ? immediateValue(x) : std::numeric_limits<std::int32_t>::max();
}

// ---- interrupt, steplevel

DAG interrupt(DAG) {
  interruptFromDebugger();
  return null;
}

DAG askStepLevel() { return simpl(NewInteger(savedStepLevel)); }
DAG setStepLevel(DAG value) {
  if (!isImmediate(value)) KernelException("steplevel must be set to an integer");
  savedStepLevel = immediateValue(value);
  return null;
}

// ---- stopat

DAG stopAtStatement(DAG value) {
  DAG members = membersOf(value);
  const Word n = memberCount(members);
  if ((n != 2 && n != 3) || !isInteger(members[2])) KernelException("procedure name and statement number required");
  DAG name = members[1];
  debuggableProcedure(name);
  if (!isImmediate(members[2])) KernelException("statement number out of range");
  const std::int32_t number = immediateValue(members[2]);
  if (number < 0) {
    clearBreakPoint(name, -number);
  } else {
    setBreakPoint(name, number, n == 3 ? members[3] : DAG());
  }
  return null;
}

// ---- traceproc

DAG askTraceMode() { return truth(traceAllMode); }

DAG traceProcedure(DAG value) {
  if (value == ini("true") || value == ini("false")) {
    traceAllMode = value == ini("true");
    return null;
  }
  DAG members = membersOf(value);
  if (memberCount(members) == 2 && (members[2] == ini("false") || members[2] == ini("true"))) {
    const bool off = members[2] == ini("false");
    InstrumentProcedure(members[1], off ? Instrumentation::off : Instrumentation::on);
  } else if (traceAllMode) {
    KernelWarning(2, "traceproc=procname ignored when traceproc=true is active");
  } else {
    InstrumentProcedure(value, Instrumentation::on);
  }
  return null;
}

// ---- tables

DAG askWatchTable() { return tableAsList(watchTable); }
DAG askErrorTable() { return tableAsList(errorTable); }

template <void (*change)(DAG)>
DAG changeTable(DAG value) {
  change(value);
  return null;
}

// ---- statcount, procdump

DAG countOf(DAG value) { return simpl(NewInteger(countStatements(debuggableProcedure(value)))); }

DAG dump(DAG value) {
  if (!isTag(value, LIST)) {
    DAG procedure = debuggableProcedure(value);
    return listingOf(value, procedure, 1, std::numeric_limits<std::int32_t>::max());
  }
  DAG members = membersOf(value);
  if (memberCount(members) != 2) KernelException("procedure name and statement number(s) expected");
  DAG which = members[2];
  const bool isRange = isTag(which, RANGE);
  DAG first = isRange ? which[1] : which, last = isRange ? which[2] : which;
  if (!isInteger(first) || !isInteger(last)) KernelException("procedure name and statement number(s) expected");
  if (first == cons0 || last == cons0) KernelException("statement numbers cannot be zero");
  if (!isPositive(first) || !isPositive(last)) KernelException("positive integer statement number(s) expected");
  if (compcon(last, first) < 0) KernelException("first statement number must precede second");
  DAG procedure = debuggableProcedure(members[1]);
  if (isRange) return listingOf(members[1], procedure, statementNumber(first), statementNumber(last));
  return statementListing(members[1], procedure, statementNumber(first));
}

// ---- callstack

DAG nameInStack(const Frame& frame) {
  if (!frame.procName || frame.procName == null) return naminstall("TopLevel");
  DAG name = nameOfProcedure(frame);
  return name ? name : frame.procName;
}

DAG stackOf(std::int64_t levels) {
  std::int64_t count = 0;
  for (Frame* f = Environment->frame; f != nullptr && count < levels; f = f->previousFrame) ++count;
  if (3 * count + 2 > static_cast<std::int64_t>(maxLength)) KernelException("object too large");
  DAG stack = newl2(static_cast<Word>(3 * count + 2), EXPSEQ);
  stack[1] = naminstall("DEBUGSTACK");
  Word at = 2;
  for (Frame* f = Environment->frame; f != nullptr && count > 0; f = f->previousFrame, --count) {
    DAG definition = isDefinition(f->proc) ? f->proc : DAG();
    DAG statement = f->currentStatement ? f->currentStatement : null;
    stack[at++] = nameInStack(*f);
    stack[at++] = statementName(definition, statement);
    stack[at++] = simpl(new2(LIST, f->args == null ? null : simpl(f->args)));
  }
  return simpl(new2(LIST, simpl(stack)));
}

DAG wholeStack() { return stackOf(std::numeric_limits<std::int32_t>::max()); }
DAG stackToLevel(DAG value) {
  if (!isPositive(value)) KernelException("positive integer trace back level expected");
  return stackOf(isImmediate(value) ? immediateValue(value) : std::numeric_limits<std::int32_t>::max());
}

// ---- errors at the entry

DAG valueOrNone(DAG value) { return value ? simpl(value) : naminstall("(none)"); }
DAG askLastError() { return valueOrNone(lastLastError); }
DAG askLastException() { return valueOrNone(lastLastException); }

// ---- the table

struct Option {
  const char* name;
  DAG (*ask)();
  const char* noQuery;  // why it can't be asked for
  DAG (*set)(DAG value);
  const char* noSetting;  // why it can't be set
};

constexpr Option options[] = {
    // name          query                                                    setting
    {"interrupt",    [] { return interrupt(null); }, nullptr,                  interrupt, nullptr},
    {"steplevel",    askStepLevel, nullptr,                                    setStepLevel, nullptr},
    {"stopat",       nullptr, "debugopts cannot query stopat",                 stopAtStatement, nullptr},
    {"traceproc",    askTraceMode, nullptr,                                    traceProcedure, nullptr},
    {"addwatch",     nullptr, "debugopts cannot query addwatch",               changeTable<addWatch>, nullptr},
    {"delwatch",     nullptr, "debugopts cannot query delwatch",               changeTable<deleteWatch>, nullptr},
    {"watchtable",   askWatchTable, nullptr,                                   changeTable<setWatchTable>, nullptr},
    {"adderror",     nullptr, "debugopts cannot query adderror",               changeTable<addErrorStop>, nullptr},
    {"delerror",     nullptr, "debugopts cannot query delerror",               changeTable<deleteErrorStop>, nullptr},
    {"errortable",   askErrorTable, nullptr,                                   changeTable<setErrorTable>, nullptr},
    {"statcount",    nullptr, "debugopts cannot query statcount",              countOf, nullptr},
    {"procdump",     nullptr, "debugopts cannot query procdump",               dump, nullptr},
    {"callstack",    wholeStack, nullptr,                                      stackToLevel, nullptr},
    {"lasterror",    askLastError, nullptr,                                    nullptr, "cannot set lasterror"},
    {"lastexception", askLastException, nullptr,                               nullptr, "cannot set lastexception"},
};

const Option& optionNamed(DAG name) {
  if (!isTag(name, NAME)) KernelException("invalid argument for debugopts");
  for (const Option& row : options)
    if (hasText(name, row.name)) return row;
  KernelException("unrecognized option name for debugopts");
}

bool namesOption(DAG x) {
  if (isTag(x, NAME))
    for (const Option& row : options)
      if (hasText(x, row.name)) return true;
  return false;
}

DAG answer(DAG argument) {
  const bool setting = isTag(argument, EQUATION);
  const Option& row = optionNamed(setting ? argument[1] : argument);
  if (setting && row.set == nullptr) userror(row.noSetting);
  if (!setting && row.ask == nullptr) userror(row.noQuery);
  return setting ? row.set(singleMember(argument[2])) : row.ask();
}

// ---- arguments

// A condition as it stands in the call, with what parameters and locals of the caller stand for.
DAG conditionAsWritten(DAG x) {
  while (isTag(x, UNEVAL)) x = x[1];
  if (isTag(x, PARAM) || isTag(x, LOCAL) || isTag(x, LEXICAL)) return simpl(eval(x));
  return simpl(evparloc(x));
}

// stopat = [procedure, number, condition] as it stands, or 0 for any other argument.
DAG conditionalStop(DAG argument) {
  if (!isTag(argument, EQUATION) || !isTag(argument[2], LIST)) return DAG();
  DAG members = asSequence(argument[2][1]);
  if (memberCount(members) != 3) return DAG();
  DAG option = namesOption(argument[1]) ? argument[1] : simpl(eval(argument[1]));
  if (!isTag(option, NAME) || !hasText(option, "stopat")) return DAG();
  DAG place = simpl(newSequence({simpl(eval(members[1])), simpl(eval(members[2]))}));
  if (memberCount(place) != 2) return DAG();
  DAG condition = conditionAsWritten(members[3]);
  DAG stop = simpl(new2(LIST, simpl(newSequence({place, condition}))));
  return new3(EQUATION, option, stop);
}

// An argument with the names of options as they stand: `lasterror` has a value of its own.
DAG evaluated(DAG argument) {
  if (namesOption(argument)) return argument;
  if (isTag(argument, EQUATION) && namesOption(argument[1]))
    return simpl(new3(EQUATION, argument[1], simpl(eval(argument[2]))));
  return simpl(eval(argument));
}

}  // namespace

DAG builtin::debugopts(const BuiltinCall& call) {
  DAG results = null;
  for (Word i = 1, n = lengthOf(call.arguments); i < n; ++i) {
    DAG argument = call.arguments[i];
    DAG stop = conditionalStop(argument);
    DAG values = stop ? new2(EXPSEQ, stop) : asSequence(evaluated(argument));
    for (Word k = 1; k < lengthOf(values); ++k) results = simpl(newSequence({results, answer(values[k])}));
  }
  return singleMember(results);
}

}  // namespace korel
