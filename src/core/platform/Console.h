#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Platform {

/// Write one line with the platform's line break, past any buffer. Bytes that are no UTF-8 become U+FFFD.
/// @throws EQuillonWin32Error when standard output, or standard error, does not take it
void WriteOutputLine(std::string_view ALine);
void WriteErrorLine(std::string_view ALine);
/// Writes one line to the debug output: standard error where the system has none of its own.
void WriteDebugLine(std::string_view ALine);

/// Standard output and the argument list of this process. One object is made per process, before any file is opened.
class TConsole {
 public:
  /// Makes the process survive a standard output that is closed, full or no longer read: such an output fails in
  /// WriteLine and nowhere else. A closed standard handle is kept from being given to the next file that is opened.
  TConsole();

  /// The arguments behind the program's name, in UTF-8.
  /// @param ACount, AValues what `main` was given
  std::vector<std::string> Arguments(int ACount, const char* const* AValues) const;

  /// As WriteOutputLine.
  void WriteLine(std::string_view ALine) { WriteOutputLine(ALine); }
};

}  // namespace Platform
