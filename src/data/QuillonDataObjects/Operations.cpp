#include "QuillonDataObjects/Operations.h"

#include <array>
#include <limits>

#include "QuillonDataObjects/Content.h"
#include "QuillonDataObjects/DataList.h"
#include "QuillonDataObjects/Playback.h"
#include "QuillonStreams/Reader.h"
#include "QuillonStreams/Writer.h"

namespace {

using TField = TQuillonDataOperationField;
using TKind = TQuillonDataOperationKind;
using TOperation = TQuillonDataOperation;

using TRaised = TQuillonDataOperationClass::TRaised;

/// @tparam ValueOf what an event gives the field
template <auto Member, auto WriteValue, auto ReadValue, auto ValueOf>
constexpr TField Field = {
    [](const TOperation& AnOperation, TQuillonWriter& AWriter) { (AWriter.*WriteValue)(AnOperation.*Member); },
    [](TOperation& AnOperation, TQuillonReader& AReader) { AnOperation.*Member = (AReader.*ReadValue)(); },
    [](TOperation& AnOperation, const TQuillonDataEvent& AnEvent) { AnOperation.*Member = ValueOf(AnEvent); }};

template <auto Member, auto ValueOf>
constexpr TField Guid = Field<Member, &TQuillonWriter::WriteGuid, &TQuillonReader::ReadGuid, ValueOf>;
template <auto Member, auto ValueOf>
constexpr TField Int64 = Field<Member, &TQuillonWriter::WriteInt64, &TQuillonReader::ReadInt64, ValueOf>;
template <auto Member, auto ValueOf>
constexpr TField Text = Field<Member, &TQuillonWriter::WriteString, &TQuillonReader::ReadString, ValueOf>;

using TEvent = TQuillonDataEvent;
constexpr TField ObjectID = Guid<&TOperation::FObjectID, [](const TEvent& AnEvent) { return AnEvent.Object->ID(); }>;
constexpr TField ObjectClassName =
    Text<&TOperation::FObjectClassName, [](const TEvent& AnEvent) { return AnEvent.Object->GetPublicClassName(); }>;
constexpr TField ObjectDisplayName =
    Text<&TOperation::FObjectDisplayName, [](const TEvent& AnEvent) { return AnEvent.Object->GetDisplayName(); }>;
constexpr TField ObjectVersion =
    Int64<&TOperation::FObjectVersion, [](const TEvent& AnEvent) { return AnEvent.Object->FVersion; }>;
constexpr TField ObjectData =
    Field<&TOperation::FObjectData, &TQuillonWriter::WriteAnsiString, &TQuillonReader::ReadAnsiString,
          [](const TEvent& AnEvent) { return QuillonDataObjects::WriteContent(*AnEvent.Object); }>;
constexpr TField ListID = Guid<&TOperation::FListID, [](const TEvent& AnEvent) { return AnEvent.List->ID(); }>;
constexpr TField ListDisplayName =
    Text<&TOperation::FListDisplayName, [](const TEvent& AnEvent) { return AnEvent.List->GetDisplayName(); }>;
constexpr TField ListVersion =
    Int64<&TOperation::FListVersion, [](const TEvent& AnEvent) { return AnEvent.List->FVersion; }>;
constexpr TField ListIndex = Field<&TOperation::FListIndex, &TQuillonWriter::WriteLongInt, &TQuillonReader::ReadLongInt,
                                   [](const TEvent& AnEvent) { return AnEvent.Index; }>;

constexpr std::array CreationFields = {ObjectID, ObjectClassName, ObjectVersion, ObjectData};
constexpr std::array ModificationFields = {ObjectID, ObjectDisplayName, ObjectVersion, ObjectData};
constexpr std::array ReleaseFields = {ObjectID, ObjectDisplayName, ObjectVersion};
constexpr std::array PlaceFields = {ListID, ListDisplayName, ListVersion, ListIndex, ObjectID, ObjectDisplayName};
constexpr std::array DeletionFields = {ListID, ListDisplayName, ListVersion, ObjectID, ObjectDisplayName};
constexpr std::array ClearanceFields = {ListID, ListDisplayName, ListVersion};

using TPlayback = TQuillonDataPlayback;
constexpr std::array<TQuillonDataOperationClass, 7> Classes = {{
    {TKind::Creation, "TQuillonDataCreation", CreationFields, TRaised::Nothing, &TPlayback::Create},
    {TKind::Modification, "TQuillonDataModification", ModificationFields, TRaised::Object, &TPlayback::Modify},
    {TKind::Release, "TQuillonDataRelease", ReleaseFields, TRaised::Object, &TPlayback::Release},
    {TKind::Insertion, "TQuillonDataInsertion", PlaceFields, TRaised::List, &TPlayback::Insert},
    {TKind::Deletion, "TQuillonDataDeletion", DeletionFields, TRaised::List, &TPlayback::Delete},
    {TKind::Clearance, "TQuillonDataClearance", ClearanceFields, TRaised::List, &TPlayback::Clear},
    {TKind::Move, "TQuillonDataMove", PlaceFields, TRaised::List, &TPlayback::Move},
}};

/// The version that the event raises.
std::int64_t& RaisedBy(const TEvent& AnEvent, TRaised ARaised, std::int64_t& ANone) {
  switch (ARaised) {
    case TRaised::Object:
      return AnEvent.Object->FVersion;
    case TRaised::List:
      return AnEvent.List->FVersion;
    default:
      return ANone;
  }
}

}  // namespace

std::span<const TQuillonDataOperationClass> QuillonDataObjects::OperationClasses() { return Classes; }

const TQuillonDataOperationClass& TQuillonDataOperation::Class() const {
  return Classes[static_cast<std::size_t>(FKind)];
}

TQuillonDataOperation TQuillonDataOperation::Record(TQuillonDataOperationKind AKind, const std::string& AnUserName,
                                                    const TQuillonDataEvent& AnEvent) {
  TQuillonDataOperation Operation;
  Operation.FKind = AKind;
  Operation.FUserName = AnUserName;
  const TQuillonDataOperationClass& Kind = Operation.Class();
  std::int64_t None = 0;
  std::int64_t& Version = RaisedBy(AnEvent, Kind.Raised, None);
  const std::int64_t Before = Version;
  Version += Before < std::numeric_limits<std::int64_t>::max() ? 1 : 0;
  try {
    for (const TField& Own : Kind.Fields) {
      Own.Record(Operation, AnEvent);
    }
  } catch (...) {
    Version = Before;
    throw;
  }
  return Operation;
}

void TQuillonDataOperation::Write(TQuillonWriter& AWriter) const {
  AWriter.WriteByte(static_cast<std::uint8_t>(FKind));
  AWriter.WriteString(FUserName);
  for (const TField& Own : Class().Fields) {
    Own.Write(*this, AWriter);
  }
}

TQuillonDataOperation TQuillonDataOperation::Read(TQuillonReader& AReader) {
  const std::uint8_t Kind = AReader.ReadByte();
  TQuillonDataOperation Operation;
  Operation.FKind = Kind < Classes.size() ? static_cast<TKind>(Kind) : TKind::Clearance;
  Operation.FUserName = AReader.ReadString();
  for (const TField& Own : Operation.Class().Fields) {
    Own.Read(Operation, AReader);
  }
  return Operation;
}
