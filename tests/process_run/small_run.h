#pragma once

#include <memory>

#include "model/process_model.h"

namespace zelmo {

/// A substrate, a film, a photo on layer 3 and an etch.
inline std::unique_ptr<ProcessModel> MakeRun() {
    auto model = std::make_unique<ProcessModel>();
    model->settings.windowWidth = 4.0f;
    model->settings.windowHeight = 4.0f;
    model->grid.columns = 12;
    model->grid.rows = 12;
    model->steps.resize(4);
    model->steps[0].kind = StepKind::Substrate;
    model->steps[1].kind = StepKind::Deposition;
    model->steps[1].thickness = 0.5f;
    model->steps[2].kind = StepKind::Photo;
    model->steps[2].mask = {{3, std::nullopt}};
    model->steps[3].kind = StepKind::Etch;
    model->polygons.resize(2);
    model->polygons[0].layer = 3;
    model->polygons[0].points = {{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}};
    model->polygons[1].layer = 4;
    return model;
}

}  // namespace zelmo
