#pragma once
// What the system says about files, as messages.

namespace korel {

/// The message for a value of `errno`; of an operation on directories, if so.
const char* systemErrorText(int error, bool onDirectory = false);
/// Raises the message for `errno`, or for `error`.
[[noreturn]] void raiseSystemError();
[[noreturn]] void raiseSystemError(int error);
[[noreturn]] void raiseDirectoryError();

}  // namespace korel
