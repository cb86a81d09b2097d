#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <vector>

#include "QuillonStreams/Reader.h"
#include "QuillonStreams/Writer.h"
#include "QuillonTypes.h"

class TQuillonPersistent;
class TQuillonObjectReader;
class TQuillonObjectWriter;

/// An object that has no place on a stream: of a class without name or not registered, or nested too deep.
class EQuillonPersistentError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// A published property of a class; see QuillonStreams::Published.
struct TQuillonProperty {
  void (*Write)(const TQuillonPersistent& AnObject, TQuillonObjectWriter& AWriter);
  void (*Read)(TQuillonPersistent& AnObject, TQuillonObjectReader& AReader);
};

/// A class whose objects streams can hold: its name there, how a fresh one is made, and its own properties, which
/// stand behind those of the base.
struct TQuillonPersistentClass {
  std::string Name;
  std::shared_ptr<TQuillonPersistent> (*Create)();
  std::vector<TQuillonProperty> Properties;
  const TQuillonPersistentClass* Base = nullptr;
};

/// The classes that a reader can make objects of. Filled before any thread reads.
class TQuillonClassRegistry {
 public:
  static TQuillonClassRegistry& Instance();

  /// The class must outlive the registry.
  void AddClass(const TQuillonPersistentClass& AClass) { FClassMap[AClass.Name] = &AClass; }
  /// @return null for a name that is not known
  const TQuillonPersistentClass* GetClass(std::string_view AName) const;
  /// Whether this class, and no other, is the one that its name stands for.
  bool ContainsClass(const TQuillonPersistentClass& AClass) const { return GetClass(AClass.Name) == &AClass; }
  void RemoveClass(const TQuillonPersistentClass& AClass);

 private:
  TQuillonClassRegistry() = default;

  std::map<std::string, const TQuillonPersistentClass*, std::less<>> FClassMap;
};

/// An object that can be put on a stream with all that it refers to. Who holds one holds it by a shared pointer, and
/// the last one to let go frees it: no collection, box or reader has a flag for who owns what it holds.
class TQuillonPersistent : public TQuillonObject {
 public:
  virtual const TQuillonPersistentClass& PersistentClass() const = 0;
  /// The published properties; a class with more content adds it behind them.
  virtual void WriteProperties(TQuillonObjectWriter& AWriter) const;
  virtual void ReadProperties(TQuillonObjectReader& AReader);

  /// A copy, by way of a stream, with copies of all objects it holds.
  /// @throws EQuillonPersistentError if a class is not registered
  std::shared_ptr<TQuillonPersistent> Clone() const;
  /// Whether the other is of the same class and has the same content, that of the objects it refers to included.
  bool HasSameContent(const TQuillonPersistent& AnObject) const;
  /// The properties without a handle: nothing that the object holds may refer back to it.
  void SaveToStream(TQuillonStream& AStream) const;
  void LoadFromStream(TQuillonStream& AStream);
  /// The same, compressed in the zlib format (RFC 1950), whose end is the end of the object.
  /// @throws EQuillonZlibError when reading what is cut or damaged
  void SaveToZipStream(TQuillonStream& AStream) const;
  void LoadFromZipStream(TQuillonStream& AStream);
};

/// Objects with shared and cyclic references: each stands on the stream once, with its class and content behind its
/// handle; where it occurs again there is the handle alone. One writer serves one graph.
class TQuillonObjectWriter final : public TQuillonWriter {
 public:
  explicit TQuillonObjectWriter(TQuillonWriter& AWriter) : FWriter(AWriter) {}

  void FlushBuffer() override { FWriter.FlushBuffer(); }
  std::size_t Write(std::string_view ABytes) override { return FWriter.Write(ABytes); }

  /// The objects must live as long as the writer. @param AnObject may be null
  /// @throws EQuillonPersistentError for objects that hold each other in too many levels to be read again
  void WriteObject(const TQuillonPersistent* AnObject);
  /// The content alone, without a handle or the name of the class.
  /// @throws EQuillonPersistentError for null
  void WriteObjectProperties(const TQuillonPersistent* AnObject);

