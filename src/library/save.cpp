#include "library/save.h"

#include <cstdio>
#include <cstring>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "library/records/record_file.h"
#include "library/repository/repository.h"
#include "session/driver.h"
#include "store/vocabulary.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/objects.h"
#include "text/print/printer.h"
#include "text/print/source_sink.h"

namespace korel {

namespace {

constexpr int sourceWidth = 79;
constexpr int sourceFlags = 2;  // attributes shown


void writeCharacter(void* stream, int c) { std::fputc(c, static_cast<std::FILE*>(stream)); }
// A file that ends in the midst of an object is no success.
void raisePrintError(void*, const char* text) { userror(text); }
void closeStream(const char*) { std::fclose(reinterpret_cast<std::FILE*>(errorProcParam)); }

void checkEntry(DAG name) {
  if (!isTag(name, NAME)) KernelException("save can only save names");
  if (name[1] || name[2] != null) return;
  if (isEnvironmentName(name))
    KernelWarning(2, "environment variable `%1` cannot be saved", name);
  else
    KernelWarning(2, "unassigned variable `%1` in save statement", name);
}

void writeAssignments(std::FILE* stream, DAG names) {
  SourceSink file{writeCharacter, stream};
  for (Word i = 1; i < lengthOf(names); ++i) {
    DAG name = names[i];
    DAG value = name[1] ? name[1] : new2(UNEVAL, name);
    PrintKorel(new3(ASSIGN, name, value), SourceLineSink, raisePrintError, sourceWidth, &file,
               sourceFlags);
    SourceLineSink(&file, ';');
    SourceLineSink(&file, '\n');
  }
}

// save f!, file: f with all that it needs.
bool asksForRequiredNames(DAG operand) {
  return isTag(operand, FUNCTION) && operand[1] == ini("factorial") && isTag(operand[2], EXPSEQ) &&
         lengthOf(operand[2]) == 2;
}

DAG namesToSave(DAG operands) {
  Word n = lengthOf(operands);
  if (n == 3 && asksForRequiredNames(operands[1])) {
    DAG name = evalname(operands[1][2][1]);
    return isTag(name, NAME) ? BuildRequiredNameSeq(name) : simpl(new2(EXPSEQ, name));
  }
  DAG names = newl2(n - 1, EXPSEQ);
  for (Word i = 1; i + 1 < n; ++i) names[i] = evalname(operands[i]);
  return simpl(names);
}

}  // namespace

void WriteSourceFile(DAG file, DAG names) {
  std::FILE* stream = std::fopen(textOf(file), "w");
  if (stream == nullptr) KernelException("could not save into `%1`", file);
  PushParamErrorProc(closeStream, stream);
  writeAssignments(stream, names);
  PopErrorProc();
  bool failed = std::ferror(stream) != 0;
  if (std::fclose(stream) != 0) KernelException("could not close file");
  if (failed) KernelException("could not save into `%1`", file);
}

DAG saveStatement(DAG s) {
  if (secureMode) KernelException("save is disabled");
  DAG operands = isTag(s[1], EXPSEQ) ? s[1] : new2(EXPSEQ, s[1]);
  Word n = lengthOf(operands);
  DAG file = simpl(eval(operands[n - 1]));
  if (!isTag(file, NAME) && !isTag(file, STRING))
    KernelException("last argument to save must be a file or library name");
  const char* path = textOf(file);
  const bool inRecords = isRecordFileName(path);
  if (n == 2 && !inRecords) KernelException("must specify names to save when saving to a text file");
  DAG names = n == 2 ? loopname(3, null) : namesToSave(operands);
  if (SaveInRepository(names, memberCount(names), file)) return null;
  for (Word i = 1; i < lengthOf(names); ++i) checkEntry(names[i]);
  if (inRecords) WriteDotMFile(path, names, nullptr);
  else WriteSourceFile(file, names);
  return null;
}

}  // namespace korel
