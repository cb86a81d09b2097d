#include "QuillonDataObjects/XMLReader.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <set>
#include <utility>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Storage.h"
#include "QuillonDataObjects/XMLValues.h"
#include "QuillonNumbers.h"
#include "QuillonText.h"

namespace {

using TRow = TQuillonDataRow;

constexpr const char* ItemsElement = "Items";
constexpr const char* ItemElement = "Item";
constexpr const char* ClassAttribute = "Class";
constexpr const char* IDAttribute = "ID";

/// Names from the document element down, each followed by a slash.
std::string PathOf(pugi::xml_node ANode) {
  std::vector<std::string_view> Names;
  for (; ANode && ANode.type() != pugi::node_document; ANode = ANode.parent()) {
    Names.emplace_back(ANode.name());
  }
  std::string Path;
  std::for_each(Names.rbegin(), Names.rend(), [&](std::string_view AName) { Path.append(AName).append("/"); });
  return Path;
}

/// The object that a node is or belongs to, by what the document tells of it.
std::string ObjectAt(pugi::xml_node ANode) {
  while (!ANode.empty() && ANode.attribute(ClassAttribute).empty()) {
    ANode = ANode.parent();
  }
  std::string Text;
  const auto Tell = [&Text](std::string_view ALabel, std::string_view AValue) {
    if (!AValue.empty()) {
      Text.append(ALabel).append(QuillonText::Quoted(AValue)).append(", ");
    }
  };
  Tell("Objekt ", ANode.attribute(ClassAttribute).value());
  for (const char* const Name : {"Code", "Name"}) {
    Tell(std::string(Name) + " ", ANode.child(Name).value());
  }
  Tell("ID ", ANode.attribute(IDAttribute).value());
  return Text;
}

/// Text of an element: all its texts, one behind the other.
std::string_view TextOf(const pugi::xml_node& AnElement, std::string& AScratch) {
  const pugi::xml_node Child = AnElement.first_child();
  if (!Child) {
    return AnElement.value();
  }
  AScratch = AnElement.value();
  for (const pugi::xml_node& Piece : AnElement.children()) {
    if (Piece.type() == pugi::node_pcdata || Piece.type() == pugi::node_cdata) {
      AScratch += Piece.value();
    }
  }
  return AScratch;
}

}  // namespace

TQuillonDataObjectXMLReader::TQuillonDataObjectXMLReader(TQuillonDataStorage& AStorage, TQuillonBuffer ADocument,
                                                         std::string_view ASource) try
    : TQuillonDataObjectReader(AStorage),
      FDocument(std::move(ADocument), ASource, "Storage"),
      FCursor(FDocument.Root()),
      FSource(ASource) {
} catch (const EQuillonXMLError& Error) {
  throw EQuillonDataObjectReaderError(Error.what());
}

void TQuillonDataObjectXMLReader::ThrowAt(const pugi::xml_node& ANode, std::string_view AReason) const {
  throw EQuillonDataObjectReaderError("Knoten " + PathOf(ANode) + " konnte nicht gelesen werden: " +
                                      std::string(AReason) + " (" + PlaceOf(ANode) + ")");
}

std::string TQuillonDataObjectXMLReader::PlaceOf(const pugi::xml_node& ANode) const {
  return ObjectAt(ANode) + "Datei \"" + FSource + "\"";
}

void TQuillonDataObjectXMLReader::ThrowExpected(const pugi::xml_node& ANode, std::string_view AWhat,
                                                std::string_view AName) const {
  ThrowAt(ANode, "XML-" + std::string(AWhat) + " \"" + std::string(AName) + "\" erwartet.");
}

