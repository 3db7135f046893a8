#include "gds/placement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "tests/gds/random_layout.h"
#include "tests/plain/gds_plain.h"

namespace zelmo {
namespace {

constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::uint16_t reflected = 0x8000;

/// Degrees as radians the way the reader makes them.
double Degrees(double degrees) {
    return static_cast<double>(static_cast<float>(degrees * 3.141592653589793 / 180.0));
}

/// A point on its way forward, or on the way back, which only boxes take.
GdsPoint Transformed(GdsPoint point, const GdsTransform& transform, bool inverse) {
    if (!inverse) {
        return PlacePoint(point, transform, LinearPartOf(transform));
    }
    const GdsRect box = TransformRect({point.x, point.y, point.x, point.y}, transform, true);
    // Beyond 32 bits one side stays at the limit.
    constexpr GdsRect limits;
    return {box.xmin < limits.xmin ? box.xmin : box.xmax,
            box.ymin < limits.ymin ? box.ymin : box.ymax};
}

TEST(PlacedPoint, LeavesPointsAloneUnderTheIdentity) {
    const GdsPoint point{-123456789012, 98765};
    EXPECT_EQ(Transformed(point, {}, false), point);
    EXPECT_EQ(Transformed(point, {}, true), point);
}

TEST(PlacedPoint, MirrorsTurnsScalesTruncatesAndShiftsInThisOrder) {
    const GdsTransform transform{reflected, 1000, -1000, 1.5, Degrees(90.0)};
    // (10, 7) -> (10, -7) -> about (7, 10) -> about (10.5, 15) -> (10, 15) -> shifted.
    EXPECT_EQ(Transformed({10, 7}, transform, false), (GdsPoint{1010, -985}));
}

TEST(PlacedPoint, TruncatesTowardZeroBeforeTheShift) {
    const GdsTransform half{0, 10, 10, 0.5, 0.0};
    EXPECT_EQ(Transformed({3, -3}, half, false), (GdsPoint{11, 9}));
    EXPECT_EQ(Transformed({-1, 1}, half, false), (GdsPoint{10, 10}));
}

TEST(PlacedPoint, UndoesAShiftAndAScale) {
    const GdsTransform transform{0, 100, -50, 2.0, 0.0};
    EXPECT_EQ(Transformed(Transformed({7, 9}, transform, false), transform, true),
              (GdsPoint{7, 9}));
}

TEST(PlacedPoint, MirrorsBeforeItTurnsBackToo) {
    // With a mirror and a turn the way back is not the inverse: (1000, 0) goes to (0, 1000) and
    // that comes back as (-1000, 0). The sine of the rounded angle is below 1, so that either loses
    // a unit to truncation.
    const GdsTransform transform{reflected, 0, 0, 1.0, Degrees(90.0)};
    EXPECT_EQ(Transformed({1000, 0}, transform, false), (GdsPoint{0, 999}));
    EXPECT_EQ(Transformed({0, 1000}, transform, true), (GdsPoint{-999, 0}));
}

TEST(PlacedPoint, HoldsResultsAtTheEndsOfTheRange) {
    EXPECT_EQ(Transformed({greatest, least}, {0, 1, -1, 1.0, 0.0}, false),
              (GdsPoint{greatest, least}));
    EXPECT_EQ(Transformed({1, -1}, {0, 0, 0, 1e30, 0.0}, false), (GdsPoint{greatest, least}));
    EXPECT_EQ(Transformed({greatest, least}, {0, -5, 5, 1.0, 0.0}, true),
              (GdsPoint{greatest, least}));
}

TEST(PlacedPoint, TakesWhatIsNoNumberForZero) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Transformed({3, 4}, {0, 10, 20, nan, 0.0}, false), (GdsPoint{10, 20}));
    EXPECT_EQ(Transformed({3, 4}, {0, 10, 20, 1.0, infinity}, false), (GdsPoint{10, 20}));
    EXPECT_EQ(Transformed({0, 4}, {0, 10, 20, infinity, 0.0}, false), (GdsPoint{10, greatest}));
    EXPECT_EQ(Transformed({10, 21}, {0, 10, 20, 0.0, 0.0}, true), (GdsPoint{0, greatest}));
}

TEST(TransformRect, TakesTheBoxOfTheTurnedCorners) {
    const GdsTransform transform{0, 1000, 2000, 1.0, Degrees(90.0)};
    EXPECT_EQ(TransformRect({0, 0, 100, 50}, transform, false), (GdsRect{950, 2000, 1000, 2099}));
    const GdsTransform oblique{0, 0, 0, 1.0, Degrees(45.0)};
    EXPECT_EQ(TransformRect({-100, -100, 100, 100}, oblique, false),
              (GdsRect{-141, -141, 141, 141}));
}

TEST(TransformRect, LeavesTheLimitsOf32BitsWhereTheBoxLiesBeyondThem) {
    const std::int64_t far = 5000000000;
    EXPECT_EQ(TransformRect({0, 0, 10, 10}, {0, far, 0, 1.0, 0.0}, false),
              (GdsRect{2147483647, 0, far + 10, 10}));
    EXPECT_EQ(TransformRect({0, 0, 10, 10}, {0, 0, -far, 1.0, 0.0}, false),
              (GdsRect{0, -far, 10, -2147483648LL}));
}

