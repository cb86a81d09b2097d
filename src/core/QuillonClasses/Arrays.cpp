#include "QuillonClasses/Arrays.h"

void TQuillonIntegerArray::WriteProperties(TQuillonObjectWriter& AWriter) const {
  AWriter.WriteLongInt(Capacity());
  AWriter.WriteLongInt(Count());
  for (const std::int32_t Value : FValues) {
    AWriter.WriteLongInt(Value);
  }
}

void TQuillonIntegerArray::ReadProperties(TQuillonObjectReader& AReader) {
  const std::int32_t Wanted = AReader.ReadLongInt();
  std::vector<std::int32_t> Values;
  for (std::int32_t Left = QuillonClasses::ReadCount(AReader); Left > 0; --Left) {
    Values.push_back(AReader.ReadLongInt());
  }
  FCapacity.Set(Wanted, Values.size());
  FValues = std::move(Values);
}

void TQuillonIntegerArray::Assign(const TQuillonObject& AnObject) {
  const auto* const Other = dynamic_cast<const TQuillonIntegerArray*>(&AnObject);
  if (Other == nullptr) {
    TQuillonObject::Assign(AnObject);
    return;
  }
  FValues = Other->FValues;
  FCapacity = Other->FCapacity;
}

void TQuillonIntegerArray::Insert(std::int32_t AnIndex, std::int32_t AValue) {
  QuillonClasses::CheckIndex(AnIndex, FValues.size() + 1);
  FCapacity.GrowFor(FValues.size());
  FValues.insert(FValues.begin() + AnIndex, AValue);
}

void TQuillonIntegerArray::Delete(std::int32_t AnIndex) {
  QuillonClasses::CheckIndex(AnIndex, FValues.size());
  FValues.erase(FValues.begin() + AnIndex);
}

std::int32_t TQuillonIntegerArray::GetValue(std::int32_t AnIndex) const {
  QuillonClasses::CheckIndex(AnIndex, FValues.size());
  return FValues[static_cast<std::size_t>(AnIndex)];
}

void TQuillonIntegerArray::SetValue(std::int32_t AnIndex, std::int32_t AValue) {
  QuillonClasses::CheckIndex(AnIndex, FValues.size());
  FValues[static_cast<std::size_t>(AnIndex)] = AValue;
}

void TQuillonIntegerArray::Clear() {
  FValues.clear();
  FCapacity = {};
}

std::int32_t TQuillonIntegerArray::IndexOf(std::int32_t AValue) const {
  const auto Found = std::ranges::find(FValues, AValue);
  return Found == FValues.end() ? -1 : static_cast<std::int32_t>(Found - FValues.begin());
}

std::int32_t TQuillonIntegerArray::LastIndexOf(std::int32_t AValue) const {
  const auto Found = std::find(FValues.rbegin(), FValues.rend(), AValue);
  return static_cast<std::int32_t>(FValues.rend() - Found) - 1;
}
