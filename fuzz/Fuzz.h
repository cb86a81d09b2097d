#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "QuillonTypes.h"

/// What the fuzz targets share. A target is a source file of its own that defines Run; it is linked with Fuzzer.cpp,
/// or with Replay.cpp for the tests.
namespace Fuzz {

/// Feeds one input to the target. What is refused with an error of the library's own is no finding; anything else that
/// is raised is one.
void Run(std::string_view AnInput);

/// Ends the process, and so makes a finding of the input, unless the condition holds.
inline void Require(bool AHolds, const std::string& AWhat) {
  if (!AHolds) {
    std::fprintf(stderr, "Finding: %s\n", AWhat.c_str());
    std::abort();
  }
}

/// Requires that two texts are the same; tells the lines from the first difference on.
inline void RequireSame(std::string_view A, std::string_view B, const std::string& AWhat) {
  const auto [Left, Right] = std::mismatch(A.begin(), A.end(), B.begin(), B.end());
  if (Left != A.end() || Right != B.end()) {
    constexpr std::size_t Length = 300;
    const auto Place = static_cast<std::size_t>(Left - A.begin());
    const std::size_t Begin = A.substr(0, Place).rfind('\n') + 1;
    const auto From = [&](std::string_view AText) { return std::string(AText.substr(Begin, Length)); };
    Require(false, AWhat + "\n--- from\n" + From(A) + "\n--- to\n" + From(B));
  }
}

/// Whether a call ends without being refused.
template <class TCall>
bool Accepts(const TCall& ACall) {
  try {
    ACall();
    return true;
  } catch (const EQuillonException&) {
    return false;
  }
}

/// Takes the first line off a text, without its line break.
inline std::string_view TakeLine(std::string_view& AText) {
  const std::string_view Line = AText.substr(0, AText.find('\n'));
  AText.remove_prefix(Line.size() < AText.size() ? Line.size() + 1 : Line.size());
  return Line;
}

inline std::string ReadFile(const std::string& AFileName) {
  std::ostringstream Content;
  Content << std::ifstream(AFileName, std::ios::binary).rdbuf();
  return Content.str();
}

inline void WriteFile(const std::string& AFileName, std::string_view AContent) {
  std::ofstream(AFileName, std::ios::binary) << AContent;
}

}  // namespace Fuzz
