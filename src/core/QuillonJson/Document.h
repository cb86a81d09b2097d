#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "QuillonTypes.h"

/// Text that is no UTF-8, or a buffer that is too small for a document.
class EQuillonJSONError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// A node of a JSON tree. The calls on a tree recurse with its depth: who builds one keeps it shallow, what the parser
/// accepts is.
class TQuillonJSONAncestor {
 public:
  TQuillonJSONAncestor() = default;
  TQuillonJSONAncestor(const TQuillonJSONAncestor&) = delete;
  TQuillonJSONAncestor& operator=(const TQuillonJSONAncestor&) = delete;
  virtual ~TQuillonJSONAncestor() = default;

  /// Bytes that are enough for ToBytes.
  virtual std::size_t EstimatedByteSize() const = 0;
  /// Writes the document with all escapes, in ASCII. @return the offset behind it
  /// @throws EQuillonJSONError where the array ends first
  virtual std::size_t ToBytes(std::span<char> AData, std::size_t AnOffset) const = 0;
  /// The content of a string or number as plain text, else nothing.
  virtual std::string Value() const { return {}; }
  /// Appends the document without any escaping: what was put in with escapes comes out with them.
  virtual void AppendText(std::string& ATarget) const = 0;
  std::string ToString() const;

  /// Whether what holds the node frees it; else whoever made it does.
  bool FOwned = true;
};

struct TQuillonJSONRelease {
  TQuillonJSONRelease() = default;
  template <class TNode>
  TQuillonJSONRelease(std::default_delete<TNode> /*AnOther*/) noexcept {}  // NOLINT(google-explicit-constructor)
  void operator()(const TQuillonJSONAncestor* ANode) const {
    if (ANode->FOwned) {
      delete ANode;
    }
  }
};

/// Holds a node and frees it if that is owned. Any std::unique_ptr of a node becomes one.
template <class TNode>
using TQuillonJSONOwner = std::unique_ptr<TNode, TQuillonJSONRelease>;

class TQuillonJSONValue : public TQuillonJSONAncestor {
 public:
  /// A copy of the node and all below it, owned all over.
  virtual TQuillonJSONOwner<TQuillonJSONValue> Clone() const = 0;
};

/// The values that are one word: null, false and true.
class TQuillonJSONWord : public TQuillonJSONValue {
 public:
  std::size_t EstimatedByteSize() const override { return Word().size(); }
  std::size_t ToBytes(std::span<char> AData, std::size_t AnOffset) const override;
  void AppendText(std::string& ATarget) const override { ATarget.append(Word()); }

 protected:
  virtual std::string_view Word() const = 0;
};

class TQuillonJSONNull : public TQuillonJSONWord {
 public:
  TQuillonJSONOwner<TQuillonJSONValue> Clone() const override { return std::make_unique<TQuillonJSONNull>(); }

 protected:
  std::string_view Word() const override { return "null"; }
};

class TQuillonJSONTrue : public TQuillonJSONWord {
 public:
  TQuillonJSONOwner<TQuillonJSONValue> Clone() const override { return std::make_unique<TQuillonJSONTrue>(); }

 protected:
  std::string_view Word() const override { return "true"; }
};

class TQuillonJSONFalse : public TQuillonJSONWord {
 public:
  TQuillonJSONOwner<TQuillonJSONValue> Clone() const override { return std::make_unique<TQuillonJSONFalse>(); }

 protected:
  std::string_view Word() const override { return "false"; }
};

/// A text, or JSON null as long as it has none.
class TQuillonJSONString : public TQuillonJSONValue {
 public:
  TQuillonJSONString() = default;
  explicit TQuillonJSONString(std::string AText) : FHasText(true), FStrBuilder(std::move(AText)) {}

  std::size_t EstimatedByteSize() const override;
  std::size_t ToBytes(std::span<char> AData, std::size_t AnOffset) const override;
  std::string Value() const override { return FStrBuilder; }
  void AppendText(std::string& ATarget) const override;
  TQuillonJSONOwner<TQuillonJSONValue> Clone() const override;

  /// Appends a character; a null string becomes a text.
  virtual void AddChar(char32_t ACh);
  /// Makes it the empty text.
  void Clear();

