#pragma once

#include <cstdint>

#include "QuillonSet.h"

enum TQuillonFileAttribute {
  fattrArchive,
  fattrCompressed,
  fattrDirectory,
  fattrHidden,
  fattrNormal,  ///< none of the others
  fattrOffline,
  fattrReadOnly,
  fattrSystem,
  fattrTemporary
};
using TQuillonFileAttributes = TQuillonSet<TQuillonFileAttribute, std::uint16_t>;

enum TQuillonFileMode { fmodeUnknown, fmodeReadWrite, fmodeReadOnly };

enum TQuillonFileTimeInfo { ftimeCreation, ftimeLastAccess, ftimeLastWrite };

enum TQuillonDriveType {
  dtypeUnknown,
  dtypeRemovableDrive,
  dtypeFixedDrive,
  dtypeRemoteDrive,
  dtypeCDROM,
  dtypeRAMDisk
};

enum TQuillonFileFlag {
  fflagDebug,
  fflagInfoInferred,
  fflagPatched,
  fflagPreRelease,
  fflagPrivateBuild,
  fflagSpecialBuild
};
using TQuillonFileFlags = TQuillonSet<TQuillonFileFlag, std::uint8_t>;
