#include "QuillonJson/Parser.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::uint32_t FirstLead = 0xD800;
constexpr std::uint32_t FirstTrail = 0xDC00;
constexpr std::uint32_t FirstPastTrail = 0xE000;

bool IsDigit(char AByte) { return AByte >= '0' && AByte <= '9'; }

}  // namespace

std::int64_t TQuillonJSONParser::Failure() const { return std::min<std::int64_t>(-Position(), -1); }

void TQuillonJSONParser::SkipBlanks() {
  constexpr std::string_view Blanks = "\t\n\r ";
  while (!FReader.Empty() && Blanks.find(FReader.PeekByte()) != std::string_view::npos) {
    FReader.ConsumeByte();
  }
}

bool TQuillonJSONParser::NextIs(char AByte) { return !FReader.Empty() && FReader.PeekByte() == AByte; }

bool TQuillonJSONParser::Take(char AByte) {
  if (!NextIs(AByte)) {
    return false;
  }
  FReader.ConsumeByte();
  return true;
}

std::int64_t TQuillonJSONParser::ParseValue(TQuillonJSONOwner<TQuillonJSONValue>& AResult) {
  SkipBlanks();
  if (FReader.Empty()) {
    return Failure();
  }
  const auto Fill = [&AResult](auto ANode, auto AParse) {
    const std::int64_t End = AParse(*ANode);
    AResult = std::move(ANode);
    return End;
  };
  switch (FReader.PeekByte()) {
    case '"':
      return Fill(std::make_unique<TQuillonJSONString>(), [this](auto& ANode) { return ParseString(ANode); });
    case '[':
      return Fill(std::make_unique<TQuillonJSONArray>(), [this](auto& ANode) { return ParseArray(ANode); });
    case '{':
      return Fill(std::make_unique<TQuillonJSONObject>(), [this](auto& ANode) { return ParseObject(ANode); });
    case 't':
    case 'f':
    case 'n':
      return ParseWord(AResult);
    default:
      return ParseNumber(AResult);
  }
}

std::int64_t TQuillonJSONParser::ParseObject(TQuillonJSONObject& AResult) {
  SkipBlanks();
  if (FLevel == QuillonJSONMaxLevels || !Take('{')) {
    return Failure();
  }
  ++FLevel;
  SkipBlanks();
  if (!NextIs('}')) {
    do {
      if (const std::int64_t End = ParsePair(AResult); End < 0) {
        return End;
      }
      SkipBlanks();
    } while (Take(','));
  }
  --FLevel;
  return Take('}') ? Position() : Failure();
}

std::int64_t TQuillonJSONParser::ParsePair(TQuillonJSONObject& AResult) {
  SkipBlanks();
  auto Pair = std::make_unique<TQuillonJSONPair>(std::string(), TQuillonJSONOwner<TQuillonJSONValue>());
  if (!NextIs('"')) {
    return Failure();
  }
  if (const std::int64_t End = ParseString(Pair->FJsonString); End < 0) {
    return End;
  }
  SkipBlanks();
  if (!Take(':')) {
    return Failure();
  }
  const std::int64_t End = ParseValue(Pair->FJsonValue);
  AResult.FMembers.push_back(std::move(Pair));
  return End;
}

std::int64_t TQuillonJSONParser::ParseArray(TQuillonJSONArray& AResult) {
  if (FLevel == QuillonJSONMaxLevels || !Take('[')) {
    return Failure();
  }
  ++FLevel;
  SkipBlanks();
  while (!NextIs(']')) {
    TQuillonJSONOwner<TQuillonJSONValue> Element;
    if (const std::int64_t End = ParseValue(Element); End < 0) {
      return End;
    }
    AResult.AddElement(std::move(Element));
    SkipBlanks();
    // A comma may stand ahead of the bracket, too.
    if (!Take(',')) {
      break;
    }
    SkipBlanks();
  }
  --FLevel;
  return Take(']') ? Position() : Failure();
}

std::int64_t TQuillonJSONParser::ParseString(TQuillonJSONString& AResult) {
  AResult.Clear();
  FReader.ConsumeByte();
  for (;;) {
    if (FReader.Empty()) {
      return Failure();
    }
    if (FReader.PeekByte() == '\\') {
      if (!ParseEscape(AResult)) {
        return Failure();
      }
      continue;
    }
    EndSurrogate(AResult);
    const char Byte = FReader.ConsumeByte();
    if (Byte == '"') {
      return Position();
    }
    AResult.AddChar(static_cast<std::uint8_t>(Byte));
  }
}

bool TQuillonJSONParser::ParseEscape(TQuillonJSONString& AResult) {
  constexpr std::string_view Letters = "\"\\/bfnrt";
  constexpr std::string_view Escaped = "\"\\/\b\f\n\r\t";
  FReader.ConsumeByte();
  if (Take('u')) {
    std::uint32_t Unit = 0;
    if (!ParseUnit(Unit)) {
      return false;
    }
    const bool IsTrail = Unit >= FirstTrail && Unit < FirstPastTrail;
    if (FLead != 0 && IsTrail) {
      constexpr std::uint32_t FirstPastUnit = 0x10000;
      constexpr std::uint32_t Half = 0x400;
      AResult.AddChar(FirstPastUnit + (FLead - FirstLead) * Half + (Unit - FirstTrail));
      FLead = 0;
      return true;
    }
    EndSurrogate(AResult);
    if (Unit >= FirstLead && Unit < FirstTrail) {
      FLead = Unit;
    } else {
      AResult.AddChar(Unit);
    }
    return true;
  }
  const std::size_t Found = FReader.Empty() ? std::string_view::npos : Letters.find(FReader.PeekByte());
  if (Found == std::string_view::npos) {
    return false;
  }
  EndSurrogate(AResult);
  FReader.ConsumeByte();
  AResult.AddChar(static_cast<std::uint8_t>(Escaped[Found]));
  return true;
}

