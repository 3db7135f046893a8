#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

#include "gds/gds_point.h"

namespace zelmo {

/// A coordinate pair as a stream file has it.
struct NarrowPoint {
    std::int32_t x = 0;
    std::int32_t y = 0;

    // NOLINTNEXTLINE(google-explicit-constructor): the same point
    operator GdsPoint() const { return {x, y}; }
};

/// The points of a polygon, which lie somewhere else: as pairs of 32 bits where they fit, which
/// only outlines of paths can fail to do, and else as pairs of 64 bits.
class PointRun {
public:
    PointRun() = default;
    // NOLINTBEGIN(google-explicit-constructor): the same points
    PointRun(std::span<const NarrowPoint> points)
        : points_(points.data()), size_(static_cast<std::uint32_t>(points.size())) {}
    PointRun(std::span<const GdsPoint> points)
        : points_(points.data()), size_(static_cast<std::uint32_t>(points.size())), wide_(true) {}
    PointRun(std::span<NarrowPoint> points) : PointRun(std::span<const NarrowPoint>(points)) {}
    PointRun(std::span<GdsPoint> points) : PointRun(std::span<const GdsPoint>(points)) {}
    // NOLINTEND(google-explicit-constructor)

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    GdsPoint operator[](std::size_t index) const {
        return wide_ ? Wide()[index] : GdsPoint(Narrow()[index]);
    }

    /// What `use` makes of the points, which it gets as a span of either type.
    template <typename Use>
    auto As(Use use) const {
        return wide_ ? use(Wide()) : use(Narrow());
    }

    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = GdsPoint;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = GdsPoint;

        Iterator(const PointRun& run, std::size_t index) : run_(&run), index_(index) {}
        GdsPoint operator*() const { return (*run_)[index_]; }
        Iterator& operator++() {
            ++index_;
            return *this;
        }
        Iterator operator++(int) { return {*run_, index_++}; }
        bool operator==(const Iterator& other) const { return index_ == other.index_; }

    private:
        const PointRun* run_;
        std::size_t index_;
    };
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, size_}; }

private:
    std::span<const NarrowPoint> Narrow() const {
        return {static_cast<const NarrowPoint*>(points_), size_};
    }
    std::span<const GdsPoint> Wide() const {
        return {static_cast<const GdsPoint*>(points_), size_};
    }

    const void* points_ = nullptr;  ///< of the type that `wide_` tells
    std::uint32_t size_ = 0;
    bool wide_ = false;
};

}  // namespace zelmo
