#include "results/section.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "results/drawn_point.h"
#include "results/section_svg.h"
#include "tests/results/random_stack.h"

namespace zelmo {
namespace {

std::size_t CountOf(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos;
         at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

TEST(PointsOfCut, SurfacesAreStraightBetweenThem) {
    for (std::uint32_t seed = 1; seed < 40; ++seed) {
        const auto model = MakeRandomStack(seed);
        TestRandom random(seed);
        const CutLine cut{RandomPlace(*model, random), RandomPlace(*model, random)};
        SectionTaker taker(model->grid, cut);
        const std::vector<CutPoint>& points = taker.Points();
        const Section section = taker.Take(*model, {1, "Step"});
        ASSERT_GE(points.size(), 2u);
        std::size_t next = 0;
        for (const auto& layer : model->stack.layers) {
            if (layer == nullptr) {
                continue;
            }
            const CutHeights& heights = *section.layers.at(next++).heights;
            for (std::size_t i = 1; i < points.size(); ++i) {
                const GridPosition& a = points[i - 1].position;
                const GridPosition& b = points[i].position;
                const double share = static_cast<double>(random.Unit());
                const DrawnPoint point(model->grid, {a.col + share * (b.col - a.col),
                                                     a.row + share * (b.row - a.row)});
                const double top = (point.HeightOf(layer->top) - 0.5) * 1000.0;
                EXPECT_NEAR(top, heights.top[i - 1] + share * (heights.top[i] - heights.top[i - 1]),
                            1e-5);
            }
        }
    }
}

TEST(PointsOfCut, BeginAndEndWhereTheCutDoes) {
    for (std::uint32_t seed = 1; seed < 40; ++seed) {
        const auto model = MakeRandomStack(seed);
        const auto [low, high] = LocationWindow(model->settings);
        const std::vector<CutPoint> points =
            PointsOfCut(model->grid, {{low.x, low.y}, {high.x, low.y}});
        EXPECT_EQ(points.front().along, 0.0);
        EXPECT_NEAR(points.back().along, high.x - low.x, 1e-12);
        EXPECT_NEAR(points.front().place.x, low.x, 1e-6);
        EXPECT_NEAR(points.back().place.x, high.x, 1e-6);
        EXPECT_TRUE(
            std::is_sorted(points.begin(), points.end(),
                           [](const CutPoint& a, const CutPoint& b) { return a.along < b.along; }));
    }
}

TEST(PointsOfCut, AlongARowAreItsCells) {
    ProcessModel model;
    SetUpGrid(model, 5, 5, 0.5f);
    const std::vector<CutPoint> points = PointsOfCut(model.grid, {{0.0, 1.0}, {2.0, 1.0}});
    ASSERT_EQ(points.size(), 5u);
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(points[i].position, (GridPosition{static_cast<double>(i), 2.0}));
    }
}

TEST(SectionTaker, LayersThatDidNotChangeShareTheirHeights) {
    const auto model = MakeRandomStack(2);
    const auto [low, high] = LocationWindow(model->settings);
    SectionTaker taker(model->grid, {low, high});
    const Section first = taker.Take(*model, {1, "a"});
    MarkChanged(*model->stack.layers[0]);
    model->stack.layers[0]->top[0] += 0.0f;
    const Section second = taker.Take(*model, {2, "b"});
    EXPECT_NE(first.layers[0].heights, second.layers[0].heights);
    ASSERT_GT(first.layers.size(), 1u);
    EXPECT_EQ(first.layers[1].heights, second.layers[1].heights);
}

/// A substrate of 500 nm, a film of 3 nm and one of 100 nm in a window of 10 um by 10 um.
std::unique_ptr<ProcessModel> MakeThinFilm() {
    auto model = std::make_unique<ProcessModel>();
    model->settings.gridColumns = 25;
    model->settings.windowWidth = 10.0f;
    model->settings.windowHeight = 10.0f;
    SizeGrid(model->grid, model->settings);
    model->stack.substrateThickness = 0.5f;
    AppendFlatLayer(*model, 0.0f, 0.5f, "_SUB_").label = "SUBSTRATE";
    Layer& thin = AppendFlatLayer(*model, 0.5f, 0.003f, "Gate");
    thin.label = "Gate <oxide> & \"more\"";
    thin.color = {1.0f, 0.5f, 0.0f};
    thin.alpha = 0.25f;
    AppendFlatLayer(*model, 0.503f, 0.1f, "Poly").label = "Poly, n+";
    return model;
}

TEST(SectionSvg, AThinFilmIsAHairlineInItsColour) {
    const auto model = MakeThinFilm();
    SectionTaker taker(model->grid, {{0.0, 5.0}, {10.0, 5.0}});
    const Section section = taker.Take(*model, {7, "Poly deposition"});
    const HeightRange range = HeightsOf(std::span(&section, 1));
    EXPECT_NEAR(range.low, -500.0, 1e-9);
    EXPECT_NEAR(range.high, 103.0, 1e-3);
    const std::string svg = SectionSvg(section, taker.Points(), {range, 1.0, "cut 1"});
    EXPECT_EQ(CountOf(svg, "<title>"), 3u) << "an area each";
    EXPECT_EQ(CountOf(svg, "fill=\"none\" stroke=\"#ff8000\" stroke-opacity=\"0.25\""), 1u);
    EXPECT_EQ(CountOf(svg, "fill=\"#ff8000\" fill-opacity=\"0.25\""), 2u) << "area and legend";
    EXPECT_EQ(CountOf(svg, "<title>Gate &lt;oxide&gt; &amp; &quot;more&quot;</title>"), 1u);
    EXPECT_EQ(CountOf(svg, ">007 Poly deposition</text>"), 1u);
    EXPECT_EQ(CountOf(svg, "true proportions"), 1u);
    // Flat surfaces are told by their ends. 100 pixels a micrometre: the substrate is 50 high.
    EXPECT_EQ(CountOf(svg, "<path d=\"M90 98.3L1090 98.3L1090 148.3L90 148.3Z\""), 1u) << svg;
}

TEST(SectionSvg, StretchedHeightsGrow) {
    const auto model = MakeThinFilm();
    SectionTaker taker(model->grid, {{0.0, 5.0}, {10.0, 5.0}});
    const Section section = taker.Take(*model, {7, "Poly deposition"});
    const HeightRange range = HeightsOf(std::span(&section, 1));
    const std::string svg = SectionSvg(section, taker.Points(), {range, 4.0, "cut 1"});
    EXPECT_EQ(CountOf(svg, "<path d=\"M90 129.2L1090 129.2L1090 329.2L90 329.2Z\""), 1u) << svg;
    EXPECT_EQ(CountOf(svg, "heights stretched 4 times"), 1u);
}

TEST(SectionSvg, WhereALayerIsNotNothingIsDrawn) {
    const auto model = MakeThinFilm();
    Layer& poly = *model->stack.layers[2];
    for (std::size_t cell = 0; cell < poly.top.size(); ++cell) {
        poly.top[cell] = cell % 25 < 12 ? poly.top[cell] : poly.bottom[cell];
    }
    model->stack.layers[1].reset();
    SectionTaker taker(model->grid, {{0.0, 5.0}, {10.0, 5.0}});
    const Section section = taker.Take(*model, {7, "x"});
    const std::string svg =
        SectionSvg(section, taker.Points(), {HeightsOf(std::span(&section, 1)), 1.0, "cut 1"});
    EXPECT_EQ(CountOf(svg, "<title>"), 2u);
    // Column 11 is the last: 11 - 2 half micrometres from the window's edge, and down to column 12.
    EXPECT_EQ(CountOf(svg, "L540 88L590 98L590 98L90 98Z"), 1u) << svg;
}

TEST(SectionCsv, HasAHeadAndALineForEachPoint) {
    auto model = MakeThinFilm();
    model->settings.lengthsInNanometres = true;
    SectionTaker taker(model->grid, {{0.0, 5.0}, {10.0, 5.0}});
    const Section section = taker.Take(*model, {7, "x"});
    std::istringstream lines(SectionCsv(section, taker.Points(), model->settings));
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line,
              "along_um,x_nm,y_nm,1 SUBSTRATE bottom_nm,1 SUBSTRATE top_nm,"
              "\"2 Gate <oxide> & \"\"more\"\" bottom_nm\",\"2 Gate <oxide> & \"\"more\"\" "
              "top_nm\",\"3 Poly, n+ bottom_nm\",\"3 Poly, n+ top_nm\"");
    std::getline(lines, line);
    EXPECT_EQ(line, "0.000000,0.000000,5000.000000,-500.000,0.000,0.000,3.000,3.000,103.000");
    std::size_t count = 1;
    for (std::string next; std::getline(lines, next); ++count) {
        line = next;
    }
    EXPECT_EQ(count, taker.Points().size());
    EXPECT_EQ(line, "10.000000,10000.000000,5000.000000,-500.000,0.000,0.000,3.000,3.000,103.000");
}

}  // namespace
}  // namespace zelmo
