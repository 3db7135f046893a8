#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace zelmo {

struct Page;

/// The bytes of a page one after the other, which its JSON refers to by place and length. They are
/// not copied.
class PageData {
public:
    struct Place {
        std::size_t offset = 0;
        std::size_t length = 0;
    };
    Place Add(std::span<const std::uint8_t> bytes);

    const std::vector<std::span<const std::uint8_t>>& Pieces() const { return pieces_; }

private:
    std::vector<std::span<const std::uint8_t>> pieces_;
    std::size_t size_ = 0;
};

/// What a page tells, as JSON in ASCII alone, without the characters that mean something to HTML;
/// `data` gets the bytes (docs/report-format.md).
std::string PageJson(const Page& page, PageData& data);

}  // namespace zelmo
