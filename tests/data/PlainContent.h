#pragma once

#include <array>
#include <sstream>
#include <string>
#include <string_view>

#include "QuillonDataObjects/Storage.h"

/// The document of a storage without the stamps that tell who did something, and when: on another copy that is the
/// time of the playback.
inline std::string PlainContent(const TQuillonDataStorage& AStorage) {
  static constexpr std::array<std::string_view, 5> Stamps = {"<Changed>", "<ChangedBy", "<Created>", "<CreatedBy",
                                                             "<FileVersion"};
  std::string Content;
  std::istringstream Document(AStorage.SaveToXML());
  for (std::string Line; std::getline(Document, Line);) {
    const std::size_t Start = Line.find_first_not_of(' ');
    bool IsStamp = false;
    for (const std::string_view Stamp : Stamps) {
      IsStamp = IsStamp || (Start != std::string::npos && Line.compare(Start, Stamp.size(), Stamp) == 0);
    }
    if (!IsStamp) {
      Content += Line + "\n";
    }
  }
  return Content;
}
