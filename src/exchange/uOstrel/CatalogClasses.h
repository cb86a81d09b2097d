#pragma once

#include <string_view>

class TQuillonDataClass;

namespace uOstrel {

/// The class of a new key of a catalog, by the catalog's exact name.
/// @throws EQuillonException "Not supported" for another name
const TQuillonDataClass& CatalogClass(std::string_view AName);

}  // namespace uOstrel
