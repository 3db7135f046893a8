#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace zelmo {

struct PictureFolder;

/// The list of files that runs which replace files keep in their folder, by which they know their
/// own: a text file with a name in each line. Files have kinds, pictures or cuts for instance,
/// which are looked after one by one. All return a line with the reason if they could not do their
/// work, else an empty text.
class PictureList {
public:
    /// One that `isAlone` takes no folder that holds files of others.
    explicit PictureList(bool isAlone) : isAlone_(isAlone) {}

    /// Takes a folder over that exists: one that has a list or is empty, or any other if it may.
    std::string Open(const std::filesystem::path& folder);

    bool IsAlone() const { return isAlone_; }
    bool IsOpen() const { return !folder_.empty(); }

    /// The list names these as well from now on. To be called before they are written.
    std::string Add(const std::string& kind, const std::vector<std::wstring>& fileNames);

    /// Removes the files of a kind that the list names, but for these, which remain; with them
    /// those of earlier programs, of which no kind is known.
    std::string KeepOnly(const std::string& kind, const std::vector<std::wstring>& fileNames);

private:
    bool IsNamedByOthers(const std::string& kind, const std::wstring& name) const;
    std::string Write() const;

    bool isAlone_;
    std::filesystem::path folder_;
    std::map<std::string, std::set<std::wstring>> names_;  ///< by kind; "": of earlier programs
};

/// Prepares a folder for these files (PreparePictureFolder), and has the list, where it is given,
/// name them.
std::string TakeFolder(const PictureFolder& folder, PictureList* list, const std::string& kind,
                       const std::vector<std::wstring>& fileNames);

}  // namespace zelmo
