#include "batch/files/picture_list.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <system_error>
#include <utility>

#include "base/text.h"
#include "batch/files/picture_folder.h"
#include "command_line/platform.h"
#include "command_line/reasons.h"
#include "command_line/whole_file.h"

namespace zelmo {

namespace {

namespace fs = std::filesystem;

constexpr const char* listName = "zelmo-pictures.txt";

/// Names that lead out of the folder are none of ours.
bool IsInFolder(const std::wstring& name) {
    return !name.empty() && name != L"." && name != L".." && CanNameFile(name);
}

std::set<std::wstring> ReadNames(const fs::path& list) {
    std::set<std::wstring> names;
    std::ifstream file(list, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        if (const std::wstring name = WideFromUtf8(line); IsInFolder(name)) {
            names.insert(name);
        }
    }
    return names;
}

}  // namespace

std::string PictureList::Open(const fs::path& folder) {
    std::error_code error;
    if (fs::exists(folder / listName, error)) {
        folder_ = folder;
        names_[""] = ReadNames(folder / listName);
        return {};
    }
    const bool isEmpty = fs::is_empty(folder, error);
    if (error) {
        return fmt::format("the output folder {} cannot be used: {}", TextOf(folder),
                           error.message());
    }
    const bool isTaken = isEmpty || !isAlone_;
    if (isTaken) {
        folder_ = folder;
    }
    return isTaken ? std::string()
                   : fmt::format(
                         "the output folder {} holds files of others: --watch keeps a "
                         "folder of its own; name a new one with --output",
                         TextOf(folder));
}

std::string PictureList::Add(const std::string& kind, const std::vector<std::wstring>& fileNames) {
    names_[kind].insert(fileNames.begin(), fileNames.end());
    return Write();
}

std::string PictureList::KeepOnly(const std::string& kind,
                                  const std::vector<std::wstring>& fileNames) {
    std::set<std::wstring> stale = std::move(names_[kind]);
    stale.merge(names_[""]);
    names_[""].clear();
    names_[kind] = {fileNames.begin(), fileNames.end()};
    std::error_code error;
    for (const std::wstring& name : stale) {
        if (names_[kind].contains(name) || IsNamedByOthers(kind, name)) {
            continue;
        }
        const fs::path path = folder_ / PathFromText(name);
        fs::remove(path, error);
        if (error) {
            return fmt::format("the file {} of an earlier run cannot be removed: {}", TextOf(path),
                               error.message());
        }
    }
    return Write();
}

bool PictureList::IsNamedByOthers(const std::string& kind, const std::wstring& name) const {
    return std::ranges::any_of(names_, [&](const auto& names) {
        return names.first != kind && names.second.contains(name);
    });
}

std::string TakeFolder(const PictureFolder& folder, PictureList* list, const std::string& kind,
                       const std::vector<std::wstring>& fileNames) {
    std::string problem = PreparePictureFolder(folder, fileNames);
    if (problem.empty() && list != nullptr && !list->IsOpen()) {
        problem = list->Open(folder.path);
    }
    return problem.empty() && list != nullptr ? list->Add(kind, fileNames) : problem;
}

std::string PictureList::Write() const {
    std::set<std::wstring> all;
    for (const auto& [kind, names] : names_) {
        all.insert(names.begin(), names.end());
    }
    std::string text;
    for (const std::wstring& name : all) {
        text += Utf8FromWide(name) + '\n';
    }
    return WriteWholeFile(folder_ / listName, std::string_view(text));
}

}  // namespace zelmo
