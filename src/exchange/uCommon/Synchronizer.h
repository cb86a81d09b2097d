#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "Configuration.h"
#include "Globals.h"
#include "LocalSource.h"
#include "OcfConfiguration.h"
#include "ServerSource.h"
#include "uPlandaten/Werte.h"

/// Base of a job with a configuration file of its own, which reads a data file into the global plan.
/// @tparam TConfiguration the settings that the file holds
template <class TConfiguration>
class TVELSynchronizer {
 public:
  TVELSynchronizer(const TVELSynchronizer&) = delete;
  TVELSynchronizer& operator=(const TVELSynchronizer&) = delete;
  virtual ~TVELSynchronizer() = default;

  void Abort() { FAborted = true; }

  /// Loads the data file into the plan.
  /// @throws EQuillonException "Local Velmora file does not exist.", what ServerSource raises, and what the load raises
  virtual void LoadVelFile() {
    if (ServerSource::IsServer(Options().FSourceProvider)) {
      ServerSource::Load(FGlobals, Options());
    } else {
      const std::string& FileName = Options().FSourceFileName;
      LocalSource::Load(FileName, [&] { FPlan.LoadFromFile(FileName); });
    }
  }

 protected:
  /// Loads the configuration file.
  /// @throws EQuillonException as LoadConfiguration
  TVELSynchronizer(TVELGlobals& AGlobals, const std::string& ACfgFileName)
      : FGlobals(AGlobals), FPlan(AGlobals.Plan()), FConfiguration(LoadConfiguration<TConfiguration>(ACfgFileName)) {}

  /// The part of the settings that tells where the data file is.
  virtual const TVELSourceOptions& Options() const = 0;
  /// For the constructor of a job: tells the report what this is about.
  void BeginReport(const std::string& ATarget) {
    TVELReport& Report = FGlobals.Report();
    Report.SetFileName(Options().FReportFileName);
    Report.FSource = ServerSource::PlaceOf(Options().FSourceProvider, Options(), Options().FSourceFileName);
    Report.FTarget = ATarget;
    Report.SpareOtherFiles();
  }

  TVELGlobals& FGlobals;
  TVELPlan& FPlan;
  bool FAborted = false;
  std::unique_ptr<TConfiguration> FConfiguration;
};

/// Base of the OCF jobs: their settings, and the data file in the global plan.
class TVELOstrelService {
 public:
  TVELOstrelService(const TVELOstrelService&) = delete;
  TVELOstrelService& operator=(const TVELOstrelService&) = delete;
  virtual ~TVELOstrelService() = default;

  /// What an OCF job that has no settings says at its first look at them.
  /// @throws EQuillonException always
  [[noreturn]] static void ThrowNoConfiguration();

 protected:
  /// @param AConfiguration null for a job that was given a configuration file: OCF jobs do not read one
  explicit TVELOstrelService(std::unique_ptr<TOcfConfiguration> AConfiguration);

  /// @throws EQuillonException if there are no settings
  TOcfConfiguration& Configuration() const;

 private:
  std::unique_ptr<TOcfConfiguration> FConfiguration;
};

/// Opens a data file for an OCF job and stores it back.
class TVELOstrelSynchronizer : public TVELOstrelService {
 public:
  /// Stops the job at its next step or row, without an error.
  void Abort() { FAborted = true; }

  /// Loads the data file into the plan and takes the range of valid dates from it.
  /// @throws EQuillonException "Local Velmora file does not exist.", what ServerSource raises, and what the load raises
  virtual void LoadVelFile();
  /// Saves the plan to its data file, here or on the server.
  /// @throws EQuillonException for settings that name neither, and what ServerSource and the save raise
  void SaveVelFile();

 protected:
  TVELOstrelSynchronizer(TVELGlobals& AGlobals, std::unique_ptr<TOcfConfiguration> AConfiguration);

  /// Loads the file; a job that saves it overrides this to hold it meanwhile.
  virtual void OpenPlan(const std::string& AFileName) { FPlan.LoadFromFile(AFileName); }
  /// The settings of this job's direction: export or import.
  /// @throws EQuillonException if there are no settings
  virtual const TOcfOptions& Options() const = 0;
  /// The local data file.
  virtual std::string GetFileName() const = 0;

  void TakeValidRange();

  TVELGlobals& FGlobals;
  TVELPlan& FPlan;
  std::atomic<bool> FAborted = false;
  TVELDate FValidFrom;  ///< first valid day
  TVELDate FValidTo;    ///< the day after the last valid one
};
