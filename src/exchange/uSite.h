#pragma once

#include "QuillonDataObjects/Storage.h"
#include "uPlandaten/Besitzer.h"

/// The site that the programs run at, with its owner.
class TVELSiteInfo : public TQuillonDataStorage {
 public:
  static const TQuillonDataClass& Class();
  const TQuillonDataClass& DataClass() const override { return Class(); }

  TQuillonOwned<TVELBesitzer> FBesitzer;

 protected:
  void InitProperties() override;
};

namespace uSite {

/// The site, read from its file at the first need.
/// @throws EQuillonException, naming the file, for one that is damaged
const TVELSiteInfo& Site();

}  // namespace uSite
