#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <limits>
#include <new>
#include <span>

#include "QuillonHttp.h"
#include "QuillonStreams/Content.h"
#include "QuillonText.h"
#include "platform/Proxies.h"

namespace {

template <auto Function>
struct TFree {
  template <class T>
  void operator()(T* AValue) const {
    Function(AValue);
  }
};

using TEasy = std::unique_ptr<CURL, TFree<curl_easy_cleanup>>;
using TMime = std::unique_ptr<curl_mime, TFree<curl_mime_free>>;
using THeaders = std::unique_ptr<curl_slist, TFree<curl_slist_free_all>>;
using TText = std::unique_ptr<char, TFree<curl_free>>;

template <class T>
T* Checked(T* AMade) {
  if (AMade == nullptr) {
    throw std::bad_alloc();
  }
  return AMade;
}

void Check(CURLcode ACode) {
  if (ACode != CURLE_OK) {
    throw EQuillonHttpError(std::string("HTTP client: ") + curl_easy_strerror(ACode));
  }
}

template <class TValue>
void Set(CURL* AHandle, CURLoption AnOption, TValue AValue) {
  Check(curl_easy_setopt(AHandle, AnOption, AValue));
}

/// As Set, for what not every TLS library knows.
template <class TValue>
void SetIfKnown(CURL* AHandle, CURLoption AnOption, TValue AValue) {
  if (const CURLcode Code = curl_easy_setopt(AHandle, AnOption, AValue); Code != CURLE_NOT_BUILT_IN) {
    Check(Code);
  }
}

/// An address in its parts.
class TUrl {
 public:
  /// @throws EQuillonHttpError for what is no http or https address
  explicit TUrl(const std::string& AText) : FUrl(Checked(curl_url())) {
    const bool IsUrl =
        AText.find('\0') == std::string::npos && curl_url_set(FUrl.get(), CURLUPART_URL, AText.c_str(), 0) == CURLUE_OK;
    const std::string Scheme = IsUrl ? Part(CURLUPART_SCHEME) : "";
    if (Scheme != "http" && Scheme != "https") {
      throw EQuillonHttpError("An address of a service must have the form \"https://host/path\".");
    }
  }

  /// @return the part as the address writes it; empty without
  std::string Part(CURLUPart APart, unsigned AFlags = 0) const {
    char* Value = nullptr;
    const CURLUcode Code = curl_url_get(FUrl.get(), APart, &Value, AFlags);
    const TText Owner(Value);
    return Code == CURLUE_OK ? Value : "";
  }
  std::string Host() const { return Part(CURLUPART_HOST); }
  bool HasSameOrigin(const TUrl& AnOther) const {
    return Part(CURLUPART_SCHEME) == AnOther.Part(CURLUPART_SCHEME) &&
           QuillonText::CompareIgnoreAsciiCase(Host(), AnOther.Host()) == 0 &&
           Part(CURLUPART_PORT, CURLU_DEFAULT_PORT) == AnOther.Part(CURLUPART_PORT, CURLU_DEFAULT_PORT);
  }
  /// Goes to the path of another address, and stays with its own host and user.
  void TakePathOf(const TUrl& AnOther) {
    for (const CURLUPart APart : {CURLUPART_PATH, CURLUPART_QUERY}) {
      const std::string Value = AnOther.Part(APart);
      curl_url_set(FUrl.get(), APart, Value.empty() ? nullptr : Value.c_str(), 0);
    }
  }
  std::string WithoutLogin() const {
    TUrl Copy(Part(CURLUPART_URL));
    for (const CURLUPart APart : {CURLUPART_USER, CURLUPART_PASSWORD}) {
      curl_url_set(Copy.FUrl.get(), APart, nullptr, 0);
    }
    return Copy.Part(CURLUPART_URL);
  }
  CURLU* Handle() const { return FUrl.get(); }

 private:
  std::unique_ptr<CURLU, TFree<curl_url_cleanup>> FUrl;
};

/// The bytes of a part that are not sent yet.
struct TSource {
  const TQuillonHttpPart* Part = nullptr;
  std::size_t Position = 0;                       ///< in what stands there
  std::unique_ptr<TQuillonContentStream> Stream;  ///< of what is made
  std::exception_ptr Failure;

  static std::size_t Read(char* ABuffer, std::size_t ASize, std::size_t ACount, void* ASource) noexcept {
    auto& Source = *static_cast<TSource*>(ASource);
    const std::span Buffer(ABuffer, ASize * ACount);
    return Source.Part->Made ? Source.ReadMade(Buffer) : Source.ReadContent(Buffer);
  }
  static int Seek(void* ASource, curl_off_t AnOffset, int AnOrigin) noexcept {
    auto& Source = *static_cast<TSource*>(ASource);
    const bool IsMade = static_cast<bool>(Source.Part->Made);
    const std::uint64_t Furthest = IsMade ? 0 : Source.Part->Content.size();
    if (AnOrigin != SEEK_SET || AnOffset < 0 || static_cast<std::uint64_t>(AnOffset) > Furthest) {
      return CURL_SEEKFUNC_CANTSEEK;
    }
    Source.Position = static_cast<std::size_t>(AnOffset);
    Source.Stream.reset();
    return CURL_SEEKFUNC_OK;
  }

