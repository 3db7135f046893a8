#pragma once

#include <cstdint>
#include <string>

namespace zelmo {

/// A framebuffer with colour and depth that is no window's. Bound when it has been made; whether
/// the driver can draw into one of this size is not looked at.
class OffscreenBuffer {
public:
    OffscreenBuffer(std::int32_t width, std::int32_t height);
    ~OffscreenBuffer();
    OffscreenBuffer(const OffscreenBuffer&) = delete;
    OffscreenBuffer& operator=(const OffscreenBuffer&) = delete;

    /// Why nothing can be drawn into the buffer, which must be bound; empty if it can.
    std::string Problem() const;

private:
    std::uint32_t framebuffer_ = 0;
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::uint32_t colorBuffer_ = 0;
    std::uint32_t depthBuffer_ = 0;
};

}  // namespace zelmo
