#include "JsonUtils.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <span>
#include <vector>

#include "QuillonIO.h"

namespace {

/// Far more than settings and lists of identifiers need, and little enough for a text that is something else
/// altogether: as a document it takes many times its size.
constexpr std::size_t MaxSize = std::size_t{16} << 20;
constexpr int MaxDepth = 64;

constexpr const char* SettingsMember = "Velmora";

[[noreturn]] void ThrowNoJson(const std::string& AFileName, const std::string& AReason) {
  throw EQuillonException("Cannot parse JSON file \"" + AFileName + "\". (" + AReason + ")");
}

std::string TooLarge() { return "The JSON text is larger than " + std::to_string(MaxSize >> 20) + " MiB."; }

/// Where a text ceases to be JSON. The parser's own words quote the text, which may be a secret.
std::string PlaceOfFault(std::string_view AText) {
  try {
    [[maybe_unused]] const auto Parsed = nlohmann::json::parse(AText);
  } catch (const nlohmann::json::parse_error& Error) {
    const std::string_view Before = AText.substr(0, Error.byte > 0 ? Error.byte - 1 : 0);
    const auto Line = std::ranges::count(Before, '\n') + 1;
    const std::size_t Column = Before.size() - (Before.rfind('\n') + 1) + 1;
    return "Line " + std::to_string(Line) + ", column " + std::to_string(Column);
  } catch (const nlohmann::json::out_of_range&) {
    return "A number is too large";
  }
  return "";
}

/// Counted ahead of the parser, which with a callback goes through all neighbours of each object.
bool IsDeeperThan(std::string_view AText, int ALevels) {
  int Level = 0;
  bool IsInString = false;
  for (std::size_t I = 0; I < AText.size() && Level <= ALevels; ++I) {
    const char C = AText[I];
    if (C == '"') {
      IsInString = !IsInString;
    } else if (IsInString) {
      I += C == '\\' ? 1 : 0;
    } else if (C == '[' || C == '{') {
      ++Level;
    } else if (C == ']' || C == '}') {
      --Level;
    }
  }
  return Level > ALevels;
}

std::string ReadText(const std::string& AFileName) {
  TQuillonFileStream Stream(AFileName, fomOpenRead, famShareDenyWrite);
  std::vector<char> Block(std::size_t{64} << 10);
  std::string Text;
  while (const std::size_t Count = Stream.Read(Block)) {
    if (Text.size() + Count > MaxSize) {
      ThrowNoJson(AFileName, TooLarge());
    }
    Text.append(Block.data(), Count);
  }
  return Text;
}

}  // namespace

nlohmann::json TJsonUtils::Parse(std::string_view AText) {
  using TJson = nlohmann::json;
  if (AText.size() > MaxSize) {
    throw EQuillonException(TooLarge());
  }
  if (IsDeeperThan(AText, MaxDepth)) {
    if (!TJson::accept(AText)) {
      return TJson::value_t::discarded;
    }
    throw EQuillonException("The JSON text is nested deeper than " + std::to_string(MaxDepth) + " levels.");
  }
  constexpr bool AllowExceptions = false;
  return TJson::parse(AText, nullptr, AllowExceptions);
}

nlohmann::json TJsonUtils::LoadJson(const std::string& AFileName) {
  const std::string Text = ReadText(AFileName);
  nlohmann::json Document;
  try {
    Document = Parse(Text);
  } catch (const EQuillonException& Error) {
    ThrowNoJson(AFileName, Error.what());
  }
  if (!Document.is_object()) {
    ThrowNoJson(AFileName, Document.is_discarded() ? PlaceOfFault(Text) : "The file holds no JSON object.");
  }
  return Document;
}

nlohmann::json TJsonUtils::LoadSettings(const std::string& AFileName) {
  nlohmann::json Document = LoadJson(AFileName);
  const auto Settings = Document.find(SettingsMember);
  if (Settings == Document.end() || !Settings->is_object()) {
    throw EQuillonFileNotFound("No configuration for \"Velmora\" found in file \"" + AFileName + "\").");
  }
  return std::move(*Settings);
}
