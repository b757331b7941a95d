#include "debug/statement_trace.h"

#include <csetjmp>
#include <cstring>
#include <x86intrin.h>

#include "debug/break_points.h"
#include "debug/debugger.h"
#include "debug/statement_walk.h"
#include "eval/evaluate/known_values.h"
#include "eval/evaluate/name_lists.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "library/repository/directory_contents.h"
#include "library/repository/lookup.h"
#include "library/repository/repository.h"
#include "numbers/integer/integer.h"
#include "rtable/create.h"
#include "rtable/rtable_object.h"
#include "rtable/storage_kinds.h"
#include "store/allocator.h"
#include "store/names.h"
#include "text/print/convert_text.h"

namespace korel {

bool traceAllMode = false;

namespace {

constexpr const char* vectorPrefix = "TRACE/";
constexpr Word columns = 3;
enum Column : Word { callsColumn, millisecondsColumn, wordsColumn };

// ---- the vector

bool isTraceVector(DAG x) {
  return isTag(x, RTABLE) && dimensionsOf(x) == 2 && lowerBound(x, 0) == 1 && lowerBound(x, 1) == 1 &&
         upperBound(x, 1) == static_cast<std::int32_t>(columns) && datatypeOf(x) == dataInteger32 &&
         storageOf(x) == storageRectangular && dataOf(x) != nullptr;
}
// As `InstrumentProcedure` makes it; one of a person's own may be in the other order.
bool isOwnVector(DAG x) { return isTraceVector(x) && rtableFlag(x, rtableOrder) == cOrder; }

std::int32_t& counter(DAG vector, std::int32_t row, Column column) {
  const std::ptrdiff_t rows = upperBound(vector, 0);
  const bool byRow = rtableFlag(vector, rtableOrder) == cOrder;
  auto* first = reinterpret_cast<std::int32_t*>(dataOf(vector));
  return first[byRow ? std::ptrdiff_t{columns} * row + column : rows * column + row];
}

DAG vectorName(DAG name) {
  const DAG text = ConvertToString(name);
  char* whole = static_cast<char*>(__builtin_alloca(std::strlen(vectorPrefix) + std::strlen(textOf(text)) + 1));
  std::strcpy(whole, vectorPrefix);
  std::strcat(whole, textOf(text));
  return naminstall(whole);
}

DAG newTraceVector(std::int32_t rows) {
  RTableSettings settings;
  settings.datatype = dataInteger32;
  settings.elementType = ini("integer");
  settings.storage = storageRectangular;
  settings.order = cOrder;
  settings.dimensions = 2;
  std::int32_t bounds[] = {1, rows, 1, static_cast<std::int32_t>(columns)};
  return RTableCreate(settings, DAG(), bounds, DataMode::cleared);
}

// ---- processor time

// A question for the processor time costs as much as a short statement. The counter of cycles tells when enough has
// passed for another: what a reading is late by is less than a hundredth of the unit of the profile.
constexpr std::uint64_t cyclesBetweenReadings = 1 << 14;

std::int64_t milliseconds() {
  static std::uint64_t readAt = 0;
  static std::int64_t reading = 0;
  const std::uint64_t now = __rdtsc();
  if (now - readAt > cyclesBetweenReadings) {
    reading = static_cast<std::int64_t>(cptime() * 1000);
    readAt = now;
  }
  return reading;
}

// ---- a traced statement

struct TracedCall {
  DAG vectorName;
  std::int32_t number;  // of the statement
  bool countsForAll;    // what it costs counts for the procedure too
};

[[noreturn]] void refuseTrace() { KernelException("Nx3 trace vector and +/-statement number expected"); }

TracedCall tracedCallOf(DAG arguments) {
  if (lengthOf(arguments) != 4) refuseTrace();
  DAG name = arguments[1], k = arguments[2];
  if (isTag(name, UNEVAL)) name = name[1];
  if (!isTag(name, NAME) || !name[1] || !isTraceVector(name[1]) || !isImmediate(k)) refuseTrace();
  const std::int32_t number = immediateValue(k);
  const std::int32_t n = number < 0 ? -number : number;
  if (n == 0 || n >= upperBound(name[1], 0)) KernelException("statement number out of range");
  return {name, n, number < 0};
}

struct Costs {
  std::int64_t time = milliseconds(), words = wordsUsed();
};

void addCosts(DAG vector, std::int32_t row, const Costs& before, const Costs& after) {
  counter(vector, row, millisecondsColumn) += static_cast<std::int32_t>(after.time - before.time);
  counter(vector, row, wordsColumn) += static_cast<std::int32_t>(after.words - before.words);
}

// The statement may have changed what the vector's name stands for.
void bookCosts(const TracedCall& call, const Costs& before) {
  DAG vector = call.vectorName[1];
  if (!vector || !isTraceVector(vector) || call.number >= upperBound(vector, 0)) return;
  const Costs after;
  addCosts(vector, call.number, before, after);
  if (call.countsForAll) addCosts(vector, 0, before, after);
}

DAG runCounted(const TracedCall& call, DAG wrapper, DAG statement, int mode) {
  if (call.number == 1) ++counter(call.vectorName[1], 0, callsColumn);
  ++counter(call.vectorName[1], call.number, callsColumn);
  const Costs before;
  std::jmp_buf buffer;
  EnvironmentBlock block;
  DAG outer = enterWrapper(wrapper);
  EnvironmentBlock* previous = enterEnvironment(block, buffer);
  const int code = ::_setjmp(buffer);
  if (code != 0) {
    Environment = &block;
    RestoreEnvironment(previous);
    enterWrapper(outer);
    bookCosts(call, before);
    jumpOut(static_cast<JumpCode>(code));
  }
  DAG value = evalstat(statement, mode);
  RestoreEnvironment(previous);
  enterWrapper(outer);
  bookCosts(call, before);
  return value;
}

}  // namespace

DAG runTraced(DAG call, int mode) {
  const TracedCall traced = tracedCallOf(call[2]);
  // The wrapper is no level of its own.
  --evaluationLevel;
  DAG value = runCounted(traced, call, call[2][3], mode);
  ++evaluationLevel;
  return value;
}

DAG builtin::TRACE(const BuiltinCall& call) {
  const TracedCall traced = tracedCallOf(call.arguments);
  return runCounted(traced, call.form, call.arguments[3], modeInner);
}

// ---- instrumentation

namespace {

// Wraps or unwraps each statement: a visitor of the walk.
struct Wrapper {
  DAG vectorName;  // 0 to unwrap
  std::int32_t count = 0;

