#include "uOstrel/SystemColours.h"

#include <array>

namespace {

constexpr std::uint32_t Rgb(std::uint32_t ARedGreenBlue) {
  return ((ARedGreenBlue & 0xFF) << 16) | (ARedGreenBlue & 0xFF00) | (ARedGreenBlue >> 16);
}

/// By index, as the display system numbers them.
constexpr std::array<std::uint32_t, 31> SystemTable = {
    Rgb(0xC8C8C8),  // scroll bar
    Rgb(0x000000),  // desktop
    Rgb(0x99B4D1),  // active caption
    Rgb(0xBFCDDB),  // inactive caption
    Rgb(0xF0F0F0),  // menu
    Rgb(0xFFFFFF),  // window
    Rgb(0x646464),  // window frame
    Rgb(0x000000),  // menu text
    Rgb(0x000000),  // window text
    Rgb(0x000000),  // caption text
    Rgb(0xB4B4B4),  // active border
    Rgb(0xF4F7FC),  // inactive border
    Rgb(0xABABAB),  // application workspace
    Rgb(0x0078D7),  // highlight
    Rgb(0xFFFFFF),  // highlighted text
    Rgb(0xF0F0F0),  // button face
    Rgb(0xA0A0A0),  // button shadow
    Rgb(0x6D6D6D),  // grey text
    Rgb(0x000000),  // button text
    Rgb(0x000000),  // inactive caption text
    Rgb(0xFFFFFF),  // button highlight
    Rgb(0x696969),  // dark shadow of three-dimensional elements
    Rgb(0xE3E3E3),  // light edge of three-dimensional elements
    Rgb(0x000000),  // tooltip text
    Rgb(0xFFFFE1),  // tooltip
    Rgb(0x000000),  // without a meaning
    Rgb(0x0066CC),  // hot-tracked item
    Rgb(0xB9D1EA),  // right end of an active caption's gradient
    Rgb(0xD7E4F2),  // right end of an inactive caption's gradient
    Rgb(0x3399FF),  // highlighted menu item
    Rgb(0xF0F0F0),  // menu bar
};

}  // namespace

namespace uOstrel {

std::uint32_t ResolveColour(TColor AColour) {
  const auto Value = static_cast<std::uint32_t>(AColour);
  if (AColour >= 0) {
    return Value & 0xFFFFFF;
  }
  const std::uint32_t Index = Value & 0xFF;
  return Index < SystemTable.size() ? SystemTable[Index] : 0;
}

}  // namespace uOstrel
