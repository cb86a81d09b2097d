#pragma once

#include <cstdint>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonDataObjects/ReaderWriter.h"
#include "QuillonXML.h"

struct TQuillonDataRow;

/// Reads a storage from its XML form: a child element a row, named by the row, the first match counting.
class TQuillonDataObjectXMLReader : public TQuillonDataObjectReader {
 public:
  /// @param ADocument, ASource as for the document
  /// @throws EQuillonDataObjectReaderError for what is no document of a storage
  TQuillonDataObjectXMLReader(TQuillonDataStorage& AStorage, TQuillonBuffer ADocument, std::string_view ASource);

  void ReadRows(TQuillonDataAbstractObject& AnObject) override;

 private:
  class TElements;

  void ReadRow(TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow, const pugi::xml_node& AnElement);
  void ReadValue(TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow, const pugi::xml_node& AnElement);
  void ReadList(TQuillonDataAbstractObject& AnObject, const TQuillonDataRow& ARow, const pugi::xml_node& AnElement);
  TQuillonDataObject& FindReferred(const pugi::xml_node& AnElement, const TQuillonDataClass& ABase) const;
  TQuillonDataObject& ReadObject(const pugi::xml_node& AnElement, const TQuillonDataClass& ABase);

  /// The object that a node belongs to, and the source.
  std::string PlaceOf(const pugi::xml_node& ANode) const;
  /// @throws EQuillonDataObjectReaderError with the node's path, the object it belongs to, and the source
  [[noreturn]] void ThrowAt(const pugi::xml_node& ANode, std::string_view AReason) const;
  [[noreturn]] void ThrowExpected(const pugi::xml_node& ANode, std::string_view AWhat, std::string_view AName) const;

  TQuillonXMLDocument FDocument;
  pugi::xml_node FCursor;
  std::string FSource;
  std::int64_t FPassedOver = 0;           ///< elements so far that no row has read
  std::vector<pugi::xml_node> FElements;  ///< of the objects being read, one behind the other, an entry a row
};
