#include <algorithm>
#include <cctype>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>
#include <unistd.h>
#include <vector>

#include "interrupt.h"
#include "known_names.h"
#include "line_editor.h"

#ifdef KOREL_HAVE_LIBEDIT
#include <histedit.h>
#endif

namespace korel {

LineStatus plainLine(const char* prompt, const char*& text, std::size_t& length) {
  static char* line = nullptr;
  static std::size_t room = 0;
  std::fputs(prompt, isatty(STDOUT_FILENO) ? stdout : stderr);
  std::fflush(stdout);
  length = 0;
  for (;;) {
    if (length + 1 >= room) {
      std::size_t larger = room == 0 ? 256 : 2 * room;
      char* grown = static_cast<char*>(std::realloc(line, larger));
      if (grown == nullptr) return LineStatus::end;
      line = grown;
      room = larger;
    }
    if (!waitForInput(STDIN_FILENO)) {
      std::fputs("\n", stdout);
      std::fflush(stdout);
      return LineStatus::interrupted;
    }
    // One byte at a time: what follows the line is left to whoever reads next.
    ssize_t got = read(STDIN_FILENO, line + length, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    if (line[length++] == '\n') break;
  }
  line[length] = '\0';
  text = line;
  return length == 0 ? LineStatus::end : LineStatus::line;
}

#ifdef KOREL_HAVE_LIBEDIT

namespace {

constexpr int keptLines = 1000;

EditLine* editor = nullptr;
History* history = nullptr;
char historyFile[1024];
const char* currentPrompt = "";
bool interrupted = false;
// Characters are those of the user's locale while a line is edited; the kernel works on bytes.
locale_t editingLocale = nullptr;

char* promptOf(EditLine*) { return const_cast<char*>(currentPrompt); }

/// One character from the terminal. In place of libedit's own, which would read on after a signal.
int readCharacter(EditLine*, wchar_t* character) {
  // Set again for each character: libedit's own handler sends the signal to all processes around.
  catchInterrupts();
  std::mbstate_t state{};
  for (;;) {
    if (!waitForInput(STDIN_FILENO)) {
      interrupted = true;
      return -1;
    }
    char byte;
    ssize_t got = read(STDIN_FILENO, &byte, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return 0;
    std::size_t used = std::mbrtowc(character, &byte, 1, &state);
    if (used == static_cast<std::size_t>(-2)) continue;  // the character goes on
    if (used == static_cast<std::size_t>(-1)) {          // no character at all: it is dropped
      state = {};
      continue;
    }
    return 1;
  }
}

locale_t findLocale() {
  locale_t own = newlocale(LC_CTYPE_MASK, "", nullptr);
  if (own != nullptr) {
    locale_t outside = uselocale(own);
    bool wide = MB_CUR_MAX > 1;
    uselocale(outside);
    if (wide) return own;
  }
  locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return utf8 != nullptr ? utf8 : own;
}

void loadHistory() {
  HistEvent event;
  history = history_init();
  if (history == nullptr) return;
  ::history(history, &event, H_SETSIZE, keptLines);
  ::history(history, &event, H_SETUNIQUE, 1);
  el_set(editor, EL_HIST, ::history, history);
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home == '\0') return;
  int length = std::snprintf(historyFile, sizeof historyFile, "%s/.korel_history", home);
  if (length >= static_cast<int>(sizeof historyFile)) historyFile[0] = '\0';
  if (historyFile[0] != '\0') ::history(history, &event, H_LOAD, historyFile);
}

void remember(const char* line) {
  while (std::isspace(static_cast<unsigned char>(*line))) ++line;
  if (history == nullptr || *line == '\0') return;
  HistEvent event;
  ::history(history, &event, H_ENTER, line);
  if (historyFile[0] != '\0') ::history(history, &event, H_SAVE, historyFile);
}

// ---- completion

// What stands in front of the cursor: the beginning of a name, or of a file's name behind a double quote.
struct Beginning {
  std::string text;
  bool isFile;
};
Beginning beginningAt(const LineInfo& line) {
  const std::string before(line.buffer, line.cursor);
  std::size_t quote = before.npos;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (before[i] == '\\' && quote != before.npos) ++i;
    else if (before[i] == '"') quote = quote == before.npos ? i : before.npos;
  }
  if (quote != before.npos) return {before.substr(quote + 1), true};
  std::size_t start = before.size();
  auto isPart = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '/'; };
  while (start > 0 && isPart(before[start - 1])) --start;
  // A slash belongs to a name only between backquotes.
  if (start == 0 || before[start - 1] != '`') {
    const std::size_t slash = before.rfind('/');
    if (slash != before.npos && slash >= start) start = slash + 1;
  }
  return {before.substr(start), false};
}

void listInColumns(const std::vector<std::string>& names) {
  constexpr std::size_t screen = 80;
  std::size_t width = 0;
  for (const std::string& name : names) width = std::max(width, name.size() + 2);
  const std::size_t columns = std::max<std::size_t>(1, screen / width);
  std::fputs("\n", stdout);
  for (std::size_t i = 0; i < names.size(); ++i) {
    const bool ends = (i + 1) % columns == 0 || i + 1 == names.size();
    const int padding = ends ? 0 : static_cast<int>(width);
    std::fprintf(stdout, "%-*s%s", padding, names[i].c_str(), ends ? "\n" : "");
  }
  std::fflush(stdout);
}

// Tab: puts in what all names that begin so go on with; typed twice it lists them.
unsigned char complete(EditLine* lineEditor, int) {
  static std::string lineBefore;  // at the last Tab that added nothing
  const LineInfo* line = el_line(lineEditor);
  const Beginning beginning = beginningAt(*line);
  if (beginning.text.empty() && !beginning.isFile) return CC_REFRESH_BEEP;
  const std::vector<std::string> names =
      beginning.isFile ? filesBeginningWith(beginning.text) : namesBeginningWith(beginning.text);
  if (names.empty()) return CC_REFRESH_BEEP;
  std::size_t common = names.front().size();
  for (const std::string& name : names) {
    std::size_t equal = 0;
    while (equal < common && name[equal] == names.front()[equal]) ++equal;
    common = equal;
  }
  std::string rest = names.front().substr(beginning.text.size(), common - beginning.text.size());
  if (names.size() == 1 && beginning.isFile && names.front().back() != '/') rest += '"';
  if (!rest.empty()) {
    if (el_insertstr(lineEditor, rest.c_str()) != 0) return CC_REFRESH_BEEP;
    line = el_line(lineEditor);
    lineBefore.assign(line->buffer, line->lastchar);
    return CC_REFRESH;
  }
  std::string now(line->buffer, line->lastchar);
  if (names.size() == 1 || now != lineBefore) {
    lineBefore = std::move(now);
    return CC_REFRESH_BEEP;
  }
  listInColumns(names);
  return CC_REDISPLAY;
}

bool startEditor() {
  if (editor != nullptr) return true;
  if (!isatty(STDOUT_FILENO)) return false;
  editor = el_init("korelTTY", stdin, stdout, stderr);
  if (editor == nullptr) return false;
  el_set(editor, EL_PROMPT, promptOf);
  el_set(editor, EL_EDITOR, "emacs");
  el_set(editor, EL_SIGNAL, 1);  // the terminal is put right around Ctrl-Z and at a hang-up
  el_set(editor, EL_GETCFN, readCharacter);
  el_set(editor, EL_ADDFN, "korel-complete", "completes names, and files inside strings", complete);
  el_set(editor, EL_BIND, "^I", "korel-complete", nullptr);
  loadHistory();
  el_source(editor, nullptr);  // the user's own key bindings, ~/.editrc
  return true;
}

}  // namespace

LineStatus editLine(const char* prompt, const char*& text, std::size_t& length) {
  if (editingLocale == nullptr) editingLocale = findLocale();
  locale_t outside = uselocale(editingLocale);
  LineStatus status;
  if (!startEditor()) {
    status = plainLine(prompt, text, length);
  } else {
    std::fflush(stdout);
    currentPrompt = prompt;
    interrupted = false;
    int count = 0;
    const char* line = el_gets(editor, &count);
    catchInterrupts();
    if (line != nullptr && count > 0) {
      text = line;
      length = static_cast<std::size_t>(count);
      remember(line);
      status = LineStatus::line;
    } else {
      std::fputs("\n", stdout);
      std::fflush(stdout);
      status = interrupted ? LineStatus::interrupted : LineStatus::end;
    }
  }
  uselocale(outside);
  return status;
}

void endEditing() {
  if (editor != nullptr) el_set(editor, EL_PREP_TERM, 0);
}

#else

LineStatus editLine(const char* prompt, const char*& text, std::size_t& length) {
  return plainLine(prompt, text, length);
}

void endEditing() {}

#endif

}  // namespace korel
