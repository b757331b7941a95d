#pragma once
// Help lines: `?` and `?name` at the start of a statement.

namespace korel {

/// Writes what is known about the topic (the rest of the line behind the question mark).
void showHelp(const char* topic);

}  // namespace korel
