#include "library/repository/lookup.h"

#include <cstdio>
#include <cstring>

#include "debug/call_profile.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/known_values.h"
#include "eval/procedures/modules.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/records/record_file.h"
#include "library/repository/directory_contents.h"
#include "library/repository/repository.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

constexpr std::size_t longestPath = 1025;

// Reading a member counts as a call one procedure deeper.
std::int32_t profiledLevel() { return evaluationLevel + 20; }

bool isFound(DAG result) { return result != ini("FAIL"); }

}  // namespace

namespace {

bool readMember(DAG directory, const char* name) {
  if (!mayHoldMember(textOf(directory), name)) return false;
  char path[2 * longestPath + 8];
  std::snprintf(path, sizeof path, "%s/%s.m", textOf(directory), name);
  return isFound(ReadDotMFile(path, true, OpenRepository(directory)));
}

}  // namespace

bool readFromDirectory(DAG directory, const char* name, const char* profiled) {
  if (std::strlen(textOf(directory)) + std::strlen(name) + 3 >= longestPath) return false;
  prtprof(true, profiled, profiledLevel());
  const bool found = readMember(directory, name);
  prtprof(false, profiled, profiledLevel());
  return found;
}

namespace {

// An object that only a reference leads to.
void retrieveObject(DAG name, DAG reference) {
  controlWord(reference) &= ~deferredBit;
  const DAG directory = reference[2];
  // The record is that of the reference, which gets value and attributes of the object.
  if (!readFromDirectory(directory, textOf(reference), profiledStore)) {
    name[1] = DAG();
    name[2] = null;
    return;
  }
  DAG value = reference[1], attributes = reference[2];
  name[1] = value == name ? DAG() : value;
  name[2] = attributes == directory ? null : attributes;
}

void retrieveGlobal(DAG name) {
  DAG entries = valuenv(ini("libname"), true);
  DAG alone[1] = {entries};
  const DAG* entry = isSequence(entries) ? &entries[1] : alone;
  bool found = false;
  for (Word i = 0, n = isSequence(entries) ? memberCount(entries) : 1; i < n && !found; ++i)
    found = isText(entry[i]) && readFromDirectory(entry[i], textOf(name), profiledStore);
}

void forgetDeferral(const char*) {
  DAG name(static_cast<Word>(errorProcParam));
  controlWord(name) &= ~deferredBit;
  if (isTag(name[2], NAME) && name[2][0].word != 0 && textOf(name[2])[0] == ':') name[2] = null;
}

bool isReference(DAG x) { return isName(x) && std::strncmp(textOf(x), ":-", 2) == 0 && isText(x[2]); }

}  // namespace

void RetrieveName(DAG name) {
  PushParamErrorProc(forgetDeferral, name);
  DAG reference = name[2];
  if (isReference(reference)) {
    DAG directory = reference[2];
    retrieveObject(name, reference);
    // The reference leads to the object again, from the directory where it lies.
    reference[1] = name;
    reference[2] = directory;
  } else if (reference == null) {
    retrieveGlobal(name);
  }
  PopErrorProc();
  controlWord(name) &= ~deferredBit;
  stepEvaluationClock();
  if (DAG module = ModuleNameAttr(name[2]); isName(module) && isDeferred(module)) RetrieveName(module);
  if (isTag(name[1], MODULE)) {
    AddModuleToAllModules(name[1]);
    RunLoadFunction(name[1], "load");
  }
}

namespace {
void addUpdateDirectories() {
  DAG entries = ini("libname")[1];
  if (!isSequence(entries)) entries = new2(EXPSEQ, entries);
  for (Word i = 1; i < lengthOf(entries); ++i) {
    if (!isText(entries[i])) continue;
    char path[longestPath + 32];
    const char* text = textOf(entries[i]);
    if (std::strlen(text) + 24 >= longestPath) continue;
    std::strcpy(path, text);
    char* behind = std::strrchr(path, '/');
    behind = behind == nullptr ? path : behind + 1;
    std::strcpy(behind, "update/check.m");
    if (!isFound(ReadDotMFile(path, true, nullptr))) continue;
    behind[6] = 0;  // "update"
    entries = space_insert(CopyAlg(entries), i - 1, 1);
    entries[i] = strinstall(path);
    ++i;
  }
  entries = simpl(entries);
  ini("libname")[1] = isSequence(entries) && memberCount(entries) == 1 ? entries[1] : entries;
}

}  // namespace

void initializeLibrary() { addUpdateDirectories(); }

}  // namespace korel
