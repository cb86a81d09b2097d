#include "platform/Proxies.h"

#include <windows.h>

#include <shlwapi.h>
#include <winhttp.h>

#include <algorithm>
#include <array>

#include "platform/windows/WindowsCalls.h"

namespace {

using WindowsCalls::FromWide;

/// A text that a call of the system has made.
struct TFree {
  void operator()(wchar_t* AText) const { ::GlobalFree(AText); }
};
using TText = std::unique_ptr<wchar_t, TFree>;

std::wstring Text(const TText& AText) { return AText != nullptr ? AText.get() : L""; }

struct TCloseInternet {
  void operator()(HINTERNET AHandle) const { ::WinHttpCloseHandle(AHandle); }
};

bool HasEnvironmentProxies() {
  constexpr std::array Names = {L"http_proxy", L"https_proxy", L"all_proxy"};
  return std::ranges::any_of(Names, [](const wchar_t* AName) { return WindowsCalls::Variable(AName).has_value(); });
}

/// Whether the list of hosts without a proxy, with wildcards and the word "<local>", names the host.
bool IsBypassed(const std::wstring& AHost, std::wstring AList) {
  std::ranges::replace(AList, L' ', L';');
  const bool IsLocal = AHost.find(L'.') == std::wstring::npos;
  return AHost == L"localhost" || AHost.starts_with(L"127.") ||
         (IsLocal && AList.find(L"<local>") != std::wstring::npos) ||
         ::PathMatchSpecExW(AHost.c_str(), AList.c_str(), PMSF_MULTIPLE) == S_OK;
}

/// The proxy for a scheme in a list such as "http=a:80;https=b:81", or the first one that is for all.
std::wstring ProxyIn(std::wstring_view AList, std::wstring_view AScheme) {
  while (!AList.empty()) {
    const std::size_t End = std::min(AList.find_first_of(L"; "), AList.size());
    const std::wstring_view Item = AList.substr(0, End);
    const std::size_t Mark = Item.find(L'=');
    if (!Item.empty() && (Mark == std::wstring_view::npos || Item.substr(0, Mark) == AScheme)) {
      return std::wstring(Item.substr(Mark == std::wstring_view::npos ? 0 : Mark + 1));
    }
    AList.remove_prefix(std::min(End + 1, AList.size()));
  }
  return {};
}

/// What a script, at an address or one that the network tells, says about an address; nothing without an answer.
std::optional<std::wstring> AskScript(const std::wstring& AUrl, const std::wstring& AScript, bool DoDetect) {
  const std::unique_ptr<void, TCloseInternet> Session(
      ::WinHttpOpen(L"velmora", WINHTTP_ACCESS_TYPE_NO_PROXY, nullptr, nullptr, 0));
  WINHTTP_AUTOPROXY_OPTIONS Options{};
  Options.dwFlags =
      (AScript.empty() ? 0U : WINHTTP_AUTOPROXY_CONFIG_URL) | (DoDetect ? WINHTTP_AUTOPROXY_AUTO_DETECT : 0U);
  Options.dwAutoDetectFlags = DoDetect ? WINHTTP_AUTO_DETECT_TYPE_DHCP | WINHTTP_AUTO_DETECT_TYPE_DNS_A : 0U;
  Options.lpszAutoConfigUrl = AScript.empty() ? nullptr : AScript.c_str();
  Options.fAutoLogonIfChallenged = TRUE;
  WINHTTP_PROXY_INFO Found{};
  const bool IsAnswered =
      Session != nullptr && ::WinHttpGetProxyForUrl(Session.get(), AUrl.c_str(), &Options, &Found) != 0;
  const TText Proxy(Found.lpszProxy);
  const TText Bypass(Found.lpszProxyBypass);
  return IsAnswered ? std::optional(Text(Proxy)) : std::nullopt;
}

struct TSettings {
  std::wstring Script;
  std::wstring Proxy;
  std::wstring Bypass;
  bool DoDetect = false;
};

/// The Internet options of this account.
TSettings SettingsOfAccount() {
  WINHTTP_CURRENT_USER_IE_PROXY_CONFIG Found{};
  if (::WinHttpGetIEProxyConfigForCurrentUser(&Found) == 0) {
    return {};
  }
  const TText Script(Found.lpszAutoConfigUrl);
  const TText Proxy(Found.lpszProxy);
  const TText Bypass(Found.lpszProxyBypass);
  return {Text(Script), Text(Proxy), Text(Bypass), Found.fAutoDetect != 0};
}

/// What an administrator has set for programs without a user ("netsh winhttp set proxy").
TSettings SettingsOfMachine() {
  WINHTTP_PROXY_INFO Found{};
  if (::WinHttpGetDefaultProxyConfiguration(&Found) == 0) {
    return {};
  }
  const TText Proxy(Found.lpszProxy);
  const TText Bypass(Found.lpszProxyBypass);
  return {{}, Text(Proxy), Text(Bypass), false};
}

}  // namespace

std::string Platform::SystemProxyFor(const std::string& AUrl) {
  if (HasEnvironmentProxies()) {
    return {};
  }
  const std::wstring Url = WindowsCalls::ToWide(AUrl);
  std::array<wchar_t, 16> Scheme{};
  std::array<wchar_t, 256> Host{};
  URL_COMPONENTS Parts{};
  Parts.dwStructSize = sizeof(Parts);
  Parts.lpszScheme = Scheme.data();
  Parts.dwSchemeLength = static_cast<DWORD>(Scheme.size());
  Parts.lpszHostName = Host.data();
  Parts.dwHostNameLength = static_cast<DWORD>(Host.size());
  TSettings Settings = SettingsOfAccount();
  if (::WinHttpCrackUrl(Url.c_str(), 0, 0, &Parts) == 0 || IsBypassed(Host.data(), Settings.Bypass)) {
    return {};
  }
  if (!Settings.Script.empty() || Settings.DoDetect) {
    if (const auto Answer = AskScript(Url, Settings.Script, Settings.DoDetect)) {
      return FromWide(ProxyIn(*Answer, Scheme.data()));
    }
  }
  if (Settings.Proxy.empty()) {
    Settings = SettingsOfMachine();
  }
  return IsBypassed(Host.data(), Settings.Bypass) ? std::string() : FromWide(ProxyIn(Settings.Proxy, Scheme.data()));
}
