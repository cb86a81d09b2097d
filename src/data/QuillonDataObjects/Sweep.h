#pragma once

#include <span>

class TQuillonDataAbstractObject;
class TQuillonDataObject;
class TQuillonDataStorage;

namespace QuillonDataObjects {

/// The storage that may refer to what goes; null while there is none.
TQuillonDataStorage* SweptStorage(const TQuillonDataAbstractObject& AnObject);

/// Takes every reference to the object and to all that goes with it out of the storage, ahead of their end: references
/// by their setters, lists by removal. What the object owns goes with it, and so does an object that loses an essential
/// reference, if a list owns it; these are freed here.
///
/// The class tables tell where to look. Takes a walk over all objects of the storage, and another one for those that
/// lost something essential, however many objects go; for one that has gone through it already nothing.
void ClearReferences(TQuillonDataStorage& AStorage, TQuillonDataObject& AnObject);

/// The same for many objects in one; null is passed over, and so is what several hold, since that stays.
void ClearReferences(TQuillonDataStorage& AStorage, std::span<TQuillonDataObject* const> AnObjects);

}  // namespace QuillonDataObjects
