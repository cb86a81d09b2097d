#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonPreferences.h"

namespace pugi {
class xml_node;
}

/// Preferences in an XML file: an element a key, an element with the attribute "Value" a value. A name that is none of
/// XML is escaped, "_xHHHH_" for each UTF-16 unit that may not stand there.
///
/// A flush takes the file as it is then, applies what this object changed, and replaces it whole, so that two programs
/// that flush at once lose neither's values. Characters that no XML document can hold are stored as U+FFFD.
class TQuillonXMLPreferences : public TQuillonAbstractPreferences {
 public:
  /// Who may read a file that is created; one that exists keeps its permissions.
  enum class TReaders : std::uint8_t { Owner, Everybody };

  /// @param AFileName a file that need not exist; with an empty name nothing can be stored
  /// @param NewFile starts empty even if the file exists; its old content goes with the first flush
  /// @throws EQuillonXMLError, EQuillonFileHandleError for a file that cannot be read; the message names it
  explicit TQuillonXMLPreferences(std::string AFileName, bool NewFile = false, TReaders AReaders = TReaders::Everybody);
  /// Flushes; call FlushBuffer to see whether that worked.
  ~TQuillonXMLPreferences() override;

  /// The folder is created as far as it is missing. A file that is damaged by now is refused and stays as it is.
  void FlushBuffer() override;
  void CloseKey() override;
  bool CreateKey(std::string_view AKey) override;
  bool DeleteKey(std::string_view AKey) override;
  bool DeleteValue(std::string_view AName) override;
  bool OpenKey(std::string_view AKey, bool CanCreate) override;
  bool HasSubKeys() const override { return !GetKeyNames().empty(); }
  bool KeyExists(std::string_view AKey) const override;
  bool ValueExists(std::string_view AName) const override;
  std::vector<std::string> GetKeyNames() const override;
  std::vector<std::string> GetValueNames() const override;
  std::string ReadString(std::string_view AName, std::string_view ADefault = {}) const override;
  void WriteString(std::string_view AName, std::string_view AValue) override;

  const std::string& FileName() const { return FFileName; }

 private:
  class TDocument;
  using TPath = std::vector<std::string>;
  enum class TAct : std::uint8_t { CreateKey, DeleteKey, WriteValue, DeleteValue };
  /// Something done to the document since it was read, to be done to the file.
  struct TChange {
    TAct Act;
    TPath Path;  ///< of the key or value, from the root
    std::string Text;
  };

  TPath PathOf(std::string_view AKey) const;
  TPath PathOfValue(std::string_view AName) const;
  static bool Apply(TDocument& ADocument, const TChange& AChange);
  /// Changes the document and takes note of it. @return false for what is not there to be deleted
  bool Do(TAct AnAct, TPath APath, std::string AText = {});
  /// @return false if somebody else created the file meanwhile
  bool TryStore();
  std::vector<std::string> Names(bool (*AnIsWanted)(const pugi::xml_node&)) const;

  std::string FFileName;
  TReaders FReaders;
  bool FStartsAfresh;
  TPath FCurrentKey;
  std::vector<TChange> FChanges;
  std::unique_ptr<TDocument> FXMLDocument;
};
