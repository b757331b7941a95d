#include "session/getopt.h"

#include <cstdio>
#include <cstring>

#include "session/driver.h"

namespace korel {

int moptind = 1;
const char* moptarg = nullptr;

namespace {

// Inside an option group: the next letter, or null between arguments.
const char* groupPosition = nullptr;

struct SwitchRow {
  const char* option;
  const char* text;
};
constexpr SwitchRow switchRows[] = {
    // option                   text
    {"-a", "turn on Assertions (equivalent to -A 1)"},
    {"-A n", "Assertion level (0, 1, or 2)"},
    {"-b dir[,dir...]", "liBrary directories"},
    {"-D name[=value]", "Define preprocessor macro"},
    {"-e n", "Errorbreak level (0, 1, or 2)"},
    {"-F", "non-Filter mode (don't exit on EOF)"},
    {"-g n", "Garbage collection interval (in bytes)"},
    {"-i file", "read Initialization file during startup"},
    {"-L file", "Log library reads to file"},
    {"-l option", "LaTeX filter option (see -l h for help)"},
    {"-N dir[,dir...]", "specify preprocessor iNclude directories"},
    {"-P", "Parse only; do not execute commands"},
    {"-q", "Quiet mode; do not display prompts or echo input"},
    {"-s", "Skip initialization files"},
    {"-t", "Test mode (special prompts, no bytes-used messages)"},
    {"-T cpu,data,stack,core", "resource limiTs (in seconds and kBytes)"},
    {"-U name", "Undefine preprocessor macro"},
    {"-w n", "Warning level (0 to 4)"},
    {"-z", "secure mode; disables some commands"},
};
constexpr const char* switchTrailer =
    "Some options may be disabled, modified, or otherwise preprocessed\n"
    "by the script your system administrator has set up to run Korel.\n"
    "Please see the help page ?korel for more details on options.\n";

constexpr int textColumn = 24;  // where the longest option still leaves room for a tab
constexpr int tabWidth = 8;

bool takesValue(const char* options, const char* letter) {
  return letter[1] == ':' && letter != options + std::strlen(options);
}

}  // namespace

void moptrewind() {
  moptind = 1;
  groupPosition = nullptr;
}

const char* switchTable() {
  static char table[2048];
  if (table[0] != '\0') return table;
  char* at = table;
  for (const SwitchRow& row : switchRows) {
    at += std::sprintf(at, "%s", row.option);
    int column = static_cast<int>(std::strlen(row.option));
    for (; column < textColumn; column += tabWidth - column % tabWidth) *at++ = '\t';
    at += std::sprintf(at, "%s\n", row.text);
  }
  std::sprintf(at, "%s", switchTrailer);
  return table;
}

void usage(const char* programName, const char* options, const char* rest) {
  std::fprintf(stderr, "Usage: %s", programName);
  char plain[64];
  int count = 0;
  for (const char* at = options; *at != '\0'; ++at)
    if (*at != ':' && !takesValue(options, at) && count < 63) plain[count++] = *at;
  plain[count] = '\0';
  if (count > 0) std::fprintf(stderr, " [-%s]", plain);
  for (const char* at = options; *at != '\0'; ++at)
    if (*at != ':' && takesValue(options, at)) std::fprintf(stderr, " [-%c...]", *at);
  std::fprintf(stderr, "%s\n", rest);
  if (std::strcmp(programName, "korelTTY") == 0 || std::strcmp(programName, "ckorel") == 0)
    std::fprintf(stderr, "%s", switchTable());
  Exit(1);
}

int mgetopt(int argc, char** argv, const char* options, const char* programName, const char* rest) {
  if (groupPosition == nullptr) {
    if (moptind >= argc) return -1;
    const char* argument = argv[moptind];
    if (argument[0] != '-' || argument[1] == '\0') return -1;
    if (std::strcmp(argument, "--") == 0) {
      ++moptind;
      return -1;
    }
    groupPosition = argument + 1;
  }
  char letter = *groupPosition++;
  const char* known = letter == ':' ? nullptr : std::strchr(options, letter);
  if (known == nullptr) usage(programName, options, rest);
  moptarg = nullptr;
  if (*groupPosition == '\0') {
    groupPosition = nullptr;
    ++moptind;
  }
  if (!takesValue(options, known)) return letter;
  if (groupPosition != nullptr) {  // attached
    moptarg = groupPosition;
    groupPosition = nullptr;
    ++moptind;
  } else if (moptind < argc) {
    moptarg = argv[moptind++];
  } else {
    usage(programName, options, rest);
  }
  return letter;
}

}  // namespace korel