 private:
  std::size_t ReadContent(std::span<char> ABuffer) {
    const std::string_view Block = Part->Content.substr(Position, ABuffer.size());
    std::memcpy(ABuffer.data(), Block.data(), Block.size());
    Position += Block.size();
    return Block.size();
  }
  std::size_t ReadMade(std::span<char> ABuffer) noexcept {
    try {
      if (Stream == nullptr) {
        Stream = std::make_unique<TQuillonContentStream>(Part->Made);
      }
      return Stream->Read(ABuffer);
    } catch (...) {
      Failure = std::current_exception();
      return CURL_READFUNC_ABORT;
    }
  }
};

/// The answer as it comes in. What the callbacks raise must not pass through the library.
struct TAnswer {
  TQuillonHttpResponse Response;
  std::size_t HeaderSize = 0;
  /// Whether the empty line behind the headers has come: the library takes their break for their end.
  bool HasAllHeaders = false;
  const char* Fault = nullptr;

  static std::size_t TakeHeader(const char* ABytes, std::size_t ASize, std::size_t ACount, void* AnAnswer) noexcept {
    auto& Answer = *static_cast<TAnswer*>(AnAnswer);
    const std::string_view Line(ABytes, ASize * ACount);
    Answer.HeaderSize += Line.size();
    if (Answer.HeaderSize > QuillonHttp::MaxHeaders) {
      Answer.Fault = "the headers of the answer are too large";
      return 0;
    }
    return Answer.Take(Line.size(), [&] { Answer.TakeHeaderLine(Line); });
  }
  static std::size_t TakeBody(const char* ABytes, std::size_t ASize, std::size_t ACount, void* AnAnswer) noexcept {
    auto& Answer = *static_cast<TAnswer*>(AnAnswer);
    const std::string_view Block(ABytes, ASize * ACount);
    if (Block.size() > QuillonHttp::MaxBody - Answer.Response.Body.size()) {
      Answer.Fault = "the answer is larger than 16 MiB";
      return 0;
    }
    return Answer.Take(Block.size(), [&] { Answer.Response.Body.append(Block); });
  }

 private:
  template <class TStep>
  std::size_t Take(std::size_t ASize, const TStep& AStep) noexcept {
    try {
      AStep();
      return ASize;
    } catch (...) {
      Fault = "out of memory";
      return 0;
    }
  }
  void TakeHeaderLine(std::string_view ALine) {
    HasAllHeaders = HasAllHeaders || ALine == "\r\n" || ALine == "\n";
    if (!ALine.starts_with("HTTP/")) {
      return;
    }
    HasAllHeaders = false;
    Response.StatusText.clear();
    ALine = ALine.substr(0, ALine.find_first_of("\r\n"));
    const std::size_t Code = ALine.find(' ');
    const std::size_t Reason = Code != std::string_view::npos ? ALine.find(' ', Code + 1) : Code;
    if (Reason != std::string_view::npos) {
      Response.StatusText = ALine.substr(Reason + 1);
    }
  }
};

THeaders MakeHeaders(const TQuillonHttpRequest& ARequest) {
  THeaders List;
  const auto Append = [&List](const std::string& ALine) {
    const auto IsControl = [](char C) { return static_cast<unsigned char>(C) < ' ' && C != '\t'; };
    if (std::any_of(ALine.begin(), ALine.end(), IsControl)) {
      throw EQuillonHttpError("A header of a request must not hold control characters.");
    }
    curl_slist* const Longer = Checked(curl_slist_append(List.get(), ALine.c_str()));
    static_cast<void>(List.release());
    List.reset(Longer);
  };
  for (const auto& [Name, Value] : ARequest.Headers) {
    Append(std::string(Name).append(": ").append(Value));
  }
  // A service that knows no "100 Continue" would be waited for.
  Append("Expect:");
  return List;
}

/// @param ASources one for each part; the form reads from them
TMime MakeForm(CURL* AHandle, const TQuillonHttpRequest& ARequest, std::vector<TSource>& ASources) {
  TMime Form(Checked(curl_mime_init(AHandle)));
  for (std::size_t I = 0; I < ARequest.Form.size(); ++I) {
    const TQuillonHttpPart& Part = ARequest.Form[I];
    ASources[I].Part = &Part;
    curl_mimepart* const Added = Checked(curl_mime_addpart(Form.get()));
    Check(curl_mime_name(Added, Part.Name.c_str()));
    if (Part.FileName) {
      Check(curl_mime_filename(Added, Part.FileName->c_str()));
    }
    Check(curl_mime_data_cb(Added, static_cast<curl_off_t>(Part.Size()), &TSource::Read, &TSource::Seek, nullptr,
                            &ASources[I]));
  }
  return Form;
}

using TTime = std::chrono::steady_clock::time_point;

void SetTimeOuts(CURL* AHandle, const TQuillonHttpTimeOuts& ATimeOuts, TTime AnEnd) {
  // 0 would mean no limit.
  const auto Left = std::chrono::duration_cast<std::chrono::milliseconds>(AnEnd - std::chrono::steady_clock::now());
  Set(AHandle, CURLOPT_TIMEOUT_MS, std::max(static_cast<long>(Left.count()), 1L));
  Set(AHandle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(ATimeOuts.Connect.count()));
  Set(AHandle, CURLOPT_LOW_SPEED_LIMIT, 1L);
  Set(AHandle, CURLOPT_LOW_SPEED_TIME, static_cast<long>(ATimeOuts.Stall.count()));
}

void SetTrust(CURL* AHandle) {
  Set(AHandle, CURLOPT_SSL_VERIFYPEER, 1L);
  Set(AHandle, CURLOPT_SSL_VERIFYHOST, 2L);
  // Of the libraries that ask whether a certificate was revoked: a school's network may keep them from an answer.
  Set(AHandle, CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_REVOKE_BEST_EFFORT));
  const auto SetFrom = [AHandle](const char* AVariable, CURLoption AnOption, CURLoption AnOptionOfProxy) {
    if (const char* const Path = std::getenv(AVariable); Path != nullptr && *Path != '\0') {
      SetIfKnown(AHandle, AnOption, Path);
      SetIfKnown(AHandle, AnOptionOfProxy, Path);
    }
  };
  SetFrom("SSL_CERT_FILE", CURLOPT_CAINFO, CURLOPT_PROXY_CAINFO);
  SetFrom("SSL_CERT_DIR", CURLOPT_CAPATH, CURLOPT_PROXY_CAPATH);
}

