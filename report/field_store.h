#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "report/field_coding.h"
#include "report/page_grid.h"
#include "results/layer_facts.h"

namespace zelmo {

struct Layer;
struct Stack;
struct SurfaceVersion;

/// The fields that came with one step, as a stream of zlib.
struct PageChunk {
    std::vector<std::uint8_t> stream;
    std::vector<std::int32_t> bases;  ///< for each field an earlier one, or -1
};

/// A layer of a step and the numbers of the fields that are its surfaces. Fields are numbered over
/// all chunks in their order.
struct PageLayer {
    LayerFacts facts;
    std::int32_t top = 0;
    std::int32_t bottom = 0;
};

/// What a page has of a stack.
struct PageStack {
    std::vector<PageLayer> layers;  ///< the lowest first
    std::int32_t chunk = -1;        ///< with the fields that are new; -1: there are none
};

/// Keeps the surfaces of the stacks of a run, small: each once, as what differs from another.
class FieldStore {
public:
    explicit FieldStore(PageGrid grid) : grid_(std::move(grid)) {}

    /// Takes the next stack, of a grid with so many columns.
    PageStack Take(const Stack& stack, std::int32_t columns);

    /// Forgets all stacks but the first ones: what is taken next is coded as if the others had
    /// never been.
    void KeepFirst(std::size_t stackCount);

    const std::vector<PageChunk>& Chunks() const { return chunks_; }

private:
    /// A field in the memory: fields of the last stack and of the present one are.
    struct KnownField {
        std::uint64_t hash = 0;
        Field field;
    };
    /// The surfaces of a layer that the last stack had in this slot.
    struct KnownLayer {
        std::shared_ptr<const SurfaceVersion> version;
        std::int32_t top = 0;
        std::int32_t bottom = 0;
    };
    /// What is taken of the present stack.
    struct Taking;

    void TakeLayer(const Layer& layer, Taking& taking);
    std::int32_t TakeSurface(const SharedArray<float>& surface, Taking& taking);
    std::int32_t FindBase(const Field& field) const;
    void Replay(const PageChunk& chunk);
    void ForgetAllBut(const std::vector<std::int32_t>& fields);

    PageGrid grid_;
    std::vector<PageChunk> chunks_;
    std::map<std::int32_t, KnownField> known_;  ///< by the field's number
    std::vector<KnownLayer> layers_;            ///< by slot
    struct TakenStack {
        std::int32_t chunk = -1;
        std::vector<std::int32_t> fields;  ///< those that it has
    };
    std::vector<TakenStack> taken_;
    std::int32_t fieldCount_ = 0;
};

}  // namespace zelmo
