#include "gds/record_rules.h"

#include <array>
#include <cstddef>

#include "gds/record_codes.h"
#include "gds/record_handlers.h"

namespace zelmo {

namespace {

using ElementSet = unsigned;

template <typename... Elements>
constexpr ElementSet Set(Elements... elements) {
    return ((1u << static_cast<unsigned>(elements)) | ...);
}

constexpr ElementSet none = Set(Element::None);
constexpr ElementSet polygons = Set(Element::Boundary, Element::Path);
constexpr ElementSet references = Set(Element::Sref, Element::Aref);
constexpr ElementSet text = Set(Element::Text);
constexpr ElementSet open = polygons | references | Set(Element::Text, Element::Node, Element::Box);
constexpr ElementSet any = none | open;

/// On which side of the borders of structures.
enum class Side { Either, Inside, Outside };

/// A record is accepted while one of `elements` is open, on this side of a structure's borders.
/// Otherwise it is refused for the reason given; those that are accepted everywhere have none.
struct RecordRule {
    std::uint16_t code = 0;
    ElementSet elements{};
    Side side = Side::Either;
    Refusal refusal{};
    Refusal (*handle)(LibraryState&, const StreamRecord&) = nullptr;
};

using enum LayoutErrorKind;

/// Records that are not here are skipped.
constexpr std::array recordRules = {
    RecordRule{record::header, any, Side::Either, accepted, ReadHeader},
    RecordRule{record::units, any, Side::Either, accepted, ReadUnits},
    RecordRule{record::endlib, any, Side::Either, accepted, EndLibrary},
    RecordRule{record::bgnstr, any, Side::Outside, NestedStructure, BeginStructure},
    RecordRule{record::strname, any, Side::Inside, StrayStructureName, ReadStructureName},
    RecordRule{record::endstr, any, Side::Inside, StrayStructureEnd, EndStructure},
    RecordRule{record::boundary, none, Side::Inside, StrayBoundary,
               BeginElement<Element::Boundary>},
    RecordRule{record::path, none, Side::Inside, StrayPath, BeginElement<Element::Path>},
    RecordRule{record::sref, none, Side::Inside, StrayReference, BeginElement<Element::Sref>},
    RecordRule{record::aref, none, Side::Inside, StrayArray, BeginElement<Element::Aref>},
    RecordRule{record::text, none, Side::Inside, StrayText, BeginElement<Element::Text>},
    RecordRule{record::node, none, Side::Inside, StrayNode, BeginElement<Element::Node>},
    RecordRule{record::box, none, Side::Inside, StrayBox, BeginElement<Element::Box>},
    RecordRule{record::layer, open & ~references, Side::Either, StrayLayer, ReadLayer},
    RecordRule{record::datatype, any, Side::Either, accepted, ReadDatatype},
    RecordRule{record::texttype, any, Side::Either, accepted, ReadTextType},
    RecordRule{record::string, any, Side::Either, accepted, ReadString},
    RecordRule{record::width, Set(Element::Path) | text, Side::Either, StrayWidth, ReadWidth},
    RecordRule{record::pathtype, Set(Element::Path), Side::Either, StrayPathType, ReadPathType},
    RecordRule{record::bgnextn, any, Side::Either, accepted, ReadStartExtension},
    RecordRule{record::endextn, any, Side::Either, accepted, ReadEndExtension},
    RecordRule{record::xy, open, Side::Either, BadPoints, ReadPoints},
    RecordRule{record::sname, references, Side::Either, StrayReferenceName, ReadReferenceName},
    RecordRule{record::colrow, Set(Element::Aref), Side::Either, StrayColumnsAndRows,
               ReadColumnsAndRows},
    RecordRule{record::strans, references | text, Side::Either, StrayTransformFlags,
               ReadTransformFlags},
    RecordRule{record::mag, references | text, Side::Either, StrayMagnification, ReadMagnification},
    RecordRule{record::angle, references | text, Side::Either, StrayAngle, ReadAngle},
    RecordRule{record::endel, open, Side::Inside, StrayElementEnd, EndElement},
};

/// For each record type, the high byte of the codes, the number of its rule counted from 1, or 0.
constexpr std::array<std::uint8_t, 256> ruleNumbers = [] {
    std::array<std::uint8_t, 256> numbers = {};
    for (std::size_t i = 0; i < recordRules.size(); ++i) {
        numbers[recordRules[i].code >> 8] = static_cast<std::uint8_t>(i + 1);
    }
    return numbers;
}();

bool IsAccepted(const RecordRule& rule, const LibraryState& state) {
    const bool elementFits = (rule.elements & Set(state.open.kind)) != 0;
    const bool sideFits =
        rule.side == Side::Either || (rule.side == Side::Inside) == state.inStructure;
    return elementFits && sideFits;
}

}  // namespace

std::optional<LayoutErrorKind> HandleRecord(LibraryState& state, const StreamRecord& record) {
    const std::size_t number = ruleNumbers[record.code >> 8];
    if (number == 0 || recordRules[number - 1].code != record.code) {
        return accepted;
    }
    const RecordRule& rule = recordRules[number - 1];
    return IsAccepted(rule, state) ? rule.handle(state, record) : rule.refusal;
}

}  // namespace zelmo
