#pragma once

#include <memory>
#include <span>
#include <string>
#include <unordered_map>

#include "Synchronizer.h"
#include "uOstrel/ImportColumns.h"
#include "uOstrel/ImportTally.h"

namespace uOstrel {
struct TCatalog;
}

/// Merges the master data and the courses of an OCF set into a plan: an object whose identifier the plan knows is
/// updated, another one is created, none is deleted. A file that the set lacks is passed over.
class TVELOstrelCsvReader : public TVELOstrelSynchronizer {
 public:
  TVELOstrelCsvReader(TVELGlobals& AGlobals, std::unique_ptr<TOcfConfiguration> AConfiguration);
  /// A job with a configuration file has no settings and fails at its first look at them.
  TVELOstrelCsvReader(TVELGlobals& AGlobals, const std::string& ACfgFileName);
  TVELOstrelCsvReader(const TVELOstrelCsvReader&) = delete;
  TVELOstrelCsvReader& operator=(const TVELOstrelCsvReader&) = delete;
  ~TVELOstrelCsvReader() override { FPlan.CloseFile(); }

  /// Reads and checks all files, then takes them over in their order.
  /// @throws EQuillonException, while the plan is still as it was, for a folder that does not exist and for a file
  ///   with what cannot be taken over
  void ReadAll();

 protected:
  void OpenPlan(const std::string& AFileName) override { FPlan.OpenFileToChange(AFileName); }
  const TOcfImportOptions& Options() const override { return Configuration().FOcfImport; }
  std::string GetFileName() const override { return Options().FTargetFileName; }

 private:
  void ReadAhead();
  /// Reads a file of the set and checks all its cells.
  template <class T>
  void Load(const uOstrel::TImportFile<T>& AFile);
  void CheckCatalog(const uOstrel::TCatalog& ACatalog);
  void ReadCatalogs();
  /// Takes over the rows of a file that was loaded.
  template <class T, class TList>
  void Merge(const uOstrel::TImportFile<T>& AFile, TList& AList);
  template <class TTake>
  void ForEachRow(const std::string& AName, const TTake& ATake);
  template <class T>
  void Fill(T& AnObject, std::span<const uOstrel::TImportColumn<T>> AColumns, const uOstrel::TCsvSource::TRow& ARow,
            uOstrel::TImportTally& ATally);
  void WarnOfColumns(const std::string& AFileName, const uOstrel::TCsvSource& ASource);
  /// An object that the file only referred to so far, or a new one.
  template <class T>
  T& Make(TQuillonDataAbstractObject& AnOwner, const TQuillonDataClass& AClass, const TGUID& AnID);

  uOstrel::TImport FImport;
  std::unordered_map<std::string, uOstrel::TCsvSource> FSources;  ///< by the file's name
};
