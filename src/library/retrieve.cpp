#include "library/retrieve.h"

#include <cstring>

#include "eval/evaluate/environment_variables.h"
#include "eval/procedures/remember.h"
#include "frame/errors.h"
#include "library/repository/lookup.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

DAG notinlib[notinlibLength];

void deferNames() {
  hashforeach(
      nametab,
      [](void*, PairAddress pair) {
        DAG name = pairValue(pair);
        if (!name[1] && name[2] == null) controlWord(name) |= deferredBit;
        return true;
      },
      nullptr);
}

// ---- names that are missed

namespace {

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

}  // namespace

// ---- the search of the library path

namespace {

constexpr std::size_t longestName = 1087;  // base and suffix together stay below
constexpr std::size_t longestPath = 1024;

// What to do about a member of the library path that is no text.
enum class BadEntry { endsTheSearch, isAnError };

// Asks each of `directories`, one text or an EXPSEQ of texts, for the file of that name. `stopped` when
// an entry ends the search.
bool searchDirectories(const char* text, DAG directories, BadEntry badEntry, bool& stopped) {
  stopped = false;
  directories = asSequence(directories);
  for (Word i = 1; i <= memberCount(directories); ++i) {
    DAG entry = directories[i];
    if (!isText(entry)) {
      if (badEntry == BadEntry::isAnError) KernelException("invalid entry %1 in libname", entry);
      stopped = true;
      return false;
    }
    if (std::strlen(textOf(entry)) + std::strlen(text) + 3 > longestPath)
      KernelException("readlib file name would be longer than %1 characters",
                      immediate(static_cast<std::int32_t>(longestPath)));
    if (readFromDirectory(entry, text, profiledLibrary)) return true;
  }
  return false;
}

}  // namespace

DAG nameInLibrary(const char* base, const char* suffix) {
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
  if (searchDirectories(text, valuenv(ini("libname"), true), BadEntry::endsTheSearch, stopped)) {
    pair = srchname(text);
    return pair != notFound ? pairValue(pair) : null;
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

// ---- readlib

namespace {

DAG libraryDirectories() {
  DAG directories = valuenv(ini("libname"), true);
  if (directories == ini("libname")) KernelException("libname is not assigned\n");
  return directories;
}

}  // namespace

DAG builtin::readlib(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0 || !isName(call.arguments[1])) wrongParameters(call);
  KernelWarning(4, "persistent store makes readlib obsolete");
  DAG name = call.arguments[1];
  DAG key = new2(EXPSEQ, name);
  DAG self = ini("readlib")[1];
  DAG known = srchpc(self, key, -1);
  if (known != absent) return known;
  bool fromLibrary = n == 1;
  DAG directories = fromLibrary ? libraryDirectories() : copysub(call.arguments, 1, n - 1);
  if (!readFromDirectories(textOf(name), directories)) {
    if (fromLibrary) KernelException("could not find `%1` in the library", name);
    KernelException("could not find `%1`", name);
  }
  DAG value = name[1];
  if (!value) KernelException("ineffective readlib of `%1`", name);
  pcinsert(self, key, value, -1);
  return value;
}

}  // namespace korel
