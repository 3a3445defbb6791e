#include "core/moduleplace.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

using Orv::Core::modulePlace;

TEST(ModulePlace, IsBesideTheExecutable)
{
    const QString folder = QCoreApplication::applicationDirPath();
    EXPECT_EQ(modulePlace("kestrix"), folder + "/kestrix");
}

TEST(ModulePlace, OfAMissingModuleIsBesideTheExecutable)
{
    EXPECT_EQ(modulePlace("libnone.so"), QCoreApplication::applicationDirPath() + "/libnone.so");
}
