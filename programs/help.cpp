#include <cstdio>
#include <cstring>
#include <string>

#include "help.h"
#include "known_names.h"
#include "session/getopt.h"

namespace korel {

namespace {

constexpr const char* overview =
    "A statement ends with `;`, which shows its result, or with `:`, which doesn't.\n"
    "%  %%  %%%    the last three results\n"
    "x := a        assignment; x := 'x' takes it back\n"
    "# ...         a comment\n"
    "!command      runs a command of the shell\n"
    "?name         help on a reserved word, a procedure or a name; ?korel the switches\n"
    "Ctrl-C        interrupts the running statement, or drops the one being typed\n"
    "quit          ends the session, as Ctrl-D does; quit(n) with exit status n\n";

// Each word leads to the form in which it stands; several words share one form.
struct StatementForm {
  const char* words;  // separated by blanks, one on either end
  const char* form;
};
constexpr StatementForm statementForms[] = {
    {" if then elif else fi ", "if C then S elif C then S ... else S end if"},
    {" for from by to while do od ", "for x from a by b to c while C do S end do"},
    {" in ", "for x in e while C do S end do"},
    {" break next ", "break and next: leave the innermost loop, or go on with its next round"},
    {" proc local global option options description ",
     "proc (parameters) local a, b; global c; option o; description \"text\"; S end proc"},
    {" module export ", "module () local a; export b; S end module"},
    {" return ", "return e: leaves the running procedure with that value"},
    {" error ", "error \"message with %1\", parameter, ...: raises an error"},
    {" try catch finally ", "try S catch \"message\", ...: S finally S end try"},
    {" use ", "use a = b, m:-c in S end use"},
    {" read ", "read \"file\": runs the statements of a file"},
    {" save ", "save a, b, \"file\": writes assignments that give the names their values again"},
    {" quit done stop ", "quit, done, stop: ends the session; quit(n) with exit status n"},
    {" and or not ", "a and b, a or b, not a"},
    {" union minus intersect ", "s union t, s minus t, s intersect t: of sets"},
    {" mod ", "a mod n"},
    {" end ", "end, end if, end do, end proc, ...: closes a statement"},
};

const char* formOf(const char* word) {
  char padded[40];
  if (std::snprintf(padded, sizeof padded, " %s ", word) >= static_cast<int>(sizeof padded)) return nullptr;
  for (const StatementForm& row : statementForms)
    if (std::strstr(row.words, padded) != nullptr) return row.form;
  return nullptr;
}

// The call of the library's `help` for a name, with the names near it, should there be no help.
const char* callOfHelp(const char* word) {
  static std::string call;
  std::string near;
  constexpr std::size_t mostNames = 5;
  for (const std::string& name : namesNear(word, mostNames)) near += (near.empty() ? "" : ", ") + name;
  call = std::string("`help`(\"") + word + "\", \"" + near + "\"):\n";
  return call.c_str();
}

}  // namespace

const char* showHelp(const char* line) {
  char word[128];
  std::size_t start = std::strspn(line, " \t`");
  std::size_t length = std::strcspn(line + start, " \t\r\n`;:\"\\");
  if (length >= sizeof word) length = sizeof word - 1;
  std::memcpy(word, line + start, length);
  word[length] = '\0';

  if (length == 0) {
    std::fputs(overview, stdout);
  } else if (std::strcmp(word, "korel") == 0) {
    std::printf("korelTTY [switches] [file]\n%s", switchTable());
  } else if (const char* form = formOf(word)) {
    std::printf("%s\n", form);
  } else {
    return callOfHelp(word);
  }
  return nullptr;
}

}  // namespace korel
