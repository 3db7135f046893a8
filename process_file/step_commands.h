#pragma once

#include <string_view>

// What each command of a process file takes. Every handler reads all of its arguments, reports
// every error in a fixed order, and leaves its values however wrong they are.

namespace zelmo {

struct ProcessSettings;
struct ProcessStep;
struct ReaderState;

void ReadSettings(ReaderState& state, std::string_view line, ProcessSettings& settings);
void ReadLocation(ReaderState& state, std::string_view line, ProcessSettings& settings);
void ReadGds(ReaderState& state, std::string_view line, ProcessSettings& settings);

// `step` is fresh: all numbers 0, all texts and lists empty.
void ReadDeposition(ReaderState& state, std::string_view line, ProcessStep& step);
void ReadCoating(ReaderState& state, std::string_view line, ProcessStep& step);
void ReadPhoto(ReaderState& state, std::string_view line, ProcessStep& step);
void ReadEtch(ReaderState& state, std::string_view line, ProcessStep& step);
void ReadRelease(ReaderState& state, std::string_view line, ProcessStep& step);
void ReadStrip(ReaderState& state, std::string_view line, ProcessStep& step);

}  // namespace zelmo
