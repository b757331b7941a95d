#include "library/system_functions.h"

#include <cstdio>
#include <cstring>

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel {

DAG notinlib[notinlibLength];
LibraryReader libraryReader = nullptr;

namespace {

constexpr std::size_t longestName = 1087;  // base and suffix together stay below
constexpr std::size_t longestPath = 1024;


bool isMissed(DAG name) {
  for (DAG missed : notinlib)
    if (missed == name) return true;
  return false;
}

// Moves `name` to the front; the last of the list makes room for a new one.
void noteMissed(DAG name) {
  if (notinlib[0] == name) return;
  int at = 1;
  while (at < notinlibLength - 2 && notinlib[at] != name) ++at;
  for (; at > 0; --at) notinlib[at] = notinlib[at - 1];
  notinlib[0] = name;
}

DAG assignedName(const char* text) {
  PairAddress pair = srchname(text);
  if (pair == notFound) return DAG();
  DAG name = pairValue(pair);
  return name[1] ? name : DAG();
}

// What to do about a member of the library path that is no text.
enum class BadEntry { endsTheSearch, isAnError };

// Asks each of `directories`, one text or an EXPSEQ of texts, for the file of that name. `stopped` when
// an entry ends the search.
bool searchDirectories(const char* text, DAG directories, BadEntry badEntry, bool& stopped) {
  stopped = false;
  DAG single[1] = {directories};
  const bool several = isTag(directories, EXPSEQ);
  const DAG* entries = several ? &directories[1] : single;
  Word count = several ? lengthOf(directories) - 1 : 1;
  for (Word i = 0; i < count; ++i) {
    DAG entry = entries[i];
    if (!isTag(entry, NAME) && !isTag(entry, STRING)) {
      if (badEntry == BadEntry::isAnError) KernelException("invalid entry %1 in libname", entry);
      stopped = true;
      return false;
    }
    if (std::strlen(textOf(entry)) + std::strlen(text) + 3 > longestPath)
      KernelException("readlib file name would be longer than %1 characters",
                      immediate(static_cast<std::int32_t>(longestPath)));
    if (libraryReader != nullptr && libraryReader(entry, text)) return true;
  }
  return false;
}

// Value of the call of `head`, or of head[index] for an indexed `form`.
DAG callLibrary(DAG name, DAG form, DAG arguments) {
  DAG head = isTag(form, TABLEREF) ? new3(TABLEREF, name, form[2]) : name;
  if (!isTag(arguments, EXPSEQ)) arguments = new2(EXPSEQ, arguments);
  return simpl(eval(simpl(new3(FUNCTION, head, arguments))));
}

// The NAME inside a NAME or TABLEREF, or 0.
DAG baseName(DAG x) {
  while (isTag(x, TABLEREF)) x = x[1];
  return isTag(x, NAME) ? x : DAG();
}

}  // namespace

DAG retrieve(const char* base, const char* suffix) {
  std::size_t baseLength = std::strlen(base), suffixLength = std::strlen(suffix);
  if (baseLength + suffixLength >= longestName) return null;
  char text[longestName + 1];
  std::memcpy(text, base, baseLength);
  std::memcpy(text + baseLength, suffix, suffixLength + 1);
  PairAddress pair = srchname(text);
  if (pair != notFound) {
    DAG name = pairValue(pair);
    if (name[1]) return name;
    if (isMissed(name)) return null;
  }
  bool stopped = false;
  if (libraryReader != nullptr &&
      searchDirectories(text, valuenv(ini("libname"), true), BadEntry::endsTheSearch, stopped)) {
    DAG name = assignedName(text);
    return name ? name : null;
  }
  if (!stopped) noteMissed(naminstall(text));
  return null;
}

bool readFromDirectories(const char* text, DAG directories) {
  DAG name = naminstall(text);
  if (isMissed(name)) return false;
  bool stopped;
  if (searchDirectories(text, directories, BadEntry::isAnError, stopped)) return true;
  noteMissed(name);
  return false;
}

DAG evalsysf(const char* base, const char* suffix, DAG arguments) {
  DAG name = retrieve(base, suffix);
  if (name == null)
    KernelException("%1%2: missing system function", naminstall(base), naminstall(suffix));
  return callLibrary(name, DAG(), arguments);
}

DAG evalextf(const char* base, const char* suffix, DAG arguments) {
  DAG name = retrieve(base, suffix);
  return name == null ? null : callLibrary(name, DAG(), arguments);
}

DAG evalextf(const char* base, DAG head, DAG arguments) {
  DAG function = baseName(head);
  if (!function) return null;
  DAG name = retrieve(base, textOf(function));
  return name == null ? null : callLibrary(name, head, arguments);
}

DAG EvalSystemFunction(const char* prefix, DAG function, DAG form, DAG arguments) {
  DAG named = baseName(function);
  if (!named) KernelException("name expected for external function");
  DAG name = retrieve(prefix, textOf(named));
  if (name == null)
    KernelException("%1%2: missing system function", naminstall(prefix), named);
  return callLibrary(name, form, arguments);
}

}  // namespace korel
