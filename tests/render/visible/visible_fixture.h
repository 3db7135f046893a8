#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "render/visible/visible_triangles.h"
#include "tests/render/gl_test.h"
#include "tests/render/made_stack.h"

namespace zelmo {

constexpr HidingRules noRule{false, false, false, false};

/// Draws stacks with and without what the rules leave out: the bytes are to be the same.
class VisibleTest : public ::testing::Test {
protected:
    /// The rules that `ExpectSamePicture` and `CountDrawn` choose by.
    explicit VisibleTest(const HidingRules& rules = {}) : rules_(rules) {}

    /// Draws a model by the rules and with whole meshes.
    void ExpectSamePicture(ProcessModel& model, int width);
    void ExpectSamePicture(ProcessModel& model, int width, const HidingRules& rules);

    /// How many triangles are drawn of a model by the rules.
    std::size_t CountDrawn(ProcessModel& model, int width);
    std::size_t CountDrawn(ProcessModel& model, int width, const HidingRules& rules);

    /// How many triangles its meshes have.
    std::size_t CountAll(ProcessModel& model);

    /// Settles and uploads the stack; returns the picture's camera.
    Camera Prepare(ProcessModel& model);

    /// Films of these thicknesses in micrometres over a flat window of 10 micrometres.
    static std::unique_ptr<ProcessModel> MakeFilms(const std::vector<float>& thicknesses);

private:
    Pixels Draw(const ProcessModel& model, const Camera& camera, int width,
                const std::optional<HidingRules>& rules);

    HidingRules rules_;
    TestTools tools_;
    StackUploads uploads_;
};

/// So many squares has the window of MakeFilms, along x and along y.
constexpr std::size_t filmSquares = 101;
/// So many triangles has a sheet of a film.
constexpr std::size_t sheetTriangles = 2 * filmSquares * filmSquares;

}  // namespace zelmo
