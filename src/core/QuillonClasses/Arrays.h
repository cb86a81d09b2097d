#pragma once

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "QuillonClasses/Collection.h"

/// Whole numbers by index. On streams the capacity, which grows as that of lists, the count and the numbers.
class TQuillonIntegerArray final : public TQuillonNamed<TQuillonIntegerArray> {
 public:
  static constexpr std::string_view ClassName = "TQuillonIntegerArray";

  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  void ReadProperties(TQuillonObjectReader& AReader) override;
  void Assign(const TQuillonObject& AnObject) override;

  void Add(std::int32_t AValue) { Insert(Count(), AValue); }
  /// @throws EQuillonCollectionError for an index outside of the array, here and below
  void Insert(std::int32_t AnIndex, std::int32_t AValue);
  void Delete(std::int32_t AnIndex);
  std::int32_t GetValue(std::int32_t AnIndex) const;
  void SetValue(std::int32_t AnIndex, std::int32_t AValue);
  void Clear();
  void Fill(std::int32_t AValue) { std::ranges::fill(FValues, AValue); }
  /// -1 if there is none.
  std::int32_t IndexOf(std::int32_t AValue) const;
  std::int32_t LastIndexOf(std::int32_t AValue) const;
  bool Contains(std::int32_t AValue) const { return IndexOf(AValue) >= 0; }
  bool IsEmpty() const { return FValues.empty(); }
  std::int32_t Count() const { return static_cast<std::int32_t>(FValues.size()); }
  std::int32_t Capacity() const { return FCapacity.Value(); }
  /// @throws EQuillonIntegerArrayError "Kapazität der Liste ist erschöpft (%d)" for less than the count
  void SetCapacity(std::int64_t AValue) { FCapacity.Set(AValue, FValues.size()); }

 private:
  std::vector<std::int32_t> FValues;
  QuillonClasses::TCapacity<EQuillonIntegerArrayError> FCapacity;
};

/// Values in two dimensions, zero or null at first. On streams the two sizes, then for each place of the first
/// dimension all of the second.
template <class TValue>
class TQuillonGrid : public TQuillonPersistent {
 public:
  TQuillonGrid() = default;
  TQuillonGrid(std::int32_t AFirstCount, std::int32_t ASecondCount) { ChangeDimension(AFirstCount, ASecondCount); }

  void WriteProperties(TQuillonObjectWriter& AWriter) const override {
    AWriter.WriteLongInt(FFirstCount);
    AWriter.WriteLongInt(FSecondCount);
    for (const TValue& Value : FValues) {
      QuillonStreams::TKind<TValue>::WriteTo(AWriter, Value);
    }
  }
  void ReadProperties(TQuillonObjectReader& AReader) override {
    const std::int64_t First = QuillonClasses::ReadCount(AReader);
    const std::int64_t Second = QuillonClasses::ReadCount(AReader);
    std::vector<TValue> Values;
    for (std::int64_t Left = First * Second; Left > 0; --Left) {
      QuillonStreams::TKind<TValue>::ReadFrom(AReader, Values.emplace_back());
    }
    FValues = std::move(Values);
    FFirstCount = static_cast<std::int32_t>(First);
    FSecondCount = static_cast<std::int32_t>(Second);
  }

  /// What has a place in both sizes stays.
  /// @throws std::out_of_range for a size below zero
  void ChangeDimension(std::int32_t AFirstCount, std::int32_t ASecondCount) {
    if (AFirstCount < 0 || ASecondCount < 0) {
      Refuse();
    }
    std::vector<TValue> Values(static_cast<std::size_t>(AFirstCount) * static_cast<std::size_t>(ASecondCount));
    const std::int32_t FirstKept = FValues.empty() ? 0 : std::min(FFirstCount, AFirstCount);
    for (std::int32_t First = 0; First < FirstKept; ++First) {
      for (std::int32_t Second = 0; Second < std::min(FSecondCount, ASecondCount); ++Second) {
        Values[Place(First, Second, ASecondCount)] = std::move(At(First, Second));
      }
    }
    FValues = std::move(Values);
    FFirstCount = AFirstCount;
    FSecondCount = ASecondCount;
  }
  void Clear() { ChangeDimension(0, 0); }
  bool IsEmpty() const { return FValues.empty(); }
  std::int32_t FirstCount() const { return FFirstCount; }
  std::int32_t SecondCount() const { return FSecondCount; }

 protected:
  /// @throws std::out_of_range "Col or row out of range"
  TValue& At(std::int32_t AFirst, std::int32_t ASecond) {
    if (AFirst < 0 || AFirst >= FFirstCount || ASecond < 0 || ASecond >= FSecondCount) {
      Refuse();
    }
    return FValues[Place(AFirst, ASecond, FSecondCount)];
  }
  void FillAll(const TValue& AValue) { std::ranges::fill(FValues, AValue); }

 private:
  [[noreturn]] static void Refuse() { throw std::out_of_range("Col or row out of range"); }
  static std::size_t Place(std::int32_t AFirst, std::int32_t ASecond, std::int32_t ASecondCount) {
    return static_cast<std::size_t>(AFirst) * static_cast<std::size_t>(ASecondCount) +
           static_cast<std::size_t>(ASecond);
  }

  std::vector<TValue> FValues;
  std::int32_t FFirstCount = 0;
  std::int32_t FSecondCount = 0;
};

/// Objects by column and row.
class TQuillonMatrix final : public TQuillonNamed<TQuillonMatrix, TQuillonGrid<TQuillonItem>> {
 public:
  static constexpr std::string_view ClassName = "TQuillonMatrix";
  using TQuillonNamed::TQuillonNamed;

  const TQuillonItem& GetItem(std::int32_t ACol, std::int32_t ARow) { return At(ACol, ARow); }
  void SetItem(std::int32_t ACol, std::int32_t ARow, TQuillonItem AnItem) { At(ACol, ARow) = std::move(AnItem); }
};

/// Numbers by row and column.
class TQuillonLongWordMatrix final : public TQuillonNamed<TQuillonLongWordMatrix, TQuillonGrid<std::uint32_t>> {
 public:
  static constexpr std::string_view ClassName = "TQuillonLongWordMatrix";
  using TQuillonNamed::TQuillonNamed;

  void Fill(std::uint32_t AValue) { FillAll(AValue); }
  std::uint32_t GetValue(std::int32_t ARow, std::int32_t ACol) { return At(ARow, ACol); }
  void SetValue(std::int32_t ARow, std::int32_t ACol, std::uint32_t AValue) { At(ARow, ACol) = AValue; }
};
