#include <filesystem>
#include <map>

#include "Fuzz.h"
#include "QuillonText.h"
#include "QuillonXMLPreferences.h"
#include "QuillonXMLText.h"

namespace {

/// All values by their paths; what stands under a name with a delimiter has none.
void Collect(TQuillonXMLPreferences& APreferences, const std::string& AKey,
             std::map<std::string, std::string>& AFound) {
  const auto HasPath = [](const std::string& AName) { return AName.find_first_of("\\/") == std::string::npos; };
  Fuzz::Require(APreferences.OpenKey("\\" + AKey, false), "a key that is told cannot be opened");
  for (const std::string& Name : APreferences.GetValueNames()) {
    AFound[AKey + "=" + Name] = APreferences.ReadString(Name, "no value");
  }
  for (const std::string& Name : APreferences.GetKeyNames()) {
    // Of keys with one name, in any case, the first one is opened.
    if (HasPath(Name) && AFound.try_emplace(AKey + "\\" + QuillonText::ToLower(Name), "key").second) {
      Collect(APreferences, AKey + "\\" + Name, AFound);
      APreferences.OpenKey("\\" + AKey, false);
    }
  }
}

std::map<std::string, std::string> Content(TQuillonXMLPreferences& APreferences) {
  std::map<std::string, std::string> Found;
  Collect(APreferences, "", Found);
  return Found;
}

void CheckName(std::string_view AName) {
  const std::string Element = QuillonXMLText::EscapeName(AName);
  if (QuillonText::FindInvalidUtf8(AName) == std::string_view::npos) {
    Fuzz::Require(QuillonXMLText::UnescapeName(Element) == AName, "a name comes back as another");
  }
}

}  // namespace

/// Reads a preferences file, changes a value and stores it: everything else is as before.
void Fuzz::Run(std::string_view AnInput) {
  static const std::string FileName =
      (std::filesystem::temp_directory_path() / ("preferences-" + QuillonGuid::Plain(QuillonGuid::New()))).string();
  struct TRemoval {
    ~TRemoval() { std::filesystem::remove(FileName); }
  };
  static const TRemoval Removal;
  CheckName(AnInput.substr(0, 100));
  WriteFile(FileName, AnInput);
  std::map<std::string, std::string> Before;
  if (!Accepts([&] {
        TQuillonXMLPreferences Preferences(FileName);
        Before = Content(Preferences);
        Preferences.CloseKey();
        Preferences.WriteString("fuzz value", AnInput.substr(0, 100));
        Preferences.FlushBuffer();
      })) {
    return;
  }
  TQuillonXMLPreferences Preferences(FileName);
  Require(Preferences.ReadString("Fuzz Value") == QuillonXMLText::OnlyCharacters(AnInput.substr(0, 100)),
          "the value is another");
  Preferences.DeleteValue("fuzz value");
  std::map<std::string, std::string> After = Content(Preferences);
  Before.erase("=fuzz value");
  Require(Before == After, "values changed that nobody wrote");
}
