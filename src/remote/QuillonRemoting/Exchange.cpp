#include "QuillonRemoting/Exchange.h"

#include <exception>

#include "QuillonLogs/Manager.h"

TQuillonRemoteExchange::TQuillonRemoteExchange(TQuillonRemoteChannel& AChannel) : FChannel(AChannel) {
  FChannel.Open();
  FChannel.Lock();
  try {
    FWriter = FChannel.GetWriter();
    FReader = FChannel.GetReader();
  } catch (...) {
    Leave();
    throw;
  }
}

TQuillonRemoteExchange::~TQuillonRemoteExchange() { Leave(); }

std::uint8_t TQuillonRemoteExchange::ReadStatus() {
  FWriter->FlushBuffer();
  return FReader->ReadByte();
}

std::uint8_t TQuillonRemoteExchange::Ask(TQuillonRemoteCommand ACommand, const TGUID& ASessionID) {
  FWriter->WriteByte(ACommand);
  FWriter->WriteGuid(ASessionID);
  return ReadStatus();
}

void TQuillonRemoteExchange::Leave() {
  FReader.reset();
  FWriter.reset();
  FChannel.Unlock();
  try {
    FChannel.Close();
  } catch (const std::exception& Error) {
    if (FIsGood) {
      QuillonLogs::TheLog().AddEntry(letError, Error.what(), QuillonRemoting::LogNamespace);
    }
  }
}
