#include "QuillonCSV.h"

#include <utf8.h>

#include <array>
#include <iterator>

namespace {

/// What the text reader gives for bytes that are no text, and for itself.
constexpr char32_t Replacement = 0xFFFD;

/// Of a line that is read strictly; a vector of texts takes 32 times the bytes of a line of separators.
constexpr std::size_t MostFields = 1'000'000;

/// What the reader has seen of a field.
enum class State { Start, Plain, Quoted, AfterQuote, AfterQuoteSpace, Comment };

enum class Action {
  Stay,
  Append,
  AppendBlank,
  AppendQuote,
  BeginPlain,
  BeginQuoted,
  CloseQuote,
  PassBlank,
  BeginComment,
  EndField,
  EndLine,       ///< with the field that was read
  EndEmptyLine,  ///< without a field
  MissingOpeningQuote,
  MissingSeparatorBehindQuote,
  MissingSeparator
};

/// By state, then by class of the character: space, comment, end of line, quote, separator, normal.
constexpr auto Actions = [] {
  using enum Action;
  return std::array<std::array<Action, 6>, 6>{{
      {Stay, BeginComment, EndEmptyLine, BeginQuoted, EndField, BeginPlain},
      {AppendBlank, Append, EndLine, MissingOpeningQuote, EndField, Append},
      {Append, Append, Append, CloseQuote, Append, Append},
      {PassBlank, MissingSeparatorBehindQuote, EndLine, AppendQuote, EndField, MissingSeparatorBehindQuote},
      {Stay, BeginComment, EndLine, MissingSeparator, EndField, MissingSeparator},
      {Stay, Stay, EndEmptyLine, Stay, Stay, Stay},
  }};
}();

[[noreturn]] void ThrowFormatError(std::string_view AProblem, int ALine) {
  throw EQuillonCSVReaderError("Falsches CSV-Format: " + std::string(AProblem) + " in Zeile " + std::to_string(ALine) +
                               ".");
}

}  // namespace

TQuillonCSVReader::TQuillonCSVReader(TQuillonStream& AStream, bool DoDetectBOM, std::size_t ABufferSize)
    : FTextReader(AStream, DoDetectBOM, ABufferSize) {}

TQuillonCSVReader::TQuillonCSVReader(TQuillonStream& AStream, TQuillonEncoding AnEncoding, bool DoDetectBOM,
                                     std::size_t ABufferSize)
    : FTextReader(AStream, AnEncoding, DoDetectBOM, ABufferSize) {}

TQuillonCSVReader::CharClass TQuillonCSVReader::Classify(char32_t AChar) const {
  constexpr char32_t FirstNormal = 0x15;
  const auto Is = [AChar](char AnAscii) { return AChar == static_cast<unsigned char>(AnAscii); };
  if (AChar == U' ') {
    return CharClass::Space;
  }
  if (FAllowComments && Is(FComment)) {
    return CharClass::Comment;
  }
  if (AChar == U'\n' || AChar == U'\r') {
    return CharClass::EndOfLine;
  }
  if (!FIgnoreQuotes && AChar == U'"') {
    return CharClass::Quote;
  }
  if (Is(FSeparator)) {
    return CharClass::Separator;
  }
  return AChar >= FirstNormal ? CharClass::Normal : CharClass::Space;
}

/// CR, LF and both together are one line break.
void TQuillonCSVReader::PassLineBreak(char32_t AChar) {
  const bool IsSecondHalf = AChar == U'\n' && FWasCarriageReturn;
  FNextTextLine += IsSecondHalf ? 0 : 1;
  FWasCarriageReturn = AChar == U'\r';
}

void TQuillonCSVReader::CheckEncoding() const {
  if (FStrict && FTextReader.InvalidCount() > 0) {
    ThrowFormatError("Ungültige Zeichenkodierung", FLineCount);
  }
}

