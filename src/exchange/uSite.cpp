#include "uSite.h"

#include "QuillonDataObjects/DataClass.h"
#include "uOptions/ProgramPaths.h"
#include "uOptions/SettingsFile.h"

const TQuillonDataClass& TVELSiteInfo::Class() {
  using T = TVELSiteInfo;
  static const TQuillonDataClass Class =
      DescribeClass<T, TQuillonDataStorage>("TVELSiteInfo").Object<&T::FBesitzer>("Owner");
  return Class;
}

void TVELSiteInfo::InitProperties() {
  TQuillonDataStorage::InitProperties();
  FBesitzer.Take(QuillonDataObjects::Create<TVELBesitzer>(this), *this);
}

namespace uSite {

const TVELSiteInfo& Site() { return uOptions::SettingsOf<TVELSiteInfo>(uOptions::ProgramPaths().FSiteFile); }

}  // namespace uSite
