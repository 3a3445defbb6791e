#include "data/xmlvalueconverter.h"

#include "support/shelfcases.h"
#include <gtest/gtest.h>
#include <optional>

namespace {

using Orv::Data::IXmlValueConverter;
using Orv::Data::XmlValueConverterURLPrefixReplacement;
using Orv::Data::XmlValueConverterURLRelativeToAbsolute;
using TestSupport::caseName;
using Result = std::optional<std::string>;

Result converted(const IXmlValueConverter& converter, const std::string& in)
{
    std::string out = "untouched";
    if (converter.convert(in, out))
        return out;
    EXPECT_EQ(out, "untouched");
    return {};
}

struct ConversionCase
{
    const char* name;
    std::string in;
    Result out;
};

class RelativeToAbsolute : public testing::TestWithParam<ConversionCase>
{
protected:
    XmlValueConverterURLRelativeToAbsolute m_converter{"/library/wood/oak.obl"};
};
TEST_P(RelativeToAbsolute, ConvertsOrLeaves)
{
    EXPECT_EQ(converted(m_converter, GetParam().in), GetParam().out);
}
INSTANTIATE_TEST_SUITE_P(
    Paths, RelativeToAbsolute,
    testing::Values(ConversionCase{"FileBeside", "grain.png", "/library/wood/grain.png"},
                    ConversionCase{"FileBelow", "maps/grain.png", "/library/wood/maps/grain.png"},
                    ConversionCase{"ParentIsKept", "../elm.obl", "/library/wood/../elm.obl"},
                    ConversionCase{"Absolute", "/other/elm.obl", "/other/elm.obl"},
                    ConversionCase{"Blank", "old oak.png", "/library/wood/old oak.png"},
                    ConversionCase{"Utf8", "\xC3\xA9.png", "/library/wood/\xC3\xA9.png"},
                    ConversionCase{"NoUtf8", "\xE9.png", "/library/wood/\xE9.png"},
                    ConversionCase{"PathBehindAnOrigin", "obl://wood/oak.obl",
                                   "/library/wood/obl://wood/oak.obl"},
                    ConversionCase{"Empty", "", {}}, ConversionCase{"QueryAlone", "?himself", {}},
                    ConversionCase{"FragmentAlone", "#part", {}},
                    ConversionCase{"OriginAlone", "obl://name", {}}),
    caseName<ConversionCase>);

TEST(RelativeToAbsoluteOfARelativeDocument, UsesTheAbsoluteDirectory)
{
    const XmlValueConverterURLRelativeToAbsolute converter("wood/oak.obl");
    EXPECT_EQ(converted(converter, "grain.png"),
              QDir::current().absoluteFilePath("wood/grain.png").toStdString());
}

class PrefixReplacement : public testing::TestWithParam<ConversionCase>
{
protected:
    XmlValueConverterURLPrefixReplacement m_converter{
        "obl://", {QDir("/library/first"), QDir("/library/second")}};
};
TEST_P(PrefixReplacement, ConvertsOrLeaves)
{
    EXPECT_EQ(converted(m_converter, GetParam().in), GetParam().out);
}
INSTANTIATE_TEST_SUITE_P(
    Paths, PrefixReplacement,
    testing::Values(ConversionCase{"Name", "obl://oak.obl", "/library/first/oak.obl"},
                    ConversionCase{"Path", "obl://wood/oak.obl", "/library/first/wood/oak.obl"},
                    ConversionCase{"Absolute", "obl:///other/oak.obl", "/other/oak.obl"},
                    ConversionCase{"PrefixAlone", "obl://", "/library/first"},
                    ConversionCase{"NoUtf8", "obl://\xE9.obl", "/library/first/\xE9.obl"},
                    ConversionCase{"Empty", "", {}}, ConversionCase{"PlainPath", "oak.obl", {}},
                    ConversionCase{"PartOfThePrefix", "obl:/", {}},
                    ConversionCase{"OtherCase", "OBL://oak.obl", {}},
                    ConversionCase{"PrefixInside", "x/obl://oak.obl", {}}),
    caseName<ConversionCase>);

TEST(PrefixReplacementWithoutDirectories, LeavesEverything)
{
    const XmlValueConverterURLPrefixReplacement converter("obl://", {});
    EXPECT_EQ(converted(converter, "obl://oak.obl"), std::nullopt);
}

TEST(PrefixReplacementWithARelativeDirectory, GivesAnAbsolutePath)
{
    const XmlValueConverterURLPrefixReplacement converter("obl://", {QDir("library")});
    EXPECT_EQ(converted(converter, "obl://oak.obl"),
              QDir::current().absoluteFilePath("library/oak.obl").toStdString());
}

} // namespace
