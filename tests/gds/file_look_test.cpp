#include "gds/file_look.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/gds/layout_file.h"
#include "tests/support/gzip_writer.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

using namespace std::string_view_literals;
using Bytes = std::vector<std::uint8_t>;

Bytes BytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

FileLook LookAt(std::string_view text) {
    return LookAtBytes(BytesOf(text));
}

Bytes SmallLayout() {
    return LibraryWithCell([](GdsWriter& writer) { writer.Rectangle(1, 0, 0, 10, 10); }).Bytes();
}

TEST(FileLook, KnowsWhatIsTakenForALayoutByItsFirstBytes) {
    struct Case {
        std::string_view bytes;
        FileKind kind;
        const char* text;
    };
    const Case cases[] = {
        {""sv, FileKind::Empty, "empty"},
        {"\x89PNG\r\n\x1A\n\0\0\0\rIHDR"sv, FileKind::Png, "a PNG picture"},
        {"%SEMI-OASIS\r\n\1\3"sv, FileKind::Oasis, "an OASIS layout"},
        {"PK\3\4\24\0"sv, FileKind::Zip, "a ZIP archive"},
        {"BZh91AY"sv, FileKind::Bzip2, "a bzip2-compressed file"},
        {"\xFD"
         "7zXZ\0\0"sv,
         FileKind::Xz, "a xz-compressed file"},
        {"\x28\xB5\x2F\xFD\4"sv, FileKind::Zstandard, "a zstd-compressed file"},
        {"\xFF\xD8\xFF\xE0"sv, FileKind::Jpeg, "a JPEG picture"},
        {"BM\x46\1\0\0\0\0\0\0\x36"sv, FileKind::Bmp, "a BMP picture"},
        {"II*\0\10"sv, FileKind::Tiff, "a TIFF picture"},
        {"%PDF-1.7\n"sv, FileKind::Pdf, "a PDF document"},
        {"\x7F"
         "ELF\2\1"sv,
         FileKind::Program, "a program"},
        {"MZ\x90\0\3"sv, FileKind::Program, "a program"},
        {"\1\2\3\4\5\6"sv, FileKind::Other, "no GDSII file"},
        {"\0\6\0\2\2\x58"sv, FileKind::Stream, "a GDSII stream file"},
        {"hello\n"sv, FileKind::Text, "a text"},
        {"BMW and others\n"sv, FileKind::Text, "a text"},
        {"\xFF\xFEh\0"sv, FileKind::Text, "a text"},
    };
    for (const Case& each : cases) {
        const FileLook look = LookAt(each.bytes);
        EXPECT_EQ(look.kind, each.kind) << each.text;
        EXPECT_EQ(LookText(look), each.text);
    }
}

TEST(FileLook, TellsTheFirstWordOfATextThatIsNoRemark) {
    EXPECT_EQ(LookAt("# remark\r\n\r\n  \t\n settings -version 4\n").firstWord, "settings");
    EXPECT_EQ(LookAt("one").firstWord, "one");
    EXPECT_EQ(LookAt("# only").firstWord, "");
    EXPECT_EQ(LookAt("\n\n").firstWord, "");
}

TEST(FileLook, LooksIntoCompressedFiles) {
    const TempFolder folder;
    const auto look = [&](const Bytes& bytes) { return LookAtFile(folder.Write("file", bytes)); };
    EXPECT_EQ(look(SmallLayout()), (FileLook{FileKind::Stream, false, {}}));
    EXPECT_EQ(look(Gzipped(SmallLayout())), (FileLook{FileKind::Stream, true, {}}));
    EXPECT_EQ(LookText(look(Gzipped(SmallLayout()))), "a gzip-compressed GDSII stream file");
    EXPECT_EQ(look(Gzipped(BytesOf("settings x"))), (FileLook{FileKind::Text, true, "settings"}));
    EXPECT_EQ(LookText(look(Gzipped(BytesOf("a text")))), "a gzip-compressed text");
    EXPECT_EQ(LookText(look(Gzipped({}))), "a gzip-compressed file that is empty");
    EXPECT_EQ(LookText(look(BytesOf("\x1F\x8B\10"))), "a gzip-compressed file");
    EXPECT_EQ(look(Gzipped(Bytes(100000, 7))).kind, FileKind::Other);
}

TEST(FileLook, SaysThatAFileCannotBeRead) {
    const TempFolder folder;
    EXPECT_EQ(LookAtFile(folder.Path() / "none").kind, FileKind::Unreadable);
    EXPECT_EQ(LookAtFile(folder.Path()).kind, FileKind::Unreadable);
    EXPECT_EQ(LookText({}), "not readable");
    EXPECT_EQ(LookAtFile(folder.Write("file", Bytes())).kind, FileKind::Empty);
}

TEST(FileLook, TakesAnyBytes) {
    std::mt19937 random(4);
    for (int i = 0; i < 2000; ++i) {
        Bytes bytes(random() % 20);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(random() % (i % 2 == 0 ? 256 : 16));
        }
        EXPECT_FALSE(LookText(LookAtBytes(bytes)).empty());
    }
}

}  // namespace
}  // namespace zelmo