  bool IsNull() const { return !FHasText; }
  const std::string& Text() const { return FStrBuilder; }

 private:
  // Ahead of the text, where the base leaves room: a document is millions of these.
  bool FHasText = false;
  std::string FStrBuilder;
};

/// The digits as text.
class TQuillonJSONNumber : public TQuillonJSONString {
 public:
  explicit TQuillonJSONNumber(std::string ADigits) : TQuillonJSONString(std::move(ADigits)) {}
  explicit TQuillonJSONNumber(std::int64_t AValue);
  /// The general form with a point; a number that is not finite becomes null.
  explicit TQuillonJSONNumber(double AValue);

  std::size_t EstimatedByteSize() const override { return Text().size(); }
  std::size_t ToBytes(std::span<char> AData, std::size_t AnOffset) const override;
  /// The number in the general form; digits that are beyond any number stay as they are.
  std::string Value() const override;
  void AppendText(std::string& ATarget) const override { ATarget.append(Text()); }
  TQuillonJSONOwner<TQuillonJSONValue> Clone() const override { return std::make_unique<TQuillonJSONNumber>(Text()); }
};

/// A value that is its text already, such as a list of so many objects that nobody wants their nodes.
class TQuillonJSONWritten : public TQuillonJSONValue {
 public:
  /// @param AText the value, with its escapes
  explicit TQuillonJSONWritten(std::string AText) : FText(std::move(AText)) {}

  std::size_t EstimatedByteSize() const override;
  /// Characters beyond ASCII become escapes, all else stays as it is written.
  std::size_t ToBytes(std::span<char> AData, std::size_t AnOffset) const override;
  void AppendText(std::string& ATarget) const override { ATarget.append(FText); }
  TQuillonJSONOwner<TQuillonJSONValue> Clone() const override { return std::make_unique<TQuillonJSONWritten>(FText); }

 private:
  std::string FText;
};

class TQuillonJSONArray;
class TQuillonJSONObject;

namespace QuillonJson {

/// The value that a text, a number, a boolean or a node is.
template <class TSource>
TQuillonJSONOwner<TQuillonJSONValue> NewValue(TSource&& ASource) {
  using TPlain = std::remove_cvref_t<TSource>;
  if constexpr (std::same_as<TPlain, bool>) {
    if (ASource) {
      return std::make_unique<TQuillonJSONTrue>();
    }
    return std::make_unique<TQuillonJSONFalse>();
  } else if constexpr (std::integral<TPlain>) {
    return std::make_unique<TQuillonJSONNumber>(static_cast<std::int64_t>(ASource));
  } else if constexpr (std::floating_point<TPlain>) {
    return std::make_unique<TQuillonJSONNumber>(static_cast<double>(ASource));
  } else if constexpr (std::constructible_from<std::string, TSource>) {
    return std::make_unique<TQuillonJSONString>(std::string(std::forward<TSource>(ASource)));
  } else {
    return TQuillonJSONOwner<TQuillonJSONValue>(std::forward<TSource>(ASource));
  }
}

/// The value's content. @return false where there is none, or one of another type
bool Read(const TQuillonJSONValue* AValue, std::string& AResult);
bool Read(const TQuillonJSONValue* AValue, std::int64_t& AResult);
bool Read(const TQuillonJSONValue* AValue, double& AResult);
bool Read(const TQuillonJSONValue* AValue, bool& AResult);
bool Read(const TQuillonJSONValue* AValue, const TQuillonJSONObject*& AResult);
bool Read(const TQuillonJSONValue* AValue, const TQuillonJSONArray*& AResult);

}  // namespace QuillonJson

/// A name and its value. Without one of the two it has no text.
class TQuillonJSONPair : public TQuillonJSONAncestor {
 public:
  /// @param AValue a text, a number, a boolean or a node
  template <class TSource>
  TQuillonJSONPair(std::string AName, TSource&& AValue)
      : FJsonString(std::move(AName)), FJsonValue(QuillonJson::NewValue(std::forward<TSource>(AValue))) {}

  std::size_t EstimatedByteSize() const override;
  std::size_t ToBytes(std::span<char> AData, std::size_t AnOffset) const override;
  void AppendText(std::string& ATarget) const override;
  TQuillonJSONOwner<TQuillonJSONPair> Clone() const;

