#pragma once

#include <vector>

#include "uPlandaten/Listen.h"

/// The orders of the large lists of a plan.
namespace uPlandaten {

/// Notes in each lesson of the lists its place in the order of lessons, equal places for equal lessons.
/// Comparing two lessons builds texts; sorting all lists of a plan would build the same ones over and over.
void MarkPlaces(const std::vector<TVELVeranstaltungsliste*>& ALists);

/// The order of lessons by their marks.
int ComparePlaces(const TQuillonDataObject& A, const TQuillonDataObject& B);

}  // namespace uPlandaten