/// Where the environment has no proxy, the one of the system's settings, with the login of this user that it knows.
void SetProxy(CURL* AHandle, const std::string& AUrl) {
  if (const std::string Proxy = Platform::SystemProxyFor(AUrl); !Proxy.empty()) {
    Set(AHandle, CURLOPT_PROXY, Proxy.c_str());
    Set(AHandle, CURLOPT_PROXYAUTH, CURLAUTH_ANY);
    Set(AHandle, CURLOPT_PROXYUSERPWD, ":");
  }
}

class TCurlClient final : public TQuillonHttpClient {
 public:
  TCurlClient() {
    static const CURLcode Code = curl_global_init(CURL_GLOBAL_DEFAULT);
    Check(Code);
  }

  TQuillonHttpResponse Post(const TQuillonHttpRequest& ARequest) override {
    TUrl Url(ARequest.Url);
    const TTime End = std::chrono::steady_clock::now() + ARequest.TimeOuts.Whole;
    for (int Redirects = 0;; ++Redirects) {
      std::string Target;
      TQuillonHttpResponse Response = PostOnce(Url, ARequest, End, Target);
      const bool KeepsMethod = Response.Status == 307 || Response.Status == 308;
      if (!KeepsMethod || Target.empty() || Redirects == QuillonHttp::MaxRedirects || !Follow(Url, Target)) {
        return Response;
      }
    }
  }

 private:
  /// @return whether the target is one that may be followed
  static bool Follow(TUrl& AUrl, const std::string& ATarget) {
    try {
      const TUrl Target(ATarget);
      if (!AUrl.HasSameOrigin(Target)) {
        return false;
      }
      AUrl.TakePathOf(Target);
      return true;
    } catch (const EQuillonHttpError&) {
      return false;
    }
  }