/// The elements of one object's rows, found in one walk over its children.
///
/// Elements stand in the order of the rows as a rule, so a child's row is sought from where the last one was found.
class TQuillonDataObjectXMLReader::TElements {
 public:
  TElements(std::vector<pugi::xml_node>& AStack, const pugi::xml_node& AParent, const TQuillonDataClass& AClass)
      : FStack(AStack), FStart(AStack.size()) {
    const std::span<const TRow> Rows = AClass.Rows();
    FStack.resize(FStart + Rows.size());
    std::size_t Next = 0;
    for (pugi::xml_node Child = AParent.first_child(); Child; Child = Child.next_sibling()) {
      const char* const Name = Child.name();
      if (*Name == '\0') {  // a text or a comment
        continue;
      }
      const std::size_t Found = AClass.FindRow(Name, Next);
      if (Found == Rows.size()) {
        ++FUnknown;
        continue;
      }
      pugi::xml_node& First = FStack[FStart + Rows[Found].FirstOfName];
      if (!First) {
        First = Child;
      } else {
        ++FUnknown;
      }
      Next = Found + 1;
    }
  }
  TElements(const TElements&) = delete;
  TElements& operator=(const TElements&) = delete;
  ~TElements() { FStack.resize(FStart); }

  /// Elements that no row reads.
  std::int64_t Unknown() const { return FUnknown; }
  pugi::xml_node Of(const TRow& ARow) const { return FStack[FStart + ARow.FirstOfName]; }

 private:
  std::int64_t FUnknown = 0;
  std::vector<pugi::xml_node>& FStack;
  std::size_t FStart;
};

void TQuillonDataObjectXMLReader::ReadRows(TQuillonDataAbstractObject& AnObject) {
  const std::span<const TRow> Rows = AnObject.DataClass().Rows();
  const TElements Elements(FElements, FCursor, AnObject.DataClass());
  FPassedOver += Elements.Unknown();
  const TQuillonRelease Release = Storage().FileRelease();
  for (const TRow& Row : Rows) {
    if (Row.Kind == TQuillonRowKind::Hook) {
      Row.As<TRow::TStep>().Run(AnObject);
    } else if (Row.IsReadFrom(Release)) {
      ReadRow(AnObject, Row, Elements.Of(Row));
    } else {
      FPassedOver += Elements.Of(Row) ? 1 : 0;
      if (!Row.KeepsCurrent && !Row.IsRetired()) {
        QuillonDataObjects::ResetRow(AnObject, Row);
      }
    }
  }
}

void TQuillonDataObjectXMLReader::ReadRow(TQuillonDataAbstractObject& AnObject, const TRow& ARow,
                                          const pugi::xml_node& AnElement) {
  if (AnElement) {
    ReadValue(AnObject, ARow, AnElement);
  } else if (ARow.Required) {
    ThrowExpected(FCursor, "Tag", ARow.Name);
  } else if (!ARow.KeepsCurrent) {
    QuillonDataObjects::ResetRow(AnObject, ARow);
  }
}

void TQuillonDataObjectXMLReader::ReadValue(TQuillonDataAbstractObject& AnObject, const TRow& ARow,
                                            const pugi::xml_node& AnElement) {
  switch (ARow.Kind) {
    case TQuillonRowKind::Object:
      ARow.As<TRow::TPointer>().Set(AnObject, &ReadObject(AnElement, ARow.As<TRow::TPointer>().Class()));
      return;
    case TQuillonRowKind::Reference:
      ARow.As<TRow::TPointer>().Set(AnObject, &FindReferred(AnElement, ARow.As<TRow::TPointer>().Class()));
      FPassedOver += AnElement.first_child() ? 1 : 0;
      return;
    case TQuillonRowKind::List:
      ReadList(AnObject, ARow, AnElement);
      return;
    default:
      break;
  }
  FPassedOver += AnElement.first_child() ? 1 : 0;
  std::string Scratch;
  try {
    QuillonXMLValues::Read(AnObject, ARow, TextOf(AnElement, Scratch));
  } catch (const EQuillonConvertError& Error) {
    ThrowAt(AnElement, Error.what());
  }
}

