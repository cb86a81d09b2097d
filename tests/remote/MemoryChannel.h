#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "QuillonRemoting/Channels.h"

/// A channel to a server whose answers are all there from the begin; keeps what is sent. One of its calls may fail.
class TMemoryChannel final : public TQuillonRemoteChannel {
 public:
  std::unique_ptr<TQuillonReader> GetReader() override {
    auto Reader = std::make_unique<TReader>(*this);
    Reader->FStringLimit = QuillonRemoting::StringLimit;
    return Reader;
  }
  std::unique_ptr<TQuillonWriter> GetWriter() override { return std::make_unique<TWriter>(*this); }

  std::string_view FAnswers;  ///< what has not been read yet; must outlive its use
  std::string FSent;
  std::string FConnections;      ///< "(" and ")" for each that began and ended
  int FCallsBeforeFailure = -1;  ///< opening, reading and writing; -1 for no failure

 protected:
  void OpenConnection() override {
    if (Fails()) {
      throw EQuillonSocketError(0);
    }
    FConnections += '(';
  }
  void CloseConnection() override { FConnections += ')'; }

 private:
  class TReader final : public TQuillonReader {
   public:
    explicit TReader(TMemoryChannel& AChannel) : FChannel(AChannel) {}
    bool CanRead() override { return !FChannel.FAnswers.empty(); }
    std::size_t Read(std::span<char> ABuffer) override {
      const std::size_t Count = FChannel.Fails() ? 0 : FChannel.FAnswers.copy(ABuffer.data(), ABuffer.size());
      FChannel.FAnswers.remove_prefix(Count);
      return Count;
    }

   private:
    TMemoryChannel& FChannel;
  };
  class TWriter final : public TQuillonWriter {
   public:
    explicit TWriter(TMemoryChannel& AChannel) : FChannel(AChannel) {}
    std::size_t Write(std::string_view ABytes) override {
      if (FChannel.Fails()) {
        return 0;
      }
      FChannel.FSent += ABytes;
      return ABytes.size();
    }

   private:
    TMemoryChannel& FChannel;
  };

  bool Fails() { return FCallsBeforeFailure >= 0 && FCallsBeforeFailure-- == 0; }
};
