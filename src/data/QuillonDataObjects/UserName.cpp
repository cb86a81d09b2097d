#include "QuillonDataObjects/UserName.h"

#include <array>
#include <atomic>
#include <bit>
#include <mutex>
#include <new>
#include <unordered_map>

namespace {

/// All names, by number. Blocks of doubling size that stay where they are: who reads one needs no lock.
class TNames {
 public:
  const std::string& Text(std::uint32_t ANumber) const {
    return FBlocks[BlockOf(ANumber)].load(std::memory_order_acquire)[IndexOf(ANumber)];
  }

  std::uint32_t NumberOf(std::string_view AName) {
    const std::scoped_lock Lock(FMutex);
    if (const auto Found = FNumbers.find(AName); Found != FNumbers.end()) {
      return Found->second;
    }
    const std::uint32_t Number = FCount + 1;
    if (Number == 0) {
      throw std::bad_alloc();
    }
    std::atomic<std::string*>& Block = FBlocks[BlockOf(Number)];
    if (Block.load(std::memory_order_relaxed) == nullptr) {
      Block.store(new std::string[std::size_t{1} << BlockOf(Number)], std::memory_order_release);
    }
    std::string& Text = Block.load(std::memory_order_relaxed)[IndexOf(Number)];
    Text = AName;
    FNumbers.emplace(Text, Number);
    FCount = Number;
    return Number;
  }

 private:
  static std::size_t BlockOf(std::uint32_t ANumber) { return static_cast<std::size_t>(std::bit_width(ANumber)) - 1; }
  static std::size_t IndexOf(std::uint32_t ANumber) { return ANumber - (std::size_t{1} << BlockOf(ANumber)); }

  std::array<std::atomic<std::string*>, 32> FBlocks{};
  std::mutex FMutex;
  std::unordered_map<std::string_view, std::uint32_t> FNumbers;
  std::uint32_t FCount = 0;
};

/// Never freed: names of users are few, and objects may outlive every static.
TNames& Names() {
  static TNames& All = *new TNames;
  return All;
}

std::uint32_t NumberOf(std::string_view AName) {
  if (AName.empty()) {
    return 0;
  }
  // Nearly always the name asked for last; each thread remembers its own.
  thread_local std::uint32_t Last = 0;
  if (Last == 0 || Names().Text(Last) != AName) {
    Last = Names().NumberOf(AName);
  }
  return Last;
}

}  // namespace

TQuillonUserName::TQuillonUserName(std::string_view AName) : FNumber(NumberOf(AName)) {}

const std::string& TQuillonUserName::Text() const {
  static const std::string NoName;
  return FNumber == 0 ? NoName : Names().Text(FNumber);
}
