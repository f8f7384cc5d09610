#include "support/reachable_copy.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "support/child_program.h"
#include "support/temporary_home.h"

namespace vesk::testing {
namespace {

const ReachableCopy thisProgram(VESK_TEST_PROGRAM);

// If only root can enter the build folder, the built file itself cannot be run any more.
TEST(ReachableCopyTest, OfAProgramCanBeRunByTheTestsUser) {
    EXPECT_THAT(thisProgram.path(), ::testing::StartsWith(testFolder().string() + "/"));
    const ProgramRun run = runProgram(thisProgram.path(), {"--gtest_list_tests"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, ::testing::HasSubstr("OfAProgramCanBeRunByTheTestsUser"));
}

TEST(ReachableCopyTest, OfAFileThatIsMissingSaysSo) {
    const ReachableCopy missing(testRoot() / "missing");
    EXPECT_THROW(missing.path(), std::runtime_error);
}

}  // namespace
}  // namespace vesk::testing
