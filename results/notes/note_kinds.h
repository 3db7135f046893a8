#pragma once

#include <string_view>

// The kinds of note. Their names are what users allow by, and stay.

namespace zelmo::note_kind {

// The layout
inline constexpr std::string_view layoutFormat = "layout-format";
inline constexpr std::string_view filesSwapped = "files-swapped";
inline constexpr std::string_view layoutCut = "layout-cut";
inline constexpr std::string_view layoutEmpty = "layout-empty";
inline constexpr std::string_view cellTwice = "cell-twice";

// The lines of the process file
inline constexpr std::string_view misspelt = "misspelt";
inline constexpr std::string_view remark = "remark";
inline constexpr std::string_view tab = "tab";
inline constexpr std::string_view numberTail = "number-tail";
inline constexpr std::string_view argumentTwice = "argument-twice";
inline constexpr std::string_view argumentInWord = "argument-in-word";
inline constexpr std::string_view noType = "no-type";
inline constexpr std::string_view taper = "taper";

// The process on the layout, before it is run
inline constexpr std::string_view windowOutside = "window-outside";
inline constexpr std::string_view windowCorner = "window-corner";
inline constexpr std::string_view windowSquare = "window-square";
inline constexpr std::string_view unit = "unit";
inline constexpr std::string_view maskEmpty = "mask-empty";
inline constexpr std::string_view polygonsSkipped = "polygons-skipped";
inline constexpr std::string_view resFine = "res-fine";
inline constexpr std::string_view resCoarse = "res-coarse";
inline constexpr std::string_view thinFilm = "thin-film";
inline constexpr std::string_view resistLeft = "resist-left";

// The steps
inline constexpr std::string_view maskAllOrNone = "mask-all-or-none";
inline constexpr std::string_view resistConsumed = "resist-consumed";
inline constexpr std::string_view nothingRemoved = "nothing-removed";
inline constexpr std::string_view layerGone = "layer-gone";
inline constexpr std::string_view substrateReached = "substrate-reached";
inline constexpr std::string_view nothingShown = "nothing-shown";

}  // namespace zelmo::note_kind

namespace zelmo {

struct NoteKind {
    std::string_view name;
    std::string_view meaning;  ///< in a few words
};

/// All of them, in the order in which a run can tell them.
inline constexpr NoteKind noteKinds[] = {
    {note_kind::layoutFormat, "the layout is no GDSII stream file"},
    {note_kind::filesSwapped, "layout and process file stand in each other's place"},
    {note_kind::layoutCut, "the layout ends before its library does"},
    {note_kind::layoutEmpty, "the layout has no cells, or draws nothing"},
    {note_kind::cellTwice, "the layout has several cells of one name"},
    {note_kind::misspelt, "a word is unknown, and near to one that is known"},
    {note_kind::remark, "words of a line belong to no argument"},
    {note_kind::tab, "a tab stands where only blanks separate words"},
    {note_kind::numberTail, "text stands behind the digits of a number"},
    {note_kind::argumentTwice, "an argument is given twice"},
    {note_kind::argumentInWord, "an argument is found inside another word"},
    {note_kind::noType, "no type follows the argument for targets"},
    {note_kind::taper, "a taper is above the steepest"},
    {note_kind::windowOutside, "the window holds nothing of the cell"},
    {note_kind::windowCorner, "the window holds only a corner of the cell"},
    {note_kind::windowSquare, "a window higher than wide is cut to a square"},
    {note_kind::unit, "a number is of another order than the window"},
    {note_kind::maskEmpty, "a mask has no polygons in the window"},
    {note_kind::polygonsSkipped, "polygons of a mask are too small for the grid"},
    {note_kind::resFine, "a resolution is below two cells of the grid"},
    {note_kind::resCoarse, "a resolution is not below the window's width"},
    {note_kind::thinFilm, "a film is too thin for the picture"},
    {note_kind::resistLeft, "resist is left at the end of the file"},
    {note_kind::maskAllOrNone, "a mask opens all of the window or none of it"},
    {note_kind::resistConsumed, "resist was used up before an etch ended"},
    {note_kind::nothingRemoved, "an etch or release removed nothing"},
    {note_kind::layerGone, "an etch removed all of a layer"},
    {note_kind::substrateReached, "an etch reached the substrate"},
    {note_kind::nothingShown, "nothing shows of a film that was added"},
};

}  // namespace zelmo
