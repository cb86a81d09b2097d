#pragma once

#include <array>
#include <cstddef>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonIO.h"
#include "QuillonStreams/ReadAhead.h"

/// What TQuillonXMLPull leaves to TQuillonXMLDocument: all errors, and what our own files never have.
class TQuillonXMLUnusual : public std::exception {
 public:
  const char* what() const noexcept override { return "unusual XML"; }
};

/// Walks an XML document forward, element by element, through a small window over its stream, which a thread fills
/// ahead.
///
/// Takes only what TQuillonXMLDocument reads the same way: UTF-8 without sections, comments and instructions, names and
/// attributes of ASCII, no text beside elements. All else raises TQuillonXMLUnusual, be it well-formed or not. Views
/// that are handed out hold until the next call.
class TQuillonXMLPull {
 public:
  /// How a start tag was written, up to the value of its last attribute. What comes is compared with that ahead of
  /// being taken apart.
  struct TGuess {
    std::string Head;
    std::size_t NameSize = 0;
  };

  /// Enters the document element.
  /// @throws TQuillonXMLUnusual if that has another name; and so for all below
  TQuillonXMLPull(TQuillonStream& AStream, std::string_view ADocumentElement);

  /// Enters the next child of the open element; false at its end, which is passed then. Text is unusual.
  /// @param AGuess the tag that the child probably has
  bool NextChild(const TGuess& AGuess);
  /// Passes the open element up to its end, whatever is in it.
  void Leave() {
    if (FState == TState::Empty) {
      FState = TState::Inside;
    } else {
      LeaveContent();
    }
  }
  /// Passes the open element, which has a text alone. @return the text, without references and returns
  std::string_view ReadText();
  /// Only blanks may come behind the document element.
  void Finish();

  /// Of the element that was entered last.
  std::string_view Name() const { return FName; }
  bool IsAsGuessed() const { return FIsAsGuessed; }
  /// Makes its tag the guess.
  void Remember(TGuess& AGuess) const;
  /// Value of the last one of its attributes.
  std::string_view LastValue() const { return FLastValue; }
  /// Its attributes, unless it came as guessed.
  std::size_t AttributeCount() const { return FAttributeCount; }
  /// Value of one as it stands there, references and all; a view of null where there is none.
  std::string_view Attribute(std::string_view AName) const;

 private:
  /// Where the open element stands.
  enum class TState : std::uint8_t {
    Entered,  ///< just behind its start tag; it is not among the open names yet
    Empty,    ///< behind a tag that was its end too
    Inside
  };
  struct TAttribute {
    std::string_view Name;
    std::string_view Value;
  };

  void Refill();
  void Gather(std::string_view AKept, std::string_view ANew);
  void EnterDocument(std::string_view ADocumentElement);
  void PassDeclaration();
  bool HasTag(const char* APlace) const { return FEnd - APlace >= LongestTag || FIsEnd; }
  void PassBlanks();
  void PassText();
  void LeaveContent();
  bool StartGuessed(const TGuess& AGuess);
  void StartTag();
  void ReadAttributes(char* ANext);
  void Push();
  void EndTag();
  bool LeaveLeaf(char*& AText, char*& AnEnd);
  std::string_view ReadLongText();
  char* NextMark(char*& AMark, char AChar, char* AFrom) const;
  std::string_view Clean(char* AText, char* AnEnd);

  /// Bytes that stand in the window from a tag on, unless the document ends before.
  static constexpr std::ptrdiff_t LongestTag = 4096;
  static constexpr std::size_t MostAttributes = 4;

  TQuillonReadAhead FBlocks;
  TQuillonBuffer FGathered;  ///< the window for what no single block has room for
  char* FNext = nullptr;
  char* FEnd = nullptr;        ///< zeros follow
  char* FReference = nullptr;  ///< the next "&", unless it is behind us
  char* FReturn = nullptr;     ///< as well
  bool FIsEnd = false;         ///< of the stream
  bool FIsAsGuessed = false;
  TState FState = TState::Inside;
  std::size_t FIndent = 0;  ///< characters from a line's end to the tag that came last
  std::string_view FName;
  std::string_view FHead;
  std::string_view FLastValue;
  std::array<TAttribute, MostAttributes> FAttributes;
  std::size_t FAttributeCount = 0;
  std::string FOpenNames;          ///< one behind the other
  std::vector<std::size_t> FOpen;  ///< where each begins
};
