#pragma once

#include <string>

#include "render/slide/slide_layout.h"

namespace zelmo {

class SlideCanvas;
struct HeightMarkers;
struct PictureCamera;
struct ProcessModel;
struct Stack;

/// What is laid over the stack on a picture for a slide.
struct SlideContents {
    const ProcessModel& model;
    const Stack& stack;             ///< as it is drawn
    const HeightMarkers& drawn;     ///< on that stack
    const HeightMarkers& measured;  ///< on the model's
    const PictureCamera& camera;
    Vector3 box{};       ///< the window and the top, in micrometres
    std::string title;   ///< empty: none
    std::string remark;  ///< the same
    bool hasBars = false;
};

/// The marks of the heights, which the stack may hide. To be drawn before everything else.
void DrawSlideMarks(SlideCanvas& canvas, const SlideLayout& layout, const SlideContents& contents);

/// Labels, bars, legend and texts, which nothing hides.
void DrawSlideOverlays(SlideCanvas& canvas, const SlideLayout& layout,
                       const SlideContents& contents);

}  // namespace zelmo
