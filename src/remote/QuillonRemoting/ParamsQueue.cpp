#include "QuillonRemoting/ParamsQueue.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "QuillonText.h"

namespace {

using TValue = TQuillonRemoteParamsQueue::TValue;

/// How a value of a type is written and read.
struct TForm {
  void (*Write)(TQuillonObjectWriter& AWriter, const TValue& AValue);
  TValue (*Read)(TQuillonObjectReader& AReader);
};

template <TQuillonValueType Kind, auto Write, auto Read>
constexpr TForm Plain() {
  return {[](TQuillonObjectWriter& AWriter, const TValue& AValue) { (AWriter.*Write)(std::get<Kind>(AValue)); },
          [](TQuillonObjectReader& AReader) { return TValue(std::in_place_index<Kind>, (AReader.*Read)()); }};
}

void WriteReference(TQuillonObjectWriter& AWriter, const TValue& AValue) {
  AWriter.WriteObject(std::get<vtypeReference>(AValue).get());
}

TValue ReadReference(TQuillonObjectReader& AReader) {
  return TValue(std::in_place_index<vtypeReference>, AReader.ReadObject());
}

void WriteBlock(TQuillonObjectWriter& AWriter, const TValue& AValue) {
  const auto& Stream = std::get<vtypeBinary>(AValue);
  AWriter.WriteBinary(Stream == nullptr ? std::string_view() : Stream->Content());
}

TValue ReadBlock(TQuillonObjectReader& AReader) {
  std::string Block = AReader.ReadBinary();
  return TValue(std::in_place_index<vtypeBinary>,
                Block.empty() ? nullptr : std::make_shared<TQuillonMemoryStream>(std::move(Block)));
}

using W = TQuillonWriter;
using R = TQuillonReader;

/// By the type's number; one of them has no form.
constexpr std::array<TForm, vtypeCustom> Forms = {{
    {WriteReference, ReadReference},
    {WriteBlock, ReadBlock},
    Plain<vtypeBitmap, &W::WriteGraphic, &R::ReadGraphic>(),
    Plain<vtypeIcon, &W::WriteGraphic, &R::ReadGraphic>(),
    Plain<vtypeBoolean, &W::WriteBoolean, &R::ReadBoolean>(),
    Plain<vtypeChar, &W::WriteChar, &R::ReadChar>(),
    Plain<vtypeSmallInt, &W::WriteSmallInt, &R::ReadSmallInt>(),
    Plain<vtypeShortInt, &W::WriteShortInt, &R::ReadShortInt>(),
    Plain<vtypeLongInt, &W::WriteLongInt, &R::ReadLongInt>(),
    Plain<vtypeInt64, &W::WriteInt64, &R::ReadInt64>(),
    Plain<vtypeByte, &W::WriteByte, &R::ReadByte>(),
    Plain<vtypeWord, &W::WriteWord, &R::ReadWord>(),
    Plain<vtypeLongWord, &W::WriteLongWord, &R::ReadLongWord>(),
    Plain<vtypeSingle, &W::WriteSingle, &R::ReadSingle>(),
    Plain<vtypeDouble, &W::WriteDouble, &R::ReadDouble>(),
    Plain<vtypeExtended, &W::WriteExtended, &R::ReadExtended>(),
    Plain<vtypeCurrency, &W::WriteCurrency, &R::ReadCurrency>(),
    Plain<vtypeDateTime, &W::WriteDateTime, &R::ReadDateTime>(),
    Plain<vtypeString, &W::WriteString, &R::ReadString>(),
    {nullptr, nullptr},
    Plain<vtypeGuid, &W::WriteGuid, &R::ReadGuid>(),
}};

}  // namespace

void TQuillonRemoteParamsQueue::WriteProperties(TQuillonObjectWriter& AWriter) const {
  AWriter.WriteLongInt(static_cast<std::int32_t>(FQueue.size()));
  for (const TValue& Value : FQueue) {
    AWriter.WriteByte(static_cast<std::uint8_t>(Value.index()));
    Forms.at(Value.index()).Write(AWriter, Value);
  }
  AWriter.FlushBuffer();
  FQueue.clear();
}

void TQuillonRemoteParamsQueue::ReadProperties(TQuillonObjectReader& AReader) {
  constexpr std::uint8_t KindBits = 0x7F;
  const std::int32_t Count = AReader.ReadLongInt();
  if (Count < 0 || Count > QuillonRemoting::MaxParams) {
    throw EQuillonReaderError();
  }
  std::deque<TValue> Values;
  while (std::cmp_less(Values.size(), Count)) {
    const std::size_t Kind = AReader.ReadByte() & KindBits;
    if (Kind >= Forms.size() || Forms.at(Kind).Read == nullptr) {
      throw EQuillonReaderError();
    }
    Values.push_back(Forms.at(Kind).Read(AReader));
  }
  FQueue = std::move(Values);
}

void TQuillonRemoteParamsQueue::PushStringList(std::span<const std::string> AValue) {
  PushString(QuillonText::JoinLines(AValue));
}

void TQuillonRemoteParamsQueue::PushQueue(TQuillonRemoteParamsQueue& AQueue) {
  if (&AQueue != this) {
    std::ranges::move(AQueue.FQueue, std::back_inserter(FQueue));
    AQueue.Clear();
  }
}

std::vector<std::string> TQuillonRemoteParamsQueue::PopStringList() { return QuillonText::SplitLines(PopString()); }

std::unique_ptr<TQuillonRemoteParamsQueue> TQuillonRemoteParamsQueue::PopQueue() {
  auto Queue = std::make_unique<TQuillonRemoteParamsQueue>();
  Queue->PushQueue(*this);
  return Queue;
}

void TQuillonRemoteParamsQueue::Refuse() {
  throw EQuillonConvertError("Der Parameter ist von einem anderen Typ als erwartet.");
}
