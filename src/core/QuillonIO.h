#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <thread>

#include "QuillonFileHandle.h"
#include "QuillonTypes.h"

/// Fewer bytes than asked for, or a position outside of the stream.
class EQuillonStreamError : public EQuillonException {
 public:
  using EQuillonException::EQuillonException;
};

enum class TQuillonSeekOrigin { Begin, Current, End };

/// A sequence of bytes with a position. Every operation raises on failure.
class TQuillonStream {
 public:
  TQuillonStream() = default;
  TQuillonStream(const TQuillonStream&) = delete;
  TQuillonStream& operator=(const TQuillonStream&) = delete;
  virtual ~TQuillonStream() = default;

  /// Reads up to the buffer's size. @return bytes read; 0 only at the end or for an empty buffer
  virtual std::size_t Read(std::span<char> ABuffer) = 0;
  /// Writes all bytes at the position, over what is there.
  virtual void Write(std::string_view ABytes) = 0;
  /// Moves the position. @return the new one, counted from the begin
  virtual std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) = 0;
  /// Makes the position the end.
  virtual void SetEndOfFile() = 0;

  /// @throws EQuillonStreamError where the stream ends before the buffer is full
  void ReadBuffer(std::span<char> ABuffer);
  std::int64_t Position() { return Seek(0, TQuillonSeekOrigin::Current); }
  /// The size; the position stays.
  std::int64_t Size();
  /// Empties the stream.
  void Clear();
};

/// What streams over a block of memory share.
class TQuillonCustomMemoryStream : public TQuillonStream {
 public:
  std::size_t Read(std::span<char> ABuffer) override;
  /// @throws EQuillonStreamError for a position before the begin; one behind the end is allowed
  std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) override;

  /// Fills the block with zeros; size and position stay.
  void Zero();

 protected:
  virtual std::span<char> Block() = 0;

  std::size_t FPosition = 0;
};

/// A stream over a text in memory.
class TQuillonMemoryStream : public TQuillonCustomMemoryStream {
 public:
  TQuillonMemoryStream() = default;
  explicit TQuillonMemoryStream(std::string AContent) : FContent(std::move(AContent)) {}
  /// A content of zeros, in a block that has room for ACapacity bytes.
  explicit TQuillonMemoryStream(std::size_t ASize, std::size_t ACapacity = 0);

  void Write(std::string_view ABytes) override;
  void SetEndOfFile() override;

  const std::string& Content() const { return FContent; }
  /// Hands the content out and is empty afterwards.
  std::string TakeContent();

 protected:
  std::span<char> Block() override { return FContent; }

 private:
  std::string FContent;
};

/// A stream over somebody else's block, which must outlive it and whose size is fixed.
class TQuillonBufferStream final : public TQuillonCustomMemoryStream {
 public:
  explicit TQuillonBufferStream(std::span<char> ABuffer) : FBuffer(ABuffer) {}

  /// @throws EQuillonStreamError for bytes beyond the end of the block; none is written then
  void Write(std::string_view ABytes) override;
  /// @throws EQuillonStreamError unless the position is the end of the block
  void SetEndOfFile() override;

 protected:
  std::span<char> Block() override { return FBuffer; }

 private:
  std::span<char> FBuffer;
};

/// A stream over a file. Every failure raises EQuillonFileHandleError.
class TQuillonFileStream : public TQuillonStream {
 public:
  TQuillonFileStream(const std::string& AFileName, TQuillonFileOpenMode AnOpenMode,
                     TQuillonFileAccessMode AnAccessMode);
  /// If the first way of opening fails, the other one is tried, once.
  TQuillonFileStream(const std::string& AFileName, TQuillonFileOpenMode AnOpenMode, TQuillonFileAccessMode AnAccessMode,
                     TQuillonFileOpenMode AFallbackOpenMode, TQuillonFileAccessMode AFallbackAccessMode);
  /// Where access is denied, opening is tried again every 100 milliseconds until more than ATimeOut has been waited.
  /// After that the stream is not open, and no error is raised until it is used. Other errors are raised at once.
  TQuillonFileStream(const std::string& AFileName, TQuillonFileOpenMode AnOpenMode, TQuillonFileAccessMode AnAccessMode,
                     std::chrono::milliseconds ATimeOut);
  /// Takes over a file that is open for reading and writing.
  TQuillonFileStream(std::string AFileName, std::unique_ptr<Platform::File> AFile, TQuillonFileAccessMode AnAccessMode);
  /// Closes the file; call Close to see whether that worked.
  ~TQuillonFileStream() override;

