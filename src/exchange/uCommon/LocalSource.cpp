#include "LocalSource.h"

#include "QuillonFileSystem.h"
#include "QuillonText.h"

namespace LocalSource {

void RequireLocal(std::string_view AProvider) {
  if (QuillonText::EqualsIgnoreCase(AProvider, "Server")) {
    throw EQuillonException("The data server is not part of this version yet.");
  }
}

void RequireFile(const std::string& AFileName) {
  if (!TQuillonFileSystem::IsFile(AFileName)) {
    throw EQuillonException("Local Velmora file does not exist.");
  }
}

void Load(TVELPlan& APlan, const TVELSourceOptions& AnOptions) {
  RequireLocal(AnOptions.FSourceProvider);
  RequireFile(AnOptions.FSourceFileName);
  APlan.LoadFromFile(AnOptions.FSourceFileName);
}

}  // namespace LocalSource
