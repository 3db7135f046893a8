#include "report/field_store.h"

#include <algorithm>
#include <utility>

#include "model/stack.h"
#include "report/zlib_stream.h"

namespace zelmo {

namespace {

/// Tells most fields that differ apart (FNV-1a, by whole numbers).
std::uint64_t HashOf(const Field& field) {
    std::uint64_t hash = 14695981039346656037U;
    for (const std::int32_t value : field) {
        hash = (hash ^ static_cast<std::uint32_t>(value)) * 1099511628211U;
    }
    return hash;
}

}  // namespace

struct FieldStore::Taking {
    std::int32_t columns = 0;  ///< of the grid
    /// Surfaces of this stack, by where they lie in memory, and their fields.
    std::map<const float*, std::int32_t> surfaces;
    std::vector<std::int32_t> bases;   ///< of new fields
    std::vector<std::uint8_t> planes;  ///< their bytes
    KnownLayer layer;                  ///< that was taken last
};

PageStack FieldStore::Take(const Stack& stack, std::int32_t columns) {
    Taking taking;
    taking.columns = columns;
    PageStack taken;
    TakenStack fields;
    layers_.resize(stack.layers.size());
    for (std::size_t slot = 0; slot < stack.layers.size(); ++slot) {
        if (stack.layers[slot] == nullptr) {
            layers_[slot] = {};
            continue;
        }
        taking.layer = layers_[slot];
        TakeLayer(*stack.layers[slot], taking);
        layers_[slot] = taking.layer;
        taken.layers.push_back({FactsOf(stack, slot), taking.layer.top, taking.layer.bottom});
        fields.fields.push_back(taking.layer.top);
        fields.fields.push_back(taking.layer.bottom);
    }
    if (!taking.bases.empty()) {
        taken.chunk = static_cast<std::int32_t>(chunks_.size());
        chunks_.push_back({Deflate(taking.planes), std::move(taking.bases)});
    }
    ForgetAllBut(fields.fields);
    fields.chunk = taken.chunk;
    taken_.push_back(std::move(fields));
    return taken;
}

/// Finds or makes the fields of a layer whose slot had `taking.layer` in the last stack.
void FieldStore::TakeLayer(const Layer& layer, Taking& taking) {
    if (layer.version != nullptr && layer.version == taking.layer.version) {
        taking.surfaces.try_emplace(layer.top.data(), taking.layer.top);
        taking.surfaces.try_emplace(layer.bottom.data(), taking.layer.bottom);
        return;
    }
    const std::int32_t bottom = TakeSurface(layer.bottom, taking);
    taking.layer = {layer.version, TakeSurface(layer.top, taking), bottom};
}

std::int32_t FieldStore::TakeSurface(const SharedArray<float>& surface, Taking& taking) {
    if (const auto found = taking.surfaces.find(surface.data()); found != taking.surfaces.end()) {
        return found->second;
    }
    Field field = TakeField(surface, taking.columns, grid_);
    const std::uint64_t hash = HashOf(field);
    const auto isSame = [&](const auto& known) {
        return known.second.hash == hash && known.second.field == field;
    };
    const auto same = std::find_if(known_.begin(), known_.end(), isSame);
    if (same != known_.end()) {
        return taking.surfaces[surface.data()] = same->first;
    }
    const std::int32_t base = FindBase(field);
    const std::vector<std::uint8_t> planes =
        PlanesOf(field, base < 0 ? nullptr : &known_.at(base).field, grid_.cols.size());
    taking.planes.insert(taking.planes.end(), planes.begin(), planes.end());
    taking.bases.push_back(base);
    known_[fieldCount_] = {hash, std::move(field)};
    taking.surfaces[surface.data()] = fieldCount_;
    return fieldCount_++;
}

/// The known field from which this one is told in the fewest bits; -1 where it is best told by
/// itself.
std::int32_t FieldStore::FindBase(const Field& field) const {
    std::int32_t best = -1;
    std::uint64_t least = CodingCost(field, nullptr, grid_.cols.size());
    for (const auto& [number, known] : known_) {
        const std::uint64_t cost = CodingCost(field, &known.field, grid_.cols.size());
        if (cost < least) {
            least = cost;
            best = number;
        }
    }
    return best;
}

void FieldStore::KeepFirst(std::size_t stackCount) {
    if (stackCount >= taken_.size()) {
        return;
    }
    taken_.resize(stackCount);
    layers_.clear();
    known_.clear();
    fieldCount_ = 0;
    std::size_t chunkCount = 0;
    for (const TakenStack& stack : taken_) {
        if (stack.chunk >= 0) {
            Replay(chunks_[chunkCount++]);
        }
        ForgetAllBut(stack.fields);
    }
    chunks_.resize(chunkCount);
}

/// Reads the fields of a chunk into the memory.
void FieldStore::Replay(const PageChunk& chunk) {
    const std::size_t size = grid_.CellCount() * sizeof(std::int32_t);
    const std::vector<std::uint8_t> planes = Inflate(chunk.stream, chunk.bases.size() * size);
    for (std::size_t i = 0; i < chunk.bases.size(); ++i) {
        const Field* const base = chunk.bases[i] < 0 ? nullptr : &known_.at(chunk.bases[i]).field;
        Field field = FieldOf(std::span(planes).subspan(i * size, size), base, grid_.cols.size());
        const std::uint64_t hash = HashOf(field);
        known_[fieldCount_++] = {hash, std::move(field)};
    }
}

void FieldStore::ForgetAllBut(const std::vector<std::int32_t>& fields) {
    std::erase_if(known_, [&](const auto& known) {
        return std::find(fields.begin(), fields.end(), known.first) == fields.end();
    });
}

}  // namespace zelmo
