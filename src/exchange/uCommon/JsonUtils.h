#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "QuillonTypes.h"

/// A file, or a part of it that a job cannot do without, is not there.
class EQuillonFileNotFound : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

class TJsonUtils {
 public:
  TJsonUtils() = delete;

  /// Parses a text from outside (RFC 8259). Whoever walks the result may do so by recursion.
  /// @return a discarded value for a text that is no JSON
  /// @throws EQuillonException for one that is larger, or nested deeper, than any of ours
  static nlohmann::json Parse(std::string_view AText);

  /// Reads a file that holds one JSON object (RFC 8259) in UTF-8, with or without byte order mark.
  /// @throws EQuillonException where the text is none, is nested deeper than a settings file has reason to be, or
  ///         passes the size that one may have; EQuillonFileHandleError where the file cannot be read
  static nlohmann::json LoadJson(const std::string& AFileName);

  /// The settings in a file: the member "Velmora" of its object, which must be an object. Case counts for this name.
  /// @throws EQuillonFileNotFound without such a member, and what LoadJson throws
  static nlohmann::json LoadSettings(const std::string& AFileName);
};
