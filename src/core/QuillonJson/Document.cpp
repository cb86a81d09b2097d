#include "QuillonJson/Document.h"

#include <utf8.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

#include "QuillonNumbers.h"

namespace {

template <class TItems>
void AppendItems(std::string& ATarget, const TItems& AnItems) {
  bool IsFirst = true;
  for (const auto& Item : AnItems) {
    if (!IsFirst) {
      ATarget.push_back(',');
    }
    IsFirst = false;
    Item->AppendText(ATarget);
  }
}

template <class TItems>
void CloneItems(TItems& ATarget, const TItems& AnItems) {
  ATarget.reserve(AnItems.size());
  for (const auto& Item : AnItems) {
    ATarget.push_back(Item->Clone());
  }
}

template <class TNode>
TNode* ItemAt(const std::vector<TQuillonJSONOwner<TNode>>& AnItems, std::size_t AnIndex) {
  return AnIndex < AnItems.size() ? AnItems[AnIndex].get() : nullptr;
}

const TQuillonJSONNumber* AsNumber(const TQuillonJSONValue* AValue) {
  return dynamic_cast<const TQuillonJSONNumber*>(AValue);
}

template <class TNode>
bool ReadNode(const TQuillonJSONValue* AValue, const TNode*& AResult) {
  const auto* Node = dynamic_cast<const TNode*>(AValue);
  AResult = Node == nullptr ? AResult : Node;
  return Node != nullptr;
}

std::string FloatText(double AValue) {
  std::string Text;
  if (std::isfinite(AValue)) {
    QuillonNumbers::AppendFloat(Text, AValue);
  } else {
    Text = "null";
  }
  return Text;
}

}  // namespace

std::string TQuillonJSONAncestor::ToString() const {
  std::string Text;
  AppendText(Text);
  return Text;
}

void TQuillonJSONString::AppendText(std::string& ATarget) const {
  if (!IsNull()) {
    ATarget.append(1, '"').append(Text()).append(1, '"');
  }
}

TQuillonJSONOwner<TQuillonJSONValue> TQuillonJSONString::Clone() const {
  return IsNull() ? std::make_unique<TQuillonJSONString>() : std::make_unique<TQuillonJSONString>(Text());
}

void TQuillonJSONString::AddChar(char32_t ACh) {
  constexpr char32_t Replacement = 0xFFFD;
  constexpr char32_t FirstSurrogate = 0xD800;
  constexpr char32_t LastSurrogate = 0xDFFF;
  constexpr char32_t LastChar = 0x10FFFF;
  const bool IsChar = ACh <= LastChar && (ACh < FirstSurrogate || ACh > LastSurrogate);
  FHasText = true;
  utf8::append(IsChar ? ACh : Replacement, std::back_inserter(FStrBuilder));
}

void TQuillonJSONString::Clear() {
  FHasText = true;
  FStrBuilder.clear();
}

TQuillonJSONNumber::TQuillonJSONNumber(std::int64_t AValue) : TQuillonJSONString(std::to_string(AValue)) {}

TQuillonJSONNumber::TQuillonJSONNumber(double AValue) : TQuillonJSONString(FloatText(AValue)) {}

std::string TQuillonJSONNumber::Value() const {
  try {
    return FloatText(QuillonNumbers::ParseFloat(Text()));
  } catch (const EQuillonConvertError&) {
    return Text();
  }
}

void TQuillonJSONPair::AppendText(std::string& ATarget) const {
  if (!FJsonString.IsNull() && FJsonValue != nullptr) {
    FJsonString.AppendText(ATarget);
    ATarget.push_back(':');
    FJsonValue->AppendText(ATarget);
  }
}

TQuillonJSONOwner<TQuillonJSONPair> TQuillonJSONPair::Clone() const {
  return std::make_unique<TQuillonJSONPair>(FJsonString.Text(), FJsonValue == nullptr ? nullptr : FJsonValue->Clone());
}

void TQuillonJSONObject::AppendText(std::string& ATarget) const {
  ATarget.push_back('{');
  AppendContent(ATarget);
  ATarget.push_back('}');
}

void TQuillonJSONObject::AppendContent(std::string& ATarget) const { AppendItems(ATarget, FMembers); }

