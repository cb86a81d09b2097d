#include "QuillonLogs/Logs.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "QuillonFileSystem.h"
#include "QuillonText.h"
#include "platform/Console.h"

namespace {

constexpr std::string_view LimitNote = "*** Log limit reached ***";
constexpr std::size_t BufferSize = 4096;

}  // namespace

std::string_view TQuillonLogEntry::Word() const {
  // In the order of the kinds.
  static constexpr std::string_view Words[] = {"SUCCESS",    "ERROR",         "WARNING",      "INFO",
                                               "DEBUG INFO", "AUDIT SUCCESS", "AUDIT FAILURE"};
  return Words[EventType];
}

std::string TQuillonLogEntry::Line() const {
  std::string Text = TimeStamp.ToString("dd.mm.yyyy hh:mm.ss");
  Text.append(" - [").append(Namespace).append("] [").append(User).append("] [").append(Word()).append("] ");
  return QuillonText::OneLine(Text.append(EventText));
}

void TQuillonAbstractLog::AddEntry(const TQuillonLogEntry& AnEntry) {
  const bool HasLimit = FEntryLimit > 0;
  const bool IsShown = AnEntry.EventType != letDebugInfo || FShowDebugInfo;
  if (!FEnabled || !IsShown || (HasLimit && FEntryCount >= FEntryLimit)) {
    return;
  }
  FEntryCount += FEntryCount < std::numeric_limits<std::int32_t>::max() ? 1 : 0;
  Write(AnEntry);
  if (HasLimit && FEntryCount == FEntryLimit) {
    WriteNote(LimitNote);
  }
}

void TQuillonDebuggerLog::WriteLine(std::string_view ALine) { Platform::WriteDebugLine(ALine); }

void TQuillonConsoleLog::WriteLine(std::string_view ALine) { Platform::WriteOutputLine(ALine); }

TQuillonTextLog::TQuillonTextLog(const std::string& AFileName, std::int32_t ABufferLimit, bool DoShowDebugInfo,
                                 std::int32_t AnEntryLimit)
    : TQuillonLineLog(DoShowDebugInfo, AnEntryLimit),
      FBufferLimit(static_cast<std::size_t>(std::max(ABufferLimit, 1))),
      FFileStream(TQuillonFilePath::GetTimeStampedFileName(AFileName), fomOpenReadWriteOrCreate, famShareDenyWrite) {
  FFileStream.Seek(0, TQuillonSeekOrigin::End);
}

TQuillonTextLog::~TQuillonTextLog() {
  try {
    FlushBuffer();
  } catch (const EQuillonException&) {  // NOLINT(bugprone-empty-catch): a destructor has nobody to tell
  }
}

void TQuillonTextLog::WriteLine(std::string_view ALine) {
  FBuffer.emplace_back(ALine);
  if (FBuffer.size() >= FBufferLimit) {
    FlushBuffer();
  }
}

void TQuillonTextLog::FlushBuffer() {
  std::string Text;
  for (const std::string& Line : std::exchange(FBuffer, {})) {
    Text.append(Line).push_back('\n');
  }
  if (!Text.empty()) {
    FFileStream.Write(Text);
  }
}

TQuillonCSVLog::TQuillonCSVLog(const std::string& AFileName, bool DoShowDebugInfo, std::int32_t AnEntryLimit)
    : TQuillonAbstractLog(DoShowDebugInfo, AnEntryLimit),
      FFileStream(AFileName, fomOpenReadWriteOrCreate, famShareDenyWrite),
      FCSVWriter(FFileStream, FFileStream.Size() == 0, BufferSize) {
  if (FFileStream.Seek(0, TQuillonSeekOrigin::End) > 0) {
    FCSVWriter.WriteLine();
  }
}

void TQuillonCSVLog::Write(const TQuillonLogEntry& AnEntry) {
  const TQuillonCSVLine Fields = {AnEntry.TimeStamp.ToString("dd.mm.yyyy"),
                                  AnEntry.TimeStamp.ToString("hh:mm:ss"),
                                  std::string(AnEntry.Namespace),
                                  std::string(AnEntry.User),
                                  std::string(AnEntry.Word()),
                                  std::string(AnEntry.EventText)};
  FCSVWriter.WriteLine(&Fields);
}

void TQuillonCSVLog::WriteNote(std::string_view ANote) {
  FCSVWriter.WriteValue(ANote);
  FCSVWriter.WriteLine();
}
