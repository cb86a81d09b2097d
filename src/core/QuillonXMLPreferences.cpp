#include "QuillonXMLPreferences.h"

#include <algorithm>

#include "QuillonFileReplacement.h"
#include "QuillonFileSystem.h"
#include "QuillonNewFile.h"
#include "QuillonText.h"
#include "QuillonXML.h"
#include "QuillonXMLText.h"

namespace {

constexpr const char* DocumentElement = "Preferences";
constexpr const char* ValueAttribute = "Value";
constexpr std::string_view KeyDelimiters = "\\/";

/// More than settings need, and little enough for a file that is something else altogether.
constexpr std::int64_t MaxSize = std::int64_t{16} << 20;
/// Levels below the document element; the removal of a key is recursive.
constexpr std::size_t MaxLevels = 64;

bool IsValue(const pugi::xml_node& AnElement) { return !AnElement.attribute(ValueAttribute).empty(); }

bool IsKey(const pugi::xml_node& AnElement) {
  const auto IsElement = [](const pugi::xml_node& AChild) { return AChild.type() == pugi::node_element; };
  return !IsValue(AnElement) || !AnElement.find_child(IsElement).empty();
}

bool IsDeeperThan(const pugi::xml_node& ARoot, std::size_t ALevels) {
  std::size_t Level = 0;
  for (pugi::xml_node Node = ARoot; Node;) {
    if (const pugi::xml_node Child = Node.first_child()) {
      Node = Child;
      if (++Level > ALevels) {
        return true;
      }
      continue;
    }
    for (; Node != ARoot && !Node.next_sibling(); --Level) {
      Node = Node.parent();
    }
    Node = Node == ARoot ? pugi::xml_node() : Node.next_sibling();
  }
  return false;
}

}  // namespace

/// The document in memory.
class TQuillonXMLPreferences::TDocument {
 public:
  TDocument() {
    pugi::xml_node Declaration = FDocument.append_child(pugi::node_declaration);
    Declaration.append_attribute("version") = "1.0";
    Declaration.append_attribute("encoding") = "utf-8";
    Declaration.append_attribute("standalone") = "yes";
    FDocument.append_child(DocumentElement);
  }

  explicit TDocument(TQuillonFileStream& AStream) : TDocument() {
    const std::string& Name = AStream.FileName();
    if (AStream.Size() > MaxSize) {
      throw EQuillonXMLError("\"" + Name + "\" ist zu groß für Einstellungen.");
    }
    const TQuillonXMLDocument Read(QuillonIO::ReadIntoBuffer(AStream), Name, DocumentElement);
    if (IsDeeperThan(Read.Root(), MaxLevels)) {
      throw EQuillonXMLError("\"" + Name + "\" ist zu tief geschachtelt für Einstellungen.");
    }
    FDocument.remove_child(DocumentElement);
    FDocument.append_copy(Read.Root());
  }

  /// @return no node without such an element
  pugi::xml_node Find(const TPath& APath) const {
    pugi::xml_node Node = FDocument.document_element();
    for (auto Segment = APath.begin(); !Node.empty() && Segment != APath.end(); ++Segment) {
      Node = ChildOf(Node, *Segment);
    }
    return Node;
  }

  pugi::xml_node Force(const TPath& APath) {
    pugi::xml_node Node = FDocument.document_element();
    for (const std::string& Segment : APath) {
      pugi::xml_node Child = ChildOf(Node, Segment);
      Node = Child ? Child : Node.append_child(QuillonXMLText::EscapeName(Segment).c_str());
    }
    return Node;
  }

  std::string Text() const {
    struct TWriter : pugi::xml_writer {
      std::string Text;
      void write(const void* AData, std::size_t ASize) override { Text.append(static_cast<const char*>(AData), ASize); }
    } Writer;
    FDocument.save(Writer, "  ", pugi::format_indent | pugi::format_write_bom, pugi::encoding_utf8);
    if (Writer.Text.size() > std::size_t{MaxSize}) {
      throw EQuillonXMLError("Die Einstellungen sind zu groß.");
    }
    return std::move(Writer.Text);
  }

