#include "updating/oblformatupdater7049.h"

#include "support/updaterhelper.h"
#include <QBuffer>
#include <gtest/gtest.h>

namespace {

using namespace TestSupport;

const Ksx::Core::OBLFormatUpdater7049 Updater;

} // namespace

TEST(OBLFormatUpdater7049, TakesAnyTextForGood)
{
    const UpdateResult result = updateBuffer(Updater, "no document");
    EXPECT_TRUE(result.isOk);
    EXPECT_EQ(result.bytes, "no document");
    EXPECT_EQ(result.log, "");
}

TEST(OBLFormatUpdater7049, ReportsItsProgress)
{
    EXPECT_EQ(updateBuffer(Updater, "").progress, (std::vector<float>{0.0F, 1.0F}));
}

TEST(OBLFormatUpdater7049, DoesNotTouchTheDevice)
{
    QBuffer closed;
    EXPECT_TRUE(Updater.update(closed, nullptr, {}));
}
