#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "QuillonRemoting/ParamsQueue.h"

namespace QuillonRemoting {

/// Namespace of the log's entries.
inline constexpr std::string_view LogNamespace = "Quillon.System.Remoting";

}  // namespace QuillonRemoting

/// What a client asks the data server for; a byte on the wire.
enum TQuillonRemoteCommand : std::uint8_t {
  rcEndOfConnection,  ///< has no answer
  rcLogin,            ///< client version, user name and password follow
  rcLogoff,           ///< here and with the next two the session follows
  rcCall,
  rcKeepAlive,
  rcPing
};

/// The server's answer to a command; a byte on the wire. All that is not told here is a failure.
enum TQuillonRemoteStatus : std::uint8_t {
  rsSuccess = 0,
  rsServiceNotAvailable = 3,
  rsSessionNotAvailable = 4,
  rsClientTooOld = 6,
  rsServerTooOld = 7
};

/// A failure that the server tells.
class EQuillonRemoteError : public EQuillonException {
 public:
  EQuillonRemoteError(const std::string& AMessage, std::uint16_t AnErrorCode)
      : EQuillonException(AMessage), FErrorCode(AnErrorCode) {}

  std::uint16_t ErrorCode() const { return FErrorCode; }

 private:
  std::uint16_t FErrorCode;
};

/// A call of an operation of a service. Its values are gone once it has been written: a request that goes out again,
/// as after a session that the server no longer knows, has none, unless they were pushed again.
class TQuillonRemoteRequest final : public TQuillonNamed<TQuillonRemoteRequest> {
 public:
  static constexpr std::string_view ClassName = "TQuillonRemoteRequest";
  static std::vector<TQuillonProperty> Properties() {
    using QuillonStreams::Published;
    return {Published<&TQuillonRemoteRequest::FServiceID>(), Published<&TQuillonRemoteRequest::FID>(),
            Published<&TQuillonRemoteRequest::FParamsQueue>()};
  }

  TQuillonRemoteRequest() = default;
  explicit TQuillonRemoteRequest(std::uint16_t AServiceID) : FServiceID(AServiceID) {}

  /// The service stays.
  void Clear() {
    FID = 0;
    FParamsQueue.Clear();
  }

  std::uint16_t FServiceID = 0;
  std::uint16_t FID = 0;  ///< the operation within the service
  TQuillonRemoteParamsQueue FParamsQueue;
  std::size_t FSentCount = 0;  ///< values that it had when it went out last; not on streams
};

/// What a call has given: an error with its message, and values in either case.
class TQuillonRemoteResponse final : public TQuillonNamed<TQuillonRemoteResponse> {
 public:
  static constexpr std::string_view ClassName = "TQuillonRemoteResponse";

  /// The message stands on the stream only with an error.
  void WriteProperties(TQuillonObjectWriter& AWriter) const override;
  /// The response stays as it was if not all of it comes.
  void ReadProperties(TQuillonObjectReader& AReader) override;

  bool HasError() const { return FErrorCode != 0; }
  bool HasNoError() const { return FErrorCode == 0; }
  void Clear();

  std::uint16_t FErrorCode = 0;
  std::string FErrorMessage;
  TQuillonRemoteParamsQueue FParamsQueue;
};