 private:
  static pugi::xml_node ChildOf(const pugi::xml_node& AParent, const std::string& AName) {
    return AParent.find_child([&AName](const pugi::xml_node& AChild) {
      return AChild.type() == pugi::node_element &&
             QuillonText::EqualsIgnoreCase(QuillonXMLText::UnescapeName(AChild.name()), AName);
    });
  }

  pugi::xml_document FDocument;
};

TQuillonXMLPreferences::TQuillonXMLPreferences(std::string AFileName, bool NewFile, TReaders AReaders)
    : FFileName(std::move(AFileName)), FReaders(AReaders), FStartsAfresh(NewFile) {
  if (NewFile || FFileName.empty() || !TQuillonFileSystem::HasFile(FFileName)) {
    FXMLDocument = std::make_unique<TDocument>();
    return;
  }
  TQuillonFileStream Stream(FFileName, fomOpenRead, famShareDenyNone);
  FXMLDocument = std::make_unique<TDocument>(Stream);
}

TQuillonXMLPreferences::~TQuillonXMLPreferences() {
  try {
    FlushBuffer();
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): a destructor has nobody to tell
  }
}

void TQuillonXMLPreferences::FlushBuffer() {
  if (FChanges.empty()) {
    return;
  }
  if (FFileName.empty()) {
    throw EQuillonException("Für diese Einstellungen gibt es keinen Ordner.");
  }
  TQuillonFileSystem::ForceDirectory(TQuillonFilePath::GetDirectoryName(FFileName));
  // A file that comes or goes between the look and the hold is looked at again.
  constexpr int MostTries = 10;
  for (int Try = 1; !TryStore(); ++Try) {
    if (Try == MostTries) {
      throw EQuillonException("Die Einstellungen in \"" + FFileName + "\" konnten nicht gespeichert werden.");
    }
  }
  FChanges.clear();
  FStartsAfresh = false;
}

bool TQuillonXMLPreferences::TryStore() {
  const auto Changed = [this](std::unique_ptr<TDocument> ADocument) {
    for (const TChange& Change : FChanges) {
      Apply(*ADocument, Change);
    }
    return ADocument;
  };
  return QuillonIO::OnFile(FFileName, [&] {
    const std::string Target = Platform::Files().FollowLinks(FFileName);
    if (TQuillonFileSystem::HasFile(Target)) {
      const auto Held = QuillonIO::HoldFile(FFileName);
      auto Document = Changed(FStartsAfresh ? std::make_unique<TDocument>() : std::make_unique<TDocument>(*Held));
      QuillonIO::ReplaceFile(*Held, Document->Text());
      FXMLDocument = std::move(Document);
      return true;
    }
    const std::string Folder = QuillonIO::FolderOf(Target);
    TQuillonNewFile::RemoveLeftOvers(Folder);
    TQuillonNewFile New(Folder, FReaders == TReaders::Owner ? Platform::Creation::NewPrivate : Platform::Creation::New);
    auto Document = Changed(std::make_unique<TDocument>());
    New.File().Write(Document->Text());
    New.File().Flush();
    if (!New.TryAdd(Target)) {
      return false;
    }
    Platform::Files().FlushDirectory(Folder);
    FXMLDocument = std::move(Document);
    return true;
  });
}

void TQuillonXMLPreferences::CloseKey() { FCurrentKey.clear(); }

bool TQuillonXMLPreferences::CreateKey(std::string_view AKey) { return Do(TAct::CreateKey, PathOf(AKey)); }

bool TQuillonXMLPreferences::DeleteKey(std::string_view AKey) {
  TPath Path = PathOf(AKey);
  return !Path.empty() && Do(TAct::DeleteKey, std::move(Path));
}

bool TQuillonXMLPreferences::DeleteValue(std::string_view AName) {
  return !AName.empty() && Do(TAct::DeleteValue, PathOfValue(AName));
}

bool TQuillonXMLPreferences::OpenKey(std::string_view AKey, bool CanCreate) {
  TPath Path = PathOf(AKey);
  if (!FXMLDocument->Find(Path) && !(CanCreate && Do(TAct::CreateKey, Path))) {
    return false;
  }
  FCurrentKey = std::move(Path);
  return true;
}

