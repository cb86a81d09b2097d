#include <gtest/gtest.h>

#include <new>
#include <string>
#include <utility>

#include "QuillonStreams/Kept.h"
#include "failures/Allocations.h"

namespace {

TEST(KeptStream, LosesNothingUnseenWhereMemoryEnds) {
  std::string Content;
  while (Content.size() < 1'500'000) {
    Content += std::to_string(Content.size());
  }
  std::string Piece(100'000, '\0');
  int Failures = 0;
  for (bool HasFailed = true; HasFailed; Failures += HasFailed ? 1 : 0) {
    TQuillonMemoryStream Source(Content);
    TQuillonKeptStream Kept(Source);
    const auto ReadAll = [&] {
      std::string Read;
      while (const std::size_t Got = Kept.Read(Piece)) {
        const int Left = std::exchange(LeftAllocations, -1);
        Read.append(Piece, 0, Got);
        EXPECT_TRUE(Content.starts_with(Read));
        LeftAllocations = Left;
      }
    };
    HasFailed = false;
    LeftAllocations = Failures;
    try {
      ReadAll();
    } catch (const std::bad_alloc&) {
      HasFailed = true;
    }
    LeftAllocations = -1;
    Kept.Seek(0, TQuillonSeekOrigin::Begin);
    if (HasFailed) {
      EXPECT_THROW(ReadAll(), std::bad_alloc);
    } else {
      EXPECT_NO_THROW(ReadAll());
    }
  }
  EXPECT_GT(Failures, 2);
}

}  // namespace
