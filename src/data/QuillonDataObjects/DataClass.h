#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonDataObjects/Row.h"

/// Description of a persisted class: its tag, its base, its table of rows, its factory.
/// Everything generic (reading, writing, Assign, freeing of parts) walks the table.
class TQuillonDataClass {
 public:
  using TFactory = TQuillonDataAbstractObject* (*)();

  /// @param ATag the class's name in data files
  /// @param ADisplayFormat name of an object in messages, "%s" standing for what the object is told by; may be empty
  /// @param AFactory null for a class that has descendants only
  TQuillonDataClass(std::string_view ATag, std::string_view ADisplayFormat, const TQuillonDataClass* ABase,
                    TFactory AFactory);

  std::string_view Tag() const { return FTag; }
  std::string_view DisplayFormat() const { return FDisplayFormat; }
  /// The display format with the argument in it; empty for a class without one.
  std::string DisplayText(std::string_view AnArgument) const;
  const TQuillonDataClass* Base() const { return FBase; }
  bool IsAbstract() const { return FFactory == nullptr; }
  /// All rows in persisted order, those of the bases first.
  std::span<const TQuillonDataRow> Rows() const { return FRows; }
  using TListField = TQuillonDataList& (*)(TQuillonDataAbstractObject&);
  /// The lists among them.
  std::span<const TListField> Lists() const { return FLists; }
  /// Place of the first row with the name from AFrom on, or else ahead of it; the number of rows if there is none.
  std::size_t FindRow(std::string_view AName, std::size_t AFrom) const;
  /// True for the class itself too.
  bool DescendsFrom(const TQuillonDataClass& AClass) const {
    for (const TQuillonDataClass* Class = this; Class != nullptr; Class = Class->FBase) {
      if (Class == &AClass) {
        return true;
      }
    }
    return false;
  }

  /// A new object with owner and identity; nobody holds it yet.
  TQuillonDataObject* Create(TQuillonDataAbstractObject* AnOwner, const TGUID& AnID) const;

  /// The same for any class, a storage included.
  TQuillonDataAbstractObject* CreateAny(TQuillonDataAbstractObject* AnOwner, const TGUID& AnID) const;
  /// The second half of that, for an object of any class that has only been constructed; it is freed on failure.
  static TQuillonDataAbstractObject* Begin(TQuillonDataAbstractObject* AnObject, TQuillonDataAbstractObject* AnOwner,
                                           const TGUID& AnID);

 protected:
  void AddRow(TQuillonDataRow ARow);
  TQuillonDataRow& LastRow() { return FRows.back(); }

 private:
  std::string_view FTag;
  std::string_view FDisplayFormat;
  const TQuillonDataClass* FBase;
  TFactory FFactory;
  std::vector<TQuillonDataRow> FRows;
  std::vector<TListField> FLists;
  std::string FInitials;  ///< first character of each row's name: what a search by name looks at first
};

namespace QuillonDataObjects {

/// A new object of class T, registered with the storage of AnOwner; nobody holds it yet.
template <class T>
T* Create(TQuillonDataAbstractObject* AnOwner, const TGUID& AnID = QuillonGuid::New()) {
  return static_cast<T*>(T::Class().CreateAny(AnOwner, AnID));
}

/// A storage of its own, constructed with the arguments.
template <class T, class... TArguments>
TQuillonDataHandle<T> CreateStorage(TArguments... AnArguments) {
  return TQuillonDataHandle<T>(
      static_cast<T*>(TQuillonDataClass::Begin(new T(AnArguments...), nullptr, QuillonGuid::New())));
}

/// Copies the content of the rows that both classes have from their common bases; stamps stay.
/// @throws EQuillonAssignError for objects with no content in common
void AssignRows(TQuillonDataAbstractObject& ATarget, const TQuillonDataAbstractObject& ASource);

}  // namespace QuillonDataObjects

/// Takes a pointer to member apart.
template <auto AMember>
struct TQuillonMember;
template <class TObject, class TField, TField TObject::*AMember>
struct TQuillonMember<AMember> {
  using TOwner = TObject;
  using TType = TField;
  static TField& Of(TQuillonDataAbstractObject& AnObject) { return static_cast<TObject&>(AnObject).*AMember; }
  static const TField& Of(const TQuillonDataAbstractObject& AnObject) {
    return static_cast<const TObject&>(AnObject).*AMember;
  }
};

template <class T>
struct TQuillonPointee;
template <class T>
struct TQuillonPointee<T*> {
  using TType = T;
  static T* Get(T* APointer) { return APointer; }
  static void Set(T*& APointer, TQuillonDataObject* AnObject, TQuillonDataAbstractObject& /*AnOwner*/) {
    APointer = static_cast<T*>(AnObject);
  }
};
template <class T>
struct TQuillonPointee<TQuillonOwned<T>> {
  using TType = T;
  static T* Get(const TQuillonOwned<T>& AnOwned) { return AnOwned.Get(); }
  static void Set(TQuillonOwned<T>& AnOwned, TQuillonDataObject* AnObject, TQuillonDataAbstractObject& AnOwner) {
    AnOwned.Take(AnObject, AnOwner);
  }
};

