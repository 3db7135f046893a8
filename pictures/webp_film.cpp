#include "pictures/webp_film.h"

#include <webp/encode.h>
#include <webp/mux.h>

#include <cstddef>
#include <memory>
#include <new>

#include "pictures/webp_picture.h"

namespace zelmo {

namespace {

constexpr float quality = 92.0f;
/// Effort from 0 to 6: those above take longer and save next to nothing.
constexpr int effort = 4;
/// A whole picture at least so often, so that one can go to a place in a film.
constexpr int mostBetweenWholePictures = 16;

struct EncoderCloser {
    void operator()(WebPAnimEncoder* encoder) const { WebPAnimEncoderDelete(encoder); }
};
using Encoder = std::unique_ptr<WebPAnimEncoder, EncoderCloser>;

/// What can go wrong with pictures that fit is that memory runs out.
void Demand(bool condition) {
    if (!condition) {
        throw std::bad_alloc();
    }
}

Encoder MakeEncoder(std::int32_t width, std::int32_t height, const FilmTiming& timing) {
    WebPAnimEncoderOptions options;
    Demand(WebPAnimEncoderOptionsInit(&options) != 0);
    options.anim_params.loop_count = timing.loops;
    options.kmax = mostBetweenWholePictures;
    options.kmin = mostBetweenWholePictures / 2;
    options.allow_mixed = 1;  // what is flat is smaller, and exact, without loss
    Encoder encoder(WebPAnimEncoderNew(width, height, &options));
    Demand(encoder != nullptr);
    return encoder;
}

WebPConfig MakeConfig() {
    WebPConfig config;
    Demand(WebPConfigPreset(&config, WEBP_PRESET_DRAWING, quality) != 0);
    config.method = effort;
    return config;
}

std::vector<std::uint8_t> Assemble(WebPAnimEncoder* encoder) {
    WebPData data;
    WebPDataInit(&data);
    const std::unique_ptr<WebPData, void (*)(WebPData*)> closer(&data, WebPDataClear);
    Demand(WebPAnimEncoderAssemble(encoder, &data) != 0);
    return {data.bytes, data.bytes + data.size};
}

}  // namespace

std::vector<std::uint8_t> WebpFilm(std::int32_t width, std::int32_t height, std::size_t count,
                                   const std::function<StepImage(std::size_t)>& pictureOf,
                                   const FilmTiming& timing) {
    if (count == 0 || !FitsWebp(width, height)) {
        return {};
    }
    const Encoder encoder = MakeEncoder(width, height, timing);
    const WebPConfig config = MakeConfig();
    std::int32_t time = 0;
    for (std::size_t i = 0; i < count; ++i, time += timing.millisecondsEach) {
        WebpPicture picture(pictureOf(i), width, height);
        Demand(WebPAnimEncoderAdd(encoder.get(), picture.Get(), time, &config) != 0);
    }
    Demand(WebPAnimEncoderAdd(encoder.get(), nullptr, time, nullptr) != 0);
    return Assemble(encoder.get());
}

}  // namespace zelmo
