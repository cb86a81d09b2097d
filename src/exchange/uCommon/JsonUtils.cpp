#include "JsonUtils.h"

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

[[noreturn]] void ThrowNoJson(const std::string& AFileName) {
  throw EQuillonException("Cannot parse JSON file \"" + AFileName + "\".");
}

std::string ReadText(const std::string& AFileName) {
  TQuillonFileStream Stream(AFileName, fomOpenRead, famShareDenyWrite);
  std::vector<char> Block(std::size_t{64} << 10);
  std::string Text;
  while (const std::size_t Count = Stream.Read(Block)) {
    if (Text.size() + Count > MaxSize) {
      ThrowNoJson(AFileName);
    }
    Text.append(Block.data(), Count);
  }
  return Text;
}

}  // namespace

nlohmann::json TJsonUtils::Parse(std::string_view AText) {
  using TJson = nlohmann::json;
  if (AText.size() > MaxSize) {
    throw EQuillonException("The JSON text is larger than " + std::to_string(MaxSize >> 20) + " MiB.");
  }
  bool IsTooDeep = false;
  const auto CheckDepth = [&IsTooDeep](int ADepth, TJson::parse_event_t, const TJson&) {
    IsTooDeep = IsTooDeep || ADepth > MaxDepth;
    return !IsTooDeep;
  };
  constexpr bool AllowExceptions = false;
  TJson Document = TJson::parse(AText, CheckDepth, AllowExceptions);
  if (IsTooDeep && !Document.is_discarded()) {
    throw EQuillonException("The JSON text is nested deeper than " + std::to_string(MaxDepth) + " levels.");
  }
  return Document;
}

nlohmann::json TJsonUtils::LoadJson(const std::string& AFileName) {
  const std::string Text = ReadText(AFileName);
  nlohmann::json Document;
  try {
    Document = Parse(Text);
  } catch (const EQuillonException&) {
    ThrowNoJson(AFileName);
  }
  if (!Document.is_object()) {
    ThrowNoJson(AFileName);
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