/// Writes a class table down, a call a row, in persisted order:
///
///   DescribeClass<TVELGebaeude, TVELStammobjekt>("Building", "Gebäude \"%s\"")
///       .LongInt<&TVELGebaeude::FWegzeit>("RouteTime")
///       .String<&TVELGebaeude::FCampus>("Campus");
///
/// A row without a default has the kind's zero value. The calls behind a row (Required, Since, ...) are its rules.
class TQuillonDataClassBuilder : public TQuillonDataClass {
 public:
  using TQuillonDataClass::TQuillonDataClass;
  using TKind = TQuillonRowKind;
  using TBuilder = TQuillonDataClassBuilder;

  template <auto AMember>
  TBuilder& Boolean(std::string_view AName, bool ADefault = false) {
    return Number<AMember, bool>(AName, TKind::Boolean, ADefault ? 1 : 0);
  }
  template <auto AMember>
  TBuilder& Byte(std::string_view AName, std::int64_t ADefault = 0) {
    return Number<AMember, std::uint8_t>(AName, TKind::Byte, ADefault);
  }
  template <auto AMember>
  TBuilder& ShortInt(std::string_view AName, std::int64_t ADefault = 0) {
    return Number<AMember, std::int8_t>(AName, TKind::ShortInt, ADefault);
  }
  template <auto AMember>
  TBuilder& Word(std::string_view AName, std::int64_t ADefault = 0) {
    return Number<AMember, std::uint16_t>(AName, TKind::Word, ADefault);
  }
  template <auto AMember>
  TBuilder& SmallInt(std::string_view AName, std::int64_t ADefault = 0) {
    return Number<AMember, std::int16_t>(AName, TKind::SmallInt, ADefault);
  }
  template <auto AMember>
  TBuilder& LongInt(std::string_view AName, std::int64_t ADefault = 0) {
    return Number<AMember, std::int32_t>(AName, TKind::LongInt, ADefault);
  }
  /// The same through a setter, for a field with a rule of its own.
  template <auto AMember, auto ASetter>
  TBuilder& LongInt(std::string_view AName, std::int64_t ADefault = 0) {
    LongInt<AMember>(AName, ADefault);
    std::get_if<TQuillonDataRow::TNumber>(&LastRow().Access)->Set = [](TObject& AnObject, std::int64_t AValue) {
      RunHook(ASetter, AnObject, static_cast<typename TQuillonMember<AMember>::TType>(AValue));
    };
    return *this;
  }
  template <auto AMember>
  TBuilder& Int64(std::string_view AName, std::int64_t ADefault = 0) {
    return Number<AMember, std::int64_t>(AName, TKind::Int64, ADefault);
  }
  template <auto AMember>
  TBuilder& Single(std::string_view AName, double ADefault = 0) {
    return Float<AMember>(AName, TKind::Single, ADefault);
  }
  template <auto AMember>
  TBuilder& Double(std::string_view AName, double ADefault = 0) {
    return Float<AMember>(AName, TKind::Double, ADefault);
  }
  template <auto AMember>
  TBuilder& DateTime(std::string_view AName) {
    return Float<AMember>(AName, TKind::DateTime, 0);
  }
  template <auto AMember>
  TBuilder& Date(std::string_view AName) {
    return Float<AMember>(AName, TKind::Date, 0);
  }
  template <auto AMember>
  TBuilder& Time(std::string_view AName) {
    return Float<AMember>(AName, TKind::Time, 0);
  }

  template <auto AMember>
  TBuilder& String(std::string_view AName, std::string_view ADefault = {}) {
    using TMember = TQuillonMember<AMember>;
    TQuillonDataRow Row = MakeRow(AName, TKind::String);
    Row.Access = TQuillonDataRow::TText{
        [](const TObject& AnObject, std::string& AScratch) { return ToText(TMember::Of(AnObject), AScratch); },
        [](TObject& AnObject, std::string_view AText) { FromText(TMember::Of(AnObject), AText); }};
    Row.DefaultText = ADefault;
    return Add(Row);
  }
  template <auto AMember>
  TBuilder& Guid(std::string_view AName) {
    return Field<AMember, TGUID>(AName, TKind::Guid);
  }
  template <auto AMember>
  TBuilder& IntegerArray(std::string_view AName) {
    return Field<AMember, std::vector<std::int32_t>>(AName, TKind::IntegerArray);
  }
  template <auto AMember>
  TBuilder& StringArray(std::string_view AName) {
    return Field<AMember, std::vector<std::string>>(AName, TKind::StringArray);
  }
  template <auto AMember>
  TBuilder& Graphic(std::string_view AName) {
    return Field<AMember, TQuillonGraphic>(AName, TKind::Graphic);
  }

