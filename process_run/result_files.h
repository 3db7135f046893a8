#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace zelmo {

struct ProcessModel;

/// What a run tells of its stack in a file in the current directory, where a `dump` step asks for
/// it.
struct ResultFile {
    std::string_view result;  ///< as the step names it
    const char* fileName;
    void (*write)(const ProcessModel& model, std::FILE* file);
};

/// Cover and surfaces of every cell, as text.
void WriteStackData(const ProcessModel& model, std::FILE* file);

inline constexpr ResultFile resultFiles[] = {
    {"stack data", "VertexData.txt", WriteStackData},
};

/// The row of a result, or null.
const ResultFile* FindResultFile(std::string_view result);

/// Writes a result's file into the current directory, in place of an older one. Says nothing if it
/// cannot be opened.
void WriteResult(const ProcessModel& model, std::string_view result);

/// Writes it into a folder. False, with the reason in errno, where it could not be written whole.
bool WriteResultTo(const std::filesystem::path& folder, const ProcessModel& model,
                   std::string_view result);

}  // namespace zelmo
