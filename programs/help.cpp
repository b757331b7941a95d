#include <cstdio>
#include <cstring>
#include <string>

#include "help.h"
#include "known_names.h"
#include "session/getopt.h"

namespace korel {

namespace {

constexpr const char* startPage =
    "End a statement with `;` to see its value, with `:` not to. Exact numbers and formulas stay exact.\n"
    "  2^100;  7/3 - 1;  factorint(2^67 - 1);     numbers of any size\n"
    "  evalf(Pi, 50);  evalf(sqrt(2));            their values to as many digits as you like\n"
    "  expand((x + 1)^3);  diff(sin(x), x);       formulas\n"
    "  a := 5;  a := 'a';  f := x -> x^2;  f(3);  names, and how to free one; functions\n"
    "  seq(i^2, i = 1..5);  [3, 1, 2];  %;        sequences, lists, the last result\n"
    "?name shows the page about a name, ?topics all subjects, ?lists the names of one.\n"
    "Tab completes what is begun; twice, it lists what there is. The arrow keys bring old lines back.\n"
    "Ctrl-C interrupts the running statement, or drops the one being typed. !command runs a shell command.\n"
    "quit or Ctrl-D ends the session. ?korel shows the switches of the program.\n";

// A text as it is written inside of a string.
std::string escaped(const std::string& text) {
  std::string all;
  for (char c : text) {
    if (c == '"' || c == '\\') all += '\\';
    all += c;
  }
  return all;
}

// The call of the library's `help` for a name, with the names near it, should there be no help.
const char* callOfHelp(const std::string& word) {
  static std::string call;
  std::string near;
  constexpr std::size_t mostNames = 5;
  for (const std::string& name : namesNear(word, mostNames)) near += (near.empty() ? "" : ", ") + name;
  call = "`help`(\"" + escaped(word) + "\", \"" + escaped(near) + "\"):\n";
  return call.c_str();
}

// The word asked for: up to a blank, without quotes around it and without the end of a statement, as long as that
// leaves something.
std::string wordOf(const char* line) {
  std::string word(line + std::strspn(line, " \t"));
  word.resize(std::strcspn(word.c_str(), " \t\r\n"));
  while (word.size() > 1 && (word.back() == ';' || word.back() == '`' || word.back() == '"')) word.pop_back();
  if (word.size() > 1 && (word[0] == '`' || word[0] == '"')) word.erase(0, 1);
  return word == ";" ? "" : word;
}

}  // namespace

const char* showHelp(const char* line) {
  const std::string word = wordOf(line);
  if (word.empty()) {
    std::fputs(startPage, stdout);
  } else if (word == "korel") {
    std::printf("korelTTY [switches] [file]\n%s", switchTable());
  } else {
    return callOfHelp(word);
  }
  return nullptr;
}

}  // namespace korel
