#include <optional>

#include "Fuzz.h"
#include "QuillonZip.h"

namespace {

void RequireRound(std::string_view AContent) {
  TQuillonZipEntryStream Entry(QuillonZip::MakeArchive("Schule 1", AContent));
  Fuzz::Require(Entry.HasEntry() && QuillonIO::ReadIntoBuffer(Entry).View() == AContent,
                "an archive gives another content than it was made of");
}

}  // namespace

/// Reads the input as an archive. Its entry, and the input itself, come back from an archive of ours as they were.
void Fuzz::Run(std::string_view AnInput) {
  std::optional<TQuillonBuffer> Content;
  Accepts([&] {
    TQuillonZipEntryStream Entry(AnInput);
    if (Entry.HasEntry()) {
      Content = QuillonIO::ReadIntoBuffer(Entry);
      Entry.Seek(0, TQuillonSeekOrigin::Begin);
      Require(QuillonIO::ReadIntoBuffer(Entry).View() == Content->View(),
              "an entry has another content when read again");
    }
  });
  if (Content) {
    RequireRound(Content->View());
  }
  RequireRound(AnInput);
}
