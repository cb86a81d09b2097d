#include <charconv>

#include "Fuzz.h"
#include "exchange/UploadJobs.h"

namespace {

constexpr std::string_view Mark = "=== ";

/// Each answer begins behind a line with the mark, its status and its status text.
std::vector<TQuillonHttpResponse> AnswersIn(std::string_view AnInput) {
  std::vector<TQuillonHttpResponse> Answers;
  while (!AnInput.empty()) {
    std::string_view Line = Fuzz::TakeLine(AnInput);
    if (Line.starts_with(Mark)) {
      Line.remove_prefix(Mark.size());
      TQuillonHttpResponse& Answer = Answers.emplace_back();
      const auto End = std::from_chars(Line.data(), Line.data() + Line.size(), Answer.Status).ptr;
      Answer.StatusText = Line.substr(static_cast<std::size_t>(End - Line.data()));
    } else if (!Answers.empty()) {
      Answers.back().Body.append(Line).push_back('\n');
    }
  }
  return Answers;
}

template <class TWriter>
void Upload(TUploadJobs& AJobs, const std::vector<TQuillonHttpResponse>& AnAnswers) {
  AJobs.State.Versions.clear();
  bool IsSent = false;
  try {
    IsSent = AJobs.Upload<TWriter>(AnAnswers);
  } catch (const EQuillonException& Error) {
    const std::string_view Text = Error.what();
    Fuzz::Require(Text.find(TUploadJobs::Pin) == std::string_view::npos, "a secret is told");
    Fuzz::Require(Text.size() < 100'000, "a text is endless");
  }
  const std::size_t Calls = AJobs.Client.Requests.size();
  Fuzz::Require(IsSent == !AJobs.State.Versions.empty(), "the version is kept without an upload, or not kept");
  Fuzz::Require(IsSent || Calls == 0 || Calls > AnAnswers.size() || AnAnswers[Calls - 1].Body.size() > 1,
                "an answer without a body is a failure");
}

}  // namespace

/// Uploads to services with these answers: no secret is told, and the version of the file is kept after an upload
/// alone.
void Fuzz::Run(std::string_view AnInput) {
  static TUploadJobs Jobs;
  const auto Answers = AnswersIn(AnInput);
  Upload<TSduiWriter>(Jobs, Answers);
  Upload<TIServWriter>(Jobs, Answers);
}
