#include <filesystem>
#include <string>
#include <vector>

#include "tests/batch/batch_fixture.h"
#include "tests/batch/told_page.h"

// The page of a run, as users ask for it. What its bytes hold is read by tests/report.

namespace zelmo {
namespace {

using Json = nlohmann::json;

class ReportTest : public BatchTest {
protected:
    ReportTest() {
        const std::filesystem::path assets = std::filesystem::current_path();
        std::filesystem::create_directory(InFolder("assets"));
        for (const char* const name : {"colors.txt", "surface.shader", "point.shader"}) {
            std::filesystem::copy_file(assets / name, InFolder("assets") / name);
        }
        folder_.Write("assets/page.js", "let page = 1;\n");
        folder_.Write("assets/page.css", "body { margin: 0 }\n");
        WriteProcess(
            "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
            "# a comment\n"
            "photo -name Hole -mask_id 1 -type 0 -res 0.2 -thickness 800\n"
            "etch -name Hole -targets oxide -depth 500 -iso 0\n"
            "strip -name Hole\n");
    }

    Ended Ask(std::vector<std::string> arguments) const {
        const std::vector<std::string> first{"square.gds", "flow.txt", "--assets", "assets"};
        arguments.insert(arguments.begin(), first.begin(), first.end());
        return Run(arguments);
    }

