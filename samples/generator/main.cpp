#include <exception>
#include <iostream>
#include <limits>
#include <string>
#include <vector>

#include "QuillonNumbers.h"
#include "SchoolGenerator.h"

namespace {

constexpr const char* Usage = "usage: velmora-school [--scale N] [--seed N] [--small] FILE";

struct TArguments {
  SchoolGenerator::TOptions Options;
  std::string FileName;
};

TArguments Parse(const std::vector<std::string>& AnArguments) {
  TArguments Result;
  for (std::size_t I = 0; I < AnArguments.size(); ++I) {
    const std::string& Argument = AnArguments[I];
    const auto Number = [&](std::int64_t AMin, std::int64_t AMax) {
      if (++I == AnArguments.size()) {
        throw EQuillonException(Argument + " needs a number; " + Usage);
      }
      return QuillonNumbers::ParseInteger(AnArguments[I], AMin, AMax);
    };
    if (Argument == "--scale") {
      Result.Options.Scale = static_cast<int>(Number(1, SchoolGenerator::TOptions::MaxScale));
    } else if (Argument == "--seed") {
      Result.Options.Seed = static_cast<std::uint64_t>(Number(0, std::numeric_limits<std::int64_t>::max()));
    } else if (Argument == "--small") {
      Result.Options.Small = true;
    } else if (Argument.starts_with("-") || !Result.FileName.empty()) {
      throw EQuillonException("unknown argument \"" + Argument + "\"; " + Usage);
    } else {
      Result.FileName = Argument;
    }
  }
  if (Result.FileName.empty()) {
    throw EQuillonException(std::string("no file is named; ") + Usage);
  }
  return Result;
}

}  // namespace

int main(int ACount, char** AValues) {
  try {
    const TArguments Arguments = Parse({AValues + 1, AValues + ACount});
    SchoolGenerator::Generate(Arguments.Options)->SaveToFile(Arguments.FileName);
    return 0;
  } catch (const std::exception& Error) {
    std::cerr << "[Error] " << Error.what() << "\n";
    return 1;
  }
}