  TQuillonJSONString FJsonString;
  TQuillonJSONOwner<TQuillonJSONValue> FJsonValue;
};

class TQuillonJSONObject : public TQuillonJSONValue {
 public:
  std::size_t EstimatedByteSize() const override;
  std::size_t ToBytes(std::span<char> AData, std::size_t AnOffset) const override;
  void AppendText(std::string& ATarget) const override;
  TQuillonJSONOwner<TQuillonJSONValue> Clone() const override;
  /// The members without the braces.
  void AppendContent(std::string& ATarget) const;
  std::string ContentToString() const;

  /// Appends a pair; none, and one without a name, adds nothing.
  void AddPair(TQuillonJSONOwner<TQuillonJSONPair> APair);
  /// Appends a text, a number, a boolean or a node under its name; without a name, and for an empty text or no node,
  /// nothing.
  template <class TSource>
  void AddPair(std::string AName, TSource&& AValue) {
    if constexpr (std::convertible_to<TSource, std::string_view>) {
      if (std::string_view(AValue).empty()) {
        return;
      }
    }
    auto Node = QuillonJson::NewValue(std::forward<TSource>(AValue));
    if (Node != nullptr && !AName.empty()) {
      FMembers.push_back(std::make_unique<TQuillonJSONPair>(std::move(AName), std::move(Node)));
    }
  }

  std::size_t Size() const { return FMembers.size(); }
  /// @return nullptr for an index out of range
  const TQuillonJSONPair* Get(std::size_t AnIndex) const;
  /// @return the first pair of exactly that name, or nullptr
  const TQuillonJSONPair* Get(std::string_view AName) const;
  /// @return false where the value is absent or of another type
  template <class TResult>
  bool Get(std::string_view AName, TResult& AResult) const {
    const TQuillonJSONPair* Pair = Get(AName);
    return Pair != nullptr && QuillonJson::Read(Pair->FJsonValue.get(), AResult);
  }
  /// Takes the first pair of that name out. @return nullptr without one
  TQuillonJSONOwner<TQuillonJSONPair> RemovePair(std::string_view AName);

  /// Takes over the members of the object that the bytes hold from APos on, with AnIsUtf8 as UTF-8, else one byte a
  /// character; the object must end where the bytes do. Nothing is taken from bytes that fail.
  /// @return the end's offset; the failure's, negated, but -1 where that is 0; -1 for a position outside of the bytes
  /// @throws EQuillonJSONError for bytes that are no UTF-8 where they must be
  std::int64_t Parse(std::string_view AData, std::int64_t APos, bool AnIsUtf8 = false);
  /// As the other one, with the first ACount bytes from APos on; -1 too where there are not as many.
  std::int64_t Parse(std::string_view AData, std::int64_t APos, std::int64_t ACount, bool AnIsUtf8 = false);

 private:
  friend class TQuillonJSONParser;

  std::vector<TQuillonJSONOwner<TQuillonJSONPair>> FMembers;
};

class TQuillonJSONArray : public TQuillonJSONValue {
 public:
  std::size_t EstimatedByteSize() const override;
  std::size_t ToBytes(std::span<char> AData, std::size_t AnOffset) const override;
  void AppendText(std::string& ATarget) const override;
  TQuillonJSONOwner<TQuillonJSONValue> Clone() const override;

  /// Appends a text, a number, a boolean or a node.
  template <class TSource>
  void Add(TSource&& AValue) {
    AddElement(QuillonJson::NewValue(std::forward<TSource>(AValue)));
  }
  /// Appends a node; none adds nothing.
  void AddElement(TQuillonJSONOwner<TQuillonJSONValue> AnElement);

  std::size_t Size() const { return FElements.size(); }
  /// @return nullptr for an index out of range
  const TQuillonJSONValue* Get(std::size_t AnIndex) const;
  /// @return false where the index is out of range or the value of another type
  template <class TResult>
  bool Get(std::size_t AnIndex, TResult& AResult) const {
    return QuillonJson::Read(Get(AnIndex), AResult);
  }

 private:
  std::vector<TQuillonJSONOwner<TQuillonJSONValue>> FElements;
};
