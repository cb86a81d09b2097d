#pragma once

#include <memory>

class TQuillonAbstractPreferences;

namespace Platform {

/// Settings where this system keeps them: a registry where there is one, else files in the folders of Paths.h.
std::unique_ptr<TQuillonAbstractPreferences> OpenUserPreferences();
std::unique_ptr<TQuillonAbstractPreferences> OpenMachinePreferences();

}  // namespace Platform