bool TQuillonXMLPreferences::KeyExists(std::string_view AKey) const {
  return !FXMLDocument->Find(PathOf(AKey)).empty();
}

bool TQuillonXMLPreferences::ValueExists(std::string_view AName) const {
  return !AName.empty() && IsValue(FXMLDocument->Find(PathOfValue(AName)));
}

std::vector<std::string> TQuillonXMLPreferences::GetKeyNames() const { return Names(IsKey); }

std::vector<std::string> TQuillonXMLPreferences::GetValueNames() const { return Names(IsValue); }

std::vector<std::string> TQuillonXMLPreferences::Names(bool (*AnIsWanted)(const pugi::xml_node&)) const {
  std::vector<std::string> Result;
  for (const pugi::xml_node& Child : FXMLDocument->Find(FCurrentKey).children()) {
    if (Child.type() == pugi::node_element && AnIsWanted(Child)) {
      Result.push_back(QuillonXMLText::UnescapeName(Child.name()));
    }
  }
  return Result;
}

std::string TQuillonXMLPreferences::ReadString(std::string_view AName, std::string_view ADefault) const {
  return ValueExists(AName) ? FXMLDocument->Find(PathOfValue(AName)).attribute(ValueAttribute).value()
                            : std::string(ADefault);
}

void TQuillonXMLPreferences::WriteString(std::string_view AName, std::string_view AValue) {
  if (AName.empty()) {
    throw EQuillonException("Ein Wert der Einstellungen braucht einen Namen.");
  }
  Do(TAct::WriteValue, PathOfValue(AName), QuillonXMLText::OnlyCharacters(AValue));
}

TQuillonXMLPreferences::TPath TQuillonXMLPreferences::PathOf(std::string_view AKey) const {
  const bool IsFromRoot = !AKey.empty() && KeyDelimiters.find(AKey.front()) != std::string_view::npos;
  TPath Path = IsFromRoot ? TPath() : FCurrentKey;
  while (!AKey.empty()) {
    const std::size_t End = std::min(AKey.find_first_of(KeyDelimiters), AKey.size());
    if (End > 0) {
      Path.emplace_back(AKey.substr(0, End));
    }
    AKey.remove_prefix(std::min(End + 1, AKey.size()));
  }
  return Path;
}

TQuillonXMLPreferences::TPath TQuillonXMLPreferences::PathOfValue(std::string_view AName) const {
  TPath Path = FCurrentKey;
  Path.emplace_back(AName);
  return Path;
}

bool TQuillonXMLPreferences::Apply(TDocument& ADocument, const TChange& AChange) {
  if (AChange.Act == TAct::CreateKey) {
    ADocument.Force(AChange.Path);
    return true;
  }
  if (AChange.Act == TAct::WriteValue) {
    pugi::xml_node Element = ADocument.Force(AChange.Path);
    pugi::xml_attribute Value = Element.attribute(ValueAttribute);
    (Value ? Value : Element.append_attribute(ValueAttribute)).set_value(AChange.Text.c_str());
    return true;
  }
  pugi::xml_node Element = ADocument.Find(AChange.Path);
  const bool IsThere = AChange.Act == TAct::DeleteKey ? !Element.empty() : IsValue(Element);
  if (IsThere && AChange.Act == TAct::DeleteValue && IsKey(Element)) {
    Element.remove_attribute(ValueAttribute);
  } else if (IsThere) {
    Element.parent().remove_child(Element);
  }
  return IsThere;
}

bool TQuillonXMLPreferences::Do(TAct AnAct, TPath APath, std::string AText) {
  if (APath.size() > MaxLevels && (AnAct == TAct::CreateKey || AnAct == TAct::WriteValue)) {
    throw EQuillonException("Der Schlüssel der Einstellungen ist zu tief geschachtelt.");
  }
  TChange Change{AnAct, std::move(APath), std::move(AText)};
  if (!Apply(*FXMLDocument, Change)) {
    return false;
  }
  FChanges.push_back(std::move(Change));
  return true;
}
