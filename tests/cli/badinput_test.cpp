// Files that are no valid packages: the run fails in an orderly way, whatever they hold.
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>

using TestSupport::aGraphWithInstance;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::caseName;
using TestSupport::nestedGroups;
using TestSupport::PackageText;
using TestSupport::replaced;
using TestSupport::runTool;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

constexpr long MaximumKilobytes = 1024 * 1024;

class BadInput : public testing::Test
{
protected:
    ToolRun update(const std::string& bytes) const
    {
        directory.write("a.obl", bytes);
        return runTool(directory.path(), {"update", "a.obl"});
    }
    void expectRefused(const ToolRun& run) const
    {
        EXPECT_EQ(run.exitCode, 1) << run;
        EXPECT_EQ(run.signal, 0);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "Cannot load: " + directory.path("a.obl") +
                               "\nPackages cannot be correctly loaded\n");
        EXPECT_FALSE(directory.exists("a_updated.obl"));
        EXPECT_LT(run.peakKilobytes, MaximumKilobytes);
    }

    TemporaryDirectory directory;
};

const std::string Declaration = R"(<?xml version="1.0" encoding="UTF-8"?>)";

std::string current()
{
    return aPackage()
        .dependingOnItself(5)
        .containing(aGroup("g", aResource("r", "x.png")))
        .containing(aGraphWithInstance("i", "pkg://g?dependency=5"))
        .text();
}

std::string withBehindDeclaration(const std::string& text, const std::string& document)
{
    return Declaration + text + document.substr(Declaration.size());
}

// Entities that stand for many more of the next, in an attribute of the package.
std::string entityBomb()
{
    std::string doctype = "<!DOCTYPE package [<!ENTITY e0 \"lol\">";
    for (int i = 1; i < 12; ++i) {
        const std::string former = "&e" + std::to_string(i - 1) + ";";
        doctype += "<!ENTITY e" + std::to_string(i) + " \"";
        for (int j = 0; j < 10; ++j)
            doctype += former;
        doctype += "\">";
    }
    doctype += "]>";
    return withBehindDeclaration(doctype, replaced(current(), "v=\"me\"", "v=\"&e11;\""));
}

// One large entity, many times.
std::string flatEntityBomb()
{
    const std::string doctype =
        "<!DOCTYPE package [<!ENTITY e \"" + std::string(100000, 'x') + "\">]>";
    std::string uses;
    for (int i = 0; i < 100000; ++i)
        uses += "&e;";
    return withBehindDeclaration(doctype, replaced(current(), "v=\"me\"", "v=\"" + uses + "\""));
}

std::string ownEntity()
{
    return withBehindDeclaration("<!DOCTYPE package [<!ENTITY e \"&e;\">]>",
                                 replaced(current(), "v=\"me\"", "v=\"&e;\""));
}

std::string nestedUnknowns(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += "<x>";
    for (int i = 0; i < count; ++i)
        text += "</x>";
    return replaced(current(), "<content>", text + "<content>");
}

std::string nestedConfigurations(int count)
{
    std::string begin;
    std::string end;
    for (int i = 0; i < count; ++i) {
        begin += R"(<configurations><name v=""/><uid v="1"/><configuration>)";
        end += "</configuration></configurations>";
    }
    return aPackage().withElement("configurations", begin + end).text();
}

struct BadCase
{
    const char* name;
    std::string (*bytes)();
};

std::ostream& operator<<(std::ostream& stream, const BadCase& c)
{
    return stream << c.name;
}

class BadDocument : public BadInput, public testing::WithParamInterface<BadCase>
{};

