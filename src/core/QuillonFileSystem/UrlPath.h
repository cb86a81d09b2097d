#pragma once

#include <string>
#include <string_view>

/// Paths of addresses: the like of TQuillonFilePath, with "/" on every system.
class TQuillonUrlPath {
 public:
  TQuillonUrlPath() = delete;

  /// Both with one "/" between; one of them alone where the other is empty.
  static std::string Combine(std::string_view APath1, std::string_view APath2);
  /// Every byte as "%C3" but the letters and digits of ASCII and "-._~", and "/", which parts the path (RFC 3986).
  static std::string Encode(std::string_view APath);
  static std::string RemoveTrailingFilePathDelimiter(std::string_view APath);
};
