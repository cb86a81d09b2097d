#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "QuillonDataObjects/DataList.h"
#include "QuillonDataObjects/DataObject.h"
#include "QuillonDataObjects/Release.h"
#include "QuillonSet.h"

/// Kind of a persisted row: how its value stands in a data file.
enum class TQuillonRowKind : std::uint8_t {
  Boolean,
  Byte,
  ShortInt,
  Word,
  SmallInt,
  LongInt,
  Int64,
  Single,
  Double,
  DateTime,
  Date,
  Time,
  String,
  Guid,
  IntegerArray,
  StringArray,
  Graphic,
  Object,     ///< nested object, owned
  Reference,  ///< object that another one owns
  List,       ///< list, of objects or of references as the list says
  Hook,       ///< no value: a step that is taken here when the object is read
};

/// Bytes of a picture as the file holds them; never drawn here.
struct TQuillonGraphic {
  std::string Image;
  friend bool operator==(const TQuillonGraphic&, const TQuillonGraphic&) = default;
};

/// Text form of a field. A type of the model that is persisted as text, say a set of weeks, has a ToText and a
/// FromText of its own that are found here.
inline std::string_view ToText(const std::string& AValue, std::string& /*AScratch*/) { return AValue; }
inline void FromText(std::string& AValue, std::string_view AText) { AValue.assign(AText); }
inline std::string_view ToText(const TQuillonUserName& AValue, std::string& /*AScratch*/) { return AValue.Text(); }
inline void FromText(TQuillonUserName& AValue, std::string_view AText) { AValue = TQuillonUserName(AText); }

/// Bounds of a number field.
template <class T>
struct TQuillonNumberType {
  using TType = T;
};
template <class T>
requires std::is_enum_v<T>
struct TQuillonNumberType<T> {
  using TType = std::underlying_type_t<T>;
};
template <class TMember, class TBits>
struct TQuillonNumberType<TQuillonSet<TMember, TBits>> {
  using TType = TBits;
};

/// Number form of a field: numbers, enumerations and sets.
template <class T>
constexpr std::int64_t ToNumber(const T& AValue) {
  return static_cast<std::int64_t>(AValue);
}
template <class T>
constexpr void FromNumber(T& AValue, std::int64_t ANumber) {
  AValue = static_cast<T>(ANumber);
}
template <class TMember, class TBits>
constexpr std::int64_t ToNumber(const TQuillonSet<TMember, TBits>& AValue) {
  return AValue.Bits;
}
template <class TMember, class TBits>
constexpr void FromNumber(TQuillonSet<TMember, TBits>& AValue, std::int64_t ANumber) {
  AValue.Bits = static_cast<TBits>(ANumber);
}

/// One row of a class table: a persisted value with its name, its place in the object and its rules.
struct TQuillonDataRow {
  using TObject = TQuillonDataAbstractObject;

  struct TNumber {
    std::int64_t (*Get)(const TObject&);
    void (*Set)(TObject&, std::int64_t);
  };
  struct TFloat {
    double (*Get)(const TObject&);
    void (*Set)(TObject&, double);
  };
  struct TText {
    std::string_view (*Get)(const TObject&, std::string& AScratch);
    void (*Set)(TObject&, std::string_view);
  };
  /// A field that is handed out as it is.
  template <class T>
  struct TField {
    const T& (*Get)(const TObject&);
    T& (*Field)(TObject&);
  };
  using TGuid = TField<TGUID>;
  using TIntegers = TField<std::vector<std::int32_t>>;
  using TStrings = TField<std::vector<std::string>>;
  using TPicture = TField<TQuillonGraphic>;
  using TItems = TField<TQuillonDataList>;
  /// References and nested objects.
  struct TPointer {
    TQuillonDataObject* (*Get)(const TObject&);
    void (*Set)(TObject&, TQuillonDataObject*);
    const TQuillonDataClass& (*Class)();
  };
  struct TStep {
    void (*Run)(TObject&);
  };

  std::string_view Name;
  TQuillonRowKind Kind = TQuillonRowKind::Hook;
  bool Required = false;       ///< the name must stand in the file
  bool AlwaysWritten = false;  ///< written also while it equals the default
  bool KeepsCurrent = false;   ///< an absent name leaves the field as it is
  bool Merged = false;         ///< the items of a list join those that are there
  bool Essential = false;      ///< a reference: without the object there the one that refers to it has no sense
  bool IsStamp = false;        ///< tells of the object's past, no content: not copied by Assign
  bool HasSince = false;
  bool HasUntil = false;
  /// Place in the whole table of the first row with this name: a name that stands twice reads its first element.
  std::size_t FirstOfName = 0;
  std::variant<std::monostate, TNumber, TFloat, TText, TGuid, TIntegers, TStrings, TPicture, TPointer, TItems, TStep>
      Access;

  std::int64_t DefaultNumber = 0;
  std::int64_t MinNumber = 0;  ///< bounds of what both the row's kind and the field can hold
  std::int64_t MaxNumber = 0;
  double DefaultFloat = 0;
  std::string_view DefaultText;
  std::string_view WrittenText;  ///< written in place of the field, unless empty
  TQuillonRelease Since;         ///< read only from files of this release on
  TQuillonRelease Until;         ///< retired: read only from files older than this release, and never written

  bool IsRetired() const { return HasUntil; }
  bool IsReadFrom(const TQuillonRelease& ARelease) const {
    return (!HasSince || ARelease >= Since) && (!HasUntil || ARelease < Until);
  }

  template <class TAccess>
  const TAccess& As() const {
    return *std::get_if<TAccess>(&Access);
  }
};

/// One function for each kind of access, for std::visit.
template <class... TCases>
struct TQuillonCases : TCases... {
  using TCases::operator()...;
};
template <class... TCases>
TQuillonCases(TCases...) -> TQuillonCases<TCases...>;  // for Clang 14, which does not deduce it for aggregates

namespace QuillonDataObjects {

/// Puts the row's default into the field; a nested object stays as it is. A list takes its stamps with it.
void ResetRow(TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow);

/// The same for all rows of the object's class but its stamps.
void ResetRows(TQuillonDataAbstractObject& AnObject);

/// True while the field holds what an absent element reads as.
bool HoldsDefault(const TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow);

/// Copies the content of one row; of a list or a nested object by its own Assign.
void AssignRow(const TQuillonDataRow& ARow, TQuillonDataAbstractObject& ATarget,
               const TQuillonDataAbstractObject& ASource);

}  // namespace QuillonDataObjects
