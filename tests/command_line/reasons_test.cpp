#include "command_line/reasons.h"

#include <gtest/gtest.h>

namespace zelmo {
namespace {

TEST(FirstOf, TellsTheFirstErrorAndCountsTheOthers) {
    EXPECT_EQ(FirstOf({"Error in line 4: Unknown command"}), "Error in line 4: Unknown command");
    EXPECT_EQ(FirstOf({"Error in line 4: Unknown command",
                       "ERROR: Cell name X was not found in the GDS database",
                       "Error: Missing gds, location, or settings command"}),
              "Error in line 4: Unknown command (and 2 more)");
}

}  // namespace
}  // namespace zelmo
