#include "report/page_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include <nlohmann/json.hpp>

#include "base/base64.h"
#include "base/file.h"
#include "report/page.h"
#include "report/page_bundle.h"
#include "report/page_json.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

/// Texts that a layout or a process file can hold.
const std::string hostileTexts[] = {
    "</script><script>alert(1)</script>",
    "<!--<script>",
    "\"quotes\" and 'others' \\ \\u003c",
    "&lt;b&gt; &amp;",
    "\xE2\x80\xAE"
    "from the right",
    "\xE2\x80\xA8\xE2\x80\xA9",
    std::string("\x01\x1B[31m\x7F\t\n\0end", 13),
    "\xEF\xBB\xBF"
    "mark",
    "\xF0\x9F\x94\xA5",
};

Page MakePage(const std::string& text) {
    Page page;
    page.program = page.title = page.layout = page.cell = text;
    page.processFile = {text, text};
    page.notes = {{text, text, 1, text}};
    page.steps.push_back({1, text, text, 1});
    PageStep& step = page.steps.back();
    step.arguments = {{text, text, text}};
    step.console = {text};
    step.notes = {{text, text, 1, text}};
    step.stack.layers = {{{1, text, text, {}, 1.0f}, 0, 0}};
    return page;
}

std::string Written(const Page& page, const PageBundle& bundle) {
    const TempFolder folder;
    const FilePointer file = OpenFile(folder.Path() / "page.html", "wb+");
    EXPECT_EQ(WritePage(page, bundle, file.get()), "");
    std::fflush(file.get());
    std::ifstream stream(folder.Path() / "page.html", std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::size_t Count(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(piece, at)) != std::string::npos; ++at) {
        ++count;
    }
    return count;
}

TEST(PageJson, HostileTextsComeOutAsTheyWere) {
    for (const std::string& text : hostileTexts) {
        PageData data;
        const std::string json = PageJson(MakePage(text), data);
        for (const char character : json) {
            const bool isSafe = character >= ' ' && character <= '~' && character != '<' &&
                                character != '>' && character != '&';
            ASSERT_TRUE(isSafe) << json;
        }
        const auto read = nlohmann::json::parse(json);
        EXPECT_EQ(read["title"], text);
        EXPECT_EQ(read["processFile"][1], text);
        EXPECT_EQ(read["steps"][0]["arguments"][0]["value"], text);
        EXPECT_EQ(read["steps"][0]["layers"][0]["name"], text);
        EXPECT_EQ(read["steps"][0]["notes"][0]["text"], text);
        EXPECT_EQ(read["steps"][0]["console"][0], text);
        EXPECT_EQ(read["notes"][0]["file"], text);
    }
}

TEST(PageJson, BytesThatAreNoTextAreReplaced) {
    PageData data;
    const std::string json = PageJson(MakePage("a\xFF\xC0\x80"
                                               "b\xED\xB2\x80"),
                                      data);
    const std::string title = nlohmann::json::parse(json)["title"];
    EXPECT_TRUE(title.starts_with("a\xEF\xBF\xBD")) << title;
}

TEST(WritePage, HostileTextsAddNoElements) {
    const PageBundle bundle{"1;", "a{}"};
    const std::string plain = Written(MakePage("plain"), bundle);
    for (const std::string& text : hostileTexts) {
        const std::string page = Written(MakePage(text), bundle);
        for (const char* const piece : {"<script", "</script", "<!--", "<b>"}) {
            EXPECT_EQ(Count(page, piece), Count(plain, piece)) << text;
        }
    }
}

TEST(WritePage, TheContentPolicyNamesTheScriptAndTheStyleByTheirDigests) {
    // Digests of "alert(1);\n" and "b{}" by another program.
    const std::string page = Written(MakePage("a"), {"alert(1);\n", "b{}"});
    EXPECT_NE(page.find("script-src 'sha256-vyWxnR5/SfkpBXTjK7tyUvoeEZCT+fK2ayxsse+sBvs='"),
              std::string::npos)
        << page;
    EXPECT_NE(page.find("style-src 'sha256-7yqHVAesot11p6HczDsgKRipvI5UPgs97z80zNXlans='"),
              std::string::npos);
    EXPECT_NE(page.find("<script>alert(1);\n</script>"), std::string::npos);
    EXPECT_NE(page.find("<style>b{}</style>"), std::string::npos);
    EXPECT_NE(page.find("default-src 'none'"), std::string::npos);
}

TEST(WritePage, BytesLieWhereTheJsonSays) {
    Page page = MakePage("a");
    page.steps[0].picture = {3, 2, {1, 2, 3, 4}};
    page.chunks = {{{5, 6, 7, 8, 9}, {-1, 0}}};
    PageData data;
    const auto json = nlohmann::json::parse(PageJson(page, data));
    const auto picture = json["steps"][0]["picture"];
    EXPECT_EQ(picture["type"], "image/webp");
    EXPECT_EQ(picture["width"], 3);
    EXPECT_EQ(picture["offset"], 0);
    EXPECT_EQ(picture["length"], 4);
    EXPECT_TRUE(json["steps"][0]["thumbnail"].is_null());
    EXPECT_EQ(json["chunks"][0]["offset"], 4);
    EXPECT_EQ(json["chunks"][0]["length"], 5);
    EXPECT_EQ(json["chunks"][0]["fields"][0]["base"], -1);
    const std::string text = Written(page, {"1", "a"});
    const std::vector<std::uint8_t> all{1, 2, 3, 4, 5, 6, 7, 8, 9};
    EXPECT_NE(text.find("id=\"data\">" + Base64(all) + "</script>"), std::string::npos);
}

}  // namespace
}  // namespace zelmo
