#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "QuillonStreams/Objects.h"
#include "QuillonValues.h"

namespace QuillonRemoting {

/// Values of a queue that comes from a stream: far more than any call has.
inline constexpr std::int32_t MaxParams = 65'536;

}  // namespace QuillonRemoting

/// The arguments of a call, or what comes back: values of several types, the first one in is the first one out. On
/// streams the number of values, and each behind the byte of its type.
///
/// Each Pop gives the next value; an empty queue gives zero, an empty text, or null.
/// @throws EQuillonConvertError if the next value is of another type; it stays where it is
class TQuillonRemoteParamsQueue final : public TQuillonNamed<TQuillonRemoteParamsQueue> {
 public:
  static constexpr std::string_view ClassName = "TQuillonRemoteParamsQueue";

  /// A queue is sent once: it is empty once it is written whole. A write that fails leaves it as it was.
  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  /// Takes the place of what was in the queue.
  /// @throws EQuillonReaderError for more than MaxParams values, or a type that there is not; the queue stays then
  void ReadProperties(TQuillonObjectReader& AReader) override;

  bool IsEmpty() const { return FQueue.empty(); }
  std::size_t Count() const { return FQueue.size(); }
  void Clear() { FQueue.clear(); }

  /// Objects and blocks may be null. A block comes out as it went in, not as a copy; off a stream an empty one is null.
  void PushObject(std::shared_ptr<TQuillonPersistent> AValue) { Push<vtypeReference>(std::move(AValue)); }
  void PushBinary(std::shared_ptr<TQuillonMemoryStream> AValue) { Push<vtypeBinary>(std::move(AValue)); }
  /// The bytes of a picture, none for no picture.
  void PushBitmap(std::string AValue) { Push<vtypeBitmap>(std::move(AValue)); }
  void PushIcon(std::string AValue) { Push<vtypeIcon>(std::move(AValue)); }
  void PushBoolean(bool AValue) { Push<vtypeBoolean>(AValue); }
  void PushChar(char16_t AValue) { Push<vtypeChar>(AValue); }
  void PushSmallInt(std::int16_t AValue) { Push<vtypeSmallInt>(AValue); }
  void PushShortInt(std::int8_t AValue) { Push<vtypeShortInt>(AValue); }
  void PushLongInt(std::int32_t AValue) { Push<vtypeLongInt>(AValue); }
  void PushInt64(std::int64_t AValue) { Push<vtypeInt64>(AValue); }
  void PushByte(std::uint8_t AValue) { Push<vtypeByte>(AValue); }
  void PushWord(std::uint16_t AValue) { Push<vtypeWord>(AValue); }
  void PushLongWord(std::uint32_t AValue) { Push<vtypeLongWord>(AValue); }
  void PushSingle(float AValue) { Push<vtypeSingle>(AValue); }
  void PushDouble(double AValue) { Push<vtypeDouble>(AValue); }
  void PushExtended(double AValue) { Push<vtypeExtended>(AValue); }
  void PushCurrency(TCurrency AValue) { Push<vtypeCurrency>(AValue.TenThousandths); }
  void PushDateTime(TQuillonDateTime AValue) { Push<vtypeDateTime>(AValue); }
  void PushString(std::string AValue) { Push<vtypeString>(std::move(AValue)); }
  void PushGuid(const TGUID& AValue) { Push<vtypeGuid>(AValue); }
  /// As one text.
  void PushStringList(std::span<const std::string> AValue);
  /// Moves all values of the other queue behind those of this one.
  void PushQueue(TQuillonRemoteParamsQueue& AQueue);

  /// @throws EQuillonConvertError for an object of another class, too
  template <std::derived_from<TQuillonPersistent> TObject = TQuillonPersistent>
  std::shared_ptr<TObject> PopObject() {
    const std::shared_ptr<TQuillonPersistent>* const Next = Front<vtypeReference>();
    auto Object = Next == nullptr ? nullptr : std::dynamic_pointer_cast<TObject>(*Next);
    if (Next != nullptr && *Next != nullptr && Object == nullptr) {
      Refuse();
    }
    Pop<vtypeReference>();
    return Object;
  }
  std::shared_ptr<TQuillonMemoryStream> PopBinary() { return Pop<vtypeBinary>(); }
  std::string PopBitmap() { return Pop<vtypeBitmap>(); }
  std::string PopIcon() { return Pop<vtypeIcon>(); }
  bool PopBoolean() { return Pop<vtypeBoolean>(); }
  char16_t PopChar() { return Pop<vtypeChar>(); }
  std::int16_t PopSmallInt() { return Pop<vtypeSmallInt>(); }
  std::int8_t PopShortInt() { return Pop<vtypeShortInt>(); }
  std::int32_t PopLongInt() { return Pop<vtypeLongInt>(); }
  std::int64_t PopInt64() { return Pop<vtypeInt64>(); }
  std::uint8_t PopByte() { return Pop<vtypeByte>(); }
  std::uint16_t PopWord() { return Pop<vtypeWord>(); }
  std::uint32_t PopLongWord() { return Pop<vtypeLongWord>(); }
  float PopSingle() { return Pop<vtypeSingle>(); }
  double PopDouble() { return Pop<vtypeDouble>(); }
  double PopExtended() { return Pop<vtypeExtended>(); }
  TCurrency PopCurrency() { return {Pop<vtypeCurrency>()}; }
  TQuillonDateTime PopDateTime() { return Pop<vtypeDateTime>(); }
  std::string PopString() { return Pop<vtypeString>(); }
  TGUID PopGuid() { return Pop<vtypeGuid>(); }
  std::vector<std::string> PopStringList();
  /// All values, in a queue of their own.
  std::unique_ptr<TQuillonRemoteParamsQueue> PopQueue();

  /// A value; its place here is its type's number.
  using TValue = std::variant<std::shared_ptr<TQuillonPersistent>, std::shared_ptr<TQuillonMemoryStream>, std::string,
                              std::string, bool, char16_t, std::int16_t, std::int8_t, std::int32_t, std::int64_t,
                              std::uint8_t, std::uint16_t, std::uint32_t, float, double, double, std::int64_t,
                              TQuillonDateTime, std::string, std::monostate, TGUID>;
  static_assert(std::variant_size_v<TValue> == vtypeCustom);

 private:
  [[noreturn]] static void Refuse();

  template <TQuillonValueType Kind, class TGiven>
  void Push(TGiven&& AValue) {
    FQueue.emplace_back(std::in_place_index<Kind>, std::forward<TGiven>(AValue));
  }
  /// The next value, null if there is none.
  template <TQuillonValueType Kind>
  std::variant_alternative_t<Kind, TValue>* Front() {
    if (FQueue.empty()) {
      return nullptr;
    }
    auto* const Next = std::get_if<Kind>(&FQueue.front());
    if (Next == nullptr) {
      Refuse();
    }
    return Next;
  }
  template <TQuillonValueType Kind>
  std::variant_alternative_t<Kind, TValue> Pop() {
    auto* const Next = Front<Kind>();
    if (Next == nullptr) {
      return {};
    }
    auto Value = std::move(*Next);
    FQueue.pop_front();
    return Value;
  }

  mutable std::deque<TValue> FQueue;  ///< writing takes the values out
};
