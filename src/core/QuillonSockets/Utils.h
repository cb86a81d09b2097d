#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Sockets.h"

/// What the platform tells about its socket layer.
class TQuillonSocketLibrary {
 public:
  /// Starts the layer, once in a process.
  /// @throws EQuillonSocketError, again at each call, if it does not start
  static const TQuillonSocketLibrary& Start();
  /// The layer, started.
  static Platform::SocketLayer& Layer();

  const std::string& Description() const { return FInfo.Description; }
  std::uint16_t HighestVersion() const { return FInfo.HighestVersion; }
  std::uint32_t MaxSockets() const { return FInfo.MaxSockets; }
  std::uint32_t MaxUDPDatagram() const { return FInfo.MaxUDPDatagram; }

 private:
  TQuillonSocketLibrary() : FInfo(Platform::Sockets().StartUp()) {}

  const Platform::SocketLayerInfo FInfo;
};

/// Addresses, as numbers whose highest byte is the first of the text, and checks.
class TQuillonSocketUtils {
 public:
  TQuillonSocketUtils() = delete;

  /// What GetAddress gives for an unknown host.
  static constexpr std::uint32_t NoAddress = 0xFFFFFFFF;

  /// The address that the text is or, if it is none, the first one of the host of that name. May take as long as the
  /// system's name service, which limits itself.
  static std::uint32_t GetAddress(const std::string& AName);
  /// The address with dots between its numbers.
  static std::string AddressToText(std::uint32_t AnAddress);
  static bool IsValidAdress(const std::string& AText);

  static std::string GetHostName();
  /// The first of GetHostAddressList.
  static std::string GetHostAddress();
  /// This machine's addresses in its networks, or 127.0.0.1 alone without a network.
  static std::vector<std::string> GetHostAddressList();
  /// The address of all hosts in the network of GetHostAddress; 255.255.255.255 without a network.
  static std::string GetLocalBroadcastAddress();

  /// The Internet checksum (RFC 1071) of the bytes, as the number whose high byte stands first in a packet.
  static std::uint16_t CheckSum(std::string_view ABytes);
};
