#pragma once

namespace zelmo {

/// The files that pictures can be written as.
enum class PictureFormat { Png, Bmp };

}  // namespace zelmo
