#pragma once

// The families of this unit, for those who want more than one of them.
#include "QuillonFileSystem/Entries.h"
#include "QuillonFileSystem/FilePath.h"
#include "QuillonFileSystem/FileSystem.h"
#include "QuillonFileSystem/FileVersion.h"
#include "QuillonFileSystem/UrlPath.h"
