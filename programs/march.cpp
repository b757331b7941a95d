// The archive tool for the shell: looks into library archives and changes them.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "eval/simplify/simplify.h"
#include "library/archive/march.h"
#include "numbers/integer/integer.h"
#include "session/driver.h"
#include "session/statement_reader.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/vocabulary.h"
#include "text/print/message.h"

using namespace korel;

namespace {

constexpr const char* usageText =
    "Usage: march command directory [arguments]\n"
    "Works on the library archive (korel.ind, korel.lib) in a directory.\n\n"
    "  create n                    make an archive with room for about n members\n"
    "  add file member ...         store each file as a new member\n"
    "  update file member ...      replace each member by a file\n"
    "  extract member file ...     copy each member into a file\n"
    "  delete member ...           delete members\n"
    "  list                        members: time of storing, bytes, offset, name\n"
    "  pack                        drop the bytes of replaced and deleted members\n"
    "  reindex                     rebuild the index\n"
    "  gc                          delete objects that no member leads to\n"
    "  t, x, r, d                  short for list, extract, update, delete\n\n"
    "Options in front of the command:\n"
    "  --prefix text               the files' name, in place of \"korel\"\n"
    "  --suffix text               text behind the files' extensions\n"
    "  --help, --version           print and end\n\n"
    "The exit status is 0, 1 when the archive can't be worked on, 2 for a wrong call.\n";

struct ShortName {
  const char *letter, *command;
};
constexpr ShortName shortNames[] = {{"t", "list"}, {"x", "extract"}, {"r", "update"}, {"d", "delete"}};

const char* fullCommand(const char* text) {
  for (ShortName row : shortNames)
    if (std::strcmp(text, row.letter) == 0) return row.command;
  return text;
}

// ---- what the command line says

DAG commandLine;  // EXPSEQ for `March`

void appendArgument(DAG x) {
  commandLine = space_insert(commandLine, lengthOf(commandLine) - 1, 1);
  commandLine[std::int64_t{lengthOf(commandLine)} - 1] = x;
}

// ---- what the tool answers

int status = 0;

void put(void* stream, int c) { std::fputc(c, static_cast<std::FILE*>(stream)); }

// Messages go to the standard error stream; an error makes the status 1.
DAG showMessage(void*, DAG message) {
  if (!isTag(message, FUNCTION)) return null;
  const char* stream = textOf(message[1]);
  DAG arguments = message[2];
  if (std::strcmp(stream, "INTERFACE_WARN") == 0) {
    std::fputs("march: warning: ", stderr);
    expandMessage(copydel(arguments, 0, 1), put, stderr);
    std::fputc('\n', stderr);
  } else if (std::strcmp(stream, "INTERFACE_EXCEPT") == 0 || std::strcmp(stream, "INTERFACE_ERROR") == 0) {
    std::fputs("march: ", stderr);
    expandMessage(arguments, put, stderr);
    std::fputc('\n', stderr);
    status = 1;
  }
  return null;
}

long numberOf(DAG x) { return isInteger(x) && FitIntoWord(x) ? static_cast<long>(LongLongValue(x)) : 0; }

void showMember(DAG row) {
  DAG fields = row[1], date = fields[2][1];
  if (memberCount(date) == 6)
    std::printf("%04ld-%02ld-%02ld %02ld:%02ld:%02ld", numberOf(date[1]), numberOf(date[2]), numberOf(date[3]),
                numberOf(date[4]), numberOf(date[5]), numberOf(date[6]));
  else std::printf("%-19s", "-");
  std::printf(" %9ld %10ld  %s\n", numberOf(fields[4]), numberOf(fields[3]), textOf(fields[1]));
}

void showResult(const char* command, DAG result) {
  if (std::strcmp(command, "list") == 0) {
    DAG members = result[1];
    for (Word i = 1; i < lengthOf(members); ++i) showMember(members[i]);
  } else if (std::strcmp(command, "gc") == 0) {
    std::printf("%ld members, %ld left, %ld bytes freed\n", numberOf(result[1]), numberOf(result[2]),
                numberOf(result[3]));
  } else if (std::strcmp(command, "reindex") == 0) {
    std::printf("%ld members; entries before %ld, now %ld; %ld to %ld in a block\n", numberOf(result[1]),
                numberOf(result[2]), numberOf(result[3]), numberOf(result[4][1]), numberOf(result[4][2]));
  }
}

const char* command = "";

// Runs as a statement does, so that errors are reported through `showMessage`.
DAG runTool() {
  DAG result = March(commandLine);
  showResult(command, result);
  return null;
}

int wrongCall(const char* text) {
  std::fprintf(stderr, "march: %s\n%s", text, usageText);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  const char *prefix = nullptr, *suffix = nullptr;
  int at = 1;
  for (; at < argc && std::strncmp(argv[at], "--", 2) == 0; ++at) {
    if (std::strcmp(argv[at], "--help") == 0) return std::fputs(usageText, stdout), 0;
    if (std::strcmp(argv[at], "--version") == 0) return std::printf("march %s\n", KOREL_VERSION), 0;
    if (at + 1 == argc) return wrongCall("an option lacks its text");
    if (std::strcmp(argv[at], "--prefix") == 0) prefix = argv[++at];
    else if (std::strcmp(argv[at], "--suffix") == 0) suffix = argv[++at];
    else return wrongCall("unknown option");
  }
  if (argc - at < 2) return wrongCall("command and archive directory name required");
  command = fullCommand(argv[at]);
  char program[] = "march", skip[] = "-s", quiet[] = "-q";
  char* switches[] = {program, skip, quiet, nullptr};
  if (const char* message = InitializeKorel(3, switches)) return std::fprintf(stderr, "%s\n", message), 1;
  commandLine = newSequence({naminstall(command), strinstall(argv[at + 1])});
  for (int i = at + 2; i < argc; ++i) {
    char* end;
    long n = std::strtol(argv[i], &end, 10);
    bool isCount =
        std::strcmp(command, "create") == 0 && *argv[i] != 0 && *end == 0 && n >= -999999999 && n <= 999999999;
    appendArgument(isCount ? Newint(static_cast<std::int32_t>(n)) : strinstall(argv[i]));
  }
  if (prefix != nullptr) appendArgument(simpl(new3(EQUATION, naminstall("prefix"), strinstall(prefix))));
  if (suffix != nullptr) appendArgument(simpl(new3(EQUATION, naminstall("suffix"), strinstall(suffix))));
  ReadStatement(runTool, showMessage, nullptr, nullptr);
  Exit(status);
}