 private:
  TQuillonWriter& FWriter;
  std::unordered_map<const TQuillonPersistent*, std::int32_t> FHandles;
  int FDepth = 0;
};

/// The objects that a TQuillonObjectWriter has written. They live as long as somebody holds them, this reader included.
/// The limit of texts is that of the reader below.
class TQuillonObjectReader final : public TQuillonReader {
 public:
  explicit TQuillonObjectReader(TQuillonReader& AReader) : FReader(AReader) { FStringLimit = AReader.FStringLimit; }

  bool CanRead() override { return FReader.CanRead(); }
  void FlushBuffer() override { FReader.FlushBuffer(); }
  std::size_t Read(std::span<char> ABuffer) override { return FReader.Read(ABuffer); }

  /// The next object, for a holder; null if null was written. An object cannot be held by what it holds itself.
  /// @throws EQuillonReaderError for an object of another class, or one whose content is still being read
  /// @throws EQuillonPersistentError for a class without a name or not registered, or too many levels
  template <class TObject = TQuillonPersistent>
  std::shared_ptr<TObject> ReadObject() {
    return Checked<TObject>(ReadAny(true));
  }
  /// As ReadObject, for somebody who refers to the object without holding it; its content may still be on its way.
  template <class TObject = TQuillonPersistent>
  std::weak_ptr<TObject> ReadReference() {
    return Checked<TObject>(ReadAny(false));
  }
  /// Content without a handle, read into the object or, for null, into a fresh one of the class. @return that object
  std::shared_ptr<TQuillonPersistent> ReadObjectProperties(std::shared_ptr<TQuillonPersistent> AnObject,
                                                           const TQuillonPersistentClass& AClass);
  /// Objects that were made so far; one that occurs again counts once.
  std::size_t ObjectCount() const { return FObjectMap.size(); }

 private:
  struct TEntry {
    std::shared_ptr<TQuillonPersistent> Object;
    int Height = 0;  ///< levels of objects that hold each other, this one included; 0 while its content is read
  };

  template <class TObject>
  static std::shared_ptr<TObject> Checked(const std::shared_ptr<TQuillonPersistent>& AnObject) {
    auto Object = std::dynamic_pointer_cast<TObject>(AnObject);
    if (AnObject != nullptr && Object == nullptr) {
      throw EQuillonReaderError();
    }
    return Object;
  }
  std::shared_ptr<TQuillonPersistent> ReadAny(bool IsHeld);

  TQuillonReader& FReader;
  std::map<std::int32_t, TEntry> FObjectMap;
  int FDepth = 0;
  int FHeightBelow = 0;  ///< of what the object that is being read holds so far
};

