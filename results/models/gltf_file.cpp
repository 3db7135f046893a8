#include <fmt/format.h>
#include <tiny_gltf.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <streambuf>
#include <system_error>
#include <vector>

#include "base/version.h"
#include "results/models/model_files.h"

namespace zelmo {

namespace {

static_assert(std::endian::native == std::endian::little, "glTF's numbers are little-endian");

/// A stream into a C file, as that library writes to streams alone.
class FileBuffer : public std::streambuf {
public:
    explicit FileBuffer(std::FILE* file) : file_(file) {}

protected:
    int_type overflow(int_type character) override {
        return std::fputc(character, file_) == EOF ? traits_type::eof() : character;
    }
    std::streamsize xsputn(const char* text, std::streamsize count) override {
        return static_cast<std::streamsize>(
            std::fwrite(text, 1, static_cast<std::size_t>(count), file_));
    }

private:
    std::FILE* file_;
};

/// The share of light that a colour of a screen, 0 to 1, stands for (sRGB). By basic operations
/// alone, so that it is the same on every platform.
double LinearLight(double color) {
    if (color <= 0.04045) {
        return color / 12.92;
    }
    const double base = (color + 0.055) / 1.055;
    // Its power 2.4 is the fifth root of its power 12, found by Newton's method from above.
    const double square = base * base;
    const double target = square * square * square * square * square * square;
    double root = 1.0;
    constexpr int rounds = 60;
    for (int round = 0; round < rounds; ++round) {
        const double fourth = root * root * root * root;
        root -= (root * fourth - target) / (5.0 * fourth);
    }
    return std::clamp(root, 0.0, 1.0);
}

std::uint64_t BytesOf(const LayerModel& layer) {
    return std::uint64_t{layer.vertices.size()} * sizeof(layer.vertices[0]) +
           std::uint64_t{layer.triangles.size()} * sizeof(layer.triangles[0]);
}

class GltfBuilder {
public:
    explicit GltfBuilder(const std::string& name) {
        gltf_.asset.version = "2.0";
        gltf_.asset.generator = fmt::format("zelmo {}", programVersion);
        gltf_.buffers.resize(1);
        tinygltf::Node root;
        root.name = name;
        // From micrometres to metres, and the z axis to the y axis.
        constexpr double halfRoot = 0.70710678118654752;
        root.rotation = {-halfRoot, 0.0, 0.0, halfRoot};
        root.scale = {1e-6, 1e-6, 1e-6};
        gltf_.nodes.push_back(root);
        tinygltf::Scene scene;
        scene.name = name;
        scene.nodes = {0};
        gltf_.scenes.push_back(scene);
        gltf_.defaultScene = 0;
    }

    void Reserve(std::uint64_t bytes) { gltf_.buffers[0].data.reserve(bytes); }

    void Add(const LayerModel& layer) {
        tinygltf::Primitive primitive;
        primitive.mode = TINYGLTF_MODE_TRIANGLES;
        primitive.attributes["POSITION"] = AddPositions(layer);
        primitive.indices = AddIndices(layer);
        primitive.material = AddMaterial(layer.facts);
        tinygltf::Mesh mesh;
        mesh.name = NameOf(layer.facts);
        mesh.primitives.push_back(primitive);
        gltf_.meshes.push_back(mesh);
        tinygltf::Node node;
        node.name = mesh.name;
        node.mesh = static_cast<int>(gltf_.meshes.size()) - 1;
        node.extras = tinygltf::Value(tinygltf::Value::Object{
            {"label", tinygltf::Value(layer.facts.label)},
            {"material", tinygltf::Value(layer.facts.material)},
            {"number", tinygltf::Value(layer.facts.number)},
        });
        gltf_.nodes[0].children.push_back(static_cast<int>(gltf_.nodes.size()));
        gltf_.nodes.push_back(node);
    }

    const tinygltf::Model& Gltf() const { return gltf_; }

private:
    /// So that names sort as layers lie.
    static std::string NameOf(const LayerFacts& facts) {
        return fmt::format("{:02} {}", facts.number, facts.label);
    }

