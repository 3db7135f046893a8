#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <system_error>
#include <vector>

#include "results/models/model_files.h"

namespace zelmo {

namespace {

constexpr std::size_t headSize = 80;

/// Bytes of a file, little-endian.
class ByteList {
public:
    void Add(std::uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> shift & 0xFF));
        }
    }
    void Add(const std::array<float, 3>& values) {
        for (const float value : values) {
            Add(std::bit_cast<std::uint32_t>(value));
        }
    }
    void AddTwoZeros() { bytes_.insert(bytes_.end(), 2, std::uint8_t{0}); }

    /// Writes the bytes and forgets them; false, with the reason in errno, if that fails.
    bool WriteTo(std::FILE* file) {
        const bool isWritten = std::fwrite(bytes_.data(), 1, bytes_.size(), file) == bytes_.size();
        bytes_.clear();
        return isWritten;
    }
    std::size_t Size() const { return bytes_.size(); }

private:
    std::vector<std::uint8_t> bytes_;
};

/// The unit vector to the outside; zeros, which stand for any, where rounding leaves no area.
std::array<float, 3> NormalOf(const std::array<float, 3>& a, const std::array<float, 3>& b,
                              const std::array<float, 3>& c) {
    std::array<double, 3> first{};
    std::array<double, 3> second{};
    for (std::size_t i = 0; i < 3; ++i) {
        first[i] = static_cast<double>(b[i]) - static_cast<double>(a[i]);
        second[i] = static_cast<double>(c[i]) - static_cast<double>(a[i]);
    }
    const double x = first[1] * second[2] - first[2] * second[1];
    const double y = first[2] * second[0] - first[0] * second[2];
    const double z = first[0] * second[1] - first[1] * second[0];
    const double length = std::sqrt(x * x + y * y + z * z);
    if (!(length > 0.0)) {
        return {};
    }
    return {static_cast<float>(x / length), static_cast<float>(y / length),
            static_cast<float>(z / length)};
}

std::string WriteFailure() {
    return std::generic_category().message(errno);
}

}  // namespace

std::string WriteStl(const StackModel& model, const std::string& name, std::FILE* file) {
    std::uint64_t count = 0;
    for (const LayerModel& layer : model.layers) {
        count += layer.triangles.size();
    }
    if (count > std::numeric_limits<std::uint32_t>::max()) {
        return "the model has more triangles than an STL file can hold: fewer grid columns help, "
               "or a greater tolerance";
    }
    // Readers take files that begin with "solid" for another kind.
    std::array<char, headSize> head{};
    const std::string title = "binary STL, micrometres: " + name;
    std::copy_n(title.begin(), std::min(title.size(), headSize), head.begin());
    ByteList bytes;
    bytes.Add(static_cast<std::uint32_t>(count));
    if (std::fwrite(head.data(), 1, head.size(), file) != head.size()) {
        return WriteFailure();
    }
    constexpr std::size_t pieceSize = std::size_t{1} << 20;
    for (const LayerModel& layer : model.layers) {
        for (const auto& [a, b, c] : layer.triangles) {
            const auto& vertices = layer.vertices;
            bytes.Add(NormalOf(vertices[a], vertices[b], vertices[c]));
            bytes.Add(vertices[a]);
            bytes.Add(vertices[b]);
            bytes.Add(vertices[c]);
            bytes.AddTwoZeros();
            if (bytes.Size() > pieceSize && !bytes.WriteTo(file)) {
                return WriteFailure();
            }
        }
    }
    return bytes.WriteTo(file) ? std::string() : WriteFailure();
}

}  // namespace zelmo
