// The entry of all test executables: GoogleTest, a core application, and --update-golden.
#include "data/filename.h"
#include "support/golden.h"
#include <QCoreApplication>
#include <gtest/gtest.h>
#include <cstring>

int main(int argc, char** argv)
{
    Orv::installFileNameCodec();
    testing::InitGoogleTest(&argc, argv);
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--update-golden") == 0)
            TestSupport::setUpdateGolden(true);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