    Json Told(const std::string& name) const { return ToldPage(FileText(name)); }
};

std::vector<int> StepNumbers(const Json& run) {
    std::vector<int> numbers;
    for (const Json& step : run["steps"]) {
        numbers.push_back(step["number"]);
    }
    return numbers;
}

TEST_F(ReportTest, APageHasTheRunAndItsPictures) {
    const Ended ended = Ask({"-o", "out", "--report", "run.html"});
    ASSERT_EQ(ended.status, 0) << ended.errors;
    const Json run = Told("run.html");
    EXPECT_EQ(run["format"], 1);
    EXPECT_EQ(run["title"], "flow.txt");
    EXPECT_EQ(run["layout"], "square.gds");
    EXPECT_EQ(run["cell"], "TOP");
    EXPECT_EQ(run["stepCount"], 5);
    EXPECT_EQ(run["window"]["dx"], 10.0);
    EXPECT_EQ(run["zero"], 0.5);
    EXPECT_EQ(run["processFile"].size(), 8u);
    EXPECT_EQ(StepNumbers(run), (std::vector<int>{1, 2, 3, 4, 5}));
    const Json etch = run["steps"][3];
    EXPECT_EQ(etch["name"], "Hole etching");
    EXPECT_EQ(etch["kind"], "etch");
    EXPECT_EQ(etch["line"], 7);
    EXPECT_EQ(run["processFile"][6], "etch -name Hole -targets oxide -depth 500 -iso 0");
    EXPECT_EQ(etch["arguments"][2]["name"], "-depth");
    EXPECT_EQ(etch["arguments"][2]["value"], "500");
    EXPECT_EQ(etch["picture"]["type"], "image/webp");
    EXPECT_EQ(etch["picture"]["width"], 1920);
    EXPECT_EQ(etch["thumbnail"]["width"], 240);
    EXPECT_EQ(run["steps"][0]["kind"], "substrate");
    EXPECT_EQ(run["steps"][0]["line"], 0);
    EXPECT_EQ(FilesIn("out").size(), 5u);
}

TEST_F(ReportTest, TheTextOfAStepIsThatOfTheConsole) {
    const Ended shown = Ask({"--no-pictures", "--report", "a.html"});
    const Ended quiet = Ask({"--no-pictures", "--quiet", "--report", "b.html"});
    ASSERT_EQ(quiet.status, 0) << quiet.errors;
    EXPECT_EQ(quiet.output, "");
    for (const char* const name : {"a.html", "b.html"}) {
        std::string text;
        const Json run = Told(name);
        for (const Json& step : run["steps"]) {
            for (const Json& line : step["console"]) {
                text += line.get<std::string>() + '\n';
            }
        }
        EXPECT_NE(MaskTimes(shown.output).find(MaskTimes(text)), std::string::npos) << text;
        EXPECT_NE(text.find("Executing Hole etching"), std::string::npos) << text << shown.output;
    }
}

TEST_F(ReportTest, NotesStandWithTheirStepOrWithTheRun) {
    WriteProcess(
        "deposition -name Oxide -type oxide -thickness 500 -color 200 100 50 100\n"
        "photo -name Far -mask_id 77 -type 1 -res 0.2 -thickness 800\n"
        "strip -name Far\n");
    ASSERT_EQ(Ask({"--no-pictures", "--report", "run.html"}).status, 0);
    const Json run = Told("run.html");
    ASSERT_FALSE(run["steps"][2]["notes"].empty()) << run["notes"];
    EXPECT_EQ(run["steps"][2]["notes"][0]["line"], 5);
    EXPECT_TRUE(run["steps"][1]["notes"].empty());
    ASSERT_EQ(Ask({"--no-pictures", "--report", "first.html", "--steps", "1"}).status, 0);
    EXPECT_EQ(Told("first.html")["notes"].size(),
              run["steps"][2]["notes"].size() + run["notes"].size());
    ASSERT_EQ(Ask({"--no-pictures", "--no-notes", "--report", "none.html"}).status, 0);
    EXPECT_TRUE(Told("none.html")["steps"][2]["notes"].empty());
}

TEST_F(ReportTest, WithoutPicturesThePageHasNone) {
    ASSERT_EQ(Ask({"--no-pictures", "--report", "run.html"}).status, 0);
    const Json run = Told("run.html");
    ASSERT_EQ(run["steps"].size(), 5u);
    for (const Json& step : run["steps"]) {
        EXPECT_TRUE(step["picture"].is_null());
        EXPECT_TRUE(step["thumbnail"].is_null());
    }
}

TEST_F(ReportTest, OnlyChosenStepsAreInThePage) {
    ASSERT_EQ(Ask({"--no-pictures", "--report", "run.html", "--steps", "etch,last"}).status, 0);
    const Json run = Told("run.html");
    EXPECT_EQ(StepNumbers(run), (std::vector<int>{4, 5}));
    EXPECT_EQ(run["stepCount"], 5);
    EXPECT_EQ(run["steps"][0]["chunk"], 0);
}

TEST_F(ReportTest, ColumnsAreThinned) {
    for (const auto& [most, count] : {std::pair("30", 29u), {"2", 2u}, {"2000", 168u}}) {
        const std::string name = std::string(most) + ".html";
        ASSERT_EQ(Ask({"--no-pictures", "--report", name, "--report-columns", most}).status, 0);
        EXPECT_EQ(Told(name)["grid"]["x"].size(), count);
    }
    EXPECT_LT(FileText("30.html").size(), FileText("2000.html").size());
}

TEST_F(ReportTest, APageThatIsThereIsKeptUnlessItMayBeReplaced) {
    folder_.Write("run.html", "mine");
    const Ended kept = Ask({"-o", "out", "--report", "run.html"});
    ExpectRefusal(kept, 5, {"run.html exists already", "--overwrite"});
    EXPECT_EQ(kept.output.find("Executing"), std::string::npos);
    EXPECT_EQ(FileText("run.html"), "mine");
    EXPECT_FALSE(std::filesystem::exists(InFolder("out")));
    ASSERT_EQ(Ask({"--no-pictures", "--report", "run.html", "--overwrite"}).status, 0);
    EXPECT_EQ(Told("run.html")["format"], 1);
}

TEST_F(ReportTest, WhatNoPageCanBeMadeOfEndsBeforeTheRun) {
    std::filesystem::remove(InFolder("assets") / "page.css");
    for (const auto& [file, piece] : {std::pair("run.html", "page.css"),
                                      {"nowhere/run.html", "could not be written"},
                                      {"assets", "exists already"}}) {
        const Ended ended = Ask({"-o", "out", "--report", file});
        ExpectRefusal(ended, 5, {piece});
        EXPECT_EQ(ended.output.find("Executing"), std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(InFolder("out")));
    }
    EXPECT_EQ(FilesIn(".").size(), 3u);  // assets, layout, process file
}

TEST_F(ReportTest, ARunThatFailsLeavesNoPage) {
    folder_.Write("out", "a file where the pictures go");
    EXPECT_EQ(Ask({"-o", "out", "--report", "run.html"}).status, 4);
    EXPECT_FALSE(std::filesystem::exists(InFolder("run.html")));
}

TEST_F(ReportTest, WrongArgumentsAreWrongUsage) {
    ExpectRefusal(Ask({"--report-columns", "30"}), 1, {"--report-columns needs a --report"});
    for (const char* const columns : {"1", "2001", "-3"}) {
        ExpectRefusal(Ask({"--report", "a", std::string("--report-columns=") + columns}), 1,
                      {"--report-columns", "from 2 to 2000"});
    }
    ExpectRefusal(Ask({"--report", ""}), 1, {"--report: the file has no name"});
}

}  // namespace
}  // namespace zelmo
