#include "process_run/load_layout.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <string>

#include "base/clock.h"
#include "base/log_console.h"
#include "base/text.h"
#include "gds/gds_database.h"
#include "gds/gds_reader.h"

namespace zelmo {

LayoutLoad LoadLayout(const std::filesystem::path& path, LogConsole* console,
                      const LayoutOptions& options) {
    console->Write(
        fmt::format(L"Loading GDS database {} and calculating cell sizes", PathText(path)));
    LayoutLoad load;
    load.database = std::make_unique<GdsDatabase>();
    const std::int32_t start = ElapsedMilliseconds();
    load.error = ReadGdsFile(*load.database, path, console, options);
    if (load.error) {
        console->Write(fmt::format("Loading GDS database failed with error {}",
                                   LayoutErrorCode(load.error->kind)));
        load.database.reset();
        return load;
    }
    console->Write(std::wstring());
    const float seconds = static_cast<float>(ElapsedMilliseconds() - start) / 1000.0f;
    console->Write(fmt::format("GDS database finished loading in {:.3f} s", seconds));
    return load;
}

}  // namespace zelmo
