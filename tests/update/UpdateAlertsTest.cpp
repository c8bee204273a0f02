#include <gtest/gtest.h>

#include "platform/update/UpdateAlerts.h"

using platform::update::downloadStatus;
using platform::update::formattedByteCount;

TEST(UpdateAlertsTest, TheDownloadLineCountsInPowersOfAThousand) {
    EXPECT_EQ(formattedByteCount(0), "0 bytes");
    EXPECT_EQ(formattedByteCount(1), "1 byte");
    EXPECT_EQ(formattedByteCount(999), "999 bytes");
    EXPECT_EQ(formattedByteCount(1000), "1.0 kB");
    EXPECT_EQ(formattedByteCount(1'500'000), "1.5 MB");
    // Rounding up to the next unit reads as that unit.
    EXPECT_EQ(formattedByteCount(999'999), "1.0 MB");
    EXPECT_EQ(formattedByteCount(512ull * 1000 * 1000 * 1000), "512.0 GB");
    EXPECT_EQ(formattedByteCount(UINT64_MAX), "18446.7 PB");

    EXPECT_EQ(downloadStatus(1'500'000, 6'000'000), "Downloading update… 1.5 MB of 6.0 MB");
    // Before the size is known, only what is going on.
    EXPECT_EQ(downloadStatus(0, 0), "Downloading update…");
}