TEST(MergeRect, WidensByAllSidesOfTheBox) {
    GdsRect target{0, 0, 10, 10};
    MergeRect(target, {-5, 3, 7, 20});
    EXPECT_EQ(target, (GdsRect{-5, 0, 10, 20}));
    MergeRect(target, {30, -9, 25, -12});  // the wrong way round
    EXPECT_EQ(target, (GdsRect{-5, -12, 30, 20}));
}

TEST(MergeRect, TakesAnEmptyBoxForTheLimitsItConsistsOf) {
    GdsRect target{0, 0, 1, 1};
    MergeRect(target, GdsRect());
    EXPECT_EQ(target, (GdsRect{-2147483648LL, -2147483648LL, 2147483647, 2147483647}));
}

TEST(PlaceChild, ComposesAnglesByAdditionAndFlipsByExclusion) {
    const GdsTransform parent{reflected, 100, 200, 2.0, 0.25};
    const GdsTransform child = PlaceChild({10, 20}, 1.5, 0.5, 0x8006, parent, LinearPartOf(parent));
    EXPECT_EQ(child.flip, 0);
    EXPECT_EQ(child.mag, 3.0);
    EXPECT_EQ(child.angle, 0.75);
    const GdsPoint origin = Transformed({10, 20}, parent, false);
    EXPECT_EQ(child.dx, origin.x);
    EXPECT_EQ(child.dy, origin.y);
    EXPECT_EQ(PlaceChild({}, 1.0, 0.0, 0x0006, parent, LinearPartOf(parent)).flip, reflected);
    EXPECT_EQ(PlaceChild({}, 1.0, 0.0, reflected, {}, LinearPart()).flip, reflected);
}

TEST(PlacedPoint, GivesTheBitsOfThePlainVersion) {
    std::mt19937 random(42);
    constexpr double magnifications[] = {1.0, 0.5, 2.0, 0.1f, -1.0, 1e20, 0.0};
    for (int run = 0; run < 20000; ++run) {
        const std::int64_t reach = run % 4 == 0 ? greatest / 2 : 2147483647;
        const auto coordinate = [&] { return RandomInteger(random, -reach, reach); };
        GdsTransform transform;
        transform.flip = random() % 2 == 0 ? 0 : reflected;
        transform.dx = coordinate();
        transform.dy = coordinate();
        transform.mag = magnifications[random() % std::size(magnifications)];
        transform.angle = RandomAngle(random) + RandomAngle(random);
        const bool inverse = random() % 2 == 0;
        const GdsPoint point{coordinate(), coordinate()};
        ASSERT_EQ(Transformed(point, transform, inverse),
                  TransformPointPlain(point, transform, inverse));
        const GdsRect rect{point.x, point.y, coordinate(), coordinate()};
        ASSERT_EQ(TransformRect(rect, transform, inverse),
                  TransformRectPlain(rect, transform, inverse));
    }
}

// The sines and cosines of the platforms' libraries differ in the last bit for a few angles. That
// must not show in a placed coordinate.

class Hash {
public:
    void Add(std::int64_t value) {
        for (int shift = 0; shift < 64; shift += 8) {
            value_ =
                (value_ ^ ((static_cast<std::uint64_t>(value) >> shift) & 0xFF)) * 1099511628211u;
        }
    }
    std::uint64_t Value() const { return value_; }

private:
    std::uint64_t value_ = 1469598103934665603u;
};

/// Points of all sizes: small ones, round ones, and any in 32 bits.
GdsPoint TestPoint(std::mt19937& random) {
    const auto coordinate = [&]() -> std::int64_t {
        switch (random() % 3) {
            case 0:
                return RandomInteger(random, -1000, 1000);
            case 1:
                return RandomInteger(random, -20000, 20000) * 5;
            default:
                return RandomInteger(random, -2147483648LL, 2147483647);
        }
    };
    const std::int64_t x = coordinate();
    const std::int64_t y = coordinate();
    return {x, y};
}

void AddPlacedPoints(Hash& hash, std::mt19937& random, double angle, int count) {
    for (const std::uint16_t flip : {std::uint16_t{0}, reflected}) {
        const GdsTransform transform{flip, 0, 0, 1.0, angle};
        for (int i = 0; i < count; ++i) {
            const GdsPoint placed = Transformed(TestPoint(random), transform, false);
            hash.Add(placed.x);
            hash.Add(placed.y);
        }
    }
}

TEST(PlacedPoint, IsTheSameOnEveryPlatformUnderMultiplesOf90Degrees) {
    Hash hash;
    std::mt19937 random(43);
    // Up to four levels of hierarchy add up their angles.
    for (int sum = 0; sum < 256; ++sum) {
        double angle = 0.0;
        for (int level = 0; level < 4; ++level) {
            angle += Degrees(90.0 * ((sum >> (2 * level)) & 3));
        }
        AddPlacedPoints(hash, random, angle, 200);
    }
    EXPECT_EQ(hash.Value(), 11803170629869409976u);
}

TEST(PlacedPoint, IsTheSameOnEveryPlatformUnderAnyAngle) {
    Hash hash;
    std::mt19937 random(44);
    for (int hundredths = -36000; hundredths <= 36000; hundredths += 7) {
        AddPlacedPoints(hash, random, Degrees(hundredths / 100.0), 10);
    }
    for (int i = 0; i < 5000; ++i) {
        AddPlacedPoints(hash, random, RandomAngle(random) + RandomAngle(random), 10);
    }
    EXPECT_EQ(hash.Value(), 3623629538197560729u);
}

}  // namespace
}  // namespace zelmo