  std::size_t Read(std::span<char> ABuffer) override;
  void Write(std::string_view ABytes) override;
  std::int64_t Seek(std::int64_t AnOffset, TQuillonSeekOrigin AnOrigin) override;
  void SetEndOfFile() override;

  /// Returns when the content has reached the disk.
  void Flush();
  /// Goes on with another open file, which has taken the place of this one.
  void GoOnWith(std::unique_ptr<Platform::File> AFile);
  void Close() { FFileObject.Close(); }
  bool IsOpen() const { return FFileObject.IsOpen(); }

  const std::string& FileName() const { return FFileObject.FileName(); }
  TQuillonFileOpenMode OpenMode() const { return FFileObject.OpenMode(); }
  TQuillonFileAccessMode AccessMode() const { return FFileObject.AccessMode(); }
  /// The lock that the two modes mean.
  Platform::Lock Lock() const;

 private:
  TQuillonFileHandle FFileObject;
};

/// Bytes of a file in memory, to be worked on in place. Grows without copying or clearing, as a string cannot.
class TQuillonBuffer {
 public:
  TQuillonBuffer() = default;
  TQuillonBuffer(std::string_view ABytes);  // NOLINT(google-explicit-constructor): a text is a buffer's content
  TQuillonBuffer(const std::string& ABytes) : TQuillonBuffer(std::string_view(ABytes)) {}
  TQuillonBuffer(const char* AText) : TQuillonBuffer(std::string_view(AText)) {}

  char* Data() { return FBytes.get(); }
  std::size_t Size() const { return FSize; }
  std::string_view View() const { return {FBytes.get(), FSize}; }
  /// What a larger size adds is not set to anything.
  void Resize(std::size_t ASize);

 private:
  struct TFree {
    void operator()(char* ABytes) const;
  };

  std::unique_ptr<char, TFree> FBytes;
  std::size_t FSize = 0;
};

/// Takes the next piece of a content.
using TQuillonContentSink = std::function<void(std::string_view APiece)>;

/// What is to become a file or to be sent: hands its bytes over piece by piece. It may be asked again, and gives the
/// same then.
using TQuillonContent = std::function<void(const TQuillonContentSink& ASink)>;

namespace QuillonIO {

/// Bytes of a content, which is made for this.
std::uint64_t SizeOf(const TQuillonContent& AContent);

/// Bytes from the position to the end as far as the stream can tell, else 0.
std::size_t ClaimedSize(TQuillonStream& AStream);

/// Everything from the position to the end. The memory taken grows with what really comes, whatever size the stream
/// claims to have.
TQuillonBuffer ReadIntoBuffer(TQuillonStream& AStream);
/// @throws EQuillonFileHandleError
TQuillonBuffer ReadIntoBuffer(const std::string& AFileName);

/// As ReadIntoBuffer.
std::string ReadWholeFile(TQuillonStream& AStream);
std::string ReadWholeFile(const std::string& AFileName);

/// Makes the call again and again while it raises EQuillonFileInUseError, for ATimeOut at most.
template <class TCall>
auto WaitWhileInUse(std::chrono::milliseconds ATimeOut, TCall ACall) {
  constexpr std::chrono::milliseconds Pause(50);
  const auto End = std::chrono::steady_clock::now() + ATimeOut;
  for (;;) {
    try {
      return ACall();
    } catch (const EQuillonFileInUseError&) {
      if (std::chrono::steady_clock::now() >= End) {
        throw;
      }
    }
    std::this_thread::sleep_for(Pause);
  }
}

}  // namespace QuillonIO
