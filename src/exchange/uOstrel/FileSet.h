#pragma once

#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonIO.h"
#include "QuillonNewFile.h"
#include "platform/Signals.h"

namespace uOstrel {

/// Files that appear in a folder together. They are written out of sight; once all are complete and safe on the disk
/// they take their places in one burst, and the files of earlier sets that have no successor go. One file, the marker,
/// goes first and comes last: while it is there the set is complete. A set that is not placed leaves the folder as it
/// was. A second set for the same folder waits.
///
/// What is no regular file, a pipe or a device, is written to as the content comes, and stays.
class TFileSet {
 public:
  /// @param ANames all names that sets in this folder can have, the marker among them
  /// @throws EQuillonFileHandleError; EQuillonFileInUseError if another set is in work for longer than ATimeOut
  TFileSet(std::string AFolder, std::vector<std::string> ANames, std::string_view AMarker,
           std::chrono::milliseconds ATimeOut);
  TFileSet(const TFileSet&) = delete;
  TFileSet& operator=(const TFileSet&) = delete;
  ~TFileSet();

  /// Begins a file; several threads may, each for files of its own. @return its content, empty; valid as long as the
  /// set
  /// @throws EQuillonFileHandleError, also for a file that we may not write
  TQuillonStream& Begin(const std::string& AName);
  /// A file that was begun is complete.
  void End(const TQuillonStream& AContent);
  /// Whether nothing is to be seen of it yet: no file is written to as its content comes.
  bool IsOutOfSight() const;
  /// Lets the files take their places.
  /// @throws EQuillonFileHandleError, the folder is as it was; EQuillonException once the burst has begun
  void Place();

 private:
  struct TMember;

  template <class TCall>
  void ForEachNew(const TCall& ACall);
  void CheckRest() const;
  std::vector<std::string> EarlierPaths() const;
  std::vector<std::unique_ptr<Platform::File>> OpenEarlier() const;
  void Burst();
  void FlushFolders();
  std::string PathOf(const std::string& AName) const;

  std::string FFolder;
  std::string FMarker;
  std::vector<std::string> FRest;  ///< names that are not written
  std::string FLockPath;
  std::optional<Platform::RemovalAtSignal> FLockRemoval;
  std::unique_ptr<Platform::File> FLock;
  std::mutex FBeginning;  ///< for the members and the rest, as long as files are written
  std::deque<TMember> FMembers;
};

}  // namespace uOstrel
