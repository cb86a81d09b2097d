#pragma once

#include <deque>
#include <string_view>

#include "QuillonClasses/Collection.h"

/// What stack and queue share: a list of which the last item comes first. On streams that list, without a handle.
class TQuillonLine : public TQuillonPersistent {
 public:
  void WriteProperties(TQuillonObjectWriter& AWriter) const override { QuillonClasses::WriteItems(AWriter, FList); }
  void ReadProperties(TQuillonObjectReader& AReader) override {
    Clear();
    QuillonClasses::ReadItems(AReader, [this](TQuillonItem AnItem) { FList.push_back(std::move(AnItem)); });
  }

  /// @return null if there is none
  TQuillonItem Pop();
  TQuillonItem Peek() const { return FList.empty() ? nullptr : FList.back(); }
  /// Takes the first equal item out of the list. @return null if there is none
  TQuillonItem Remove(const TQuillonPersistent* AnObject);
  void Clear() { FList.clear(); }
  bool IsEmpty() const { return FList.empty(); }

 protected:
  std::deque<TQuillonItem> FList;
};

/// Last in, first out.
class TQuillonStack final : public TQuillonNamed<TQuillonStack, TQuillonLine> {
 public:
  static constexpr std::string_view ClassName = "TQuillonStack";
  void Push(TQuillonItem AnObject) { FList.push_back(std::move(AnObject)); }
};

/// First in, first out.
class TQuillonQueue final : public TQuillonNamed<TQuillonQueue, TQuillonLine> {
 public:
  static constexpr std::string_view ClassName = "TQuillonQueue";
  void Push(TQuillonItem AnObject) { FList.push_front(std::move(AnObject)); }
};