namespace QuillonStreams {

/// The two sides of a kind of property: how a field of the type is written and read. The type decides, so that a field
/// of another one is refused before the program runs.
template <class TValue>
struct TKind {
  static_assert(sizeof(TValue) == 0, "Serialisierung der Eigenschaft wird nicht unterstützt.");
};

template <auto Write, auto Read>
struct TValueKind {
  static void WriteTo(TQuillonObjectWriter& AWriter, const auto& AValue) { (AWriter.*Write)(AValue); }
  static void ReadFrom(TQuillonObjectReader& AReader, auto& AValue) { AValue = (AReader.*Read)(); }
};

/// As TValueKind, for a structure whose value is a member of it.
template <auto Member, auto Write, auto Read>
struct TMemberKind {
  static void WriteTo(TQuillonObjectWriter& AWriter, const auto& AValue) { (AWriter.*Write)(AValue.*Member); }
  static void ReadFrom(TQuillonObjectReader& AReader, auto& AValue) { AValue.*Member = (AReader.*Read)(); }
};

// clang-format off
template <> struct TKind<std::int8_t> : TValueKind<&TQuillonWriter::WriteShortInt, &TQuillonReader::ReadShortInt> {};
template <> struct TKind<std::uint8_t> : TValueKind<&TQuillonWriter::WriteByte, &TQuillonReader::ReadByte> {};
template <> struct TKind<std::int16_t> : TValueKind<&TQuillonWriter::WriteSmallInt, &TQuillonReader::ReadSmallInt> {};
template <> struct TKind<std::uint16_t> : TValueKind<&TQuillonWriter::WriteWord, &TQuillonReader::ReadWord> {};
template <> struct TKind<std::int32_t> : TValueKind<&TQuillonWriter::WriteLongInt, &TQuillonReader::ReadLongInt> {};
template <> struct TKind<std::uint32_t> : TValueKind<&TQuillonWriter::WriteLongWord, &TQuillonReader::ReadLongWord> {};
template <> struct TKind<std::int64_t> : TValueKind<&TQuillonWriter::WriteInt64, &TQuillonReader::ReadInt64> {};
template <> struct TKind<char16_t> : TValueKind<&TQuillonWriter::WriteChar, &TQuillonReader::ReadChar> {};
template <> struct TKind<float> : TValueKind<&TQuillonWriter::WriteSingle, &TQuillonReader::ReadSingle> {};
template <> struct TKind<double> : TValueKind<&TQuillonWriter::WriteDouble, &TQuillonReader::ReadDouble> {};
template <> struct TKind<std::string> : TValueKind<&TQuillonWriter::WriteString, &TQuillonReader::ReadString> {};
template <> struct TKind<TGUID> : TValueKind<&TQuillonWriter::WriteGuid, &TQuillonReader::ReadGuid> {};
template <> struct TKind<TQuillonDateTime> : TValueKind<&TQuillonWriter::WriteDateTime, &TQuillonReader::ReadDateTime> {};
template <> struct TKind<TExtended>
    : TMemberKind<&TExtended::Value, &TQuillonWriter::WriteExtended, &TQuillonReader::ReadExtended> {};
template <> struct TKind<TComp> : TMemberKind<&TComp::Value, &TQuillonWriter::WriteComp, &TQuillonReader::ReadComp> {};
template <> struct TKind<TCurrency>
    : TMemberKind<&TCurrency::TenThousandths, &TQuillonWriter::WriteCurrency, &TQuillonReader::ReadCurrency> {};
// clang-format on

using TNames = std::span<const std::string_view>;
/// @throws EQuillonConvertError for a value without a name, or a name without a value
std::string_view NameOf(TNames ANames, std::size_t AValue);
std::size_t ValueOfName(TNames ANames, std::string_view AName);
/// The names between the commas of a text; none of an empty one.
std::vector<std::string_view> SplitNames(std::string_view AText);

/// An enumeration whose members, from 0 on, have names for streams: EnumNames(TMember), a function beside it, gives
/// them as an array of texts.
template <class TMember>
concept TNamedEnum = std::is_enum_v<TMember> && requires(TMember AMember) {
  TNames(EnumNames(AMember));
};

constexpr std::array<std::string_view, 2> BooleanNames = {"False", "True"};

/// The name of the member.
template <class TMember>
struct TEnumKind {
  static constexpr auto Names() {
    if constexpr (std::is_same_v<TMember, bool>) {
      return BooleanNames;
    } else {
      return EnumNames(TMember{});
    }
  }
  static void WriteTo(TQuillonObjectWriter& AWriter, TMember AValue) {
    AWriter.WriteString(NameOf(Names(), static_cast<std::size_t>(AValue)));
  }
  static void ReadFrom(TQuillonObjectReader& AReader, TMember& AValue) {
    AValue = static_cast<TMember>(ValueOfName(Names(), AReader.ReadString()));
  }
};
template <>
struct TKind<bool> : TEnumKind<bool> {};
template <TNamedEnum TMember>
struct TKind<TMember> : TEnumKind<TMember> {};

/// The names of the members, in their order, with commas between them.
template <TNamedEnum TMember>
struct TKind<std::set<TMember>> {
  static void WriteTo(TQuillonObjectWriter& AWriter, const std::set<TMember>& AValue) {
    std::string Text;
    for (const TMember Member : AValue) {
      Text.append(Text.empty() ? "" : ",").append(NameOf(EnumNames(Member), static_cast<std::size_t>(Member)));
    }
    AWriter.WriteString(Text);
  }
  static void ReadFrom(TQuillonObjectReader& AReader, std::set<TMember>& AValue) {
    const std::string Text = AReader.ReadString();
    AValue.clear();
    for (const std::string_view Name : SplitNames(Text)) {
      AValue.insert(static_cast<TMember>(ValueOfName(EnumNames(TMember{}), Name)));
    }
  }
};

template <class TObject>
struct TKind<std::shared_ptr<TObject>> {
  static void WriteTo(TQuillonObjectWriter& AWriter, const std::shared_ptr<TObject>& AValue) {
    AWriter.WriteObject(AValue.get());
  }
  static void ReadFrom(TQuillonObjectReader& AReader, std::shared_ptr<TObject>& AValue) {
    AValue = AReader.ReadObject<TObject>();
  }
};

template <class TObject>
struct TKind<std::weak_ptr<TObject>> {
  static void WriteTo(TQuillonObjectWriter& AWriter, const std::weak_ptr<TObject>& AValue) {
    AWriter.WriteObject(AValue.lock().get());
  }
  static void ReadFrom(TQuillonObjectReader& AReader, std::weak_ptr<TObject>& AValue) {
    AValue = AReader.ReadReference<TObject>();
  }
};

/// An object that is a part of its owner: its content alone.
template <std::derived_from<TQuillonPersistent> TObject>
struct TKind<TObject> {
  static void WriteTo(TQuillonObjectWriter& AWriter, const TObject& AValue) { AValue.WriteProperties(AWriter); }
  static void ReadFrom(TQuillonObjectReader& AReader, TObject& AValue) { AValue.ReadProperties(AReader); }
};

/// Makes an object of a class, for its table.
template <std::derived_from<TQuillonPersistent> TObject>
std::shared_ptr<TQuillonPersistent> Make() {
  return std::make_shared<TObject>();
}

template <class TOwner, class TValue>
TOwner OwnerOf(TValue TOwner::*);
template <class TOwner, class TValue>
TValue ValueOf(TValue TOwner::*);

/// The row of a field in its class's table; the field's type tells its form on the stream. A shared pointer holds its
/// object, a weak one refers to it, and an object that is the field itself has no handle of its own.
template <auto Field>
constexpr TQuillonProperty Published() {
  using TOwner = decltype(OwnerOf(Field));
  using TFieldKind = TKind<decltype(ValueOf(Field))>;
  return {[](const TQuillonPersistent& AnObject, TQuillonObjectWriter& AWriter) {
            TFieldKind::WriteTo(AWriter, static_cast<const TOwner&>(AnObject).*Field);
          },
          [](TQuillonPersistent& AnObject, TQuillonObjectReader& AReader) {
            TFieldKind::ReadFrom(AReader, static_cast<TOwner&>(AnObject).*Field);
          }};
}

}  // namespace QuillonStreams

/// Gives a class the table that streams want: by the name TObject::ClassName, its objects made without arguments, and
/// with the rows of TObject::Properties(), if it has such.
template <class TObject, class TBase = TQuillonPersistent>
class TQuillonNamed : public TBase {
 public:
  using TBase::TBase;

  static const TQuillonPersistentClass& Class() {
    static const TQuillonPersistentClass Class{std::string(TObject::ClassName), QuillonStreams::Make<TObject>, Rows()};
    return Class;
  }
  const TQuillonPersistentClass& PersistentClass() const override { return Class(); }

 private:
  static std::vector<TQuillonProperty> Rows() {
    if constexpr (requires { TObject::Properties(); }) {
      return TObject::Properties();
    } else {
      return {};
    }
  }
};
