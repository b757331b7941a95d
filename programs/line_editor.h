#pragma once
// Lines typed at a terminal, with editing and a history that outlives the session.
//
// Built with libedit lines can be edited and recalled; without it the terminal's own line editing
// has to do. The history lies in `$HOME/.korel_history`, and each line is saved as it is entered,
// so that a session which ends badly loses nothing.

#include <cstddef>

namespace korel {

enum class LineStatus {
  line,         // a line, its newline included
  interrupted,  // Ctrl-C: what was typed is dropped
  end,          // Ctrl-D on an empty line, or the terminal has gone
};

/// Shows `prompt` and reads a line. `text` stays valid until the next call.
LineStatus editLine(const char* prompt, const char*& text, std::size_t& length);

/// The program ends, maybe within a line: the terminal is as it was.
void endEditing();

/// Reads a line without editing and history: what a running program asks its user for.
LineStatus plainLine(const char* prompt, const char*& text, std::size_t& length);

}  // namespace korel
