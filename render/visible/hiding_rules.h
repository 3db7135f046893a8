#pragma once

namespace zelmo {

/// Why a triangle may be left out of a picture. All of them hold; a test or a measurement may
/// switch one off.
struct HidingRules {
    /// It is of a lower sheet and the upper sheet of an earlier layer lies exactly on it: the depth
    /// test refuses it.
    bool standing = true;
    /// It lies inside an opaque layer, with its surroundings and deep enough, and no translucent
    /// layer stands between the two in the stack: from there every way to the eye passes one of
    /// that layer's own sheets or its front wall.
    bool buried = true;
    /// It lies in the shadow that an opaque layer casts away from the eye.
    bool shadowed = true;
    /// It covers the centre of no pixel.
    bool betweenPixels = true;
};

}  // namespace zelmo
