#include "help.h"

#include <cctype>
#include <cstdio>
#include <cstring>

#include "eval/builtins.h"
#include "store/standard_names.h"
#include "text/tokens.h"

namespace korel {

namespace {

constexpr const char overview[] =
    "Statements end in ; (the value is shown) or : (it is not) and may span lines.\n"
    "  x := 3;   2^100;   for i to 3 do i^2 od;   f := proc(n) n + 1 end;\n"
    "  %, %%, %%%   the last three values      # ...      a comment\n"
    "  ?name        what name is               !command   runs a shell command\n"
    "  Ctrl-C       interrupts                 quit       ends the session (also Ctrl-D)\n";

bool isBuiltin(const char* name) {
  for (int k = firstBuiltin; k <= lastBuiltin; ++k)
    if (inistrings[k] == name) return true;
  return false;
}

}  // namespace

void showHelp(const char* topic) {
  char name[128];
  while (std::isspace(static_cast<unsigned char>(*topic)) != 0) ++topic;
  std::size_t n = std::strcspn(topic, " \t\r\n;");
  if (n >= sizeof name) n = sizeof name - 1;
  std::memcpy(name, topic, n);
  name[n] = 0;
  if (n == 0)
    std::fputs(overview, stdout);
  else if (KeyWordToToken(name) != 0)
    std::printf("`%s` is a reserved word of the language.\n", name);
  else if (isBuiltin(name))
    std::printf("`%s` is a built-in procedure.\n", name);
  else
    std::printf("There is no help about `%s`. Type ? for an overview.\n", name);
  std::fflush(stdout);
}

}  // namespace korel
