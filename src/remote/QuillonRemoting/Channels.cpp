#include "QuillonRemoting/Channels.h"

#include <exception>

#include "QuillonRemoting/Messages.h"

void TQuillonRemoteChannel::Open() {
  const TQuillonCriticalSectionLock Guard(FCriticalSection);
  if (FRefCount == 0) {
    OpenConnection();
  }
  ++FRefCount;
}

bool TQuillonRemoteChannel::TryOpen() {
  try {
    Open();
    return true;
  } catch (const EQuillonException&) {
    return false;
  }
}

void TQuillonRemoteChannel::Close() {
  const TQuillonCriticalSectionLock Guard(FCriticalSection);
  if (FRefCount > 1) {
    --FRefCount;
  } else if (FRefCount == 1) {
    const std::unique_ptr<TQuillonWriter> Writer = GetWriter();
    FRefCount = 0;
    try {
      Writer->WriteByte(rcEndOfConnection);
      Writer->FlushBuffer();
    } catch (const std::exception&) {
      CloseConnection();
      throw;
    }
    CloseConnection();
  }
}

std::unique_ptr<TQuillonReader> TQuillonTCPRemoteChannel::GetReader() {
  auto Reader = std::make_unique<TQuillonTCPSocketReader>(FSocket, QuillonRemoting::BufferSize);
  Reader->FBound = &FBound;
  Reader->FStringLimit = QuillonRemoting::StringLimit;
  return Reader;
}

std::unique_ptr<TQuillonWriter> TQuillonTCPRemoteChannel::GetWriter() {
  auto Writer = std::make_unique<TQuillonTCPSocketWriter>(FSocket, QuillonRemoting::BufferSize);
  Writer->FBound = &FBound;
  return Writer;
}

void TQuillonTCPRemoteChannel::OpenConnection() {
  FSocket.CloseSocket();
  FSocket.CreateSocket();
  try {
    FSocket.EnableNoDelay(FEnableNoDelay);
    FSocket.Connect();
  } catch (const std::exception&) {
    FSocket.CloseSocket();
    throw;
  }
  FBound.Start();
}