TEST_P(BadDocument, IsRefused)
{
    const ToolRun run = update(GetParam().bytes());

    expectRefused(run);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, BadDocument,
    testing::Values(
        BadCase{"Empty", [] { return std::string(); }},
        BadCase{"OneByte", [] { return std::string("<"); }},
        BadCase{"Blanks", [] { return std::string(100000, ' '); }},
        BadCase{"PlainText", [] { return std::string("This is no package."); }},
        BadCase{"Zeros", [] { return std::string(100000, '\0'); }},
        BadCase{"AllByteValues",
                [] {
                    std::string bytes;
                    for (int i = 0; i < 65536; ++i)
                        bytes += static_cast<char>((i * 7 + i / 256) & 0xFF);
                    return bytes;
                }},
        BadCase{"BinaryBehindTheVersion",
                [] { return current().substr(0, 300) + std::string("\x80\xff\0\x01", 4); }},
        BadCase{"ZeroInAValue",
                [] { return replaced(current(), "v=\"me\"", std::string("v=\"m\0e\"", 7)); }},
        BadCase{"ZeroBetweenElements",
                [] { return replaced(current(), "<author", std::string(1, '\0') + "<author"); }},
        BadCase{"ControlCharacterInAValue",
                [] { return replaced(current(), "\"me\"", "\"\x01\""); }},
        BadCase{"ZeroAsReference", [] { return replaced(current(), "\"me\"", "\"&#0;\""); }},
        BadCase{"OtherRoot", [] { return replaced(current(), "package>", "folly>"); }},
        BadCase{"RootInCapitals", [] { return replaced(current(), "package>", "PACKAGE>"); }},
        BadCase{"RootWithAPrefix", [] { return replaced(current(), "package>", "p:package>"); }},
        BadCase{"RootNameOfOneMegabyte",
                [] { return replaced(current(), "package>", std::string(1 << 20, 'p') + ">"); }},
        BadCase{"UnknownNameOfOneMegabyte",
                [] {
                    return replaced(current(), "<author",
                                    "<" + std::string(1 << 20, 'x') + "/><author");
                }},
        BadCase{"TwoRoots", [] { return current() + "<package/>"; }},
        BadCase{"TextBehindTheRoot", [] { return current() + "more"; }},
        BadCase{"UnclosedRoot", [] { return replaced(current(), "</package>", ""); }},
        BadCase{"OtherEndOfTheRoot", [] { return replaced(current(), "</package>", "</x>"); }},
        BadCase{"TextInside", [] { return replaced(current(), "<author", "text<author"); }},
        BadCase{"ElementInAnAttribute",
                [] {
                    return replaced(current(), "<author v=\"me\"/>",
                                    "<author v=\"me\"><x/></author>");
                }},
        BadCase{"AttributeWithoutItsValue",
                [] { return replaced(current(), "<author v=", "<author w="); }},
        BadCase{"AttributeTwice",
                [] { return replaced(current(), "<author v=", "<author v=\"x\" v="); }},
        BadCase{"UnknownEntity", [] { return replaced(current(), "\"me\"", "\"&folly;\""); }},
        BadCase{"EntityOfItself", &ownEntity}, BadCase{"EntityBomb", &entityBomb},
        BadCase{"FlatEntityBomb", &flatEntityBomb},
        BadCase{"FalseEncoding", [] { return replaced(current(), "\"me\"", "\"\xff\xfe\xc3\""); }},
        BadCase{"UnknownEncoding", [] { return replaced(current(), "UTF-8", "folly"); }},
        BadCase{"TooManyNestedGroups",
                [] { return aPackage().containing(nestedGroups(200000)).text(); }},
        BadCase{"ABitTooManyNestedGroups",
                [] { return aPackage().containing(nestedGroups(2600)).text(); }},
        BadCase{"TooManyNestedUnknowns", [] { return nestedUnknowns(200000); }},
        BadCase{"TooManyNestedConfigurations", [] { return nestedConfigurations(200000); }},
        BadCase{"TooManyUnclosedElements",
                [] {
                    const std::string text = aPackage().containing(nestedGroups(200000)).text();
                    return text.substr(0, text.size() / 2);
                }}),
    caseName<BadCase>);

TEST_F(BadInput, TheDocumentThatTheCasesSpoilIsGood)
{
    const ToolRun run = update(current());

    EXPECT_EQ(run.exitCode, 0) << run;
}

// Cut off anywhere.

class TruncatedDocument : public BadInput, public testing::WithParamInterface<int>
{};

TEST_P(TruncatedDocument, IsRefused)
{
    const ToolRun run = update(current().substr(0, static_cast<std::size_t>(GetParam())));

    expectRefused(run);
}

INSTANTIATE_TEST_SUITE_P(Places, TruncatedDocument,
                         testing::Range(0, static_cast<int>(current().size()) - 1, 97));
INSTANTIATE_TEST_SUITE_P(LastByte, TruncatedDocument,
                         testing::Values(static_cast<int>(current().size()) - 2));

// Members.

std::string memberName(const testing::TestParamInfo<const char*>& info)
{
    return info.param;
}

class MissingMember : public BadInput, public testing::WithParamInterface<const char*>
{};

TEST_P(MissingMember, IsRefused)
{
    const ToolRun run = update(aPackage().without(GetParam()).text());

    expectRefused(run);
}

INSTANTIATE_TEST_SUITE_P(OfAPackage, MissingMember,
                         testing::Values("packageType", "identifier", "formatVersion", "platform",
                                         "author", "fileUID", "versionUID", "configurations",
                                         "dependencies", "content"),
                         memberName);

class OptionalMember : public BadInput, public testing::WithParamInterface<const char*>
{};

TEST_P(OptionalMember, MayBeMissing)
{
    const ToolRun run = update(aPackage().without(GetParam()).text());

    EXPECT_EQ(run.exitCode, 0) << run;
}

INSTANTIATE_TEST_SUITE_P(OfAPackage, OptionalMember, testing::Values("desc", "updaterVersion"),
                         memberName);

