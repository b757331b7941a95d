#pragma once
// Settings of an rtable on the way between C and the kernel.

#include <cstdint>
#include <korelshlib.h>

#include "rtable/rtable_settings.h"

namespace korel::vector {

/// Errors: "Bad settings pointer"; "too many or too few dimensions for rtable" for more than there may be.
RTableSettings settingsFromC(const ::RTableSettings* s);
void settingsToC(const RTableSettings& settings, ::RTableSettings* s);
/// Bounds of `n` dimensions as the kernel keeps them. Error: "integer dimensions required".
void boundsFromC(const M_INT* bounds, Word n, std::int32_t* result);

}  // namespace korel::vector
