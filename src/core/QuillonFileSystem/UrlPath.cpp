#include "QuillonFileSystem/UrlPath.h"

#include <algorithm>

std::string TQuillonUrlPath::Combine(std::string_view APath1, std::string_view APath2) {
  if (APath1.empty() || APath2.empty()) {
    return std::string(APath1.empty() ? APath2 : APath1);
  }
  APath2.remove_prefix(std::min(APath2.find_first_not_of('/'), APath2.size()));
  return RemoveTrailingFilePathDelimiter(APath1).append("/").append(APath2);
}

std::string TQuillonUrlPath::Encode(std::string_view APath) {
  constexpr std::string_view Plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  constexpr std::string_view Digits = "0123456789ABCDEF";
  std::string Result;
  for (const char Char : APath) {
    if (Plain.find(Char) != std::string_view::npos) {
      Result.push_back(Char);
      continue;
    }
    const auto Byte = static_cast<unsigned char>(Char);
    Result.append({'%', Digits[Byte / 16U], Digits[Byte % 16U]});
  }
  return Result;
}

std::string TQuillonUrlPath::RemoveTrailingFilePathDelimiter(std::string_view APath) {
  return std::string(APath.substr(0, APath.find_last_not_of('/') + 1));
}
