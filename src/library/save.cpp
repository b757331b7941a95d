#include "library/save.h"

#include <cstdio>
#include <cstring>
#include <unistd.h>
#include <vector>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/name_lists.h"
#include "eval/simplify/simplify.h"
#include "eval/walk/has.h"
#include "frame/errors.h"
#include "library/archive/replaced_file.h"
#include "library/assumptions/assumed_name.h"
#include "library/records/record_file.h"
#include "library/repository/repository.h"
#include "session/driver.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/vocabulary.h"
#include "store/word_map.h"
#include "text/print/printer.h"
#include "text/print/sinks.h"

namespace korel {

// ---- what a name needs to work elsewhere: the names that its value uses, theirs, and so on

namespace {

// Objects yet to be entered and those that have been; nothing raises an error while they are in use.
std::vector<DAG> waiting;
std::vector<DAG> required;
WordMap entered;

// Names of the kernel are there in every session.
bool isSessionName(DAG x) {
  return hasTag(x, NAME) && x[1] && !isEnvironmentName(x) && search(x.word, AllIniNames) == notFound;
}

void enter(DAG x) {
  if (isImmediate(x) || entered.insert(x.word, 0) != WordMap::added) return;
  if (isSessionName(x)) {
    required.push_back(x);
    waiting.push_back(x[1]);
  } else if (!hasTag(x, NAME)) {
    waiting.push_back(x);
  }
}

}  // namespace

DAG BuildRequiredNameSeq(DAG name) {
  waiting.clear();
  required.clear();
  enter(name);
  while (!waiting.empty()) {
    DAG object = waiting.back();
    waiting.pop_back();
    if (!isImmediate(object)) forEachPart(object, enter);
  }
  entered.clear();
  // An unassigned name is saved all the same, with the warning that it deserves.
  if (required.empty()) required.push_back(name);
  DAG names = newl2(static_cast<Word>(required.size() + 1), EXPSEQ);
  for (std::size_t i = 0; i < required.size(); ++i) names[static_cast<Word>(i + 1)] = required[i];
  return simpl(names);
}

// ---- assignments as text

namespace {

constexpr int sourceWidth = 79;

void writeCharacter(void* stream, int c) { std::fputc(c, static_cast<std::FILE*>(stream)); }
// The file while it is written; an error leaves the old one as it was.
struct SourceFile {
  ReplacedFile file;
  std::FILE* stream = nullptr;
};
void abandonSource(const char*) {
  auto& source = *reinterpret_cast<SourceFile*>(errorProcParam);
  std::fclose(source.stream);
  abandonReplaced(source.file);
}

void checkEntry(DAG name) {
  if (!isName(name)) KernelException("save can only save names");
  if (name[1] || name[2] != null) return;
  if (isEnvironmentName(name)) KernelWarning(2, "environment variable `%1` cannot be saved", name);
  else KernelWarning(2, "unassigned variable `%1` in save statement", name);
}

void writeAssignments(std::FILE* stream, DAG names) {
  SourceSink file{writeCharacter, stream};
  for (Word i = 1; i < lengthOf(names); ++i) {
    DAG name = names[i];
    DAG value = name[1] ? name[1] : new2(UNEVAL, name);
    // A file that ends in the midst of an object is no success.
    PrintKorel(new3(ASSIGN, name, value), SourceLineSink, raisePrintError, sourceWidth, &file, printProgramText);
    SourceLineSink(&file, ';');
    SourceLineSink(&file, '\n');
  }
}

}  // namespace

void WriteSourceFile(DAG file, DAG names) {
  SourceFile source;
  if (!openReplaced(source.file, textOf(file))) KernelException("could not save into `%1`", file);
  source.stream = ::fdopen(::dup(source.file.descriptor), "w");
  if (source.stream == nullptr) {
    abandonReplaced(source.file);
    KernelException("could not save into `%1`", file);
  }
  PushParamErrorProc(abandonSource, &source);
  writeAssignments(source.stream, names);
  PopErrorProc();
  const bool failed = std::ferror(source.stream) != 0;
  if (std::fclose(source.stream) != 0 || failed) {
    abandonReplaced(source.file);
    if (!failed) KernelException("could not close file");
    KernelException("could not save into `%1`", file);
  }
  if (!commitReplaced(source.file)) KernelException("could not close file");
}

// ---- the statement

namespace {

// save f!, file: f with all that it needs.
bool asksForRequiredNames(DAG operand) {
  return isCallOf(operand, ini("factorial")) && isSequence(operand[2]) && memberCount(operand[2]) == 1;
}

DAG namesToSave(DAG operands) {
  Word n = lengthOf(operands);
  if (n == 3 && asksForRequiredNames(operands[1])) {
    DAG name = evalname(operands[1][2][1]);
    return isName(name) ? BuildRequiredNameSeq(name) : simpl(new2(EXPSEQ, name));
  }
  DAG names = newl2(n - 1, EXPSEQ);
  for (Word i = 1; i + 1 < n; ++i) names[i] = evalname(operands[i]);
  return simpl(names);
}

// A file knows names by their texts alone.
void warnOfAssumptions(DAG names) {
  if (!assumptionsWereMade()) return;
  DAG values = newl2(lengthOf(names), EXPSEQ);
  for (Word i = 1; i < lengthOf(names); ++i) values[i] = isName(names[i]) && names[i][1] ? names[i][1] : names[i];
  DAG assumed = assumedNamesIn(values);
  for (Word i = 1; i < lengthOf(assumed); ++i)
    KernelWarning(2, "what is assumed about `%1` is not saved", assumptionOf(assumed[i])[assumedOrigin]);
}

}  // namespace

DAG saveStatement(DAG s) {
  if (secureMode) KernelException("save is disabled");
  DAG operands = asSequence(s[1]);
  Word n = lengthOf(operands);
  DAG file = simpl(eval(operands[n - 1]));
  if (!isText(file)) KernelException("last argument to save must be a file or library name");
  const char* path = textOf(file);
  const bool inRecords = isRecordFileName(path);
  if (n == 2 && !inRecords) KernelException("must specify names to save when saving to a text file");
  DAG names = n == 2 ? assignedNames() : namesToSave(operands);
  warnOfAssumptions(names);
  if (SaveInRepository(names, memberCount(names), file)) return null;
  for (Word i = 1; i < lengthOf(names); ++i) checkEntry(names[i]);
  if (!inRecords) {
    WriteSourceFile(file, names);
    return null;
  }
  DAG lost = WriteDotMFile(path, names, nullptr);
  for (Word i = 1; i < lengthOf(lost); ++i)
    KernelWarning(2, "the local name `%1` will be a global name in `%2`", lost[i], file);
  return null;
}

}  // namespace korel
