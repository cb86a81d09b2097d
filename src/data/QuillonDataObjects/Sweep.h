#pragma once

class TQuillonDataObject;
class TQuillonDataStorage;

namespace QuillonDataObjects {

/// Takes every reference to the object out of the storage, ahead of the object's end: references by their setters,
/// lists by removal. An object that loses an essential reference goes too, if a list owns it.
///
/// The class tables tell where to look. Takes a walk over all objects of the storage.
void ClearReferences(TQuillonDataStorage& AStorage, const TQuillonDataObject& AnObject);

}  // namespace QuillonDataObjects