void TQuillonDataObjectXMLReader::ReadList(TQuillonDataAbstractObject& AnObject, const TRow& ARow,
                                           const pugi::xml_node& AnElement) {
  TQuillonDataList& List = ARow.As<TRow::TItems>().Field(AnObject);
  std::set<TGUID> Present;
  if (ARow.Merged) {
    std::ranges::transform(List.Items(), std::inserter(Present, Present.end()),
                           [](const TQuillonDataObject* AnItem) { return AnItem->ID(); });
  } else if (!List.IsEmpty()) {
    List.Clear();
  }
  pugi::xml_node Items = AnElement.child(ItemsElement);
  if (!Items) {
    ThrowExpected(AnElement, "Tag", ItemsElement);
  }
  for (pugi::xml_node Beside = AnElement.first_child(); Beside; Beside = Beside.next_sibling()) {
    FPassedOver += Beside != Items && Beside.first_child() ? 1 : 0;
  }
  const TQuillonDataClass& ItemClass = List.ItemClass();
  for (pugi::xml_node Item = Items.first_child(), Next; Item; Item = Next) {
    Next = Item.next_sibling();
    if (std::strcmp(Item.name(), ItemElement) != 0) {
      ++FPassedOver;
      continue;
    }
    const std::int64_t Before = FPassedOver;
    TQuillonDataObject& Object = List.IsItemOwner() ? ReadObject(Item, ItemClass) : FindReferred(Item, ItemClass);
    if (!ARow.Merged || Present.insert(Object.ID()).second) {
      List.Append(&Object);
    }
    if (!List.IsItemOwner()) {
      FPassedOver += Item.first_child() ? 1 : 0;
    } else if (FPassedOver == Before) {
      // Its memory serves the objects that come. An item with elements that nobody read stays: they may be nested
      // deeper than the removal, which is recursive, can go.
      Items.remove_child(Item);
    }
  }
  // A list's stamps stand inside its element, but are read beside it: it takes those of the object it lies in.
  List.TakeStamps(AnObject);
}

TQuillonDataObject& TQuillonDataObjectXMLReader::FindReferred(const pugi::xml_node& AnElement,
                                                              const TQuillonDataClass& ABase) const {
  const pugi::xml_attribute ClassTag = AnElement.attribute(ClassAttribute);
  if (!ClassTag) {
    ThrowExpected(AnElement.parent(), "Attribut", ClassAttribute);
  }
  const pugi::xml_attribute IDText = AnElement.attribute(IDAttribute);
  if (!IDText) {
    ThrowExpected(AnElement, "Attribut", IDAttribute);
  }
  const auto Guid = QuillonGuid::TryParse(IDText.value());
  if (!Guid) {
    ThrowAt(AnElement, QuillonText::Quoted(IDText.value()) + " ist keine gültige GUID.");
  }
  // The class of an object that is known is not looked at.
  if (TQuillonDataObject* const Known = FindKnown(ABase, *Guid)) {
    return *Known;
  }
  const bool IsBase = !ABase.IsAbstract() && ABase.Tag() == ClassTag.value();
  const TQuillonDataClass* Class = &ABase;
  try {
    Class = IsBase ? &ABase : TQuillonDataClassRegistry::Instance().FindClass(ClassTag.value(), ABase);
  } catch (const EQuillonDataObjectReaderError& Error) {
    throw EQuillonDataObjectReaderError(Error.what() + (" (Knoten " + PathOf(AnElement) + ", " + PlaceOf(AnElement)) +
                                        ")");
  }
  if (Class == nullptr) {
    ThrowAt(AnElement, "Klasse " + QuillonText::Quoted(ClassTag.value()) + " ist hier nicht erlaubt.");
  }
  return Create(*Class, *Guid);
}

TQuillonDataObject& TQuillonDataObjectXMLReader::ReadObject(const pugi::xml_node& AnElement,
                                                            const TQuillonDataClass& ABase) {
  TQuillonDataObject& Object = FindReferred(AnElement, ABase);
  const pugi::xml_node Parent = std::exchange(FCursor, AnElement);
  ReadContent(Object, TFailed::Freed);
  FCursor = Parent;
  return Object;
}
