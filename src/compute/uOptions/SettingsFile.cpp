#include "uOptions/SettingsFile.h"

#include "QuillonFileSystem.h"

namespace uOptions {

void LoadSettings(TQuillonDataStorage& ASettings, const std::string& AFileName) {
  try {
    if (TQuillonFileSystem::HasFile(AFileName)) {
      ASettings.LoadFromFile(AFileName);
    }
  } catch (const EQuillonException& Error) {
    const std::string Text = Error.what();
    if (Text.find(AFileName) != std::string::npos) {
      throw;
    }
    throw EQuillonException("\"" + AFileName + "\": " + Text);
  }
}

}  // namespace uOptions
