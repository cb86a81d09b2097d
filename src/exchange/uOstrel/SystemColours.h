#pragma once

#include <cstdint>

#include "uPlandaten/Werte.h"

namespace uOstrel {

/// The colour as plain red, green and blue, red in the low byte.
///
/// A negative value names an entry of the display system's own table by its low byte. A program without a display
/// has no such table, so that of a fresh installation of the product's desktop system counts everywhere: the same
/// file gives the same export on every machine. An entry that the table lacks is black.
std::uint32_t ResolveColour(TColor AColour);

}  // namespace uOstrel
