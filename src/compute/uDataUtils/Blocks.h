#pragma once

#include "uPlandaten/Blockketten.h"

namespace uDataUtils {

// The reader of old files needs them below this floor.
using uPlandaten::BlockPartners;
using uPlandaten::RebuildBlocks;
using uPlandaten::SetBlockID;

}  // namespace uDataUtils
