#include "QuillonDataObjects/Operations.h"

#include <array>

#include "QuillonStreams/Reader.h"
#include "QuillonStreams/Writer.h"

namespace {

using TField = TQuillonDataOperationField;
using TKind = TQuillonDataOperationKind;
using TOperation = TQuillonDataOperation;

template <auto Member, auto WriteValue, auto ReadValue>
constexpr TField Field = {
    [](const TOperation& AnOperation, TQuillonWriter& AWriter) { (AWriter.*WriteValue)(AnOperation.*Member); },
    [](TOperation& AnOperation, TQuillonReader& AReader) { AnOperation.*Member = (AReader.*ReadValue)(); }};

template <auto Member>
constexpr TField Guid = Field<Member, &TQuillonWriter::WriteGuid, &TQuillonReader::ReadGuid>;
template <auto Member>
constexpr TField Int64 = Field<Member, &TQuillonWriter::WriteInt64, &TQuillonReader::ReadInt64>;
template <auto Member>
constexpr TField Text = Field<Member, &TQuillonWriter::WriteString, &TQuillonReader::ReadString>;

constexpr TField UserName = Text<&TOperation::FUserName>;
constexpr TField ObjectID = Guid<&TOperation::FObjectID>;
constexpr TField ObjectClassName = Text<&TOperation::FObjectClassName>;
constexpr TField ObjectDisplayName = Text<&TOperation::FObjectDisplayName>;
constexpr TField ObjectVersion = Int64<&TOperation::FObjectVersion>;
constexpr TField ObjectData =
    Field<&TOperation::FObjectData, &TQuillonWriter::WriteAnsiString, &TQuillonReader::ReadAnsiString>;
constexpr TField ListID = Guid<&TOperation::FListID>;
constexpr TField ListDisplayName = Text<&TOperation::FListDisplayName>;
constexpr TField ListVersion = Int64<&TOperation::FListVersion>;
constexpr TField ListIndex =
    Field<&TOperation::FListIndex, &TQuillonWriter::WriteLongInt, &TQuillonReader::ReadLongInt>;

constexpr std::array CreationFields = {UserName, ObjectID, ObjectClassName, ObjectVersion, ObjectData};
constexpr std::array ModificationFields = {UserName, ObjectID, ObjectDisplayName, ObjectVersion, ObjectData};
constexpr std::array ReleaseFields = {UserName, ObjectID, ObjectDisplayName, ObjectVersion};
constexpr std::array PlaceFields = {UserName,  ListID,   ListDisplayName,  ListVersion,
                                    ListIndex, ObjectID, ObjectDisplayName};
constexpr std::array DeletionFields = {UserName, ListID, ListDisplayName, ListVersion, ObjectID, ObjectDisplayName};
constexpr std::array ClearanceFields = {UserName, ListID, ListDisplayName, ListVersion};

constexpr std::array<TQuillonDataOperationClass, 7> Classes = {{
    {TKind::Creation, "TQuillonDataCreation", CreationFields},
    {TKind::Modification, "TQuillonDataModification", ModificationFields},
    {TKind::Release, "TQuillonDataRelease", ReleaseFields},
    {TKind::Insertion, "TQuillonDataInsertion", PlaceFields},
    {TKind::Deletion, "TQuillonDataDeletion", DeletionFields},
    {TKind::Clearance, "TQuillonDataClearance", ClearanceFields},
    {TKind::Move, "TQuillonDataMove", PlaceFields},
}};

}  // namespace

std::span<const TQuillonDataOperationClass> QuillonDataObjects::OperationClasses() { return Classes; }

const TQuillonDataOperationClass& TQuillonDataOperation::Class() const {
  return Classes[static_cast<std::size_t>(FKind)];
}

void TQuillonDataOperation::Write(TQuillonWriter& AWriter) const {
  AWriter.WriteByte(static_cast<std::uint8_t>(FKind));
  for (const TField& Own : Class().Fields) {
    Own.Write(*this, AWriter);
  }
}

TQuillonDataOperation TQuillonDataOperation::Read(TQuillonReader& AReader) {
  const std::uint8_t Kind = AReader.ReadByte();
  TQuillonDataOperation Operation;
  Operation.FKind = Kind < Classes.size() ? static_cast<TKind>(Kind) : TKind::Clearance;
  for (const TField& Own : Operation.Class().Fields) {
    Own.Read(Operation, AReader);
  }
  return Operation;
}
