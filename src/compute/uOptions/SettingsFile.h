#pragma once

#include <string>
#include <utility>

#include "QuillonDataObjects/DataClass.h"
#include "QuillonDataObjects/Storage.h"

namespace uOptions {

/// Loads a file of settings, if it exists.
/// @throws EQuillonException, naming the file, where it cannot be read or holds something else
void LoadSettings(TQuillonDataStorage& ASettings, const std::string& AFileName);

/// The settings of class T in a file, which is read at the first need and not again; without a file the defaults.
/// @throws as LoadSettings
template <class T>
T& SettingsOf(const std::string& AFileName) {
  struct TLoaded {
    TQuillonDataHandle<T> Settings;
    std::string FileName;
  };
  static TLoaded& Loaded = *new TLoaded;  // never freed: class tables may be gone by then
  if (!Loaded.Settings || Loaded.FileName != AFileName) {
    auto Settings = QuillonDataObjects::CreateStorage<T>();
    LoadSettings(*Settings, AFileName);
    Loaded.Settings = std::move(Settings);
    Loaded.FileName = AFileName;
  }
  return *Loaded.Settings;
}

}  // namespace uOptions
