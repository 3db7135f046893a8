#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <string>
#include <vector>

namespace zelmo {

/// A valid layout with the cell TOP, decoded from bytes: hierarchies that may be deep and wide,
/// arrays that may be huge, transforms and coordinates that may be extreme.
std::vector<std::uint8_t> MakeLayout(FuzzedDataProvider& bytes);

/// A process file that is accepted as a rule, decoded from bytes: a grid of 200 columns and few
/// rows, a few steps of every kind, arguments that may be extreme.
std::string MakeProcess(FuzzedDataProvider& bytes);

}  // namespace zelmo
