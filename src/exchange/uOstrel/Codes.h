#pragma once

#include <cstdint>
#include <functional>
#include <queue>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "uPlandaten/Listen.h"

namespace uOstrel {

/// The codes of a list, each of which one object has.
class TCodes {
 public:
  explicit TCodes(const TVELStammobjektliste& AList) : FList(&AList) {}

  /// Gives the object the code, or the first of code-1, code-2 and so on that no other one has.
  void Assign(TVELStammobjekt& AnObject, bool AnIsNew, const std::string& ACode);

 private:
  /// The numbers behind a code: all below Next are taken, but for those that objects have let go of.
  struct TNumbers {
    std::int64_t Next = 1;
    std::priority_queue<std::int64_t, std::vector<std::int64_t>, std::greater<>> Free;
  };

  void Count();
  bool IsTaken(const std::string& ACode) const;
  void LetGo(const std::string& ACode);
  std::string Numbered(const std::string& ACode);

  const TVELStammobjektliste* FList;
  bool FIsCounted = false;
  std::unordered_map<std::string, int> FCounts;
  std::unordered_map<std::string, TNumbers> FNumbers;
};

}  // namespace uOstrel