TEST_F(BadInput, AMissingMemberDeepInsideIsRefused)
{
    const ToolRun run = update(replaced(current(), R"(<checksum v="0"/>)", ""));

    expectRefused(run);
}

// Values that their types refuse.

std::string withPlatform(const std::string& value)
{
    return aPackage().with("platform", value).text();
}

std::string withCookedQuality(const std::string& value)
{
    return aPackage()
        .containing(replaced(aResource("r", "x"), "<filepath",
                             "<cookedQuality v=\"" + value + "\"/><filepath"))
        .text();
}

std::string withGraphMember(const std::string& member)
{
    return aPackage()
        .containing(replaced(aGraphWithInstance("g", "pkg://x"), "<compImplementation>",
                             member + "<compImplementation>"))
        .text();
}

std::string withDisabled(const std::string& value)
{
    return withGraphMember("<disabled><value v=\"" + value + "\"/></disabled>");
}

std::string withPlace(const std::string& value)
{
    return withGraphMember("<GUILayout><gpos v=\"" + value + "\"/></GUILayout>");
}

std::string withDocked(const std::string& value)
{
    return withGraphMember("<GUILayout><docked v=\"" + value + "\"/></GUILayout>");
}

std::string withDistance(const std::string& value)
{
    return withGraphMember("<GUILayout><dockDistance v=\"" + value + "\"/></GUILayout>");
}

template <int Number>
std::string withConstant(const std::string& kind, const std::string& value)
{
    const std::string element = "constantValue" + kind + std::to_string(Number);
    const std::string constant = "<" + element + "><value v=\"" + value + "\"/></" + element + ">";
    return aPackage()
        .containing(replaced(aGraphWithInstance("g", "pkg://x"), "<parameters/>",
                             "<parameters><parameter><name v=\"p\"/><paramValue>" + constant +
                                 "</paramValue></parameter></parameters>"))
        .text();
}

template <int Number>
std::string withFloats(const std::string& value)
{
    return withConstant<Number>("Float", value);
}

template <int Number>
std::string withInts(const std::string& value)
{
    return withConstant<Number>("Int", value);
}

struct ValueCase
{
    const char* name;
    std::string (*documentWith)(const std::string& value);
    std::string good;
    std::string bad;
};

std::ostream& operator<<(std::ostream& stream, const ValueCase& c)
{
    return stream << c.name;
}

class BadValue : public BadInput, public testing::WithParamInterface<ValueCase>
{};

TEST_P(BadValue, IsRefused)
{
    const ToolRun run = update(GetParam().documentWith(GetParam().bad));

    expectRefused(run);
}

