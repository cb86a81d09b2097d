#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "QuillonCSV.h"
#include "QuillonDateTime.h"
#include "QuillonIO.h"
#include "QuillonTypes.h"

enum TQuillonLogEventType { letSuccess, letError, letWarning, letInfo, letDebugInfo, letAuditSuccess, letAuditFailure };

struct TQuillonLogEntry {
  TQuillonLogEventType EventType = letInfo;
  std::string_view EventText;
  std::string_view Namespace;
  TQuillonDateTime TimeStamp;
  std::string_view User;

  /// "01.08.2026 07:45.00 - [Namespace] [User] [INFO] Text", without line breaks.
  std::string Line() const;
  std::string_view Word() const;
};

/// A place that entries go to. Not protected against use from several threads: the manager is.
class TQuillonAbstractLog : public TQuillonObject {
 public:
  /// @param AnEntryLimit entries that are taken; 0 for all
  TQuillonAbstractLog(bool DoShowDebugInfo, std::int32_t AnEntryLimit)
      : FEntryLimit(AnEntryLimit), FShowDebugInfo(DoShowDebugInfo) {}

  /// Takes an entry while the log is enabled and below its limit; one for debugging only where such ones are shown.
  virtual void AddEntry(const TQuillonLogEntry& AnEntry);
  /// Hands over what is kept back.
  virtual void FlushBuffer() {}

  bool FEnabled = true;
  std::int32_t FEntryCount = 0;
  std::int32_t FEntryLimit;
  bool FShowDebugInfo;

 protected:
  virtual void Write(const TQuillonLogEntry& AnEntry) = 0;
  /// A line that is no entry.
  virtual void WriteNote(std::string_view ANote) = 0;
};

/// A log of one line an entry.
class TQuillonLineLog : public TQuillonAbstractLog {
 public:
  using TQuillonAbstractLog::TQuillonAbstractLog;

 protected:
  virtual void WriteLine(std::string_view ALine) = 0;
  void Write(const TQuillonLogEntry& AnEntry) override { WriteLine(AnEntry.Line()); }
  void WriteNote(std::string_view ANote) override { WriteLine(ANote); }
};

/// Lines to the platform's debug output: standard error where there is none of its own.
class TQuillonDebuggerLog : public TQuillonLineLog {
 public:
  using TQuillonLineLog::TQuillonLineLog;

 protected:
  void WriteLine(std::string_view ALine) override;
};

/// Lines to standard output.
class TQuillonConsoleLog : public TQuillonLineLog {
 public:
  using TQuillonLineLog::TQuillonLineLog;

 protected:
  void WriteLine(std::string_view ALine) override;
};

/// Lines to a file of this run, which has the time in its name and is others' to read only.
class TQuillonTextLog : public TQuillonLineLog {
 public:
  /// @param ABufferLimit lines that are kept back before they are written
  /// @throws EQuillonFileHandleError
  TQuillonTextLog(const std::string& AFileName, std::int32_t ABufferLimit, bool DoShowDebugInfo,
                  std::int32_t AnEntryLimit);
  /// Flushes; call FlushBuffer to see whether that worked.
  ~TQuillonTextLog() override;

  /// Lines that cannot be written are dropped.
  void FlushBuffer() override;
  const std::string& FileName() const { return FFileStream.FileName(); }

 protected:
  void WriteLine(std::string_view ALine) override;

 private:
  std::vector<std::string> FBuffer;
  std::size_t FBufferLimit;
  TQuillonFileStream FFileStream;
};

/// A file of fields: date, time, namespace, user, kind, text. One that exists is continued.
class TQuillonCSVLog : public TQuillonAbstractLog {
 public:
  /// @throws EQuillonFileHandleError
  TQuillonCSVLog(const std::string& AFileName, bool DoShowDebugInfo, std::int32_t AnEntryLimit);

  void FlushBuffer() override { FCSVWriter.FlushBuffer(); }

 protected:
  void Write(const TQuillonLogEntry& AnEntry) override;
  void WriteNote(std::string_view ANote) override;

 private:
  TQuillonFileStream FFileStream;
  TQuillonCSVWriter FCSVWriter;
};
