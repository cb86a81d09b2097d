#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What may not be told. A text of somebody else may repeat it in either case, in the notations of JSON, of addresses
/// and of HTML, several of them one within the other, in Latin-1, and in Base64.
class TVELSecrets {
 public:
  /// An empty text is none.
  void Hide(std::string_view ASecret);

  /// The text on one line, of a long one only the begin, with "***" in place of secrets.
  std::string Clean(std::string_view AText) const;

 private:
  struct TSecret {
    std::u32string Plain;
    std::u32string Decoded;
  };

  void Add(std::string_view ASecret);

  std::vector<TSecret> FSecrets;
  std::size_t FLongest = 0;  ///< in bytes
};
