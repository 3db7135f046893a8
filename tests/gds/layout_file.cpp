#include "tests/gds/layout_file.h"

#include "gds/gds_reader.h"
#include "tests/support/recording_console.h"
#include "tests/support/temp_folder.h"

namespace zelmo {

std::span<const GdsPoint> KeepPoints(const std::vector<GdsPoint>& points) {
    static RunPool<GdsPoint> pool;
    return pool.Keep(points);
}

std::string_view KeepName(std::string_view name) {
    static RunPool<char> pool;
    const std::span<const char> kept = pool.Keep(name);
    return {kept.data(), kept.size()};
}

LoadedLayout LoadBytes(const std::vector<std::uint8_t>& bytes, const LayoutOptions& options) {
    const TempFolder folder;
    RecordingConsole console;
    LoadedLayout loaded;
    loaded.error =
        ReadGdsFile(loaded.database, folder.Write("layout.gds", bytes), &console, options);
    loaded.result = CodeOf(loaded.error);
    loaded.lines = console.lines;
    return loaded;
}

}  // namespace zelmo
