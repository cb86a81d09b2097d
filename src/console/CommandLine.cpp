#include "CommandLine.h"

#include <algorithm>
#include <utility>

#include "QuillonText.h"

TCommandLine::TCommandLine(std::vector<std::string> AnArguments, bool APathsBeginWithSlash)
    : FArguments(std::move(AnArguments)), FPathsBeginWithSlash(APathsBeginWithSlash) {}

std::optional<std::string_view> TCommandLine::Command() const {
  return FArguments.empty() ? std::nullopt : std::optional<std::string_view>(FArguments.front());
}

bool TCommandLine::IsSwitch(std::string_view AnArgument) const {
  if (AnArgument.empty() || (AnArgument.front() != '-' && AnArgument.front() != '/')) {
    return false;
  }
  const auto NextMark = AnArgument.find_first_of("/:", 1);
  const bool IsPath = FPathsBeginWithSlash && AnArgument.front() == '/' && NextMark != std::string_view::npos &&
                      AnArgument[NextMark] == '/';
  return !IsPath;
}

bool TCommandLine::FindOption(std::string_view AName, std::string& AValue) const {
  AValue.clear();
  const auto Found = std::find_if(FArguments.begin(), FArguments.end(), [&](std::string_view AnArgument) {
    return IsSwitch(AnArgument) && QuillonText::EqualsIgnoreCase(AnArgument.substr(1, AName.size()), AName);
  });
  if (Found == FArguments.end()) {
    return false;
  }
  std::string_view Appended = *Found;
  Appended.remove_prefix(1 + AName.size());
  if (!Appended.empty()) {
    Appended.remove_prefix(Appended.front() == ':' ? 1 : 0);
    AValue = Appended;
  } else if (const auto Next = std::next(Found); Next != FArguments.end() && !IsSwitch(*Next)) {
    AValue = *Next;
  }
  return true;
}

bool TCommandLine::FindSwitch(std::string_view AName) const {
  return std::any_of(FArguments.begin(), FArguments.end(), [&](std::string_view AnArgument) {
    return IsSwitch(AnArgument) && QuillonText::EqualsIgnoreCase(AnArgument.substr(1), AName);
  });
}
