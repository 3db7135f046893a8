#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "examples/gds_writer.h"
#include "tests/support/gzip_writer.h"

// fuzz_seeds FOLDER: writes what the targets start from, a folder for each.

namespace {

namespace fs = std::filesystem;
using zelmo::GdsWriter;

void Write(const fs::path& file, std::string_view bytes) {
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// Every kind of element and of path, each once.
void WriteElements(const fs::path& folder) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 0, 0, 100, 50);
    writer.Reference("PART", {10, 20}, {true, 0.5, 30.0});
    writer.Array("PART", 3, 2, {0, 0}, {300, 0}, {0, 200}, {false, 1.0, 90.0});
    writer.Record(0x0C00);  // a text
    writer.RecordU16(0x0D02, {2});
    writer.RecordI32(0x1003, {1, 2});
    writer.Record(0x1100);
    writer.EndCell();
    writer.BeginCell("PART");
    writer.Path(3, {{0, 0}, {100, 0}, {100, 100}}, 10, 2);
    writer.Path(3, {{0, 0}, {50, 50}}, -8, 1);
    writer.Boundary(4, {{0, 0}, {30, 5}, {10, 40}});
    writer.EndCell();
    writer.EndLibrary();
    writer.Save(folder / "elements.gds");
}

/// Paths that are refused, and a reference to a cell that is not there.
void WriteRefused(const fs::path& folder) {
    GdsWriter writer;
    writer.BeginCell("TOP");
    writer.Path(3, {{0, 0}, {0, 0}, {100, 0}}, 10, 2);
    writer.Path(3, {{0, 0}, {50, 0}, {100, 0}, {70, 0}}, 10, 1);
    writer.Path(3, {{7, 1}, {7, 7}}, 10, 2);
    writer.Path(3, {{7, 1}}, 10, 4);
    writer.Reference("PART", {10, 20});
    writer.EndCell();
    writer.Save(folder / "refused.gds");
}

/// Arrays of arrays, of more instances than could be walked, and a chain of references.
void WriteHierarchies(const fs::path& folder) {
    GdsWriter writer;
    writer.BeginLibrary();
    for (int level = 0; level < 4; ++level) {
        writer.BeginCell("A" + std::to_string(level));
        writer.Array("A" + std::to_string(level + 1), 30000, 30000, {0, 0}, {300000, 10},
                     {0, 900000}, {level % 2 == 1, 1.5, 15.0 * level});
        writer.EndCell();
    }
    writer.BeginCell("A4");
    writer.Rectangle(1, -5, -5, 100, 50);
    writer.EndCell();
    writer.EndLibrary();
    writer.Save(folder / "arrays.gds");

    GdsWriter chain;
    chain.BeginLibrary();
    for (int level = 0; level < 40; ++level) {
        chain.BeginCell("C" + std::to_string(level));
        chain.Rectangle(1, 0, 0, 10, 10);
        if (level > 0) {
            chain.Reference("C" + std::to_string(level - 1), {1, 2}, {false, 1.0, 30.0});
            chain.Reference("C" + std::to_string(level - 1), {2, 1}, {false, 1.0, 30.0});
        }
        chain.EndCell();
    }
    chain.EndLibrary();
    chain.Save(folder / "chain.gds");
}

/// What the target of compressed layouts takes for one behind its mark, and for one to compress. It
/// takes its choices from the end.
void WriteCompressed(const fs::path& folder) {
    GdsWriter writer;
    writer.BeginLibrary();
    writer.BeginCell("TOP");
    writer.Rectangle(1, 0, 0, 100, 50);
    writer.Reference("TOP2", {10, 20});
    writer.EndCell();
    writer.EndLibrary();
    const auto text = [](const std::vector<std::uint8_t>& bytes) {
        return std::string(bytes.begin(), bytes.end());
    };
    const std::string plain = text(writer.Bytes());
    const std::string packed = text(zelmo::Gzipped(writer.Bytes(), {6, "a.gds", "a comment"}));
    const std::string pieces = text(zelmo::GzippedInMembers(writer.Bytes(), 50));
    Write(folder / "packed", packed.substr(3) + '\1');
    Write(folder / "members", pieces.substr(3) + '\1');
    const std::string choices("\3\1\2\0\1\1\4\7", 8);
    Write(folder / "plain", choices + choices + plain + std::string(7, '\0'));
    Write(folder / "damaged", choices + choices + plain + std::string("\4\40\0\0\0\1\0", 7));
}

/// Targets that decode their input start from noise.
void WriteNoise(const fs::path& folder, int files, std::size_t longest) {
    std::mt19937 random(5);
    for (int i = 0; i < files; ++i) {
        std::string bytes(1 + random() % longest, ' ');
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        Write(folder / std::to_string(i), bytes);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        return 1;
    }
    const fs::path folder = argv[1];
    for (const char* target : {"layout", "process_file", "shader_file"}) {
        fs::create_directories(folder / target);
    }
    WriteElements(folder / "layout");
    WriteRefused(folder / "layout");
    WriteHierarchies(folder / "layout");
    WriteCompressed(folder / "gzip");
    Write(folder / "color_table/usual",
          "# names\n\nbeige #F5F5DC 245, 245, 220\nnavy #000080 0, 0, 128\r\n"
          "Odd x -1,+2 , 99999999999 and more\n");
    Write(folder / "text/usual", "C:\\\xC3\xA9\xE2\x82\xAC \xF0\x9F\x98\x80/a.b.txt");
    Write(folder / "text/broken", "\xED\xA0\x80\xF8\xC0\x80\xFF/\xE2\x82");
    WriteNoise(folder / "path_outline", 20, 60);
    WriteNoise(folder / "run", 60, 600);
    return 0;
}