std::string TQuillonJSONObject::ContentToString() const {
  std::string Text;
  AppendContent(Text);
  return Text;
}

TQuillonJSONOwner<TQuillonJSONValue> TQuillonJSONObject::Clone() const {
  auto Copy = std::make_unique<TQuillonJSONObject>();
  CloneItems(Copy->FMembers, FMembers);
  return Copy;
}

void TQuillonJSONObject::AddPair(TQuillonJSONOwner<TQuillonJSONPair> APair) {
  if (APair != nullptr && !APair->FJsonString.Text().empty()) {
    FMembers.push_back(std::move(APair));
  }
}

const TQuillonJSONPair* TQuillonJSONObject::Get(std::size_t AnIndex) const { return ItemAt(FMembers, AnIndex); }

const TQuillonJSONPair* TQuillonJSONObject::Get(std::string_view AName) const {
  const auto Found = std::find_if(FMembers.begin(), FMembers.end(),
                                  [AName](const auto& APair) { return APair->FJsonString.Text() == AName; });
  return Found == FMembers.end() ? nullptr : Found->get();
}

TQuillonJSONOwner<TQuillonJSONPair> TQuillonJSONObject::RemovePair(std::string_view AName) {
  const auto Found = std::find_if(FMembers.begin(), FMembers.end(),
                                  [AName](const auto& APair) { return APair->FJsonString.Text() == AName; });
  if (Found == FMembers.end()) {
    return nullptr;
  }
  auto Pair = std::move(*Found);
  FMembers.erase(Found);
  return Pair;
}

void TQuillonJSONArray::AppendText(std::string& ATarget) const {
  ATarget.push_back('[');
  AppendItems(ATarget, FElements);
  ATarget.push_back(']');
}

TQuillonJSONOwner<TQuillonJSONValue> TQuillonJSONArray::Clone() const {
  auto Copy = std::make_unique<TQuillonJSONArray>();
  CloneItems(Copy->FElements, FElements);
  return Copy;
}

void TQuillonJSONArray::AddElement(TQuillonJSONOwner<TQuillonJSONValue> AnElement) {
  if (AnElement != nullptr) {
    FElements.push_back(std::move(AnElement));
  }
}

const TQuillonJSONValue* TQuillonJSONArray::Get(std::size_t AnIndex) const { return ItemAt(FElements, AnIndex); }

namespace QuillonJson {

bool Read(const TQuillonJSONValue* AValue, std::string& AResult) {
  const auto* String = dynamic_cast<const TQuillonJSONString*>(AValue);
  if (String == nullptr || String->IsNull() || AsNumber(AValue) != nullptr) {
    return false;
  }
  AResult = String->Text();
  return true;
}

bool Read(const TQuillonJSONValue* AValue, std::int64_t& AResult) {
  const auto* Number = AsNumber(AValue);
  if (Number == nullptr) {
    return false;
  }
  try {
    AResult = QuillonNumbers::ParseInteger(Number->Text(), std::numeric_limits<std::int64_t>::min(),
                                           std::numeric_limits<std::int64_t>::max());
    return true;
  } catch (const EQuillonConvertError&) {
    return false;
  }
}

bool Read(const TQuillonJSONValue* AValue, double& AResult) {
  const auto* Number = AsNumber(AValue);
  if (Number == nullptr) {
    return false;
  }
  try {
    AResult = QuillonNumbers::ParseFloat(Number->Text());
    return true;
  } catch (const EQuillonConvertError&) {
    return false;
  }
}

bool Read(const TQuillonJSONValue* AValue, bool& AResult) {
  const bool IsTrue = dynamic_cast<const TQuillonJSONTrue*>(AValue) != nullptr;
  if (!IsTrue && dynamic_cast<const TQuillonJSONFalse*>(AValue) == nullptr) {
    return false;
  }
  AResult = IsTrue;
  return true;
}

bool Read(const TQuillonJSONValue* AValue, const TQuillonJSONObject*& AResult) { return ReadNode(AValue, AResult); }

bool Read(const TQuillonJSONValue* AValue, const TQuillonJSONArray*& AResult) { return ReadNode(AValue, AResult); }

}  // namespace QuillonJson
