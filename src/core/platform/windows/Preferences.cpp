#include "platform/Preferences.h"

#include "platform/windows/RegistryPreferences.h"

namespace Platform {

std::unique_ptr<TQuillonAbstractPreferences> OpenUserPreferences() {
  return std::make_unique<TQuillonRegistryPreferences>(HKEY_CURRENT_USER, KEY_ALL_ACCESS);
}

std::unique_ptr<TQuillonAbstractPreferences> OpenMachinePreferences() {
  return std::make_unique<TQuillonRegistryPreferences>(HKEY_LOCAL_MACHINE, KEY_ALL_ACCESS);
}

}  // namespace Platform
