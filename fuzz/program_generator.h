#pragma once
// Random programs of the language, driven by bytes: equal bytes make equal programs, and a change of
// one byte changes the program a little, which is what a fuzzer that learns needs.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace korel::fuzz {

/// The statements that `bytes` stand for, each with its terminator. Most are well formed and do
/// something; some call built-ins with operands that make no sense, some are broken on purpose.
/// None touches files or the system; numbers stay small enough that each ends by itself or when it
/// is interrupted.
std::vector<std::string> programOf(const std::uint8_t* bytes, std::size_t count);

}  // namespace korel::fuzz
