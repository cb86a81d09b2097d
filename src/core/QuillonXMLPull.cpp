#include "QuillonXMLPull.h"

#include <utf8.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>

#include "QuillonText.h"

namespace {

constexpr std::size_t WindowSize = 1U << 18;
/// Zeros behind the window's content: what is compared there ahead of a look at the end.
constexpr std::size_t Margin = 8192;
constexpr std::size_t LongestName = 1024;

constexpr auto TableOf(std::string_view ACharacters) {
  std::array<bool, 256> Is{};
  for (const char C : ACharacters) {
    Is[static_cast<unsigned char>(C)] = true;
  }
  return Is;
}

constexpr auto NameCharacters = TableOf("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-.");
constexpr auto Blanks = TableOf(" \n\r\t");
constexpr auto NameEnds = TableOf(" \n\r\t/>");

bool IsOf(const std::array<bool, 256>& ATable, char AChar) { return ATable[static_cast<unsigned char>(AChar)]; }

[[noreturn]] void GiveUp() { throw TQuillonXMLUnusual(); }

void Demand(bool ACondition) {
  if (!ACondition) {
    GiveUp();
  }
}

char* SkipBlanks(char* AText) {
  constexpr std::uint64_t EightBlanks = 0x2020202020202020U;
  for (;; ++AText) {
    for (std::uint64_t Word = 0; std::memcpy(&Word, AText, sizeof Word), Word == EightBlanks;) {
      AText += sizeof Word;
    }
    if (!IsOf(Blanks, *AText)) {
      return AText;
    }
  }
}

char* SkipName(char* AText) {
  char* Next = AText;
  while (IsOf(NameCharacters, *Next)) {
    ++Next;
  }
  const bool IsStart = *AText != '-' && *AText != '.' && (*AText < '0' || *AText > '9');
  Demand(IsStart && Next != AText && static_cast<std::size_t>(Next - AText) <= LongestName);
  return Next;
}

/// The character that a reference between "&" and ";" stands for.
char32_t Resolve(std::string_view AReference) {
  struct TEntity {
    std::string_view Name;
    char32_t Char;
  };
  static constexpr TEntity Entities[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  for (const TEntity& Entity : Entities) {
    if (Entity.Name == AReference) {
      return Entity.Char;
    }
  }
  const bool IsHex = AReference.starts_with("#x");
  Demand(AReference.starts_with("#"));
  AReference.remove_prefix(IsHex ? 2 : 1);
  std::uint32_t Code = 0;
  const char* const End = AReference.data() + AReference.size();
  const auto Result = std::from_chars(AReference.data(), End, Code, IsHex ? 16 : 10);
  // What is no character of XML becomes another one, in the document's hands.
  const bool IsCharacter =
      Code != 0 && Code <= 0x10FFFF && (Code < 0xD800 || Code > 0xDFFF) && Code != 0xFFFE && Code != 0xFFFF;
  Demand(Result.ec == std::errc() && Result.ptr == End && IsCharacter);
  return Code;
}

/// Resolves references and line ends in place, from the first of them on. @return the text's end
char* CleanFrom(char* AFirst, const char* AnEnd) {
  char* To = AFirst;
  for (const char* From = AFirst; From != AnEnd;) {
    if (*From == '\r') {
      *To++ = '\n';
      From += From + 1 != AnEnd && From[1] == '\n' ? 2 : 1;
    } else if (*From == '&') {
      const char* const End = std::find(From, AnEnd, ';');
      Demand(End != AnEnd);
      To = utf8::unchecked::append(Resolve({From + 1, End}), To);
      From = End + 1;
    } else {
      *To++ = *From++;
    }
  }
  return To;
}

std::string_view Clean(char* AText, char* AnEnd) {
  char* const First = std::find_if(AText, AnEnd, [](char C) { return C == '&' || C == '\r'; });
  return {AText, First == AnEnd ? AnEnd : CleanFrom(First, AnEnd)};
}

/// The end of what consists of whole characters for sure.
char* WholeEnd(char* ABegin, char* AnEnd) {
  constexpr std::ptrdiff_t LongestCharacter = 4;
  constexpr unsigned char FirstLead = 0xC0;
  for (char* Place = AnEnd; Place != ABegin && AnEnd - Place < LongestCharacter;) {
    const auto Byte = static_cast<unsigned char>(*--Place);
    if (Byte < 0x80) {
      return AnEnd;
    }
    if (Byte >= FirstLead) {
      return Place;
    }
  }
  return AnEnd;
}

}  // namespace

TQuillonXMLPull::TQuillonXMLPull(TQuillonStream& AStream, std::string_view ADocumentElement) : FStream(AStream) {
  FWindow.Resize(WindowSize + Margin);
  FNext = FEnd = FChecked = FWindow.Data();
  EnterDocument(ADocumentElement);
}

/// Moves what stands from FNext on to the begin of the window and reads more behind it.
void TQuillonXMLPull::Refill() {
  const auto Kept = static_cast<std::size_t>(FEnd - FNext);
  const auto Checked = static_cast<std::size_t>(FChecked - FNext);
  std::memmove(FWindow.Data(), FNext, Kept);
  if (Kept > FWindow.Size() / 2) {
    FWindow.Resize(2 * FWindow.Size());  // for a text that is longer than the window
  }
  FNext = FWindow.Data();
  const std::size_t Got = FStream.Read({FNext + Kept, FWindow.Size() - Margin - Kept});
  FIsEnd = Got == 0;
  FEnd = FNext + Kept + Got;
  std::memset(FEnd, 0, Margin);
  CheckNew(FNext + Checked);
}

void TQuillonXMLPull::CheckNew(char* AFrom) {
  FChecked = FIsEnd ? FEnd : WholeEnd(AFrom, FEnd);
  const std::string_view New(AFrom, FChecked);
  Demand(New.find('\0') == std::string_view::npos && QuillonText::FindInvalidUtf8(New) == std::string_view::npos);
}

void TQuillonXMLPull::EnterDocument(std::string_view ADocumentElement) {
  constexpr std::string_view Mark = "\xEF\xBB\xBF";
  while (!HasTag(FNext)) {
    Refill();
  }
  if (std::string_view(FNext, FEnd).starts_with(Mark)) {
    FNext += Mark.size();
  }
  if (std::string_view(FNext, FEnd).starts_with("<?xml ")) {
    PassDeclaration();
  }
  PassBlanks();
  StartTag(ADocumentElement);
  Demand(FIsAsGuessed);
}

void TQuillonXMLPull::PassDeclaration() {
  constexpr std::string_view Close = "?>";
  const std::string_view Text(FNext, FEnd);
  const std::size_t End = Text.find(Close);
  Demand(End < static_cast<std::size_t>(LongestTag));
  const std::string Declaration = QuillonText::ToLower(Text.substr(0, End));
  const std::size_t Encoding = Declaration.find("encoding");
  Demand(Encoding == std::string::npos || (Declaration.substr(Encoding).starts_with("encoding=\"utf-8\"") &&
                                           Declaration.find("encoding", Encoding + 1) == std::string::npos));
  Demand(Declaration.find_first_of("<&") == 0 && Declaration.find_first_of("<&", 1) == std::string::npos);
  FNext += End + Close.size();
}

/// Leaves FNext at a tag that stands whole in the window, if it is not too long.
void TQuillonXMLPull::PassBlanks() {
  while (FNext = SkipBlanks(FNext), !HasTag(FNext)) {
    Refill();
  }
  Demand(*FNext == '<');
}

/// As PassBlanks for whatever is no tag.
void TQuillonXMLPull::PassText() {
  for (;;) {
    auto* const Found = static_cast<char*>(std::memchr(FNext, '<', static_cast<std::size_t>(FEnd - FNext)));
    FNext = Found != nullptr ? Found : FChecked;
    if (HasTag(FNext)) {
      Demand(Found != nullptr);
      return;
    }
    Refill();
  }
}

void TQuillonXMLPull::StartTag(std::string_view AGuess) {
  char* const Begin = FNext + 1;
  char* Next = Begin + AGuess.size();
  FIsAsGuessed = !AGuess.empty() && std::memcmp(Begin, AGuess.data(), AGuess.size()) == 0 && IsOf(NameEnds, *Next);
  if (!FIsAsGuessed) {
    Next = SkipName(Begin);
  }
  FName = {Begin, Next};
  FAttributeCount = 0;
  if (*Next == '>') {
    FNext = Next + 1;
    FState = TState::Entered;
  } else {
    ReadAttributes(Next);
  }
}

void TQuillonXMLPull::ReadAttributes(char* ANext) {
  for (;;) {
    char* const Begin = SkipBlanks(ANext);
    if (*Begin == '>' || *Begin == '/') {
      FState = *Begin == '>' ? TState::Entered : TState::Empty;
      FNext = Begin + (*Begin == '>' ? 1 : 2);
      Demand(FNext[-1] == '>');
      return;
    }
    Demand(Begin != ANext && FAttributeCount < MostAttributes);
    char* const End = SkipName(Begin);
    const char Quote = End[1];
    Demand(*End == '=' && (Quote == '"' || Quote == '\''));
    char* const Value = End + 2;
    char* const Last = static_cast<char*>(std::memchr(Value, Quote, static_cast<std::size_t>(FEnd - Value)));
    Demand(Last != nullptr && Last - FNext < LongestTag);
    Demand(std::none_of(Value, Last, [](char C) { return C == '<' || C == '&' || C == '\r'; }));
    FAttributes[FAttributeCount++] = {.Name = {Begin, End}, .Value = {Value, Last}};
    ANext = Last + 1;
  }
}

std::string_view TQuillonXMLPull::Attribute(std::string_view AName) const {
  for (std::size_t I = 0; I < FAttributeCount; ++I) {
    if (FAttributes[I].Name == AName) {
      return FAttributes[I].Value;
    }
  }
  return {};
}

void TQuillonXMLPull::Push() {
  FState = TState::Inside;
  FOpen.push_back(FOpenNames.size());
  FOpenNames.append(FName);
}

/// Passes the end tag at FNext, which closes the open element.
void TQuillonXMLPull::EndTag() {
  const std::size_t Start = FOpen.back();
  const std::size_t Length = FOpenNames.size() - Start;
  Demand(std::memcmp(FNext + 2, FOpenNames.data() + Start, Length) == 0);
  FNext = SkipBlanks(FNext + 2 + Length);
  Demand(*FNext == '>');
  ++FNext;
  FOpenNames.resize(Start);
  FOpen.pop_back();
}

bool TQuillonXMLPull::NextChild(std::string_view AGuess) {
  if (FState == TState::Empty) {
    FState = TState::Inside;
    return false;
  }
  if (FState == TState::Entered) {
    Push();
  }
  PassBlanks();
  if (FNext[1] == '/') {
    EndTag();
    return false;
  }
  StartTag(AGuess);
  return true;
}

void TQuillonXMLPull::Leave() {
  const std::size_t Outer = FOpen.size() - (FState == TState::Inside ? 1 : 0);
  do {
    if (FState == TState::Entered) {
      Push();
    }
    if (FState == TState::Empty) {
      FState = TState::Inside;
    } else {
      PassText();
      if (FNext[1] == '/') {
        EndTag();
      } else {
        StartTag({});
      }
    }
  } while (FState != TState::Inside || FOpen.size() != Outer);
}

std::string_view TQuillonXMLPull::ReadText() {
  if (FState == TState::Empty) {
    FState = TState::Inside;
    return {};
  }
  char* const Text = FNext;
  auto* const Less = static_cast<char*>(std::memchr(Text, '<', static_cast<std::size_t>(FEnd - Text)));
  if (Less == nullptr || !HasTag(Less)) {
    return ReadLongText();
  }
  Demand(Less[1] == '/' && std::memcmp(Less + 2, FName.data(), FName.size()) == 0);
  FNext = SkipBlanks(Less + 2 + FName.size());
  Demand(*FNext == '>');
  ++FNext;
  FState = TState::Inside;
  return Clean(Text, Less);
}

/// As ReadText where the window ends soon or within the text.
std::string_view TQuillonXMLPull::ReadLongText() {
  Push();
  std::size_t Length = 0;
  for (;;) {
    const void* const Less = std::memchr(FNext + Length, '<', static_cast<std::size_t>(FEnd - FNext) - Length);
    Length = static_cast<std::size_t>((Less != nullptr ? static_cast<const char*>(Less) : FEnd) - FNext);
    if (HasTag(FNext + Length)) {
      break;
    }
    Refill();
  }
  char* const Text = FNext;
  FNext += Length;
  Demand(FNext[0] == '<' && FNext[1] == '/');
  EndTag();
  return Clean(Text, Text + Length);
}

void TQuillonXMLPull::Finish() {
  Demand(FOpen.empty() && FState == TState::Inside);
  while (FNext = SkipBlanks(FNext), !FIsEnd) {
    Refill();
  }
  Demand(FNext == FEnd);
}
