#include "reading/assemblyversionreaders.h"

#include "data/baseobject.h"
#include "reading/extensionregistry.h"
#include "reading/oblarimporter.h"
#include "reading/oblasmimporter.h"
#include "reading/oblimporter.h"
#include <QBuffer>
#include <gtest/gtest.h>

using Ksx::Core::OBLARDataFormatVersionReader;
using Ksx::Core::OBLARImporter;
using Ksx::Core::OBLASMDataFormatVersionReader;
using Ksx::Core::OBLASMImporter;
using Ksx::Core::OBLImporter;
using Orv::Core::Version;

namespace {

template <class Reader>
void expectNoVersionAndNoLook()
{
    QByteArray bytes(R"(<formatVersion v="1.2.3.4"/>)");
    QBuffer buffer(&bytes);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    Version version{9, 8, 7, 6};

    EXPECT_TRUE(Reader().read(buffer, version));

    EXPECT_TRUE(version.isNone());
    EXPECT_EQ(buffer.pos(), 0);
}

TEST(AssemblyVersionReaders, AnArchiveHasNoVersion)
{
    expectNoVersionAndNoLook<OBLARDataFormatVersionReader>();
}

TEST(AssemblyVersionReaders, AnAssemblyHasNoVersion)
{
    expectNoVersionAndNoLook<OBLASMDataFormatVersionReader>();
}

TEST(AssemblyVersionReaders, TakeAFileThatIsNotOpen)
{
    QBuffer closed;
    Version version{9, 8, 7, 6};

    EXPECT_TRUE(OBLARDataFormatVersionReader().read(closed, version));

    EXPECT_TRUE(version.isNone());
}

TEST(AssemblyVersionReaders, EachServesItsOwnImporterAlone)
{
    EXPECT_TRUE(OBLARDataFormatVersionReader().accepts(OBLARImporter()));
    EXPECT_FALSE(OBLARDataFormatVersionReader().accepts(OBLASMImporter()));
    EXPECT_FALSE(OBLARDataFormatVersionReader().accepts(OBLImporter()));
    EXPECT_TRUE(OBLASMDataFormatVersionReader().accepts(OBLASMImporter()));
    EXPECT_FALSE(OBLASMDataFormatVersionReader().accepts(OBLARImporter()));
    EXPECT_FALSE(OBLASMDataFormatVersionReader().accepts(OBLImporter()));
}

TEST(AssemblyVersionReaders, AreOfTheApplicationsVersion)
{
    EXPECT_EQ(OBLARDataFormatVersionReader().version(), Ksx::Core::applicationVersion());
    EXPECT_EQ(OBLASMDataFormatVersionReader().version(), Ksx::Core::applicationVersion());
}

} // namespace