  bool enter(const StatementPlace& place) {
    DAG bare = place.statement();
    if (vectorName) {
      const std::int32_t k = place.depth == 0 ? -place.number : place.number;
      DAG call = new3(FUNCTION, ini("TRACE"), new4(EXPSEQ, vectorName, immediate(k), bare));
      setSimplified(call[2]);
      setSimplified(call);
      replaceStatement(place, call);
    } else if (place.wrapped() != bare) {
      replaceStatement(place, bare);
    }
    return true;
  }
  bool part(const StatementPlace&, const StatementPart&) { return true; }
  void leave(const StatementPlace&) {}
};

bool isRepositoryReference(DAG x) { return isText(x) && isMember(x, asSequence(ini("libname")[1])); }

// The directory of `libname` in which the procedure of a global name lies, or `null`. Nothing is written into the
// system's own library, which is known by the debugger in it.
DAG repositoryOf(DAG name) {
  const PairAddress pair = isTag(name, NAME) ? srchname(textOf(name)) : notFound;
  if (pair == notFound || pairValue(pair) != name) return null;
  DAG directories = asSequence(ini("libname")[1]);
  for (Word i = 1, n = lengthOf(directories); i < n; ++i) {
    if (!isText(directories[i])) continue;
    const char* directory = textOf(directories[i]);
    if (mayHoldMember(directory, textOf(name)))
      return mayHoldMember(directory, "debugger") ? DAG(null) : directories[i];
  }
  return null;
}

void instrument(DAG name, DAG procedure) {
  DAG vector = vectorName(name);
  Wrapper wrapper{vector};
  walkBody(wrapper, procedure, procBody, 0);
  if (wrapper.count == 0) return;
  if (isDeferred(vector)) RetrieveName(vector);
  const std::int32_t rows = wrapper.count + 1;
  if (!vector[1] || !isOwnVector(vector[1]) || upperBound(vector[1], 0) != rows) {
    vector[1] = newTraceVector(rows);
    updategens(vector[1]);
    stepEvaluationClock();
  }
  if (!traceAllMode) return;
  if (DAG directory = repositoryOf(name); directory != null) {
    vector[2] = directory;
    updategen(directory);
  }
}

}  // namespace

void InstrumentProcedure(DAG name, Instrumentation mode) {
  DAG procedure = debuggableProcedure(name);
  if (mode == Instrumentation::on) {
    instrument(name, procedure);
  } else {
    Wrapper wrapper{DAG()};
    walkBody(wrapper, procedure, procBody, 0);
  }
}

void instrumentOnEntry(DAG name, DAG procedure) {
  StatementPlace place;
  if (!placeOfNumber(procedure, 1, place) || isTraced(place.wrapped())) return;
  if (isOfDebugger(name) || !leadsTo(name, procedure)) return;
  instrument(name, procedure);
}

DAG traceVectorShown(DAG name, DAG procedure) {
  StatementPlace place;
  if (!placeOfNumber(procedure, 1, place) || !isTraced(place.wrapped())) return DAG();
  DAG vector = vectorName(name)[1];
  const bool fits = vector && isOwnVector(vector) && upperBound(vector, 0) == countStatements(procedure) + 1;
  return fits ? vector : DAG();
}

const std::int32_t* traceRow(DAG vector, std::int32_t row) { return &counter(vector, row, callsColumn); }

// ---- at the end of a run

void SaveTraceInformation() {
  if (!traceAllMode) return;
  DAG names = assignedNames(), found = null;
  for (Word i = 1, n = lengthOf(names); i < n; ++i) {
    DAG name = names[i];
    if (!isTag(name, NAME) || std::strncmp(textOf(name), vectorPrefix, std::strlen(vectorPrefix)) != 0) continue;
    if (isTag(name[1], RTABLE) && isRepositoryReference(name[2])) found = simpl(newSequence({found, name}));
  }
  if (found == null) return;
  bool failed = false;
  KernelTrapError(
      [](DAG list) {
        for (Word i = 1; i < lengthOf(list); ++i)
          if (!SaveInRepository(new2(EXPSEQ, list[i]), 1, list[i][2])) KernelException("no such repository");
        return null;
      },
      found, failed);
  if (failed) KernelWarning(2, "trace information could not be saved");
}

}  // namespace korel
