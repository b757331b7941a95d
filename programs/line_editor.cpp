#include <cctype>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <unistd.h>

#include "interrupt.h"
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

bool startEditor() {
  if (editor != nullptr) return true;
  if (!isatty(STDOUT_FILENO)) return false;
  editor = el_init("korelTTY", stdin, stdout, stderr);
  if (editor == nullptr) return false;
  el_set(editor, EL_PROMPT, promptOf);
  el_set(editor, EL_EDITOR, "emacs");
  el_set(editor, EL_SIGNAL, 1);  // the terminal is put right around Ctrl-Z and at a hang-up
  el_set(editor, EL_GETCFN, readCharacter);
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
