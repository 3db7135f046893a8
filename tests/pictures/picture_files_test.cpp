#include "pictures/picture_files.h"

#include <gtest/gtest.h>

#include <set>

#include "base/file.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

TEST(PictureFormats, HaveNamesAndExtensionsOfTheirOwn) {
    std::set<std::string_view> names;
    std::set<std::wstring_view> extensions;
    for (const PictureFormat& format : pictureFormats) {
        EXPECT_TRUE(names.insert(format.name).second) << format.name;
        EXPECT_TRUE(extensions.insert(format.extension).second) << format.name;
        EXPECT_FALSE(format.extension.starts_with(L'.')) << format.name;
    }
    EXPECT_EQ(pictureFormats[0].name, "png");
}

TEST(PictureFormats, WriteFilesThatDiffer) {
    const TempFolder folder;
    StepImage image;
    image.width = 1;
    image.height = 1;
    image.pixels = {1, 2, 3, 4};
    std::set<std::string> beginnings;
    for (const PictureFormat& format : pictureFormats) {
        const FilePointer file = OpenFile(folder.Path() / format.extension, "wb+");
        std::string reason;
        EXPECT_TRUE(format.write(image, file.get(), reason)) << reason;
        std::rewind(file.get());
        std::string beginning(4, '\0');
        EXPECT_EQ(std::fread(beginning.data(), 1, 4, file.get()), 4u);
        EXPECT_TRUE(beginnings.insert(beginning).second) << format.name;
    }
}

TEST(PictureFormats, RefuseAnEmptyPicture) {
    const TempFolder folder;
    for (const PictureFormat& format : pictureFormats) {
        const FilePointer file = OpenFile(folder.Path() / format.extension, "wb");
        std::string reason;
        EXPECT_FALSE(format.write(StepImage{}, file.get(), reason)) << format.name;
        EXPECT_EQ(reason, "the picture is empty") << format.name;
    }
}

TEST(PictureFormats, TellOfAFailedWrite) {
    const TempFolder folder;
    StepImage image;
    image.width = 1;
    image.height = 1;
    image.pixels = {1, 2, 3, 4};
    for (const PictureFormat& format : pictureFormats) {
        const FilePointer readOnly = OpenFile(folder.Write("a", "x"), "rb");
        std::string reason;
        EXPECT_FALSE(format.write(image, readOnly.get(), reason)) << format.name;
        EXPECT_NE(reason, "") << format.name;
    }
}

}  // namespace
}  // namespace zelmo
