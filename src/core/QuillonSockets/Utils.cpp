#include "QuillonSockets/Utils.h"

const TQuillonSocketLibrary& TQuillonSocketLibrary::Start() {
  static const TQuillonSocketLibrary Library;
  return Library;
}

Platform::SocketLayer& TQuillonSocketLibrary::Layer() {
  Start();
  return Platform::Sockets();
}

std::uint32_t TQuillonSocketUtils::GetAddress(const std::string& AName) {
  Platform::SocketLayer& Layer = TQuillonSocketLibrary::Layer();
  if (const auto Host = Layer.ParseHost(AName)) {
    return *Host;
  }
  const std::vector<std::uint32_t> Hosts = Layer.HostsOf(AName);
  return Hosts.empty() ? NoAddress : Hosts.front();
}

std::string TQuillonSocketUtils::AddressToText(std::uint32_t AnAddress) {
  std::string Text;
  for (int Shift = 24; Shift >= 0; Shift -= 8) {
    Text.append(std::to_string((AnAddress >> Shift) & 0xFF)).append(Shift > 0 ? "." : "");
  }
  return Text;
}

bool TQuillonSocketUtils::IsValidAdress(const std::string& AText) {
  return TQuillonSocketLibrary::Layer().ParseHost(AText).has_value();
}

std::string TQuillonSocketUtils::GetHostName() { return TQuillonSocketLibrary::Layer().HostName(); }

std::string TQuillonSocketUtils::GetHostAddress() { return GetHostAddressList().front(); }

std::vector<std::string> TQuillonSocketUtils::GetHostAddressList() {
  std::vector<std::string> List;
  for (const Platform::NetworkInterface& Interface : TQuillonSocketLibrary::Layer().Interfaces()) {
    List.push_back(AddressToText(Interface.Address));
  }
  return List.empty() ? std::vector<std::string>{"127.0.0.1"} : List;
}

std::string TQuillonSocketUtils::GetLocalBroadcastAddress() {
  const auto Interfaces = TQuillonSocketLibrary::Layer().Interfaces();
  return AddressToText(Interfaces.empty() ? NoAddress : Interfaces.front().Broadcast);
}

std::uint16_t TQuillonSocketUtils::CheckSum(std::string_view ABytes) {
  std::uint64_t Sum = 0;
  for (std::size_t I = 0; I < ABytes.size(); ++I) {
    Sum += std::uint64_t{static_cast<std::uint8_t>(ABytes[I])} << (I % 2 == 0 ? 8 : 0);
  }
  while (Sum > 0xFFFF) {
    Sum = (Sum & 0xFFFF) + (Sum >> 16);
  }
  return static_cast<std::uint16_t>(~Sum);
}
