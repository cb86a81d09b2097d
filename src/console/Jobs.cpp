#include "Jobs.h"

#include "QuillonTypes.h"

namespace {

[[noreturn]] void ThrowMissing(std::string_view AJob) {
  throw EQuillonException("The " + std::string(AJob) + " is not part of this version yet.");
}

}  // namespace

void TExchangeJobs::ExportToOcf(std::unique_ptr<TOcfConfiguration> /*AConfiguration*/) {
  ThrowMissing("export to OCF");
}

void TExchangeJobs::ExportToOcf(const std::string& /*AConfigFileName*/) { ThrowMissing("export to OCF"); }

void TExchangeJobs::UploadToSdui(const std::string& /*AConfigFileName*/) { ThrowMissing("upload to Sdui"); }

void TExchangeJobs::UploadToIServ(const std::string& /*AConfigFileName*/) { ThrowMissing("upload to IServ"); }

void TExchangeJobs::ImportFromOcf(std::unique_ptr<TOcfConfiguration> /*AConfiguration*/) {
  ThrowMissing("import from OCF");
}

void TExchangeJobs::ImportFromOcf(const std::string& /*AConfigFileName*/) { ThrowMissing("import from OCF"); }

void TExchangeJobs::TransformFile(const std::string& /*AFileName*/) { ThrowMissing("transformation of a data file"); }