bool TQuillonJSONParser::ParseUnit(std::uint32_t& AResult) {
  constexpr std::string_view Digits = "0123456789abcdef";
  constexpr std::uint32_t Base = 16;
  for (int Index = 0; Index < 4; ++Index) {
    if (FReader.Empty()) {
      return false;
    }
    const char Byte = FReader.PeekByte();
    const std::size_t Digit = Digits.find(Byte >= 'A' && Byte <= 'F' ? static_cast<char>(Byte - 'A' + 'a') : Byte);
    if (Digit == std::string_view::npos) {
      return false;
    }
    FReader.ConsumeByte();
    AResult = AResult * Base + static_cast<std::uint32_t>(Digit);
  }
  return true;
}

/// Half a pair alone is no character: AddChar puts the replacement in its place.
void TQuillonJSONParser::EndSurrogate(TQuillonJSONString& AResult) {
  if (FLead != 0) {
    AResult.AddChar(FLead);
    FLead = 0;
  }
}

std::int64_t TQuillonJSONParser::ParseNumber(TQuillonJSONOwner<TQuillonJSONValue>& AResult) {
  std::string Digits;
  const auto TakeInto = [this, &Digits](char AByte) {
    const bool Taken = Take(AByte);
    Digits.append(Taken ? 1 : 0, AByte);
    return Taken;
  };
  TakeInto('-');
  if (TakeInto('0')) {
    if (!FReader.Empty() && IsDigit(FReader.PeekByte())) {
      return Failure();
    }
  } else if (!TakeDigits(Digits)) {
    return Failure();
  }
  if (TakeInto('.') && !TakeDigits(Digits)) {
    return Failure();
  }
  if (TakeInto('e') || TakeInto('E')) {
    if (!TakeInto('+')) {
      TakeInto('-');
    }
    if (!TakeDigits(Digits)) {
      return Failure();
    }
  }
  AResult = std::make_unique<TQuillonJSONNumber>(std::move(Digits));
  return Position();
}

bool TQuillonJSONParser::TakeDigits(std::string& ADigits) {
  const std::size_t Before = ADigits.size();
  while (!FReader.Empty() && IsDigit(FReader.PeekByte())) {
    ADigits.push_back(FReader.ConsumeByte());
  }
  return ADigits.size() > Before;
}

std::int64_t TQuillonJSONParser::ParseWord(TQuillonJSONOwner<TQuillonJSONValue>& AResult) {
  const char First = FReader.PeekByte();
  const std::string_view Word = First == 't' ? "true" : First == 'f' ? "false" : "null";
  for (const char Byte : Word) {
    if (!Take(Byte)) {
      return Failure();
    }
  }
  if (First == 'n') {
    AResult = std::make_unique<TQuillonJSONNull>();
  } else {
    AResult = QuillonJson::NewValue(First == 't');
  }
  return Position();
}

namespace QuillonJson {

TQuillonJSONOwner<TQuillonJSONValue> ParseJSONValue(std::string_view AData, std::size_t AnOffset, std::size_t ACount,
                                                    bool AnIsUtf8) {
  if (AnOffset > AData.size() || ACount > AData.size() - AnOffset) {
    return nullptr;
  }
  const std::size_t Range = AnOffset + ACount;
  TQuillonJSONByteReader Reader(AData, AnOffset, Range, AnIsUtf8);
  TQuillonJSONOwner<TQuillonJSONValue> Result;
  const std::int64_t End = TQuillonJSONParser(Reader).ParseValue(Result);
  return End == static_cast<std::int64_t>(Range) ? std::move(Result) : nullptr;
}

TQuillonJSONOwner<TQuillonJSONValue> ParseJSONValue(std::string_view AText) {
  return ParseJSONValue(AText, 0, AText.size(), true);
}

}  // namespace QuillonJson

std::int64_t TQuillonJSONObject::Parse(std::string_view AData, std::int64_t APos, bool AnIsUtf8) {
  return Parse(AData, APos, static_cast<std::int64_t>(AData.size()) - APos, AnIsUtf8);
}

std::int64_t TQuillonJSONObject::Parse(std::string_view AData, std::int64_t APos, std::int64_t ACount, bool AnIsUtf8) {
  const auto Size = static_cast<std::int64_t>(AData.size());
  if (APos < 0 || APos >= Size || ACount <= 0 || ACount > Size - APos) {
    return -1;
  }
  TQuillonJSONByteReader Reader(AData, static_cast<std::size_t>(APos), static_cast<std::size_t>(APos + ACount),
                                AnIsUtf8);
  TQuillonJSONParser Parser(Reader);
  TQuillonJSONObject Result;
  std::int64_t End = Parser.ParseObject(Result);
  if (End >= 0 && !Reader.Empty()) {
    End = Parser.Failure();
  }
  if (End >= 0) {
    std::move(Result.FMembers.begin(), Result.FMembers.end(), std::back_inserter(FMembers));
  }
  return End;
}
