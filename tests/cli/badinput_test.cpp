// Files that are no valid packages: the run fails in an orderly way, whatever they hold.
#include "support/damage.h"
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
using TestSupport::DamageCase;
using TestSupport::entityBomb;
using TestSupport::entityOfItself;
using TestSupport::inUtf16;
using TestSupport::longEntity;
using TestSupport::manyAttributes;
using TestSupport::nestedElements;
using TestSupport::nestedGroups;
using TestSupport::repeated;
using TestSupport::replaced;
using TestSupport::runTool;
using TestSupport::shortEntity;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

constexpr long MaximumKilobytes = 1024L * 1024;

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

// The good document, with that in the place of its author and a document type in front.
std::string withAuthor(const std::string& author, const std::string& doctype)
{
    return withBehindDeclaration(doctype, replaced(current(), "v=\"me\"", "v=\"" + author + "\""));
}

std::string old(const std::string& document)
{
    return replaced(document, "1.1.0.7049", "1.0.1.3000");
}

// The document in UTF-16, behind a comment whose bytes read as a version.
std::string wide(const std::string& document)
{
    const std::size_t mark = inUtf16("").size();
    return inUtf16("<!--") + "<formatVersion v=\"1.1.0.7049\"/> " +
           inUtf16("-->" + document.substr(Declaration.size())).substr(mark);
}

std::string nestedUnknowns(int count)
{
    return replaced(current(), "<content>", nestedElements("x", count) + "<content>");
}

std::string nestedConfigurations(int count)
{
    const std::string begin = R"(<configurations><name v=""/><uid v="1"/><configuration>)";
    const std::string end = "</configuration></configurations>";
    return aPackage()
        .withElement("configurations", repeated(begin, count) + repeated(end, count))
        .text();
}

class BadDocument : public BadInput, public testing::WithParamInterface<DamageCase>
{};

