#pragma once
// The option reader: single letters behind `-`, several to a group, values attached or following.

namespace korel {

extern int moptind;
extern const char* moptarg;
/// Next option letter, or -1 at a non-option, behind `--`, or at the end. An unknown letter or a
/// missing value prints the usage text and ends the process.
int mgetopt(int argc, char** argv, const char* options, const char* programName, const char* rest);
void moptrewind();
/// Prints how the program is called and ends the process with status 1.
[[noreturn]] void usage(const char* programName, const char* options, const char* rest);
/// The table of switches that the terminal programs print below the usage line.
const char* switchTable();

}  // namespace korel