    template <typename Item>
    int AddView(const std::vector<Item>& items, int target) {
        std::vector<unsigned char>& bytes = gltf_.buffers[0].data;
        tinygltf::BufferView view;
        view.buffer = 0;
        view.byteOffset = bytes.size();
        view.byteLength = items.size() * sizeof(Item);
        view.target = target;
        const auto* const first = reinterpret_cast<const unsigned char*>(items.data());
        bytes.insert(bytes.end(), first, first + view.byteLength);
        gltf_.bufferViews.push_back(view);
        return static_cast<int>(gltf_.bufferViews.size()) - 1;
    }

    int AddPositions(const LayerModel& layer) {
        tinygltf::Accessor accessor;
        accessor.bufferView = AddView(layer.vertices, TINYGLTF_TARGET_ARRAY_BUFFER);
        accessor.componentType = TINYGLTF_COMPONENT_TYPE_FLOAT;
        accessor.type = TINYGLTF_TYPE_VEC3;
        accessor.count = layer.vertices.size();
        std::array<float, 3> low = layer.vertices.front();
        std::array<float, 3> high = low;
        for (const auto& vertex : layer.vertices) {
            for (std::size_t i = 0; i < vertex.size(); ++i) {
                low[i] = std::min(low[i], vertex[i]);
                high[i] = std::max(high[i], vertex[i]);
            }
        }
        accessor.minValues.assign(low.begin(), low.end());
        accessor.maxValues.assign(high.begin(), high.end());
        gltf_.accessors.push_back(accessor);
        return static_cast<int>(gltf_.accessors.size()) - 1;
    }

    int AddIndices(const LayerModel& layer) {
        tinygltf::Accessor accessor;
        accessor.bufferView = AddView(layer.triangles, TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER);
        accessor.componentType = TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT;
        accessor.type = TINYGLTF_TYPE_SCALAR;
        accessor.count = 3 * layer.triangles.size();
        gltf_.accessors.push_back(accessor);
        return static_cast<int>(gltf_.accessors.size()) - 1;
    }

    int AddMaterial(const LayerFacts& facts) {
        tinygltf::Material material;
        material.name = facts.material;
        const auto& [red, green, blue] = facts.color;
        material.pbrMetallicRoughness.baseColorFactor = {LinearLight(red), LinearLight(green),
                                                         LinearLight(blue), facts.alpha};
        material.pbrMetallicRoughness.metallicFactor = 0.0;
        material.pbrMetallicRoughness.roughnessFactor = 0.75;
        material.alphaMode = facts.alpha < 1.0f ? "BLEND" : "OPAQUE";
        gltf_.materials.push_back(material);
        return static_cast<int>(gltf_.materials.size()) - 1;
    }

    tinygltf::Model gltf_;
};

}  // namespace

std::string WriteGlb(const StackModel& model, const std::string& name, std::FILE* file) {
    std::uint64_t bytes = 0;
    for (const LayerModel& layer : model.layers) {
        bytes += BytesOf(layer);
    }
    // Lengths in the file have 32 bits; some are for its head.
    constexpr std::uint64_t longestHead = std::uint64_t{1} << 24;
    if (bytes > std::numeric_limits<std::uint32_t>::max() - longestHead) {
        return "the model is larger than the 4 GiB that a glb file can hold: fewer grid columns "
               "help, or a greater tolerance";
    }
    GltfBuilder builder(name);
    builder.Reserve(bytes);
    for (const LayerModel& layer : model.layers) {
        builder.Add(layer);
    }
    FileBuffer buffer(file);
    std::ostream stream(&buffer);
    tinygltf::TinyGLTF writer;
    errno = 0;
    writer.WriteGltfSceneToStream(&builder.Gltf(), stream, false, true);
    return stream.good() ? std::string() : std::generic_category().message(errno);
}

}  // namespace zelmo
