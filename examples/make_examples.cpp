// Writes the layouts of the examples into a folder: zelmo-make-examples DIR

#include <cstdio>
#include <exception>
#include <filesystem>

#include "examples/layouts.h"
#include "examples/processes/layouts.h"
#include "examples/studies/layouts.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: zelmo-make-examples DIR\n", stderr);
        return 1;
    }
    try {
        const std::filesystem::path folder = argv[1];
        std::filesystem::create_directories(folder);
        zelmo::CmosInverterLayout().Save(folder / "cmos_inverter.gds");
        zelmo::MicromotorLayout().Save(folder / "mems_release.gds");
        zelmo::CrossbarLayout().Save(folder / "array.gds");
        zelmo::GuideLayout().Save(folder / "guide.gds");
        const std::filesystem::path processes = folder / "processes";
        std::filesystem::create_directories(processes);
        zelmo::Sky130Layout().Save(processes / "sky130.gds");
        zelmo::Gf180mcuLayout().Save(processes / "gf180mcu.gds");
        zelmo::Sg13g2Layout().Save(processes / "sg13g2.gds");
        zelmo::Soi220Layout().Save(processes / "soi220.gds");
        zelmo::MemsThreePolyLayout().Save(processes / "mems_three_poly.gds");
        const std::filesystem::path studies = folder / "studies";
        std::filesystem::create_directories(studies);
        zelmo::SpacerLayout().Save(studies / "spacer.gds");
        zelmo::ContactLayout().Save(studies / "contact.gds");
        zelmo::CoverageLayout().Save(studies / "coverage.gds");
        zelmo::IsolationLayout().Save(studies / "isolation.gds");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zelmo-make-examples: %s\n", error.what());
        return 1;
    }
    return 0;
}