  /// A nested object; the member is a TQuillonOwned.
  template <auto AMember>
  TBuilder& Object(std::string_view AName) {
    return Pointer<AMember>(AName, TKind::Object);
  }
  /// A reference; the member is a plain pointer, and its class the one that the row accepts.
  template <auto AMember>
  TBuilder& Reference(std::string_view AName) {
    return Pointer<AMember>(AName, TKind::Reference);
  }
  /// The same through a setter, for a field with a rule of its own.
  template <auto AMember, auto ASetter>
  TBuilder& Reference(std::string_view AName) {
    Reference<AMember>(AName);
    std::get_if<TQuillonDataRow::TPointer>(&LastRow().Access)->Set = [](TObject& AnObject, TQuillonDataObject* AValue) {
      RunHook(ASetter, AnObject, static_cast<typename TQuillonMember<AMember>::TType>(AValue));
    };
    return *this;
  }
  template <auto AMember>
  TBuilder& List(std::string_view AName) {
    return Field<AMember, TQuillonDataList>(AName, TKind::List);
  }
  /// A retired row: a single reference, now an item of a list.
  template <auto AList, class TItem>
  TBuilder& ReferenceInto(std::string_view AName) {
    TQuillonDataRow Row = MakeRow(AName, TKind::Reference);
    Row.Access = TQuillonDataRow::TPointer{
        [](const TObject&) -> TQuillonDataObject* { return nullptr; },
        [](TObject& AnObject, TQuillonDataObject* AValue) { TQuillonMember<AList>::Of(AnObject).Merge(AValue); },
        []() -> const TQuillonDataClass& { return TItem::Class(); }};
    return Add(Row);
  }
  /// A retired row: a single text, now a line of several; an empty one is none.
  template <auto AMember>
  TBuilder& Line(std::string_view AName) {
    TQuillonDataRow Row = MakeRow(AName, TKind::String);
    Row.Access = TQuillonDataRow::TText{[](const TObject&, std::string&) { return std::string_view(); },
                                        [](TObject& AnObject, std::string_view AText) {
                                          if (!AText.empty()) {
                                            TQuillonMember<AMember>::Of(AnObject).emplace_back(AText);
                                          }
                                        }};
    return Add(Row);
  }
  /// A retired row: a flag that a method turns into what stands for it now.
  template <auto AMethod>
  TBuilder& OldBoolean(std::string_view AName, bool ADefault) {
    TQuillonDataRow Row = MakeRow(AName, TKind::Boolean);
    Row.Access = TQuillonDataRow::TNumber{
        [](const TObject&) { return std::int64_t{0}; },
        [](TObject& AnObject, std::int64_t AValue) { RunHook(AMethod, AnObject, AValue != 0); }};
    Row.DefaultNumber = ADefault ? 1 : 0;
    Row.MinNumber = std::numeric_limits<std::int32_t>::min();
    Row.MaxNumber = std::numeric_limits<std::int32_t>::max();
    return Add(Row);
  }
  /// A step when the object is read, between the rows ahead of it and those behind.
  template <auto AMethod>
  TBuilder& Hook() {
    TQuillonDataRow Row = MakeRow("", TKind::Hook);
    Row.Access = TQuillonDataRow::TStep{[](TObject& AnObject) { RunHook(AMethod, AnObject); }};
    return Add(Row);
  }

  TBuilder& Required() {
    LastRow().Required = true;
    return *this;
  }
  TBuilder& AlwaysWritten() {
    LastRow().AlwaysWritten = true;
    return *this;
  }
  /// What a file gets whatever the field holds, which tells of the file that was read.
  TBuilder& WrittenAs(std::string_view AText) {
    LastRow().WrittenText = AText;
    return AlwaysWritten();
  }
  TBuilder& KeepsCurrent() {
    LastRow().KeepsCurrent = true;
    return *this;
  }
  /// The object goes with the one that it refers to here.
  TBuilder& Essential() {
    LastRow().Essential = true;
    return *this;
  }
  /// The items of a list join those that are there.
  TBuilder& Merged() {
    LastRow().Merged = true;
    return *this;
  }
  TBuilder& Stamp() {
    LastRow().IsStamp = true;
    return *this;
  }
  TBuilder& Since(std::string_view ARelease) {
    LastRow().HasSince = true;
    LastRow().Since = ARelease;
    return *this;
  }
  TBuilder& Until(std::string_view ARelease) {
    LastRow().HasUntil = true;
    LastRow().Until = ARelease;
    return *this;
  }

 private:
  using TObject = TQuillonDataAbstractObject;

