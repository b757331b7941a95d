#include "session/options.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iterator>

#include "library/search_path.h"
#include "session/driver.h"
#include "session/getopt.h"
#include "session/interface.h"
#include "session/resource_limits.h"
#include "store/collect/collector.h"
#include "store/generations.h"

namespace korel {

int optnoinit = 0;
int optASSERT = 0;
int optfree = 0;
int optprofile = 0;
bool optionInline = true;
int secureMode = 0;
int printgcstatus = 1;
int logfiles = -1;
char firstlibname[256];
char libraryText[256];
const StartEntry* startList = nullptr;
int startListLength = 0;

namespace {

constexpr const char* libraryTooLong = "korel: library names too long";
StartEntry* startEntries = nullptr;

/// The whole of `text` as a number from `low` to `high`.
bool numberIn(const char* text, long low, long high, long& value) {
  char* end;
  errno = 0;
  value = std::strtol(text, &end, 10);
  return end != text && *end == '\0' && errno == 0 && value >= low && value <= high;
}

const char* setLevel(const char* text, int high, int& target, const char* message) {
  long value;
  if (!numberIn(text, 0, high, value)) return message;
  target = static_cast<int>(value);
  return nullptr;
}

const char* setLibraries(const char* list) {
  char text[sizeof libraryText] = "";
  char item[pathBufferSize];
  bool first = true;
  while (true) {
    std::size_t length = std::strcspn(list, ",;");
    if (length >= sizeof item) return libraryTooLong;
    std::memcpy(item, list, length);
    item[length] = '\0';
    const char* directory = FullyQualifyDir(item);
    std::size_t used = std::strlen(text);
    if (used + std::strlen(directory) + 1 >= sizeof text) return libraryTooLong;
    std::sprintf(text + used, "%s%s", first ? "" : ",", directory);
    if (first) std::strcpy(firstlibname, directory);
    first = false;
    list += length;
    if (*list == '\0') break;
    ++list;
  }
  std::strcpy(libraryText, text);
  return nullptr;
}

const char* setCollection(const char* text) {
  long words;
  if (!numberIn(text, 1, 99999999, words)) return "korel: gc increment out of range";
  setCollectionInterval(words);
  nextgc = words;
  incrgen = 3 * words / 2048;
  return nullptr;
}

const char* openLibraryLog(const char* path) {
  logfiles = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0666);
  return logfiles < 0 ? "korel: could not open log file" : nullptr;
}

const char* setTestMode(const char*) {
  printgcstatus = 0;
  std::strcpy(defaultNerinVariables.prompt, "#-->");
  defaultNerinVariables.noStatus = 1;
  defaultNerinVariables.echo = 0;
  return nullptr;
}

struct LimitPosition {
  ProcessLimit limit;
  long unit;   // of the switch, in those of the system
  long least;  // 0: any
  const char* message;
};
constexpr LimitPosition limitPositions[] = {
    // limit              unit  least  message below it
    {ProcessLimit::cpu, 1, 0, nullptr},
    {ProcessLimit::data, 1024, 1024, "korel: data size must be at least 1024k"},
    {ProcessLimit::stack, 1024, 64, "korel: stack size must be at least 64k"},
    {ProcessLimit::core, 1024, 0, nullptr},
};

const char* setLimits(const char* text) {
  constexpr const char* badLimit = "korel: test limits must be nonnegative integers";
  int entries = 1;
  for (const char* at = text; *at != '\0'; ++at) entries += *at == ',';
  if (entries > static_cast<int>(std::size(limitPositions))) return "korel: too many arguments for test limit";
  for (const LimitPosition& position : limitPositions) {
    const std::size_t length = std::strcspn(text, ",");
    char entry[24] = "0";  // an empty one sets no limit
    if (length >= sizeof entry) return badLimit;
    if (length != 0) std::sprintf(entry, "%.*s", static_cast<int>(length), text);
    long value;
    if (!numberIn(entry, 0, LONG_MAX / position.unit, value)) return badLimit;
    if (value != 0) {
      if (position.message != nullptr && value < position.least) return position.message;
      setProcessLimit(position.limit, value * position.unit);
    }
    text += length;
    if (*text == '\0') break;
    ++text;
  }
  return nullptr;
}

/// Room for one entry an argument, which is more than there can be.
const char* addStartEntry(int argc, const char* text, char letter) {
  if (startEntries == nullptr) {
    startEntries = static_cast<StartEntry*>(std::malloc(static_cast<std::size_t>(argc) * sizeof(StartEntry)));
    if (startEntries == nullptr) return "korel: out of memory";
    startList = startEntries;
  }
  startEntries[startListLength++] = {text, letter};
  return nullptr;
}

const char* keepFlag(int& flag) {
  flag = 1;
  return nullptr;
}

struct OptionRow {
  char letter;
  const char* (*set)(const char* value);
};
constexpr OptionRow optionRows[] = {
    // letter  effect
    {'a', [](const char*) { return keepFlag(optASSERT); }},
    {'A',
     [](const char* v) {
       return setLevel(v, 2, optASSERT, "korel: assertion level must be 0, 1, or 2");
     }},
    {'b', setLibraries},
    {'e',
     [](const char* v) {
       return setLevel(v, 2, defaultNerinVariables.errorbreak,
                       "korel: error break level must be 0, 1, or 2");
     }},
    {'g', setCollection},
    {'L', openLibraryLog},
    {'q', [](const char*) { return keepFlag(defaultNerinVariables.quiet); }},
    {'s', [](const char*) { return keepFlag(optnoinit); }},
    {'t', setTestMode},
    {'T', setLimits},
    {'w',
     [](const char* v) {
       return setLevel(v, 4, defaultNerinVariables.warnlevel,
                       "korel: warning level must be from 0 to 4");
     }},
    {'z', [](const char*) { return keepFlag(secureMode); }},
};
}  // namespace

// -D, -F, -I, -l, -P and -U are taken and left to the program around the kernel.
const char* const optionLetters = "aA:b:c:D:e:Fg:I:i:L:l:PqsT:tU:w:z";

const char* findLibrary() {
  const char* home = std::getenv("KOREL");
  int length = std::snprintf(libraryText, sizeof libraryText, "%s/lib", home != nullptr ? home : "/usr/local/korel");
  if (length >= static_cast<int>(sizeof libraryText)) return libraryTooLong;
  std::strcpy(firstlibname, libraryText);
  return nullptr;
}

const char* readOptions(int argc, char** argv) {
  const char* programName = argc > 0 ? argv[0] : "korel";
  if (const char* slash = std::strrchr(programName, '/')) programName = slash + 1;
  // The kernel process takes no operand; a terminal program reads a file.
  const char* rest = std::strcmp(programName, "korelTTY") == 0 ? " [file]" : "";
  std::free(startEntries);
  startEntries = nullptr;
  startList = nullptr;
  startListLength = 0;
  moptrewind();
  int letter;
  while ((letter = mgetopt(argc, argv, optionLetters, programName, rest)) != -1) {
    const char* message = nullptr;
    if (letter == 'c' || letter == 'i') message = addStartEntry(argc, moptarg, static_cast<char>(letter));
    for (const OptionRow& row : optionRows)
      if (row.letter == letter) message = row.set(moptarg);
    if (message != nullptr) return message;
  }
  return nullptr;
}

}  // namespace korel
