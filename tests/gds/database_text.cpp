#include "tests/gds/database_text.h"

#include <fmt/format.h>

#include <iterator>
#include <string_view>

namespace zelmo {

namespace {

struct Text {
    std::string text;

    template <typename... Values>
    void Add(std::string_view format, const Values&... values) {
        fmt::format_to(std::back_inserter(text), fmt::runtime(format), values...);
    }
    void AddName(std::string_view name) {
        for (const char letter : name) {
            Add(" {:02x}", static_cast<unsigned char>(letter));
        }
    }
    template <typename Points>
    void AddPoints(const Points& points) {
        for (const GdsPoint point : points) {
            Add(" {},{}", point.x, point.y);
        }
        Add("\n");
    }
    void AddBox(const GdsRect& box) {
        Add(" [{} {} {} {}]", box.xmin, box.ymin, box.xmax, box.ymax);
    }
    template <typename Reference>
    void AddReference(const GdsDatabase& database, const Reference& reference) {
        Add(" {} {} {}", reference.strans, reference.angle, reference.mag);
        AddName(reference.name);
        Add(" > {}", reference.cell == nullptr ? -1 : reference.cell - database.cells.begin());
    }
};

/// Texts, what was passed, and the end.
void AddRest(Text& text, const GdsDatabase& database) {
    for (const CellTexts& texts : database.texts) {
        text.Add("texts of {}\n", texts.cell);
        for (const GdsText& each : texts.texts) {
            text.Add("{}/{} {} {},{}", each.layer, each.texttype, each.placed, each.origin.x,
                     each.origin.y);
            text.AddName(each.string);
            text.Add("\n");
        }
    }
    text.Add("passed {} {} {}\n", database.skipped.texts, database.skipped.nodes,
             database.skipped.boxes);
    text.Add("end {} {} {}", database.end.seen, database.end.bytes, database.end.inCell);
    text.AddName(database.end.cell);
}

}  // namespace

std::string TextOf(const GdsDatabase& database) {
    Text text;
    text.Add("{} {} {} {}\n", database.version, database.userUnit, database.metresPerUnit,
             database.micronsPerUnit);
    for (const GdsCell& cell : database.cells) {
        text.Add("cell {}", cell.boundsValid);
        text.AddName(cell.name);
        text.AddBox(cell.bounds);
        text.Add("\n");
        for (const GdsBoundary& boundary : cell.boundaries) {
            text.Add("boundary {}/{}", boundary.layer, boundary.datatype);
            text.AddBox(boundary.bounds);
            text.AddPoints(boundary.points);
        }
        for (const GdsSref& sref : cell.srefs) {
            text.Add("sref");
            text.AddReference(database, sref);
            text.Add(" {},{}\n", sref.origin.x, sref.origin.y);
        }
        for (const GdsAref& aref : cell.arefs) {
            text.Add("aref {} {}", aref.columns, aref.rows);
            text.AddReference(database, aref);
            text.AddPoints(aref.points);
        }
    }
    AddRest(text, database);
    return text.text;
}

}  // namespace zelmo
