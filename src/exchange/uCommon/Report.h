#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

/// What a run has done, for programs that watch over runs: a JSON file, if the settings or VELMORA_REPORT name one.
class TVELReport {
 public:
  /// Warnings that are told in words; further ones are only counted.
  static constexpr std::size_t MaxWarnings = 1000;

  /// A file that was written or read.
  struct TFile {
    std::string Name;
    std::uint64_t Rows = 0;     ///< without the header
    std::uint64_t Skipped = 0;  ///< objects that have no row
  };
  /// What became of the objects of one kind.
  struct TKind {
    std::string Name;
    std::uint64_t New = 0;
    std::uint64_t Changed = 0;
    std::uint64_t Unchanged = 0;
    std::uint64_t Cleared = 0;  ///< of the changed ones, those that have lost a value
  };

  TVELReport();

  /// Where the report goes; VELMORA_REPORT of the environment has the last word.
  void SetFileName(const std::string& AFileName);

  /// To be called as soon as settings, source and target are known.
  /// @throws EQuillonException if the report would take the place of one of them, or of a file of a set in one of
  ///         them; there will be no report then
  void SpareOtherFiles();

  /// Whether there will be a report: what only that needs is left undone otherwise.
  bool IsWanted() const { return !FFileName.empty(); }

  /// The one before ends.
  void BeginStage(std::string_view AName);
  /// The entry of that name, made at the first call; valid as long as the report. Several threads may ask.
  TFile& File(std::string_view AName);
  /// For files that are written once more.
  void ForgetFiles() { FFiles.clear(); }
  TKind& Kind(std::string_view AName);
  /// What no line of the run tells. @param AKind a word for programs
  void Warn(std::string_view AKind, std::string AText);

  /// Ends the report and writes it, whole or not at all; does nothing if nobody wants it.
  /// @throws EQuillonFileHandleError, EQuillonFileSystemError
  void Finish(int AnExitCode, const std::string& AnError);

  std::string FJob;       ///< a word for programs, as the next
  std::string FOutcome;   ///< of a job that may have nothing to do
  std::string FSettings;  ///< name of the configuration file
  std::string FSource;
  std::string FTarget;
  std::string FDataRelease;  ///< of the data file's format, and of the program that wrote it
  std::string FDataProgram;
  std::int64_t FDataVersion = 0;

 private:
  using TClock = std::chrono::steady_clock;
  struct TStage {
    std::string Name;
    TClock::time_point Begin;
    double Seconds = 0;
    std::uint64_t PeakBytes = 0;
    bool IsOver = false;
  };
  struct TWarning {
    std::string Kind;
    std::string Text;
  };

  void EndStage();
  std::string Document(int AnExitCode, const std::string& AnError) const;

  std::string FFileName;
  bool FIsFixed = false;  ///< the environment has named the file
  const std::chrono::system_clock::time_point FStarted = std::chrono::system_clock::now();
  const TClock::time_point FBegin = TClock::now();
  std::vector<TStage> FStages;
  std::mutex FNaming;  ///< for the next one
  std::deque<TFile> FFiles;
  std::deque<TKind> FKinds;
  std::vector<TWarning> FWarnings;
  std::uint64_t FWarningCount = 0;
};