  /// @param AnEnd when the answer must be there
  /// @param ATarget where the answer redirects to
  static TQuillonHttpResponse PostOnce(const TUrl& AUrl, const TQuillonHttpRequest& ARequest, TTime AnEnd,
                                       std::string& ATarget) {
    // All that the handle refers to lives longer than it.
    std::array<char, CURL_ERROR_SIZE> Reason{};
    TAnswer Answer;
    std::vector<TSource> Sources(ARequest.Form.size());
    const THeaders Headers = MakeHeaders(ARequest);
    TMime Form;
    const TEasy Easy(Checked(curl_easy_init()));
    CURL* const Handle = Easy.get();
    Set(Handle, CURLOPT_ERRORBUFFER, Reason.data());
    Set(Handle, CURLOPT_NOSIGNAL, 1L);
    Set(Handle, CURLOPT_PROTOCOLS_STR, "http,https");
    // The older version always names its status, and an upload gains nothing from the newer one.
    Set(Handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    Set(Handle, CURLOPT_FOLLOWLOCATION, 0L);
    Set(Handle, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    Set(Handle, CURLOPT_CURLU, AUrl.Handle());
    Set(Handle, CURLOPT_HTTPHEADER, Headers.get());
    Set(Handle, CURLOPT_USERAGENT, ARequest.UserAgent.c_str());
    Set(Handle, CURLOPT_HEADERFUNCTION, &TAnswer::TakeHeader);
    Set(Handle, CURLOPT_HEADERDATA, &Answer);
    Set(Handle, CURLOPT_WRITEFUNCTION, &TAnswer::TakeBody);
    Set(Handle, CURLOPT_WRITEDATA, &Answer);
    SetTimeOuts(Handle, ARequest.TimeOuts, AnEnd);
    SetTrust(Handle);
    SetProxy(Handle, AUrl.WithoutLogin());
    if (ARequest.Form.empty()) {
      Set(Handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(ARequest.Body.size()));
      Set(Handle, CURLOPT_POSTFIELDS, ARequest.Body.data());
    } else {
      Form = MakeForm(Handle, ARequest, Sources);
      Set(Handle, CURLOPT_MIMEPOST, Form.get());
    }
    const CURLcode Code = curl_easy_perform(Handle);
    for (const TSource& Source : Sources) {
      if (Source.Failure != nullptr) {
        std::rethrow_exception(Source.Failure);
      }
    }
    if (Code != CURLE_OK) {
      ThrowNoAnswer(AUrl, Code, Answer.Fault, Reason.data());
    }
    if (!Answer.HasAllHeaders) {
      ThrowNoAnswer(AUrl, CURLE_OK, "the answer breaks off in its headers", "");
    }
    return Finish(Handle, Answer, ATarget);
  }

  [[noreturn]] static void ThrowNoAnswer(const TUrl& AUrl, CURLcode ACode, const char* AFault, std::string AReason) {
    // Of an address, a proxy's too, the library's own text may repeat a user and a password ahead of an "@".
    if (AReason.empty() || AReason.find('@') != std::string::npos) {
      AReason = curl_easy_strerror(ACode);
    }
    throw EQuillonHttpError("HTTP request to \"" + AUrl.Host() +
                            "\" failed: " + (AFault != nullptr ? AFault : AReason) + ".");
  }

  static TQuillonHttpResponse Finish(CURL* AHandle, TAnswer& AnAnswer, std::string& ATarget) {
    long Status = 0;
    const char* Target = nullptr;
    Check(curl_easy_getinfo(AHandle, CURLINFO_RESPONSE_CODE, &Status));
    Check(curl_easy_getinfo(AHandle, CURLINFO_REDIRECT_URL, &Target));
    ATarget = Target != nullptr ? Target : "";
    TQuillonHttpResponse Response = std::move(AnAnswer.Response);
    Response.Status = static_cast<int>(Status);
    if (Response.StatusText.empty()) {
      const std::string_view Name = QuillonHttp::StatusName(Response.Status);
      Response.StatusText = Name.empty() ? "HTTP status " + std::to_string(Response.Status) : std::string(Name);
    }
    return Response;
  }
};

}  // namespace

namespace QuillonHttp {

std::unique_ptr<TQuillonHttpClient> CreateClient() { return std::make_unique<TCurlClient>(); }

std::optional<TLogin> LoginIn(const std::string& AUrl) {
  const TUrl Url(AUrl);
  TLogin Login{Url.Part(CURLUPART_USER, CURLU_URLDECODE), Url.Part(CURLUPART_PASSWORD, CURLU_URLDECODE),
               Url.Part(CURLUPART_PASSWORD)};
  return Login.EncodedPassword.empty() ? std::nullopt : std::optional(std::move(Login));
}

std::vector<TLogin> ProxyLogins() {
  constexpr std::string_view SchemeEnd = "://";
  std::vector<TLogin> Logins;
  for (const char* const Variable : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) {
    const char* const Value = std::getenv(Variable);
    const std::string Proxy = Value != nullptr ? Value : "";
    const std::size_t End = Proxy.find(SchemeEnd);
    try {
      // A proxy may have schemes that services do not have, or none.
      const auto Login = LoginIn("http://" + (End != std::string::npos ? Proxy.substr(End + SchemeEnd.size()) : Proxy));
      if (Login) {
        Logins.push_back(*Login);
      }
    } catch (const EQuillonHttpError&) {
      continue;
    }
  }
  return Logins;
}

std::string WithoutLogin(const std::string& AUrl) { return TUrl(AUrl).WithoutLogin(); }

}  // namespace QuillonHttp
