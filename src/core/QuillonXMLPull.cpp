#include "QuillonXMLPull.h"

#include <utf8.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <functional>

#include "QuillonText.h"

namespace {

/// Ahead of a block: what is left of the one before. Behind it: what is compared there ahead of a look at the end.
constexpr TQuillonReadAhead::TRoom Room{.Ahead = 65'536, .Behind = 8192};
constexpr std::size_t LongestName = 1024;
constexpr std::size_t LongestIndent = 256;

constexpr auto TableOf(std::string_view ACharacters) {
  std::array<bool, 256> Is{};
  for (const char C : ACharacters) {
    Is[static_cast<unsigned char>(C)] = true;
  }
  return Is;
}

constexpr auto NameCharacters = TableOf("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-.");

bool IsOf(const std::array<bool, 256>& ATable, char AChar) { return ATable[static_cast<unsigned char>(AChar)]; }

[[noreturn]] void GiveUp() { throw TQuillonXMLUnusual(); }

void Demand(bool ACondition) {
  if (!ACondition) {
    GiveUp();
  }
}

template <class T>
T WordAt(const char* AText) {
  T Word = 0;
  std::memcpy(&Word, AText, sizeof Word);
  return Word;
}

/// Whether two texts of a length are the same, as quick as names are short.
bool IsSame(const char* A, const char* B, std::size_t ALength) {
  const auto IsSameIn = [&](auto AWord) {
    using TWord = decltype(AWord);
    for (std::size_t I = 0; I + sizeof(TWord) < ALength; I += sizeof(TWord)) {
      if (WordAt<TWord>(A + I) != WordAt<TWord>(B + I)) {
        return false;
      }
    }
    const std::size_t Last = ALength - sizeof(TWord);
    return WordAt<TWord>(A + Last) == WordAt<TWord>(B + Last);
  };
  if (ALength >= sizeof(std::uint64_t)) {
    return IsSameIn(std::uint64_t{0});
  }
  return ALength >= sizeof(std::uint16_t) ? IsSameIn(std::uint16_t{0}) : ALength == 0 || *A == *B;
}

/// Index of the first byte in memory that is not zero.
std::size_t FirstByteOf(std::uint64_t AWord) {
  constexpr bool IsLittle = std::endian::native == std::endian::little;
  return static_cast<std::size_t>(IsLittle ? std::countr_zero(AWord) : std::countl_zero(AWord)) / 8;
}

constexpr std::uint64_t EightBlanks = 0x2020202020202020U;

/// Whether a text begins with a line break, blanks up to ALength, and a tag: no step has to wait for another one.
bool IsIndent(const char* AText, std::size_t ALength) {
  constexpr std::size_t Step = sizeof EightBlanks;
  if (ALength <= Step || *AText != '\n' || AText[ALength] != '<') {
    return false;
  }
  std::uint64_t Others = WordAt<std::uint64_t>(AText + ALength - Step) ^ EightBlanks;
  for (std::size_t I = 1; I + Step < ALength; I += Step) {
    Others |= WordAt<std::uint64_t>(AText + I) ^ EightBlanks;
  }
  return Others == 0;
}

char* SkipBlanks(char* AText) {
  for (;;) {
    const std::uint64_t Others = WordAt<std::uint64_t>(AText) ^ EightBlanks;
    if (Others == 0) {
      AText += sizeof Others;
      continue;
    }
    AText += FirstByteOf(Others);
    if (*AText != '\n' && *AText != '\r' && *AText != '\t') {
      return AText;
    }
    ++AText;
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

/// The end of what consists of whole characters for sure.
const char* WholeEnd(std::string_view AText) {
  constexpr std::size_t LongestCharacter = 4;
  constexpr unsigned char FirstLead = 0xC0;
  for (std::size_t Length = 1; Length < LongestCharacter && Length <= AText.size(); ++Length) {
    const auto Byte = static_cast<unsigned char>(AText[AText.size() - Length]);
    if (Byte < 0x80) {
      break;
    }
    if (Byte >= FirstLead) {
      return AText.data() + AText.size() - Length;
    }
  }
  return AText.data() + AText.size();
}

/// What is found out of a block where it is fetched.
constexpr unsigned IsText = 1;
constexpr unsigned HasReference = 2;
constexpr unsigned HasReturn = 4;

/// Examines blocks, one after the other, the end of a character that the one before has begun included.
class TExaminer {
 public:
  unsigned operator()(std::span<char> AContent, bool AnIsLast) {
    char* const Begin = AContent.data() - FBegun.size();
    std::ranges::copy(FBegun, Begin);
    const std::string_view Text(Begin, FBegun.size() + AContent.size());
    const char* const End = AnIsLast ? Text.data() + Text.size() : WholeEnd(Text);
    const std::string_view Whole(Begin, End);
    FBegun = Text.substr(Whole.size());
    const auto Has = [&](char AChar, unsigned AFinding) {
      return Text.find(AChar) != std::string_view::npos ? AFinding : 0U;
    };
    const bool IsRight =
        Text.find('\0') == std::string_view::npos && QuillonText::FindInvalidUtf8(Whole) == std::string_view::npos;
    return (IsRight ? IsText : 0U) | Has('&', HasReference) | Has('\r', HasReturn);
  }

 private:
  std::string FBegun;
};

}  // namespace

TQuillonXMLPull::TQuillonXMLPull(TQuillonStream& AStream, std::string_view ADocumentElement)
    : FBlocks(AStream, Room, TExaminer()) {
  EnterDocument(ADocumentElement);
}

/// Reads more behind what stands from FNext on.
void TQuillonXMLPull::Refill() {
  const std::string_view Kept(FNext, FEnd);
  const TQuillonReadAhead::TBlock* const Block = FBlocks.Next();
  Demand(Block != nullptr && (Block->Finding & IsText) != 0);
  FIsEnd = Block->IsLast;
  const std::span<char> New = Block->Content;
  FReference = FReturn = nullptr;
  if (Kept.size() > Room.Ahead) {
    Gather(Kept, {New.data(), New.size()});
    return;
  }
  FNext = New.data() - Kept.size();
  std::ranges::copy(Kept, FNext);
  FEnd = New.data() + New.size();
  if ((Block->Finding & HasReference) == 0 && Kept.find('&') == std::string_view::npos) {
    FReference = FEnd;
  }
  if ((Block->Finding & HasReturn) == 0 && Kept.find('\r') == std::string_view::npos) {
    FReturn = FEnd;
  }
}

/// Puts what is new behind what is kept, in a window for that. It grows by its own size, lest a text of many blocks be
/// copied with each of them.
void TQuillonXMLPull::Gather(std::string_view AKept, std::string_view ANew) {
  const std::string_view Before = FGathered.View();
  const bool IsThere =
      std::less_equal<>()(Before.data(), AKept.data()) && std::less<>()(AKept.data(), Before.data() + Before.size());
  const auto Place = static_cast<std::size_t>(IsThere ? AKept.data() - Before.data() : 0);
  const std::size_t Size = AKept.size() + ANew.size() + Room.Behind;
  if (FGathered.Size() < Size) {
    FGathered.Resize(2 * Size);
  }
  FNext = FGathered.Data();
  if (!IsThere) {
    std::ranges::copy(AKept, FNext);
  } else if (Place != 0) {
    std::memmove(FNext, FNext + Place, AKept.size());
  }
  FEnd = std::ranges::copy(ANew, FNext + AKept.size()).out;
  std::memset(FEnd, 0, Room.Behind);
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
  StartTag();
  Demand(FName == ADocumentElement);
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
  if (HasTag(FNext + FIndent) && IsIndent(FNext, FIndent)) {
    FNext += FIndent;
    return;
  }
  const char* const Begin = FNext;
  FNext = SkipBlanks(FNext);
  FIndent = std::min(static_cast<std::size_t>(FNext - Begin), LongestIndent);
  while (!HasTag(FNext)) {
    Refill();
    FNext = SkipBlanks(FNext);
  }
  Demand(*FNext == '<');
}

/// As PassBlanks for whatever is no tag.
void TQuillonXMLPull::PassText() {
  for (;;) {
    auto* const Found = static_cast<char*>(std::memchr(FNext, '<', static_cast<std::size_t>(FEnd - FNext)));
    FNext = Found != nullptr ? Found : FEnd;
    if (HasTag(FNext)) {
      Demand(Found != nullptr);
      return;
    }
    Refill();
  }
}

/// Takes the start tag at FNext if it is as guessed.
bool TQuillonXMLPull::StartGuessed(const TGuess& AGuess) {
  char* const Begin = FNext + 1;
  const std::size_t Size = AGuess.Head.size();
  if (Size == 0 || !IsSame(Begin, AGuess.Head.data(), Size)) {
    return false;
  }
  char* Next = Begin + Size - 1;
  if (*Next != '>') {
    char* const Last = static_cast<char*>(std::memchr(Next + 1, *Next, static_cast<std::size_t>(FEnd - Next) - 1));
    if (Last == nullptr || Last - FNext >= LongestTag) {
      return false;
    }
    FLastValue = {Next + 1, Last};
    Next = Last + (Last[1] == '/' ? 2 : 1);
    if (*Next != '>') {
      return false;
    }
  }
  FName = {Begin, AGuess.NameSize};
  FAttributeCount = 0;
  FState = Next[-1] == '/' ? TState::Empty : TState::Entered;
  FNext = Next + 1;
  return true;
}

void TQuillonXMLPull::StartTag() {
  char* const Begin = FNext + 1;
  char* const Next = SkipName(Begin);
  FName = {Begin, Next};
  FAttributeCount = 0;
  ReadAttributes(Next);
}

void TQuillonXMLPull::Remember(TGuess& AGuess) const {
  AGuess.Head = FHead.size() <= static_cast<std::size_t>(LongestName) ? FHead : std::string_view();
  AGuess.NameSize = FName.size();
}

void TQuillonXMLPull::ReadAttributes(char* ANext) {
  for (;;) {
    char* const Begin = SkipBlanks(ANext);
    if (*Begin == '>' || *Begin == '/') {
      FState = *Begin == '>' ? TState::Entered : TState::Empty;
      FNext = Begin + (*Begin == '>' ? 1 : 2);
      Demand(FNext[-1] == '>');
      FHead = {FName.data(), FAttributeCount > 0 ? FLastValue.data() : FNext};
      return;
    }
    Demand(Begin != ANext && FAttributeCount < MostAttributes);
    char* const End = SkipName(Begin);
    const char Quote = End[1];
    Demand(*End == '=' && (Quote == '"' || Quote == '\''));
    char* const Value = End + 2;
    char* const Last = static_cast<char*>(std::memchr(Value, Quote, static_cast<std::size_t>(FEnd - Value)));
    Demand(Last != nullptr && Last - FNext < LongestTag);
    FLastValue = {Value, Last};
    FAttributes[FAttributeCount++] = {.Name = {Begin, End}, .Value = FLastValue};
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
  Demand(IsSame(FNext + 2, FOpenNames.data() + Start, Length));
  FNext = SkipBlanks(FNext + 2 + Length);
  Demand(*FNext == '>');
  ++FNext;
  FOpenNames.resize(Start);
  FOpen.pop_back();
}

bool TQuillonXMLPull::NextChild(const TGuess& AGuess) {
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
  FIsAsGuessed = StartGuessed(AGuess);
  if (!FIsAsGuessed) {
    StartTag();
  }
  return true;
}

void TQuillonXMLPull::LeaveContent() {
  char* Text = nullptr;
  char* End = nullptr;
  if (FState == TState::Entered && LeaveLeaf(Text, End)) {
    return;
  }
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
        StartTag();
      }
    }
  } while (FState != TState::Inside || FOpen.size() != Outer);
}

std::string_view TQuillonXMLPull::ReadText() {
  if (FState == TState::Empty) {
    FState = TState::Inside;
    return {};
  }
  char* Text = nullptr;
  char* End = nullptr;
  return LeaveLeaf(Text, End) ? Clean(Text, End) : ReadLongText();
}

/// Passes the element just entered, if it has a text alone and all of it stands in the window.
bool TQuillonXMLPull::LeaveLeaf(char*& AText, char*& AnEnd) {
  AText = FNext;
  AnEnd = static_cast<char*>(std::memchr(FNext, '<', static_cast<std::size_t>(FEnd - FNext)));
  if (AnEnd == nullptr || !HasTag(AnEnd) || AnEnd[1] != '/' || !IsSame(AnEnd + 2, FName.data(), FName.size())) {
    return false;
  }
  char* const Close = AnEnd + 2 + FName.size();
  if (*Close != '>') {
    return false;
  }
  FNext = Close + 1;
  FState = TState::Inside;
  return true;
}

/// The first such character from a place on, if that is in the window; else the window's end.
char* TQuillonXMLPull::NextMark(char*& AMark, char AChar, char* AFrom) const {
  if (AMark == nullptr || AMark < AFrom) {
    auto* const Found = static_cast<char*>(std::memchr(AFrom, AChar, static_cast<std::size_t>(FEnd - AFrom)));
    AMark = Found != nullptr ? Found : FEnd;
  }
  return AMark;
}

std::string_view TQuillonXMLPull::Clean(char* AText, char* AnEnd) {
  char* const First = std::min(NextMark(FReference, '&', AText), NextMark(FReturn, '\r', AText));
  return {AText, First < AnEnd ? CleanFrom(First, AnEnd) : AnEnd};
}

/// As ReadText where the end is not in the window, or written in another way.
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
