#include <gtest/gtest.h>

#include "diagnostics/file_logger.h"
#include "platform/sim/sim_basics.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

struct FileLoggerTest : testing::Test {
    TempFolder home;
    SimUserDirectories directories;
    SimClock clock;
    SimConsole console;

    FileLoggerTest() { directories.documents = home.path().string(); }
};

TEST_F(FileLoggerTest, AppendsTimestampedLinesToWhatIsThere) {
    writeFile(home.file("Marzipel_debug.log"), "earlier run\n");
    auto logger = FileLogger::create(directories, clock, console);
    ASSERT_TRUE(logger);
    logger->log("first");
    // Another writer appending meanwhile must not be overwritten.
    std::ofstream(home.file("Marzipel_debug.log"), std::ios::app) << "someone else\n";
    clock.timestamp = "2/3/26, 4:05:06 AM GMT";
    logger->log("two\nlines");
    logger->log("not UTF-8: \xff");
    EXPECT_EQ(readFile(home.file("Marzipel_debug.log")),
              "earlier run\n1/1/26, 12:00:00 PM UTC: first\nsomeone else\n"
              "2/3/26, 4:05:06 AM GMT: two\nlines\n");
    EXPECT_TRUE(console.lines.empty());
}

TEST_F(FileLoggerTest, UnopenableFileIsReportedOnStandardOutputEachAttempt) {
    directories.documents = (home.path() / "missing-folder").string();
    EXPECT_FALSE(FileLogger::create(directories, clock, console));
    EXPECT_FALSE(FileLogger::create(directories, clock, console));
    ASSERT_EQ(console.lines.size(), 2u);
    EXPECT_EQ(console.lines[0].rfind("Unable to open file handle: ", 0), 0u) << console.lines[0];
}

}  // namespace
}  // namespace marzipel
