#include "layout_tool/layout_picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "layout_tool/shown_text.h"
#include "model/process.h"
#include "process_file/reader.h"
#include "tests/gds/layout_file.h"
#include "tests/support/temp_folder.h"

namespace zelmo {
namespace {

/// What is wrong with the tags of an XML text; empty if nothing is.
std::string FaultOf(std::string_view xml) {
    if (ShownText(xml).size() != xml.size() + 2 * std::count(xml.begin(), xml.end(), '\n')) {
        return "bytes that are no text";
    }
    std::vector<std::string> open;
    for (std::size_t at = xml.find('<'); at != std::string_view::npos; at = xml.find('<', at)) {
        const std::size_t end = xml.find('>', at);
        if (end == std::string_view::npos ||
            xml.substr(at + 1, end - at - 1).find('<') != std::string_view::npos) {
            return "a tag without an end";
        }
        const std::string_view tag = xml.substr(at + 1, end - at - 1);
        const std::string name(tag.substr(tag.starts_with('/') ? 1 : 0).substr(0, tag.find(' ')));
        if (std::count(tag.begin(), tag.end(), '"') % 2 != 0) {
            return "a quote without an end in " + name;
        }
        if (tag.starts_with('/')) {
            if (open.empty() || open.back() != name) {
                return "a stray end of " + name;
            }
            open.pop_back();
        } else if (!tag.ends_with('/') && !tag.starts_with('?')) {
            open.push_back(name);
        }
        at = end;
    }
    for (std::size_t at = xml.find('&'); at != std::string_view::npos; at = xml.find('&', at + 1)) {
        const std::string_view rest = xml.substr(at);
        if (!rest.starts_with("&amp;") && !rest.starts_with("&lt;") && !rest.starts_with("&gt;") &&
            !rest.starts_with("&quot;") && !rest.starts_with("&#39;")) {
            return "a stray &";
        }
    }
    return open.empty() ? "" : "no end of " + open.back();
}

std::size_t CountOfText(const std::string& text, std::string_view piece) {
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos;
         at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

class LayoutPictureTest : public testing::Test {
protected:
    void Read(GdsWriter& writer) {
        reading_ = ReadLayout(folder_.Write("layout.gds", writer.Bytes()), false);
        ASSERT_TRUE(reading_.hasCells);
        facts_ = FindCellFacts(reading_, 0, 10);
    }
    void Choose(const std::vector<MaskLayer>& only) {
        facts_ = FindCellFacts(reading_, 0, 10, CountLayers(reading_.database, 0), only);
    }
    LayoutPicture Draw(const PictureLimits& limits = {}) {
        return DrawLayout(reading_, facts_, {"layout.gds", process_}, limits);
    }

    TempFolder folder_;
    LayoutReading reading_;
    CellFacts facts_;
    std::string process_;
};

TEST_F(LayoutPictureTest, HoldsEveryShapeOnceInTheColourOfItsLayer) {
    GdsWriter writer = LibraryWithCell([](GdsWriter& cell) {
        cell.Rectangle({1, 0}, 0, 0, 4000, 2000);
        cell.Rectangle({1, 0}, 0, 2500, 1000, 3000);
        cell.Rectangle({2, 5}, 0, 0, 1000, 1000);
    });
    Read(writer);
    const LayoutPicture picture = Draw();
    EXPECT_EQ(FaultOf(picture.svg), "");
    EXPECT_EQ(picture.failure + picture.leftOut, "");
    EXPECT_EQ(CountOfText(picture.svg, "<path"), 3u);
    EXPECT_EQ(CountOfText(picture.svg, "<g opacity"), 2u);
    EXPECT_NE(picture.svg.find("<title>2/5</title>"), std::string::npos);
    EXPECT_NE(picture.svg.find("x in um"), std::string::npos);
    EXPECT_NE(picture.svg.find("h4000v2000h-4000z"), std::string::npos);
    EXPECT_EQ(picture.svg.find(">window<"), std::string::npos);
}

TEST_F(LayoutPictureTest, DrawsTheLargestShapesWhereThereAreTooMany) {
    GdsWriter writer = LibraryWithCell([](GdsWriter& cell) {
        for (std::int32_t i = 1; i <= 50; ++i) {
            cell.Rectangle(1, 100 * i, 0, 100 * i + i, 10);
        }
    });
    Read(writer);
    const LayoutPicture picture = Draw({.shapes = 20, .points = 1000});
    EXPECT_EQ(CountOfText(picture.svg, "<path"), 20u);
    EXPECT_NE(picture.leftOut.find("20 of 50"), std::string::npos) << picture.leftOut;
    EXPECT_NE(picture.leftOut.find("0.030 um"), std::string::npos) << picture.leftOut;
    EXPECT_NE(picture.svg.find(picture.leftOut), std::string::npos);
    EXPECT_EQ(CountOfText(Draw({.shapes = 100, .points = 29}).svg, "<path"), 5u);
    EXPECT_EQ(Draw({.shapes = 50, .points = 250}).leftOut, "");
}

TEST_F(LayoutPictureTest, DrawsChosenLayersInTheColoursThatTheyHaveAmongAll) {
    GdsWriter writer = LibraryWithCell([](GdsWriter& cell) {
        cell.Rectangle({1, 0}, 0, 0, 4000, 2000);
        cell.Rectangle({2, 5}, 0, 0, 1000, 1000);
        cell.Rectangle({2, 6}, 0, 0, 1000, 500);
        cell.Rectangle({3, 0}, 0, 0, 500, 500);
    });
    Read(writer);
    const std::string all = Draw().svg;
    Choose({{2, 6}, {3, std::nullopt}});
    const std::string some = Draw().svg;
    EXPECT_EQ(FaultOf(some), "");
    EXPECT_EQ(CountOfText(some, "<path"), 2u);
    for (const std::string title : {"<title>2/6</title>", "<title>3/0</title>"}) {
        const auto group = [&](const std::string& svg) {
            const std::size_t end = svg.find("</g>", svg.find(title));
            const std::size_t begin = svg.rfind("<g opacity", end);
            return svg.substr(begin, end - begin);
        };
        EXPECT_EQ(group(some), group(all));
    }
    EXPECT_EQ(some.find("2/5"), std::string::npos);
}

TEST_F(LayoutPictureTest, DrawsOfAMaskTheChosenLayersAlone) {
    GdsWriter writer = LibraryWithCell([](GdsWriter& cell) {
        cell.Rectangle({1, 0}, 0, 0, 4000, 2000);
        cell.Rectangle({2, 5}, 0, 0, 1000, 1000);
        cell.Rectangle({3, 0}, 0, 0, 500, 500);
    });
    Read(writer);
    ProcessFile process;
    process.steps.resize(2);
    process.steps[0].kind = process.steps[1].kind = StepKind::Photo;
    process.steps[0].mask = {{3, std::nullopt}};
    process.steps[1].mask = {{1, std::nullopt}, {2, std::nullopt}};
    process_ = "p.txt";
    Choose({{2, std::nullopt}});
    facts_.masks = FindMasks(process, facts_);
    ASSERT_EQ(facts_.masks.size(), 1u);
    EXPECT_EQ(facts_.masks[0].text, "1,2");
    EXPECT_EQ(CountOfText(Draw().svg, "<path"), 1u);
    EXPECT_NE(Draw().svg.find("h1000v1000h-1000z"), std::string::npos);
}

TEST_F(LayoutPictureTest, IsXmlWhateverNamesThereAre) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("<b>&\"'\x01\xFF\xC3\xA4");
    writer.Rectangle(1, 0, 0, 4000, 2000);
    writer.EndCell();
    writer.EndLibrary();
    Read(writer);
    EXPECT_EQ(FaultOf(Draw().svg), "");
    process_ = "\xFF<p>.txt";
    ProcessStep photo;
    photo.kind = StepKind::Photo;
    photo.photoName = "]]>\x02<&\xF0";
    photo.mask = {{1, std::nullopt}};
    ProcessFile process;
    process.steps = {photo};
    facts_.masks = FindMasks(process, facts_.layers);
    const LayoutPicture picture = Draw();
    EXPECT_EQ(FaultOf(picture.svg), "");
    EXPECT_EQ(CountOfText(picture.svg, "<path"), 1u);
}

TEST_F(LayoutPictureTest, ShowsTheWindowAndWhatLiesCloseAroundIt) {
    GdsWriter writer = LibraryWithCell([](GdsWriter& cell) {
        cell.Rectangle(1, 0, 0, 4000, 2000);
        cell.Rectangle(1, 100000, 0, 104000, 2000);
    });
    Read(writer);
    facts_.window = GivenWindow{1.0f, 1.0f, 2.0f, 1.5f};
    const LayoutPicture picture = Draw();
    EXPECT_EQ(FaultOf(picture.svg), "");
    EXPECT_NE(picture.svg.find(">window<"), std::string::npos);
    EXPECT_EQ(CountOfText(picture.svg, "<path"), 1u);
    for (const GivenWindow window :
         {GivenWindow{1e30f, 1e30f, 1e30f, 1e30f}, GivenWindow{0.0f, 0.0f, 1e-30f, 1e-30f},
          GivenWindow{-1e30f, 0.0f, 3e38f, 1.0f}}) {
        facts_.window = window;
        EXPECT_EQ(FaultOf(Draw().svg), "") << window.x;
    }
}

TEST_F(LayoutPictureTest, TakesTheColourOfWhatAMaskStandsFor) {
    GdsWriter writer = LibraryWithCell([](GdsWriter& cell) {
        cell.Rectangle(1, 0, 0, 4000, 2000);
        cell.Rectangle(2, 0, 0, 4000, 2000);
        cell.Rectangle(3, 0, 0, 4000, 2000);
        cell.Rectangle(4, 0, 0, 4000, 2000);
    });
    Read(writer);
    const auto path = folder_.Write(
        "p.txt",
        "settings -version 4 -N 200 -angle 30\nlocation -x 0 -y 0 -dx 4 -dy 2\ngds -cell TOP\n"
        "deposition -name A -type oxide -thickness 100 -color 255 0 0 100\n"
        "deposition -name B -type poly -thickness 100 -color 0 255 0 100\n"
        "photo -name dark -mask_id 1 -type 1 -res 0 -thickness 500\n"
        "etch -name dark -targets poly -depth 200 -iso 0\nstrip -name dark\n"
        "photo -name clear -mask_id 2 -type 0 -res 0 -thickness 500\n"
        "etch -name clear -targets oxide -depth 200 -iso 0\nstrip -name clear\n"
        "deposition -name C -type metal -thickness 100 -color 0 0 255 100\n"
        "photo -name open -mask_id 3 -type 0 -res 0 -thickness 500\n"
        "etch -name open -targets metal -depth 200 -iso 0\nstrip -name open\n"
        "photo -name nothing -mask_id 4 -type 0 -res 0 -thickness 500\nstrip -name nothing\n");
    const ProcessFile process = ReadProcessFile(path, {});
    for (const ProcessFileError& error : process.errors) {
        ADD_FAILURE() << ErrorLine(error);
    }
    facts_.masks = FindMasks(process, facts_.layers);
    ASSERT_EQ(facts_.masks.size(), 4u);
    using Color = std::array<float, 3>;
    EXPECT_EQ(facts_.masks[0].color, (Color{0.0f, 1.0f, 0.0f}));
    EXPECT_EQ(facts_.masks[1].color, (Color{0.0f, 0.0f, 1.0f}));
    EXPECT_EQ(facts_.masks[2].color, (Color{0.0f, 0.0f, 1.0f}));
    EXPECT_FALSE(facts_.masks[3].hasColor);
    process_ = "p.txt";
    EXPECT_NE(Draw().svg.find("fill=\"#00FF00\""), std::string::npos);
}

}  // namespace
}  // namespace zelmo
