#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonLogs/Logs.h"
#include "QuillonSynchronization.h"

/// Called with what went wrong.
using TQuillonLogManagerErrorEvent = std::function<void(const std::string& AMessage)>;

/// Hands entries to any number of logs, for use from any thread. An entry whose namespace is not in the list goes
/// nowhere; so nothing is logged without a configuration.
///
/// A log that fails gets no more entries and ends nothing: FOnError is told, at the first failure of any.
class TQuillonLogManager {
 public:
  /// Makes the logs that the file beside the program asks for: its path with "log.config" added. Without one nothing
  /// happens.
  void SelfConfiguration();
  /// The same with another file.
  void SelfConfiguration(const std::string& AConfigFile);

  void AddLog(std::unique_ptr<TQuillonAbstractLog> ALog);
  /// Flushes the logs and lets them go.
  void ClearLogs();
  void AddNamespace(std::string_view ANamespace);
  void ClearNamespaces();
  /// @return nullptr for an index out of range
  TQuillonAbstractLog* GetLog(std::size_t AnIndex);
  /// @return an empty text for an index out of range
  std::string GetNamespace(std::size_t AnIndex);

  /// Logs at the present time, and for no user where none is told.
  void AddEntry(TQuillonLogEventType AnEventType, std::string_view AnEventText, std::string_view ANamespace,
                std::string_view AUser = {});
  void AddEntry(const TQuillonLogEntry& AnEntry);

  TQuillonLogManagerErrorEvent FOnError;

 private:
  template <class TCall>
  bool Attempt(const TCall& ACall);
  bool Takes(std::string_view ANamespace) const;

  TQuillonCriticalSection FCriticalSection;
  std::vector<std::unique_ptr<TQuillonAbstractLog>> FLogList;
  std::vector<std::string> FNamespaceList;
  bool FHasFailed = false;
};

namespace QuillonLogs {

/// The log of the running program. Its first failure is one line on standard error.
TQuillonLogManager& TheLog();

/// Configures the program's log at its begin, and flushes it at its end.
class TProgramLog {
 public:
  TProgramLog() { TheLog().SelfConfiguration(); }
  TProgramLog(const TProgramLog&) = delete;
  TProgramLog& operator=(const TProgramLog&) = delete;
  ~TProgramLog() { TheLog().ClearLogs(); }
};

}  // namespace QuillonLogs
