#pragma once

#include <cstddef>
#include <pugixml.hpp>
#include <string_view>

#include "QuillonIO.h"

/// Bytes that are no XML document of the kind that was asked for; the message names the document.
class EQuillonXMLError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

/// A parsed document of one of our files, with the bytes that its nodes lie in.
class TQuillonXMLDocument {
 public:
  /// Parses the whole document.
  ///
  /// References to what is no character of XML (1.0, 2.2: surrogates, U+FFFE and U+FFFF, above U+10FFFF, zero) read as
  /// U+FFFD; such characters would make a document that nobody takes back. A reference by a name that nobody declares
  /// stays the text that it is.
  /// @param ADocument the document's bytes, in UTF-8 or UTF-16; parsed in place
  /// @param ASource what messages call the document
  /// @param ADocumentElement the name that its document element must have
  /// @throws EQuillonXMLError for what is no well-formed document with that element, for one of another encoding and
  ///   for one with entities of its own
  TQuillonXMLDocument(TQuillonBuffer ADocument, std::string_view ASource, std::string_view ADocumentElement);

  /// The document element.
  pugi::xml_node Root() const { return FDocument.document_element(); }

 private:
  void Parse(std::string_view ASource);
  void CheckDocument(std::string_view ASource, std::string_view ADocumentElement) const;

  TQuillonBuffer FBuffer;
  pugi::xml_document FDocument;
};
