#include "results/probe.h"

#include <gtest/gtest.h>

namespace zelmo {
namespace {

LayerFacts Facts(int number, const std::string& material, const std::string& label) {
    return {number, material, label, {}, 1.0f};
}

/// A beam above a gap, at one place after one step.
ProbeReport MakeReport() {
    ProbeReport report;
    report.unit = "um";
    report.places = {{1.5, -2.0}};
    report.steps = {{{12, "Beam, released"},
                     {{{Facts(3, "Poly", "Poly \"1\""), 250.0, 375.0},
                       {std::nullopt, 0.0, 250.0},
                       {Facts(1, "_SUB_", "SUBSTRATE"), -540.0, 0.0}}}}};
    return report;
}

TEST(ProbeTables, TellTheUppermostFirst) {
    EXPECT_EQ(ProbeTables(MakeReport()),
              "\nSTACK AT (1.5 um, -2 um), heights above the substrate's upper side\n"
              "012 Beam, released\n"
              "  material  label       from nm    to nm  thickness nm\n"
              "  Poly      Poly \"1\"    250.000  375.000       125.000\n"
              "  gap                     0.000  250.000       250.000\n"
              "  _SUB_     SUBSTRATE  -540.000    0.000       540.000\n");
}

TEST(ProbeCsv, HasALineForEachPart) {
    EXPECT_EQ(ProbeCsv(MakeReport()),
              "probe,x_um,y_um,step,step_name,layer,material,label,from_nm,to_nm,thickness_nm\n"
              "1,1.5,-2,12,\"Beam, released\",3,Poly,\"Poly \"\"1\"\"\",250.000,375.000,125.000\n"
              "1,1.5,-2,12,\"Beam, released\",,gap,,0.000,250.000,250.000\n"
              "1,1.5,-2,12,\"Beam, released\",1,_SUB_,SUBSTRATE,-540.000,0.000,540.000\n");
}

TEST(ProbeJson, HasTheSameNumbers) {
    const std::string json = ProbeJson(MakeReport());
    EXPECT_NE(json.find("\"unit\": \"um\""), std::string::npos);
    EXPECT_NE(json.find("\"label\": \"Poly \\\"1\\\"\""), std::string::npos);
    EXPECT_NE(json.find("\"kind\": \"gap\""), std::string::npos);
    EXPECT_NE(json.find("\"thickness_nm\": 540.0"), std::string::npos);
}

}  // namespace
}  // namespace zelmo
