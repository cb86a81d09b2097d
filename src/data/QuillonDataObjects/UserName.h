#pragma once

#include <string>
#include <string_view>

/// Name of a user in the stamps of an object.
/// The same few names stand in every object of a plan, so the text is held once per process and shared.
class TQuillonUserName {
 public:
  TQuillonUserName();
  explicit TQuillonUserName(std::string_view AName);

  const std::string& Text() const { return *FText; }
  friend bool operator==(const TQuillonUserName&, const TQuillonUserName&) = default;

 private:
  const std::string* FText;
};
