#include <exception>
#include <iostream>

#include "BenchJobs.h"

/// Parses a file as the bare parse of the benchmark does, as a program that others can measure.
int main(int ACount, char** AValues) {
  if (ACount != 2) {
    std::cerr << "[Error] usage: velmora-parse FILE\n";
    return 1;
  }
  try {
    std::cout << Bench::Parse(AValues[1]) << " bytes\n";
    return 0;
  } catch (const std::exception& Error) {
    std::cerr << "[Error] " << Error.what() << "\n";
    return 1;
  }
}
