#include "gds/text_places.h"

#include <span>

#include "gds/array_lattice.h"
#include "gds/cell_order.h"
#include "gds/placed_boxes.h"
#include "gds/placement.h"

namespace zelmo {

namespace {

/// A walk down to the chosen texts, on a stack of its own. Cells without such are passed by, so
/// that every cell that is entered leads to one.
class TextWalk {
public:
    TextWalk(const GdsDatabase& database, std::size_t limit,
             const std::function<bool(const GdsText&)>& isChosen)
        : database_(database), limit_(limit), isChosen_(isChosen), own_(database.cells.size()) {
        const CellOrder order = OrderCells(database);
        for (const CellTexts& texts : database.texts) {
            own_[texts.cell] = texts.texts;
        }
        FindCellsWithTexts(order);
    }

    std::vector<PlacedText> From(std::size_t start) {
        Enter(start, {});
        while (!path_.empty() && found_.size() < limit_) {
            Visit& visit = path_.back();
            const GdsCell& cell = database_.cells[visit.cell];
            if (visit.next == cell.srefs.size() + cell.arefs.size()) {
                path_.pop_back();
            } else if (visit.next < cell.srefs.size()) {
                const GdsSref& sref = cell.srefs[visit.next++];
                Follow(sref, sref.origin, visit);
            } else {
                FollowArray(cell.arefs[visit.next - cell.srefs.size()], visit);
            }
        }
        return std::move(found_);
    }

private:
    struct Visit {
        std::size_t cell;
        GdsTransform transform;
        LinearPart linear;
        std::size_t next = 0;        ///< the reference to follow next: srefs, then arefs
        std::uint64_t instance = 0;  ///< of an array, column by column
    };

    std::size_t NumberOf(const GdsCell* cell) const {
        return static_cast<std::size_t>(cell - database_.cells.begin());
    }

    void FindCellsWithTexts(const CellOrder& order) {
        hasTexts_.resize(database_.cells.size(), false);
        for (const std::size_t number : order.childrenFirst) {
            bool has = false;
            for (const GdsText& text : own_[number]) {
                has = has || (text.placed && isChosen_(text));
            }
            for (const GdsSref& sref : database_.cells[number].srefs) {
                has = has || LeadsToText(sref.cell);
            }
            for (const GdsAref& aref : database_.cells[number].arefs) {
                has = has || (InstancesOf(aref) != 0 && LeadsToText(aref.cell));
            }
            hasTexts_[number] = has;
        }
    }

    bool LeadsToText(const GdsCell* cell) const {
        return cell != nullptr && hasTexts_[NumberOf(cell)];
    }

    void Enter(std::size_t cell, const GdsTransform& transform) {
        const LinearPart linear = LinearPartOf(transform);
        for (const GdsText& text : own_[cell]) {
            if (text.placed && found_.size() < limit_ && isChosen_(text)) {
                found_.push_back({text.layer, text.texttype,
                                  PlacePoint(text.origin, transform, linear),
                                  NameText(text.string)});
            }
        }
        path_.push_back({cell, transform, linear});
    }

    /// `visit` is the last of the path, and may be somewhere else afterwards.
    template <typename Reference>
    void Follow(const Reference& reference, GdsPoint origin, const Visit& visit) {
        if (LeadsToText(reference.cell)) {
            Enter(NumberOf(reference.cell),
                  PlaceChild(origin, reference.mag, reference.angle, reference.strans,
                             visit.transform, visit.linear));
        }
    }

    void FollowArray(const GdsAref& aref, Visit& visit) {
        if (!LeadsToText(aref.cell) || visit.instance == InstancesOf(aref)) {
            visit.instance = 0;
            ++visit.next;
            return;
        }
        const auto rows = static_cast<std::uint64_t>(aref.rows);
        const std::uint64_t instance = visit.instance++;
        Follow(aref,
               InstancePosition(LatticeOf(aref), PositionRule::Truncate64,
                                static_cast<std::int32_t>(instance / rows),
                                static_cast<std::int32_t>(instance % rows)),
               visit);
    }

    const GdsDatabase& database_;
    std::size_t limit_;
    const std::function<bool(const GdsText&)>& isChosen_;
    std::vector<std::span<const GdsText>> own_;
    std::vector<bool> hasTexts_;
    std::vector<Visit> path_;
    std::vector<PlacedText> found_;
};

}  // namespace

std::vector<PlacedText> FindTexts(const GdsDatabase& database, std::size_t cell,
                                  std::size_t limit) {
    return FindTexts(database, cell, limit, [](const GdsText&) { return true; });
}

std::vector<PlacedText> FindTexts(const GdsDatabase& database, std::size_t cell, std::size_t limit,
                                  const std::function<bool(const GdsText&)>& isChosen) {
    return TextWalk(database, limit, isChosen).From(cell);
}

}  // namespace zelmo
