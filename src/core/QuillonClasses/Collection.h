#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "QuillonStreams/Objects.h"

/// An array of numbers whose capacity is not possible.
class EQuillonIntegerArrayError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// What collections hold: an object that may be null, and that lives as long as somebody holds it.
using TQuillonItem = std::shared_ptr<TQuillonPersistent>;

namespace QuillonClasses {

/// Whether two keys or items, each of which may be null, are equal.
bool AreEqual(const TQuillonPersistent* A, const TQuillonPersistent* B);

/// @throws EQuillonReaderError for a count below zero
std::int32_t ReadCount(TQuillonReader& AReader);

/// The stream form of a collection: the count, then each item with its handle.
template <class TItems>
void WriteItems(TQuillonObjectWriter& AWriter, const TItems& AnItems) {
  AWriter.WriteLongInt(static_cast<std::int32_t>(AnItems.size()));
  for (const auto& Item : AnItems) {
    AWriter.WriteObject(Item.get());
  }
}
template <class TAdd>
void ReadItems(TQuillonObjectReader& AReader, const TAdd& AnAdd) {
  for (std::int32_t Left = ReadCount(AReader); Left > 0; --Left) {
    AnAdd(AReader.ReadObject());
  }
}

/// @throws EQuillonCollectionError for an index outside of a list
void CheckIndex(std::int32_t AnIndex, std::size_t ACount);

/// The size that a list has been given, which its stream form may tell. Memory is the standard library's matter: it
/// follows what the list really holds.
template <class TError>
class TCapacity {
 public:
  std::int32_t Value() const { return FValue; }
  /// @param ACount what the list holds
  void Set(std::int64_t AValue, std::size_t ACount) {
    constexpr std::int64_t Limit = 0x800'0000;
    if (AValue < static_cast<std::int64_t>(ACount) || AValue >= Limit) {
      throw TError("Kapazität der Liste ist erschöpft (" + std::to_string(AValue) + ")");
    }
    FValue = static_cast<std::int32_t>(AValue);
  }
  /// Makes room for one more.
  void GrowFor(std::size_t ACount) {
    if (ACount >= static_cast<std::size_t>(FValue)) {
      const std::int64_t Value = FValue;
      Set(Value + (Value > 64 ? Value / 4 : Value > 8 ? 16 : 4), ACount);
    }
  }

 private:
  std::int32_t FValue = 0;
};

/// Makes the classes of the collections and of the boxes known to readers.
void RegisterClasses();

}  // namespace QuillonClasses

/// Objects, held together. On streams the count and each item; what is read takes the place of what was there.
class TQuillonAbstractCollection : public TQuillonPersistent {
 public:
  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  void ReadProperties(TQuillonObjectReader& AReader) override;

  virtual void Clear() = 0;
  /// @return whether the item has found a place
  virtual bool Add(TQuillonItem AnItem) = 0;
  /// Takes out the first item that equals this one. @return the item, null if there is none
  virtual TQuillonItem Remove(const TQuillonPersistent* AnItem) = 0;
  virtual bool Contains(const TQuillonPersistent* AnItem) const = 0;
  virtual std::int32_t Count() const = 0;
  /// The items in their order, as they are now.
  virtual std::vector<TQuillonItem> Items() const = 0;

  bool IsEmpty() const { return Count() == 0; }
  void AddAll(const TQuillonAbstractCollection& ACollection);
  /// As AddAll; the other collection is empty afterwards.
  void MoveAll(TQuillonAbstractCollection& ACollection);
  void RemoveAll(const TQuillonAbstractCollection& ACollection);
  void RetainAll(const TQuillonAbstractCollection& ACollection);
  bool ContainsAll(const TQuillonAbstractCollection& ACollection) const;
};
