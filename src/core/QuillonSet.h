#pragma once

#include <concepts>
#include <initializer_list>

/// A small set over an enumeration; bit n of its number stands for member n.
template <class TMember, std::unsigned_integral TBits>
struct TQuillonSet {
  TBits Bits = 0;

  constexpr TQuillonSet() = default;
  constexpr TQuillonSet(std::initializer_list<TMember> AMembers) {
    for (TMember Member : AMembers) {
      Include(Member);
    }
  }
  constexpr bool IsEmpty() const { return Bits == 0; }
  constexpr bool Contains(TMember AMember) const { return (Bits & Mask(AMember)) != 0; }
  constexpr bool ContainsAll(TQuillonSet AnOther) const { return (AnOther.Bits & ~Bits) == 0; }
  constexpr bool Overlaps(TQuillonSet AnOther) const { return (AnOther.Bits & Bits) != 0; }
  constexpr void Include(TMember AMember) { Bits = static_cast<TBits>(Bits | Mask(AMember)); }
  constexpr void Exclude(TMember AMember) { Bits = static_cast<TBits>(Bits & ~Mask(AMember)); }
  friend bool operator==(const TQuillonSet&, const TQuillonSet&) = default;

 private:
  static constexpr TBits Mask(TMember AMember) {
    return static_cast<TBits>(TBits{1} << static_cast<unsigned>(AMember));
  }
};
