#include "Plans.h"
#include "data/BothReaders.h"

/// Reads a data file while it passes by, from streams of several kinds, and as a whole document: the error and what is
/// left in the plan are the same.
void Fuzz::Run(std::string_view AnInput) {
  constexpr std::size_t Piece = 61;
  const std::string Input(AnInput);
  const std::string Whole = BothReaders::WholeOutcome(*NewPlan(), Input);
  for (const bool CanSeek : {true, false}) {
    RequireSame(Whole, BothReaders::StreamOutcome(*NewPlan(), Input, Piece, CanSeek), "the readers differ");
  }
}