TEST_P(BadDocument, IsRefused)
{
    const ToolRun run = update(GetParam().bytes());

    expectRefused(run);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, BadDocument,
    testing::Values(
        DamageCase{"Empty", [] { return std::string(); }},
        DamageCase{"OneByte", [] { return std::string("<"); }},
        DamageCase{"Blanks", [] { return std::string(100000, ' '); }},
        DamageCase{"PlainText", [] { return std::string("This is no package."); }},
        DamageCase{"Zeros", [] { return std::string(100000, '\0'); }},
        DamageCase{"AllByteValues",
                   [] {
                       std::string bytes;
                       for (int i = 0; i < 65536; ++i)
                           bytes += static_cast<char>((i * 7 + i / 256) & 0xFF);
                       return bytes;
                   }},
        DamageCase{"BinaryBehindTheVersion",
                   [] { return current().substr(0, 300) + std::string("\x80\xff\0\x01", 4); }},
        DamageCase{"ZeroInAValue",
                   [] { return replaced(current(), "v=\"me\"", std::string("v=\"m\0e\"", 7)); }},
        DamageCase{"ZeroBetweenElements",
                   [] { return replaced(current(), "<author", std::string(1, '\0') + "<author"); }},
        DamageCase{"ControlCharacterInAValue",
                   [] { return replaced(current(), "\"me\"", "\"\x01\""); }},
        DamageCase{"ZeroAsReference", [] { return replaced(current(), "\"me\"", "\"&#0;\""); }},
        DamageCase{"OtherRoot", [] { return replaced(current(), "package>", "folly>"); }},
        DamageCase{"RootInCapitals", [] { return replaced(current(), "package>", "PACKAGE>"); }},
        DamageCase{"RootWithAPrefix", [] { return replaced(current(), "package>", "p:package>"); }},
        DamageCase{"RootNameOfOneMegabyte",
                   [] { return replaced(current(), "package>", std::string(1 << 20, 'p') + ">"); }},
        DamageCase{"UnknownNameOfOneMegabyte",
                   [] {
                       return replaced(current(), "<author",
                                       "<" + std::string(1 << 20, 'x') + "/><author");
                   }},
        DamageCase{"TwoRoots", [] { return current() + "<package/>"; }},
        DamageCase{"TextBehindTheRoot", [] { return current() + "more"; }},
        DamageCase{"UnclosedRoot", [] { return replaced(current(), "</package>", ""); }},
        DamageCase{"OtherEndOfTheRoot", [] { return replaced(current(), "</package>", "</x>"); }},
        DamageCase{"TextInside", [] { return replaced(current(), "<author", "text<author"); }},
        DamageCase{"ElementInAnAttribute",
                   [] {
                       return replaced(current(), "<author v=\"me\"/>",
                                       "<author v=\"me\"><x/></author>");
                   }},
        DamageCase{"AttributeWithoutItsValue",
                   [] { return replaced(current(), "<author v=", "<author w="); }},
        DamageCase{"AttributeTwice",
                   [] { return replaced(current(), "<author v=", "<author v=\"x\" v="); }},
        DamageCase{"UnknownEntity", [] { return replaced(current(), "\"me\"", "\"&folly;\""); }},
        DamageCase{"EntityOfItself", [] { return withAuthor("&e;", entityOfItself("package")); }},
        DamageCase{"EntityBomb", [] { return withAuthor("&e;", entityBomb("package")); }},
        DamageCase{"FlatEntityBomb",
                   [] { return withAuthor(repeated("&e;", 100000), longEntity("package")); }},
        DamageCase{"ShortEntityNamedOften",
                   [] { return withAuthor(repeated("&e;", 300000), shortEntity("package")); }},
        DamageCase{"ShortEntityNamedOftenInAnOldFile",
                   [] { return old(withAuthor(repeated("&e;", 300000), shortEntity("package"))); }},
        DamageCase{"ShortEntityNamedOftenInATextOfAnOldFile",
                   [] {
                       return old(replaced(withAuthor("me", shortEntity("package")), "<author",
                                           "<x>" + repeated("&e;", 300000) + "</x><author"));
                   }},
        DamageCase{
            "ShortEntityNamedOftenInUtf16",
            [] { return wide(withAuthor(repeated("&e;", 300000), shortEntity("package"))); }},
        DamageCase{
            "TooManyAttributes",
            [] { return replaced(current(), "<author ", "<author " + manyAttributes(80000)); }},
        DamageCase{"TooManyAttributesOfAnUnknownInAnOldFile",
                   [] {
                       return old(replaced(current(), "<author",
                                           "<x " + manyAttributes(80000) + "/><author"));
                   }},
        DamageCase{"FalseEncoding",
                   [] { return replaced(current(), "\"me\"", "\"\xff\xfe\xc3\""); }},
        DamageCase{"UnknownEncoding", [] { return replaced(current(), "UTF-8", "folly"); }},
        DamageCase{"TooManyNestedGroups",
                   [] { return aPackage().containing(nestedGroups(200000)).text(); }},
        DamageCase{"ABitTooManyNestedGroups",
                   [] { return aPackage().containing(nestedGroups(2600)).text(); }},
        DamageCase{"TooManyNestedUnknowns", [] { return nestedUnknowns(200000); }},
        DamageCase{"TooManyNestedUnknownsInAnOldFile", [] { return old(nestedUnknowns(100000)); }},
        DamageCase{"TooManyNestedConfigurations", [] { return nestedConfigurations(200000); }},
        DamageCase{"TooManyUnclosedElements",
                   [] {
                       const std::string text = aPackage().containing(nestedGroups(200000)).text();
                       return text.substr(0, text.size() / 2);
                   }}),
    caseName<DamageCase>);

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

class OddDocument : public BadInput, public testing::WithParamInterface<DamageCase>
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
        DamageCase{"ManyLines", [] { return replaced(plain(), "><", ">\n\t <"); }},
        DamageCase{"ByteOrderMark", [] { return "\xef\xbb\xbf" + plain(); }},
        DamageCase{"Utf16", [] { return wide(plain()); }},
        DamageCase{"NoDeclaration", [] { return plain().substr(Declaration.size()); }},
        DamageCase{
            "UnknownElements",
            [] { return replaced(plain(), "<author", "<x><y z=\"1\">text</y></x><author"); }},
        DamageCase{"UnknownAttributes",
                   [] { return replaced(plain(), "<author v=", "<author x=\"1\" v="); }},
        DamageCase{"MemberTwice",
                   [] {
                       return replaced(plain(), "<author v=\"me\"/>",
                                       "<author v=\"me\"/><author v=\"no\"/>");
                   }},
        DamageCase{"OwnEntity",
                   [] {
                       return withBehindDeclaration("<!DOCTYPE package [<!ENTITY e \"me\">]>",
                                                    replaced(plain(), "v=\"me\"", "v=\"&e;\""));
                   }}),
    caseName<DamageCase>);

TEST_F(BadInput, AnIdentifierOfOneMegabyteIsGood)
{
    const std::string text = aPackage().named(std::string(1 << 20, 'x')).text();

    const ToolRun run = update(text);

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_TRUE(directory.read("a_updated.obl") == text);
}

} // namespace
