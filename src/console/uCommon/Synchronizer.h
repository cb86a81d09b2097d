#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "OcfConfiguration.h"
#include "uPlandaten/Plan.h"
#include "uPlandaten/Werte.h"

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
  /// @throws EQuillonException "Local Velmora file does not exist.", and what the load raises
  virtual void LoadVelFile();
  /// Saves the plan to its data file.
  void SaveVelFile();

 protected:
  TVELOstrelSynchronizer(TVELPlan& APlan, std::unique_ptr<TOcfConfiguration> AConfiguration);

  /// Loads the file; a job that saves it overrides this to hold it meanwhile.
  virtual void OpenPlan(const std::string& AFileName) { FPlan.LoadFromFile(AFileName); }
  virtual std::string GetFileName() const = 0;
  virtual TGUID GetServerFileId() const = 0;
  virtual std::string GetServerName() const = 0;
  virtual std::uint16_t GetServerPort() const = 0;
  virtual std::string GetServerUserName() const = 0;
  virtual std::string GetServerPassword() const = 0;

  /// The GUID of a server file; the all-zero one for an empty text.
  /// @throws EQuillonConvertError
  static TGUID ParseFileId(const std::string& AText);
  void TakeValidRange();

  TVELPlan& FPlan;
  bool FAborted = false;
  TVELDate FValidFrom;  ///< first valid day
  TVELDate FValidTo;    ///< the day after the last valid one
};
