#pragma once

#include <utility>

namespace QuillonClasses {

/// The product's quicksort over the places ALeft to ARight, both included.
///
/// Not every order of a plan is transitive, and none is made unique by the algorithm: files agree with those of
/// the product only if every exchange is the same. The parts of a cut are independent of each other, so the
/// smaller one is sorted by recursion and the depth stays logarithmic whatever the input.
///
/// @param ACompare int(int A, int B), order of the items at two places
/// @param AnExchange void(int A, int B) for two different places
template <class TCompare, class TExchange>
void QuickSort(int ALeft, int ARight, const TCompare& ACompare, const TExchange& AnExchange) {
  while (ALeft < ARight) {
    int Left = ALeft;
    int Right = ARight;
    int Pivot = ALeft + (ARight - ALeft) / 2;
    while (Left <= Right) {
      while (Left < ARight && ACompare(Left, Pivot) < 0) {
        ++Left;
      }
      while (Right > ALeft && ACompare(Right, Pivot) > 0) {
        --Right;
      }
      if (Left <= Right) {
        if (Left != Right) {
          AnExchange(Left, Right);
          if (Pivot == Left) {
            Pivot = Right;
          } else if (Pivot == Right) {
            Pivot = Left;
          }
        }
        ++Left;
        --Right;
      }
    }
    if (Right - ALeft < ARight - Left) {
      QuickSort(ALeft, Right, ACompare, AnExchange);
      ALeft = Left;
    } else {
      QuickSort(Left, ARight, ACompare, AnExchange);
      ARight = Right;
    }
  }
}

}  // namespace QuillonClasses
