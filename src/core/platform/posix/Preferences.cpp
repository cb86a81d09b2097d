#include "platform/Preferences.h"

#include "QuillonFileSystem.h"
#include "QuillonXMLPreferences.h"
#include "platform/Paths.h"

namespace {

std::unique_ptr<TQuillonAbstractPreferences> OpenIn(const std::string& AFolder,
                                                    TQuillonXMLPreferences::TReaders AReaders) {
  const std::string Path = AFolder.empty() ? std::string() : TQuillonFilePath::Combine(AFolder, "preferences.xml");
  return std::make_unique<TQuillonXMLPreferences>(Path, false, AReaders);
}

}  // namespace

namespace Platform {

std::unique_ptr<TQuillonAbstractPreferences> OpenUserPreferences() {
  return OpenIn(UserSettingsFolder(), TQuillonXMLPreferences::TReaders::Owner);
}

std::unique_ptr<TQuillonAbstractPreferences> OpenMachinePreferences() {
  return OpenIn(MachineSettingsFolder(), TQuillonXMLPreferences::TReaders::Everybody);
}

}  // namespace Platform
