#include "Fuzz.h"
#include "QuillonZip.h"

namespace {

void RequireRound(std::string_view AContent) {
  auto Entry = QuillonZip::ReadFirstEntry(QuillonZip::MakeArchive("Schule 1", AContent));
  Fuzz::Require(Entry && std::string_view(Entry->Data(), Entry->Size()) == AContent,
                "an archive gives another content than it was made of");
}

}  // namespace

/// Reads the input as an archive. Its entry, and the input itself, come back from an archive of ours as they were.
void Fuzz::Run(std::string_view AnInput) {
  std::optional<TQuillonBuffer> Entry;
  Accepts([&] { Entry = QuillonZip::ReadFirstEntry(AnInput); });
  if (Entry) {
    RequireRound({Entry->Data(), Entry->Size()});
  }
  RequireRound(AnInput);
}