  static TQuillonDataRow MakeRow(std::string_view AName, TKind AKind) {
    TQuillonDataRow Row;
    Row.Name = AName;
    Row.Kind = AKind;
    return Row;
  }

  TBuilder& Add(const TQuillonDataRow& ARow) {
    AddRow(ARow);
    return *this;
  }

  template <class TClass, class... TArguments>
  static void RunHook(void (TClass::*AMethod)(TArguments...), TObject& AnObject, TArguments... AnArguments) {
    (static_cast<TClass&>(AnObject).*AMethod)(AnArguments...);
  }

  template <auto AMember, class TPersisted>
  TBuilder& Number(std::string_view AName, TKind AKind, std::int64_t ADefault) {
    using TMember = TQuillonMember<AMember>;
    using TField = typename TMember::TType;
    static_assert(!std::is_floating_point_v<TField>, "a number row needs a field that holds whole numbers");
    static_assert(std::is_same_v<TPersisted, bool> == std::is_same_v<TField, bool>, "flags are Boolean rows");
    static_assert(sizeof(TField) <= sizeof(TPersisted), "the field holds more than the row can carry");
    // A flag is set by any number.
    using TBounds = std::conditional_t<std::is_same_v<TPersisted, bool>, std::int32_t, TPersisted>;
    using TFieldBounds =
        std::conditional_t<std::is_same_v<TPersisted, bool>, std::int32_t, typename TQuillonNumberType<TField>::TType>;
    TQuillonDataRow Row = MakeRow(AName, AKind);
    Row.Access = TQuillonDataRow::TNumber{
        [](const TObject& AnObject) { return ToNumber(TMember::Of(AnObject)); },
        [](TObject& AnObject, std::int64_t AValue) { FromNumber(TMember::Of(AnObject), AValue); }};
    Row.DefaultNumber = ADefault;
    Row.MinNumber =
        std::max<std::int64_t>(std::numeric_limits<TBounds>::min(), std::numeric_limits<TFieldBounds>::min());
    Row.MaxNumber =
        std::min<std::int64_t>(std::numeric_limits<TBounds>::max(), std::numeric_limits<TFieldBounds>::max());
    return Add(Row);
  }

  template <auto AMember>
  TBuilder& Float(std::string_view AName, TKind AKind, double ADefault) {
    using TMember = TQuillonMember<AMember>;
    static_assert(
        std::is_convertible_v<double, typename TMember::TType> && sizeof(typename TMember::TType) == sizeof(double),
        "numbers with a fraction are held in double precision, so that their text is kept");
    TQuillonDataRow Row = MakeRow(AName, AKind);
    Row.Access =
        TQuillonDataRow::TFloat{[](const TObject& AnObject) { return static_cast<double>(TMember::Of(AnObject)); },
                                [](TObject& AnObject, double AValue) { TMember::Of(AnObject) = AValue; }};
    Row.DefaultFloat = ADefault;
    return Add(Row);
  }

  template <auto AMember, class TField>
  TBuilder& Field(std::string_view AName, TKind AKind) {
    using TMember = TQuillonMember<AMember>;
    TQuillonDataRow Row = MakeRow(AName, AKind);
    TQuillonDataRow::TField<TField> Access{};
    Access.Get = [](const TObject& AnObject) -> const TField& { return TMember::Of(AnObject); };
    Access.Field = [](TObject& AnObject) -> TField& { return TMember::Of(AnObject); };
    Row.Access = Access;
    return Add(Row);
  }

  template <auto AMember>
  TBuilder& Pointer(std::string_view AName, TKind AKind) {
    using TMember = TQuillonMember<AMember>;
    using TPointee = TQuillonPointee<typename TMember::TType>;
    TQuillonDataRow Row = MakeRow(AName, AKind);
    Row.Access = TQuillonDataRow::TPointer{
        [](const TObject& AnObject) -> TQuillonDataObject* { return TPointee::Get(TMember::Of(AnObject)); },
        [](TObject& AnObject, TQuillonDataObject* AValue) { TPointee::Set(TMember::Of(AnObject), AValue, AnObject); },
        []() -> const TQuillonDataClass& { return TPointee::TType::Class(); }};
    return Add(Row);
  }
};

/// Starts the table of class T, whose base is TBase.
template <class T, class TBase>
TQuillonDataClassBuilder DescribeClass(std::string_view ATag, std::string_view ADisplayFormat = {}) {
  return TQuillonDataClassBuilder(ATag, ADisplayFormat, &TBase::Class(),
                                  []() -> TQuillonDataAbstractObject* { return new T; });
}

/// The same for a class that is never made itself.
template <class T, class TBase>
TQuillonDataClassBuilder DescribeAbstractClass(std::string_view ATag) {
  return TQuillonDataClassBuilder(ATag, {}, &TBase::Class(), nullptr);
}
