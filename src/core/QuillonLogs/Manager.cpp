#include "QuillonLogs/Manager.h"

#include <algorithm>
#include <utility>

#include "QuillonFileSystem.h"
#include "QuillonText.h"
#include "QuillonXMLPreferences.h"
#include "platform/Console.h"
#include "platform/Paths.h"

namespace {

using TLog = std::unique_ptr<TQuillonAbstractLog>;

constexpr std::int32_t DefaultBufferLimit = 1024;

/// Values that a log of any kind has.
struct TCommonValues {
  bool ShowDebugInfo;
  std::int32_t EntryLimit;
};

std::string FileNameIn(const TQuillonAbstractPreferences& AValues) {
  std::string Name = AValues.ReadString("FileName");
  if (Name.empty()) {
    throw EQuillonException("Ein Protokoll hat keinen Dateinamen (\"FileName\").");
  }
  return Name;
}

template <class TLineLog>
TLog MakeLineLog(const TQuillonAbstractPreferences& /*AValues*/, const TCommonValues& ACommon) {
  return std::make_unique<TLineLog>(ACommon.ShowDebugInfo, ACommon.EntryLimit);
}

TLog MakeTextLog(const TQuillonAbstractPreferences& AValues, const TCommonValues& ACommon) {
  return std::make_unique<TQuillonTextLog>(FileNameIn(AValues), AValues.ReadInteger("BufferLimit", DefaultBufferLimit),
                                           ACommon.ShowDebugInfo, ACommon.EntryLimit);
}

TLog MakeCSVLog(const TQuillonAbstractPreferences& AValues, const TCommonValues& ACommon) {
  return std::make_unique<TQuillonCSVLog>(FileNameIn(AValues), ACommon.ShowDebugInfo, ACommon.EntryLimit);
}

struct TKind {
  const char* Key;
  TLog (*Make)(const TQuillonAbstractPreferences& AValues, const TCommonValues& ACommon);
};
constexpr TKind Kinds[] = {{R"(\Logs\DebuggerLog)", MakeLineLog<TQuillonDebuggerLog>},
                           {R"(\Logs\ConsoleLog)", MakeLineLog<TQuillonConsoleLog>},
                           {R"(\Logs\TextLog)", MakeTextLog},
                           {R"(\Logs\CSVLog)", MakeCSVLog}};

}  // namespace

/// Runs a call that may fail; what is raised goes to the event.
template <class TCall>
bool TQuillonLogManager::Attempt(const TCall& ACall) {
  std::string Message;
  try {
    ACall();
    return true;
  } catch (const std::exception& Error) {
    Message = Error.what();
  }
  if (!std::exchange(FHasFailed, true) && FOnError) {
    FOnError(Message);
  }
  return false;
}

void TQuillonLogManager::SelfConfiguration() {
  if (const std::string Program = Platform::ProgramFile(); !Program.empty()) {
    SelfConfiguration(TQuillonFilePath::AddExtension(Program, "log.config"));
  }
}

void TQuillonLogManager::SelfConfiguration(const std::string& AConfigFile) {
  const TQuillonCriticalSectionLock Lock(FCriticalSection);
  Attempt([&] {
    if (!TQuillonFileSystem::Exists(AConfigFile)) {
      return;
    }
    TQuillonXMLPreferences Values(AConfigFile);
    for (const TKind& Kind : Kinds) {
      if (Values.OpenKey(Kind.Key, false)) {
        Attempt([&] {
          AddLog(Kind.Make(Values, {Values.ReadBoolean("ShowDebugInfo"), Values.ReadInteger("EntryLimit")}));
        });
      }
    }
    if (Values.OpenKey(R"(\Namespaces)", false)) {
      FNamespaceList = Values.GetValueNames();
    }
  });
}

void TQuillonLogManager::AddLog(std::unique_ptr<TQuillonAbstractLog> ALog) {
  const TQuillonCriticalSectionLock Lock(FCriticalSection);
  FLogList.push_back(std::move(ALog));
}

void TQuillonLogManager::ClearLogs() {
  const TQuillonCriticalSectionLock Lock(FCriticalSection);
  for (const TLog& Log : FLogList) {
    Attempt([&Log] { Log->FlushBuffer(); });
  }
  FLogList.clear();
}

void TQuillonLogManager::AddNamespace(std::string_view ANamespace) {
  const TQuillonCriticalSectionLock Lock(FCriticalSection);
  FNamespaceList.emplace_back(ANamespace);
}

void TQuillonLogManager::ClearNamespaces() {
  const TQuillonCriticalSectionLock Lock(FCriticalSection);
  FNamespaceList.clear();
}

TQuillonAbstractLog* TQuillonLogManager::GetLog(std::size_t AnIndex) {
  const TQuillonCriticalSectionLock Lock(FCriticalSection);
  return AnIndex < FLogList.size() ? FLogList[AnIndex].get() : nullptr;
}

std::string TQuillonLogManager::GetNamespace(std::size_t AnIndex) {
  const TQuillonCriticalSectionLock Lock(FCriticalSection);
  return AnIndex < FNamespaceList.size() ? FNamespaceList[AnIndex] : std::string();
}

bool TQuillonLogManager::Takes(std::string_view ANamespace) const {
  return std::any_of(FNamespaceList.begin(), FNamespaceList.end(), [ANamespace](const std::string& AName) {
    return QuillonText::EqualsIgnoreCase(AName, ANamespace);
  });
}

void TQuillonLogManager::AddEntry(TQuillonLogEventType AnEventType, std::string_view AnEventText,
                                  std::string_view ANamespace, std::string_view AUser) {
  AddEntry({AnEventType, AnEventText, ANamespace, QuillonDateTime::Now(), AUser});
}

void TQuillonLogManager::AddEntry(const TQuillonLogEntry& AnEntry) {
  const TQuillonCriticalSectionLock Lock(FCriticalSection);
  if (FLogList.empty() || !Takes(AnEntry.Namespace)) {
    return;
  }
  for (const TLog& Log : FLogList) {
    const bool IsWritten = Attempt([&] { Log->AddEntry(AnEntry); });
    Log->FEnabled = Log->FEnabled && IsWritten;
  }
}

namespace QuillonLogs {

TQuillonLogManager& TheLog() {
  static TQuillonLogManager& Log = []() -> TQuillonLogManager& {
    auto* const New = new TQuillonLogManager;  // never freed: anything may log up to the end
    New->FOnError = [](const std::string& AMessage) {
      try {
        Platform::WriteErrorLine("Log: " + QuillonText::OneLine(AMessage));
      } catch (const EQuillonException&) {  // NOLINT(bugprone-empty-catch): no place is left to say so
      }
    };
    return *New;
  }();
  return Log;
}

}  // namespace QuillonLogs