TQuillonCSVReader::Token TQuillonCSVReader::ReadToken() {
  FToken.clear();
  State Now = State::Start;
  for (char32_t C = 0; FTextReader.Read(C);) {
    if (C == Replacement) {
      CheckEncoding();
    }
    const CharClass Class = Classify(C);
    if (Class == CharClass::EndOfLine) {
      PassLineBreak(C);
    } else {
      FWasCarriageReturn = false;
    }
    switch (Actions[static_cast<std::size_t>(Now)][static_cast<std::size_t>(Class)]) {
      case Action::Stay:
        break;
      case Action::BeginPlain:
        Now = State::Plain;
        [[fallthrough]];
      case Action::Append:
        utf8::append(C, std::back_inserter(FToken));
        break;
      case Action::AppendBlank:
        FToken.push_back(' ');
        break;
      case Action::AppendQuote:
        FToken.push_back('"');
        [[fallthrough]];
      case Action::BeginQuoted:
        Now = State::Quoted;
        break;
      case Action::CloseQuote:
        Now = State::AfterQuote;
        break;
      case Action::PassBlank:
        Now = State::AfterQuoteSpace;
        break;
      case Action::BeginComment:
        Now = State::Comment;
        break;
      case Action::EndField:
        return {.Counts = true};
      case Action::EndLine:
        return {.Counts = true, .EndsLine = true};
      case Action::EndEmptyLine:
        return {.EndsLine = true};
      case Action::MissingOpeningQuote:
        ThrowFormatError("Fehlendes Begrenzungszeichen am Feldanfang", FLineCount);
      case Action::MissingSeparatorBehindQuote:
        ThrowFormatError("Fehlendes Trennzeichen nach Begrenzungszeichen", FLineCount);
      case Action::MissingSeparator:
        ThrowFormatError("Fehlendes Trennzeichen", FLineCount);
    }
  }
  CheckEncoding();
  if (FStrict && Now == State::Quoted) {
    ThrowFormatError("Fehlendes Begrenzungszeichen am Feldende", FLineCount);
  }
  return {.Counts = !FToken.empty(), .EndsLine = true, .EndsFile = true};
}

std::optional<TQuillonCSVLine> TQuillonCSVReader::ReadLine() {
  ++FLineCount;
  FFieldCount = 0;
  std::optional<TQuillonCSVLine> Line;
  for (;;) {
    if (!Line) {
      FTextLine = FNextTextLine;
    }
    const Token Next = ReadToken();
    if (Next.Counts) {
      if (!Line) {
        Line.emplace();
      }
      if (FStrict && FFieldCount == MostFields) {
        ThrowFormatError("Zu viele Felder", FLineCount);
      }
      Line->push_back(FToken);
      ++FFieldCount;
    }
    if (Next.EndsFile || (Next.EndsLine && Line)) {
      return Line;
    }
  }
}

TQuillonCSVWriter::TQuillonCSVWriter(TQuillonStream& AStream, bool DoWriteBOM, std::size_t ABufferSize)
    : FTextWriter(AStream, DoWriteBOM, ABufferSize) {}

TQuillonCSVWriter::TQuillonCSVWriter(TQuillonStream& AStream, TQuillonEncoding AnEncoding, bool DoWriteBOM,
                                     std::size_t ABufferSize)
    : FTextWriter(AStream, AnEncoding, DoWriteBOM, ABufferSize) {}

void TQuillonCSVWriter::WriteSeparator() {
  if (FWasPreviousField) {
    FTextWriter.Write({&FSeparator, 1});
  }
  FWasPreviousField = true;
}

void TQuillonCSVWriter::WriteValue(std::string_view AValue) {
  WriteSeparator();
  if (AValue.empty()) {
    if (FForceQuotes && !FNoEmptyQuotes) {
      FTextWriter.Write("\"\"");
    }
    return;
  }
  bool HasSpecial = FForceQuotes;
  for (const char C : AValue) {
    HasSpecial |= C == '"' || C == '\r' || C == '\n' || C == FSeparator;
  }
  if (HasSpecial) {
    WriteQuoted(AValue);
  } else {
    FTextWriter.Write(AValue);
  }
}

void TQuillonCSVWriter::WriteQuoted(std::string_view AValue) {
  // One text for the writer: a cell of JSON has a quote every few characters.
  FQuoted.assign(1, '"');
  for (std::size_t Quote = AValue.find('"'); Quote != std::string_view::npos; Quote = AValue.find('"')) {
    FQuoted.append(AValue, 0, Quote + 1).push_back('"');
    AValue.remove_prefix(Quote + 1);
  }
  FQuoted.append(AValue).push_back('"');
  FTextWriter.Write(FQuoted);
}

void TQuillonCSVWriter::WriteValues(std::span<const std::string> AValues) {
  for (const std::string& Value : AValues) {
    WriteValue(Value);
  }
}

void TQuillonCSVWriter::WriteLine() {
  FWasPreviousField = false;
  FTextWriter.WriteLine();
}

void TQuillonCSVWriter::WriteLine(const TQuillonCSVLine* ALine) {
  if (ALine != nullptr) {
    WriteValues(*ALine);
    WriteLine();
  }
}

void TQuillonCSVWriter::WriteComment(std::string_view AText) {
  if (FWasPreviousField) {
    WriteLine();
  }
  WriteValue(std::string(1, FComment).append(AText));
  WriteLine();
}
