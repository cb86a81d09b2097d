#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "QuillonIO.h"
#include "platform/Files.h"
#include "platform/Signals.h"

/// A file in the making. Until it is placed it has no name at all or, where the system has no such files, a hidden one
/// beside the target, and it is gone with the object or with a signal that ends the process. It is locked as long as
/// it is open, so that one which a killed process left can be told from one that is being written.
class TQuillonNewFile {
 public:
  /// @param AFolder where it is to be placed, empty for the current one
  /// @param ACreation New or NewPrivate
  /// @throws EQuillonWin32Error
  TQuillonNewFile(const std::string& AFolder, Platform::Creation ACreation,
                  Platform::Lock ALock = Platform::Lock::Exclusive);
  TQuillonNewFile(const TQuillonNewFile&) = delete;
  TQuillonNewFile& operator=(const TQuillonNewFile&) = delete;
  ~TQuillonNewFile();

  Platform::File& File() { return *FFile; }

  /// Does what can be done ahead of Replace, so that this takes but a moment: a file without a name gets a hidden one.
  void Prepare();
  /// Takes the place of a file, or stands there as a new one.
  void Replace(const std::string& APath);
  /// Stands there as a new file.
  /// @return false where there is one already
  bool TryAdd(const std::string& APath);
  /// The open file, for use after it was placed.
  std::unique_ptr<Platform::File> TakeFile() { return std::move(FFile); }

  /// Removes what killed processes left in a folder; whatever keeps it from that is no error.
  static void RemoveLeftOvers(const std::string& AFolder);

 private:
  void ChooseName();
  void ForgetName();

  std::string FFolder;
  std::string FName;  ///< the hidden name, empty without one
  std::optional<Platform::RemovalAtSignal> FRemoval;
  std::unique_ptr<Platform::File> FFile;
};

namespace QuillonIO {

/// The folder of a file, for calls that want one: "." for a mere file name.
std::string FolderOf(const std::string& AFileName);

}  // namespace QuillonIO
