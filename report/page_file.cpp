#include "report/page_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/base64.h"
#include "base/sha256.h"
#include "base/xml_text.h"
#include "report/page.h"
#include "report/page_bundle.h"
#include "report/page_json.h"

namespace zelmo {

namespace {

/// What a content policy knows a script or a style by.
std::string SourceDigest(const std::string& text) {
    Sha256 hash;
    hash.Add({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    return "sha256-" + Base64(hash.DigestBytes());
}

/// Everything in front of the data. Nothing is loaded from anywhere, and no script runs but the
/// page's own.
std::string PageHead(const Page& page, const PageBundle& bundle) {
    return fmt::format(
        "<!DOCTYPE html>\n"
        "<html lang=\"en\">\n"
        "<head>\n"
        "<meta charset=\"utf-8\">\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
        "script-src '{}'; style-src '{}'; img-src data: blob:; base-uri 'none'; "
        "form-action 'none'\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<title>{}</title>\n"
        "<style>{}</style>\n"
        "</head>\n"
        "<body>\n"
        "<noscript>This page shows its steps with JavaScript, which is switched off.</noscript>\n",
        SourceDigest(bundle.script), SourceDigest(bundle.style), XmlText(page.title), bundle.style);
}

class TextWriter {
public:
    explicit TextWriter(std::FILE* file) : file_(file) {}

    void Write(std::string_view text) {
        if (reason_.empty() && std::fwrite(text.data(), 1, text.size(), file_) != text.size()) {
            reason_ = std::generic_category().message(errno);
        }
    }

    /// Pieces at a time, so that the text is never in memory as a whole.
    void WriteBase64(std::span<const std::span<const std::uint8_t>> pieces) {
        constexpr std::size_t most = std::size_t{1} << 16;
        Base64Encoder encoder;
        std::string text;
        for (std::span<const std::uint8_t> piece : pieces) {
            while (!piece.empty()) {
                const std::size_t count = std::min(piece.size(), most);
                encoder.Add(piece.first(count), text);
                piece = piece.subspan(count);
                Write(text);
                text.clear();
            }
        }
        encoder.End(text);
        Write(text);
    }

    std::string TakeReason() { return std::move(reason_); }

private:
    std::FILE* file_;
    std::string reason_;
};

}  // namespace

std::string WritePage(const Page& page, const PageBundle& bundle, std::FILE* file) {
    PageData data;
    const std::string json = PageJson(page, data);
    TextWriter writer(file);
    writer.Write(PageHead(page, bundle));
    writer.Write("<script type=\"application/json\" id=\"run\">");
    writer.Write(json);
    writer.Write("</script>\n<script type=\"text/plain\" id=\"data\">");
    writer.WriteBase64(data.Pieces());
    writer.Write("</script>\n<script>");
    writer.Write(bundle.script);
    writer.Write("</script>\n</body>\n</html>\n");
    return writer.TakeReason();
}

}  // namespace zelmo
