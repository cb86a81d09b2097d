#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "Fuzz.h"
#include "QuillonJson/Parser.h"

namespace {

using TValue = TQuillonJSONOwner<TQuillonJSONValue>;

std::string Bytes(const TQuillonJSONValue& AValue) {
  std::string Result(AValue.EstimatedByteSize(), '\0');
  Result.resize(AValue.ToBytes(Result, 0));
  return Result;
}

TValue Parse(std::string_view AText, bool AnIsUtf8) {
  TValue Value;
  Fuzz::Accepts([&] { Value = QuillonJson::ParseJSONValue(AText, 0, AText.size(), AnIsUtf8); });
  return Value;
}

/// What a parser that knows only the standard makes of a text. A NUL byte counts there as the end of the text.
std::optional<nlohmann::json> Judge(std::string_view AText) {
  if (AText.find('\0') != std::string_view::npos) {
    return std::nullopt;
  }
  nlohmann::json Value = nlohmann::json::parse(AText.begin(), AText.end(), nullptr, false);
  return Value.is_discarded() ? std::nullopt : std::optional(std::move(Value));
}

}  // namespace

/// What parses is written, and parses again to the same tree; what the standard allows parses, to the same values.
void Fuzz::Run(std::string_view AnInput) {
  const std::string_view Text = AnInput.substr(0, AnInput.find_last_not_of(" \t\r\n") + 1);
  for (const bool IsUtf8 : {false, true}) {
    const TValue Value = Parse(Text, IsUtf8);
    const auto Levels =
        std::count_if(Text.begin(), Text.end(), [](char AByte) { return AByte == '[' || AByte == '{'; });
    const auto Judged = IsUtf8 && Levels < QuillonJSONMaxLevels ? Judge(Text) : std::nullopt;
    Require(Value != nullptr || !Judged, "a document of the standard is refused");
    if (Value == nullptr) {
      continue;
    }
    const std::string Written = Bytes(*Value);
    Require(std::all_of(Written.begin(), Written.end(), [](char AByte) { return AByte > 0; }), "not all is ASCII");
    Require(!Judged || Judge(Written) == Judged, "the values are others");
    const TValue Again = Parse(Written, false);
    Require(Again != nullptr, "what was written is refused");
    RequireSame(Written, Bytes(*Again), "the second tree is another");
    RequireSame(Written, Bytes(*Value->Clone()), "the copy is another");
    RequireSame(Value->ToString(), Again->ToString(), "the texts differ");

    TQuillonJSONObject Object;
    const std::int64_t End = Object.Parse(Text, 0, IsUtf8);
    Require(
        (End == static_cast<std::int64_t>(Text.size())) == (dynamic_cast<TQuillonJSONObject*>(Value.get()) != nullptr),
        "an object parses otherwise than a value");
  }
}
