#include "app/metrics.h"
#include "sweep/listing_rules.h"

#include <gtest/gtest.h>

TEST(MetricsReplace, IsTriedAgainOnlyWhileAReaderMayHoldTheFile)
{
    EXPECT_TRUE(retryMetricsReplace(kErrorSharingViolation, 0));
    EXPECT_TRUE(retryMetricsReplace(kErrorAccessDenied, kReplaceRetryMilliseconds - 1));
    EXPECT_FALSE(retryMetricsReplace(kErrorSharingViolation, kReplaceRetryMilliseconds));
    EXPECT_FALSE(retryMetricsReplace(kErrorFileNotFound, 0));
}