TEST_P(BadValue, IsTheOnlyFault)
{
    const ToolRun run = update(GetParam().documentWith(GetParam().good));

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_NE(directory.read("a_updated.obl").find("v=\"" + GetParam().good + "\""),
              std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Types, BadValue,
    testing::Values(ValueCase{"UnsignedLetters", &withPlatform, "7", "seven"},
                    ValueCase{"UnsignedEmpty", &withPlatform, "7", ""},
                    ValueCase{"UnsignedWithRest", &withPlatform, "7", "7x"},
                    ValueCase{"UnsignedTooLarge", &withPlatform, "4294967295", "4294967296"},
                    ValueCase{"UnsignedWithAPoint", &withPlatform, "7", "7.0"},
                    ValueCase{"Boolean", &withDisabled, "1", "maybe"},
                    ValueCase{"BooleanTwo", &withDisabled, "1", "2"},
                    ValueCase{"BooleanDocked", &withDocked, "1", "yes"},
                    ValueCase{"Quality", &withCookedQuality, "0.5", "half"},
                    ValueCase{"Place", &withPlace, "1 2 3", "1 2"},
                    ValueCase{"Distance", &withDistance, "1 2", "1 2 3"},
                    ValueCase{"Float1", &withFloats<1>, "1.5", "x"},
                    ValueCase{"Float2", &withFloats<2>, "1.5 2", "1.5"},
                    ValueCase{"Float3", &withFloats<3>, "1.5 2 3", "1.5 2 x"},
                    ValueCase{"Float4", &withFloats<4>, "1.5 2 3 4", "1.5 2 3 4 5"},
                    ValueCase{"Int1", &withInts<1>, "-1", "1.5"},
                    ValueCase{"Int2", &withInts<2>, "-1 2", "-1  2"},
                    ValueCase{"Int3", &withInts<3>, "-1 2 3", ""},
                    ValueCase{"Int4", &withInts<4>, "-1 2 3 4", "-1 2 3 99999999999"}),
    caseName<ValueCase>);

// Versions.

struct VersionCase
{
    const char* name;
    const char* text;
};

std::ostream& operator<<(std::ostream& stream, const VersionCase& c)
{
    return stream << c.name;
}

class BadFormatVersion : public BadInput, public testing::WithParamInterface<VersionCase>
{};

TEST_P(BadFormatVersion, IsRefused)
{
    const ToolRun run = update(aPackage().with("formatVersion", GetParam().text).text());

    expectRefused(run);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, BadFormatVersion,
    testing::Values(VersionCase{"Empty", ""}, VersionCase{"ThreeParts", "1.1.0"},
                    VersionCase{"FiveParts", "1.1.0.7049.1"}, VersionCase{"Letter", "1.1.x.7049"},
                    VersionCase{"EmptyPart", "1..0.7049"}, VersionCase{"Negative", "1.1.-1.7049"},
                    VersionCase{"TooLarge", "1.1.0.4294967296"}),
    caseName<VersionCase>);

// What is no regular file that can be read.

TEST_F(BadInput, ADirectoryIsRefused)
{
    directory.makeDirectory("a.obl");

    const ToolRun run = runTool(directory.path(), {"update", "a.obl"});

    expectRefused(run);
}

TEST_F(BadInput, AFileThatMayNotBeReadIsRefused)
{
    directory.write("a.obl", current());
    directory.setMode("a.obl", 0);

    const ToolRun run = Tool(directory.path()).withoutRootRights().run({"update", "a.obl"});

    expectRefused(run);
}

TEST_F(BadInput, ALinkThatGoesRoundIsMissing)
{
    directory.makeLink("a.obl", "b.obl");
    directory.makeLink("b.obl", "a.obl");

    const ToolRun run = runTool(directory.path(), {"update", "a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: a.obl\nPackages cannot be correctly loaded\n");
}

TEST_F(BadInput, ALinkToADeviceIsNoPackage)
{
    directory.makeLink("a.obl", "/dev/null");

    const ToolRun run = runTool(directory.path(), {"update", "a.obl"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load: /dev/null\nPackages cannot be correctly loaded\n");
}

TEST_F(BadInput, ADependencyOfOneMegabyteIsMissing)
{
    const std::string name(1 << 20, 'x');

    const ToolRun run = update(aPackage().dependingOn(name + ".obl", 7).text());

    EXPECT_EQ(run.exitCode, 1) << run.exitCode;
    EXPECT_TRUE(run.err == "Cannot load dependency: " + directory.path(name) +
                               ".obl\nPackages cannot be correctly loaded\n");
}

TEST_F(BadInput, ACorruptDependencyIsRefused)
{
    directory.write("b.obl", replaced(current(), "\"me\"", "\"&folly;\""));

    const ToolRun run = update(aPackage().dependingOn("b.obl", 7).text());

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.signal, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "Cannot load dependency: " + directory.path("b.obl") +
                           "\nPackages cannot be correctly loaded\n");
    EXPECT_EQ(directory.files(), "a.obl b.obl");
}

// What looks odd and is good.

struct GoodCase
{
    const char* name;
    std::string (*bytes)();
};

std::ostream& operator<<(std::ostream& stream, const GoodCase& c)
{
    return stream << c.name;
}

class OddDocument : public BadInput, public testing::WithParamInterface<GoodCase>
{};

TEST_P(OddDocument, IsReadLikeThePlainOne)
{
    const ToolRun run = update(GetParam().bytes());

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated.obl"), aPackage().containing(aGroup("g")).text());
}

std::string plain()
{
    return aPackage().containing(aGroup("g")).text();
}

INSTANTIATE_TEST_SUITE_P(
    Forms, OddDocument,
    testing::Values(
        GoodCase{"ManyLines", [] { return replaced(plain(), "><", ">\n\t <"); }},
        GoodCase{"ByteOrderMark", [] { return "\xef\xbb\xbf" + plain(); }},
        GoodCase{"NoDeclaration", [] { return plain().substr(Declaration.size()); }},
        GoodCase{"UnknownElements",
                 [] { return replaced(plain(), "<author", "<x><y z=\"1\">text</y></x><author"); }},
        GoodCase{"UnknownAttributes",
                 [] { return replaced(plain(), "<author v=", "<author x=\"1\" v="); }},
        GoodCase{"MemberTwice",
                 [] {
                     return replaced(plain(), "<author v=\"me\"/>",
                                     "<author v=\"me\"/><author v=\"no\"/>");
                 }},
        GoodCase{"OwnEntity",
                 [] {
                     return withBehindDeclaration("<!DOCTYPE package [<!ENTITY e \"me\">]>",
                                                  replaced(plain(), "v=\"me\"", "v=\"&e;\""));
                 }}),
    caseName<GoodCase>);

TEST_F(BadInput, AnIdentifierOfOneMegabyteIsGood)
{
    const std::string text = aPackage().named(std::string(1 << 20, 'x')).text();

    const ToolRun run = update(text);

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_TRUE(directory.read("a_updated.obl") == text);
}

} // namespace
