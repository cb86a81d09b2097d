#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuillonJson/Document.h"
#include "uPlandaten/Werte.h"

class TVELDataObject;

/// Values of the document, and objects and lists of it under way.
namespace uJSONExport {

/// "20260803"; empty for 0.
std::string Date(TVELDateTime AValue);
/// "0745"; midnight for 0.
std::string Time(TVELDateTime AValue);
/// "20260803074500"
std::string Stamp(TVELDateTime AValue);
/// Lower-case digits without braces; empty for null.
std::string Identifier(const TVELDataObject* AnObject);
/// "#rrggbb"; empty for no colour and for that of windows.
std::string Colour(TColor AColour);

/// The abbreviation; empty for null.
template <class T>
std::string_view CodeOf(const T* AnObject) {
  return AnObject != nullptr ? std::string_view(AnObject->FKuerzel) : std::string_view();
}

class TNodes;

/// An object. What is absent adds no member: an empty text, no reference, no colour, an empty list.
/// It is written as it grows: nodes of a tree would be some eight times as long as their text.
class TNode {
 public:
  /// @return whether there is a text
  bool Text(std::string_view AName, std::string_view AValue);
  void Number(std::string_view AName, std::int64_t AValue);
  void Number(std::string_view AName, std::int64_t AValue, std::int64_t ADefault);
  void True(std::string_view AName, bool AValue);
  void Colour(std::string_view AName, TColor AValue) { Text(AName, uJSONExport::Colour(AValue)); }
  void Date(std::string_view AName, TVELDateTime AValue) { Text(AName, uJSONExport::Date(AValue)); }
  void Time(std::string_view AName, TVELDateTime AValue) { Text(AName, uJSONExport::Time(AValue)); }
  void Modified(TVELDateTime AValue);
  void Reference(std::string_view AName, const TVELDataObject* AnObject) { Text(AName, Identifier(AnObject)); }
  template <class T>
  void Codes(std::string_view AName, const std::vector<T*>& AnObjects);
  void Object(std::string_view AName, const TNode& AValue);
  void List(std::string_view AName, const TNodes& AValue);
  /// Empty ones too.
  void WholeList(std::string_view AName, const TNodes& AValue);

  TQuillonJSONOwner<TQuillonJSONValue> Take();

 private:
  friend class TNodes;
  void AppendName(std::string_view AName);

  std::string FText = "{";
};

/// A list.
class TNodes {
 public:
  void Add(const TNode& ANode);
  /// An empty text adds nothing.
  void Text(std::string_view AValue);

  bool IsEmpty() const { return FText.size() == 1; }
  TQuillonJSONOwner<TQuillonJSONValue> Take();

 private:
  friend class TNode;

  std::string FText = "[";
};

template <class T>
void TNode::Codes(std::string_view AName, const std::vector<T*>& AnObjects) {
  TNodes Codes;
  for (const T* Object : AnObjects) {
    Codes.Text(CodeOf(Object));
  }
  List(AName, Codes);
}

/// The identifiers of the objects in a range of pointers.
template <class TRange>
TNodes References(const TRange& AnObjects) {
  TNodes List;
  for (const auto* Object : AnObjects) {
    List.Text(Identifier(Object));
  }
  return List;
}

/// "externalIDs": the identifier that an outside system gave the object, if there is one.
void WriteExternalId(TNode& ANode, const TVELDataObject& AnObject);

}  // namespace uJSONExport
