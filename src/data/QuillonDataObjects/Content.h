#pragma once

#include <string>
#include <string_view>

class TQuillonDataAbstractObject;
class TQuillonDataStorage;

namespace QuillonDataObjects {

/// The content of one object in the binary form, its lists being their identities alone.
std::string WriteContent(const TQuillonDataAbstractObject& AnObject);

/// The reverse, for an object of the storage, which counts as being read meanwhile. Its lists keep their items.
/// @throws EQuillonReaderError, EQuillonDataObjectReaderError
void ReadContent(TQuillonDataStorage& AStorage, TQuillonDataAbstractObject& AnObject, std::string_view AContent);

}  // namespace QuillonDataObjects
