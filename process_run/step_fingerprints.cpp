#include "process_run/step_fingerprints.h"

#include <bit>
#include <concepts>
#include <span>
#include <string>
#include <type_traits>

#include "base/sha256.h"
#include "base/version.h"
#include "model/process_model.h"

namespace zelmo {

namespace {

/// Takes values so that different ones never give the same bytes, and equal ones always do.
class ValueHash {
public:
    template <typename T>
    void Add(T value) requires std::integral<T> || std::is_enum_v<T> {
        AddNumber(static_cast<std::uint64_t>(value));
    }
    void Add(double value) {
        const double plain = value == 0.0 ? 0.0 : value;  // the two zeros are equal
        AddNumber(std::bit_cast<std::uint64_t>(plain));
    }
    void Add(float value) { Add(static_cast<double>(value)); }
    void Add(const std::string& text) {
        Add(text.size());
        AddBytes({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    }
    void Add(const MaskLayer& layer) {
        Add(layer.layer);
        Add(layer.datatype.has_value());
        Add(layer.datatype.value_or(0));
    }
    void Add(const MaskAdjustment& adjustment) {
        const auto& [bias, shiftX, shiftY] = adjustment;
        AddAll(bias, shiftX, shiftY);
    }
    void Add(const MaskPoint& point) {
        const auto& [x, y] = point;
        AddAll(x, y);
    }
    void Add(const MaskPolygon& polygon) {
        const auto& [points, layer, datatype, minX, minY, maxX, maxY] = polygon;
        AddAll(points, layer, datatype, minX, minY, maxX, maxY);
    }
    template <typename T, std::size_t count>
    void Add(const std::array<T, count>& values) {
        AddRange(values);
    }
    template <typename T>
    void Add(const std::vector<T>& values) {
        Add(values.size());
        AddRange(values);
    }

    template <typename... Values>
    void AddAll(const Values&... values) {
        (Add(values), ...);
    }

    void AddBytes(std::span<const std::uint8_t> bytes) { hash_.Add(bytes); }

    Fingerprint Take() { return hash_.DigestBytes(); }

private:
    /// The least byte first on every machine.
    void AddNumber(std::uint64_t value) {
        std::array<std::uint8_t, 8> bytes{};
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(value);
            value >>= 8;
        }
        AddBytes(bytes);
    }
    template <typename Values>
    void AddRange(const Values& values) {
        for (const auto& value : values) {
            Add(value);
        }
    }

    Sha256 hash_;
};

/// Of what all stacks of a run come from.
Fingerprint GridFingerprint(const ProcessModel& model) {
    const Grid& grid = model.grid;
    ValueHash hash;
    hash.Add(std::string(programVersion));
    hash.AddAll(grid.columns, grid.rows, grid.spacing, grid.width, grid.height, grid.originX,
                grid.originY, grid.marginX, grid.marginY, model.settings.windowWidth,
                model.settings.windowHeight);
    return hash.Take();
}

/// All of a step but for its line: other lines above do not change what it does.
void AddStep(ValueHash& hash, const ProcessStep& step) {
    const auto& [maskDark, kind, line, alpha, color, depth, dop, iso, resistRate, res, stepCoverage,
                 taper, thickness, level, polishesToStop, mask, adjustment, label, photoName,
                 material, materialType, description, processName, result, targets] = step;
    hash.AddAll(maskDark, kind, alpha, color, depth, dop, iso, resistRate, res, stepCoverage, taper,
                thickness, level, polishesToStop, mask, adjustment, label, photoName, material,
                materialType, description, processName, result, targets);
}

void AddMaskPolygons(ValueHash& hash, const ProcessModel& model, const ProcessStep& step) {
    for (const MaskPolygon& polygon : model.polygons) {
        if (IsPartOf(step.mask, polygon.layer, polygon.datatype)) {
            hash.Add(true);
            hash.Add(polygon);
        }
    }
    hash.Add(false);
}

}  // namespace

std::vector<Fingerprint> StepFingerprints(const ProcessModel& model) {
    std::vector<Fingerprint> fingerprints;
    Fingerprint last = GridFingerprint(model);
    for (const ProcessStep& step : model.steps) {
        ValueHash hash;
        hash.Add(last);
        AddStep(hash, step);
        if (step.kind == StepKind::Photo) {
            AddMaskPolygons(hash, model, step);
        }
        last = hash.Take();
        fingerprints.push_back(last);
    }
    return fingerprints;
}

}  // namespace zelmo
