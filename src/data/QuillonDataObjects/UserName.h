#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Name of a user in the stamps of an object.
/// The same few names stand in every object of a plan, so the text is held once per process and known by a number.
class TQuillonUserName {
 public:
  TQuillonUserName() = default;
  explicit TQuillonUserName(std::string_view AName);

  const std::string& Text() const;
  friend bool operator==(const TQuillonUserName&, const TQuillonUserName&) = default;

 private:
  std::uint32_t FNumber = 0;  ///< 0 for no name
};
