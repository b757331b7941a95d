// `save` into a directory of the library: each name a member, and what hangs on it without a global name members
// called by numbers.

#include <cstring>
#include <unistd.h>

#include "eval/evaluate/environment_variables.h"
#include "eval/procedures/modules.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "library/archive/archive_files.h"
#include "library/archive/march.h"
#include "library/records/record_file.h"
#include "library/records/records.h"
#include "library/repository/lookup.h"
#include "library/repository/repository.h"
#include "library/repository/side_file.h"
#include "numbers/integer/integer.h"
#include "store/append.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// Where `dir` stands among the directories of `libname`: from 0 on, or -1.
std::int64_t placeInLibrary(DAG dir) {
  DAG entries = valuenv(ini("libname"), true);
  if (!isSequence(entries)) return entries == dir ? 0 : -1;
  for (Word i = lengthOf(entries) - 1; i > 0; --i)
    if (entries[i] == dir) return std::int64_t{i} - 1;
  return -1;
}

// A member is a file, or may have to be one.
void checkFileName(DAG name) {
  const char* text = textOf(name);
  constexpr std::size_t longestFileName = 250;
  bool isPath = std::strchr(text, '/') != nullptr;
  // The product `.` becomes the file "..m", which is one.
  bool isFile = text[0] != 0 && std::strlen(text) <= longestFileName && std::strcmp(text, "..") != 0;
  // Names with a slash, such as `evalf/sin`, are files of a folder, or members of an archive, which takes them all.
  if (!isFile || (isPath && (text[0] == '/' || std::strstr(text, "../") != nullptr)))
    KernelException("`%1` cannot be saved into a library: its name is no file name", name);
}

void writeMember(DAG object, const char* name, RepositoryDesc* r) {
  char path[longestArchivePath + 300];
  if (std::strlen(textOf(r->dir)) + std::strlen(name) + 4 > sizeof path)
    KernelException("`%1` cannot be saved into a library: its name is no file name", object);
  std::strcpy(path, textOf(r->dir));
  std::strcat(path, "/");
  std::strcat(path, name);
  std::strcat(path, ".m");
  WriteDotMFile(path, object, r);
}

// The exports of a stored module know whose they are: whoever loads one loads the module. One that has not been fetched
// has the reference to its object in place of attributes: in its own repository it knows already.
void nameExports(DAG module, DAG name, const RepositoryDesc* r) {
  DAG exports = module[moduleExports];
  for (Word i = 1; i < lengthOf(exports); ++i) {
    DAG member = exports[i];
    if (!isName(member)) continue;
    if (isDeferred(member) && isName(member[2])) {
      if (member[2][2] == RepositoryName(r)) continue;
      RetrieveName(member);
    }
    if (ModuleNameAttr(member[2])) continue;
    DAG equation = simpl(new3(EQUATION, naminstall("modulename"), name));
    DAG attributes = member[2] == null ? new2(EXPSEQ, equation) : Append2(CopyAlg(asSequence(member[2])), equation);
    member[2] = simpl(attributes);
    updategen(member[2]);
  }
}

// Whether there is something to be written for `name`, which is fetched for it.
bool isToBeSaved(DAG name, bool intoFirst) {
  if (isEnvironmentName(name)) {
    KernelWarning(2, "environment variable `%1` will not be saved", name);
    return false;
  }
  if ((controlWord(name) & deferredBit) != 0) {
    if (intoFirst) return false;  // it is as that directory has it
    RetrieveName(name);
  }
  if (name[1] || name[2] != null) return true;
  KernelWarning(2, "unassigned/unattributed variable `%1` will not be saved", name);
  return false;
}

// What a save writes: references to objects, then named members. An object stands in the directory before anything
// that leads to it does, so that a kernel killed in between leaves no member that leads nowhere.
struct SavePlan {
  RepositoryDesc* r;
  DAG objects;  // EXPSEQ of references, growing
};

bool writeNowhere(void*, int) { return true; }
void raiseFailure(void*, const char* text) { userror(text); }

// Writes the record without a file, for the references that it queues.
void findReferences(DAG object, RepositoryDesc* r) { PrintDotM(object, writeNowhere, raiseFailure, 0, 0, r, nullptr); }

// Plans one reference that is still open; others may be queued meanwhile.
bool planPending(void* context, PairAddress pair) {
  auto& plan = *static_cast<SavePlan*>(context);
  DAG reference = pairKey(pair);
  if (pairValue(pair) != reference) return true;
  pairValue(pair) = reference[1];
  --plan.r->pendingCount;
  // Deferred still means that its file is as it was.
  if ((controlWord(reference) & deferredBit) != 0) return true;
  plan.objects = Append2(plan.objects, reference);
  findReferences(reference, plan.r);
  return false;  // the table may have grown: begin again
}

bool hasArchive(const char* directory) {
  char path[longestArchivePath];
  for (ArchiveFile file : {ArchiveFile::index, ArchiveFile::data}) {
    archivePath(ArchivePlace{directory}, file, path);
    if (::access(path, F_OK) != 0) return false;
  }
  return true;
}

// Objects that nothing in the directory leads to any more.
void collectObjects(RepositoryDesc* r) {
  // Another save under way will see to it.
  if (!hasArchive(textOf(r->dir)) || isDirectoryBusy(textOf(r->dir))) return;
  DAG told = March(newSequence({naminstall("gc"), r->dir}));
  if (isSequence(told) && memberCount(told) == 3 && isImmediate(told[3]) &&
      immediateValue(told[2]) < immediateValue(told[1]))
    UpdateWastedSpace(textOf(r->dir), static_cast<std::uint32_t>(immediateValue(told[3])));
}

}  // namespace

namespace {
void leaveAfterError(const char*) { leaveDirectory(static_cast<int>(errorProcParam)); }
}  // namespace

bool SaveInRepository(DAG list, Word count, DAG dir) {
  if (isName(dir)) dir = strinstall(textOf(dir));
  std::int64_t place = placeInLibrary(dir);
  if (place < 0) return false;
  RepositoryDesc* r = OpenRepository(dir);
  clearhash(r->pending, false);
  r->pendingCount = 0;
  for (Word i = 1; i <= count; ++i) {
    if (!isName(list[i])) KernelException("only named objects can be saved");
    if (list[i] == ini("libname")) KernelException("libname cannot be saved into a library");
    checkFileName(list[i]);
  }
  DAG members = new1(EXPSEQ);
  for (Word i = 1; i <= count; ++i) {
    DAG name = list[i];
    if (!isToBeSaved(name, place == 0)) continue;
    if (isTag(name[1], MODULE)) nameExports(name[1], name, r);
    findReferences(name, r);
    members = Append2(members, name);
  }
  SavePlan plan{r, new1(EXPSEQ)};
  const bool hadObjects = r->pendingCount > 0;
  while (r->pendingCount > 0) hashforeach(r->pending, planPending, &plan);
  const int lock = enterDirectory(textOf(dir), DirectoryUse::save);
  PushParamErrorProc(leaveAfterError, DAG(static_cast<Word>(lock)));
  for (Word i = 1; i < lengthOf(plan.objects); ++i) writeMember(plan.objects[i], textOf(plan.objects[i]), r);
  for (Word i = 1; i < lengthOf(members); ++i) writeMember(members[i], textOf(members[i]), r);
  PopErrorProc();
  leaveDirectory(lock);
  if (hadObjects) collectObjects(r);
  return true;
}

}  // namespace korel
