#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "QuillonIO.h"

namespace QuillonIO {

/// How long a file that somebody else holds is waited for before it is changed.
inline constexpr std::chrono::seconds LongestWait(30);

/// Opens a file that is to be changed, and keeps others from changing it meanwhile. One that we may not write is
/// opened for reading, so that its replacement is what is refused.
/// @throws EQuillonFileHandleError; EQuillonFileInUseError if somebody else holds it for longer than ATimeOut
std::unique_ptr<TQuillonFileStream> HoldFile(const std::string& AFileName,
                                             std::chrono::milliseconds ATimeOut = LongestWait);

/// Makes AContent the content of a file that is held, whole or not at all: it is written to a new file in the same
/// folder, flushed to the disk, and takes the place of the old one, whose lock it has already; AFile goes on with it.
/// The old file's permissions are kept, its owner where the system lets us; a symbolic link stays one, and the file it
/// points to is replaced.
///
/// Only where the folder takes no new file, or nothing may take the old one's place, it is overwritten. Then a complete
/// copy of the new content exists before its first byte changes: in the folder, else in the user's state folder, else
/// in the temporary one. The copy goes when the file is complete; a failure names it.
/// @throws EQuillonFileHandleError; the new file is gone then, and for a file open for reading
/// What the content itself raises leaves the old file too.
void ReplaceFile(TQuillonFileStream& AFile, const TQuillonContent& AContent);

/// As above, for a file that is not held and need not exist. Devices and pipes are written to.
/// @return the new file, which is held as by HoldFile; nothing for a device
std::unique_ptr<TQuillonFileStream> ReplaceFile(const std::string& AFileName, const TQuillonContent& AContent,
                                                std::chrono::milliseconds ATimeOut = LongestWait);

/// The same for a text.
void ReplaceFile(TQuillonFileStream& AFile, std::string_view AContent);
std::unique_ptr<TQuillonFileStream> ReplaceFile(const std::string& AFileName, std::string_view AContent,
                                                std::chrono::milliseconds ATimeOut = LongestWait);

/// Copies an open file to a new one, which appears when it is complete; does nothing where there is a file already.
/// @throws EQuillonFileHandleError
void KeepBackup(TQuillonFileStream& AFile, const std::string& ABackupName);

}  // namespace QuillonIO
