#include "ksx/kit/format.h"

#include "support/golden.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <map>
#include <set>
#include <sstream>

using Ksx::Kit::FormatItem;
using Ksx::Kit::FormatMember;
using Ksx::Kit::FormatStructure;
using Ksx::Kit::MemberKind;
using Ksx::Kit::packageFormat;

namespace {

using Lines = std::vector<std::string>;

std::set<std::string> namesOf(const std::vector<FormatStructure>& structures)
{
    std::set<std::string> names;
    for (const FormatStructure& structure : structures)
        names.insert(structure.name);
    return names;
}

const FormatMember& memberOf(const std::vector<FormatStructure>& format, const std::string& name,
                             const std::string& element)
{
    const auto structure = std::find_if(format.begin(), format.end(),
                                        [&](const auto& one) { return one.name == name; });
    return *std::find_if(structure->members.begin(), structure->members.end(),
                         [&](const auto& one) { return one.element == element; });
}

Lines elementsOf(const std::vector<FormatItem>& items)
{
    Lines elements;
    for (const FormatItem& item : items)
        elements.push_back(item.element);
    return elements;
}

// "name required" or "name optional" for each member.
Lines linesOf(const FormatStructure& structure)
{
    Lines lines;
    for (const FormatMember& member : structure.members)
        lines.push_back(member.element + (member.isRequired ? " required" : " optional"));
    return lines;
}

// The same lines of the table, by the element of the structure. Lists and unions have none.
std::map<std::string, Lines> tableLines()
{
    std::map<std::string, Lines> blocks;
    std::istringstream text(TestSupport::readFile(TestSupport::goldenPath("schema.txt")));
    std::string structure;
    for (std::string line; std::getline(text, line);) {
        std::istringstream words(line);
        const Lines row{std::istream_iterator<std::string>(words), {}};
        if (!row.empty() && row.front().front() == '[')
            structure = row.back();
        for (const char* need : {"required", "optional"})
            if (std::count(row.begin(), row.end(), need) != 0)
                blocks[structure].push_back(row.front() + " " + need);
    }
    return blocks;
}

// Structures of values that may be overloaded are told apart by types in the format, and by
// elements in the table.
bool isOverloadable(const Lines& lines)
{
    return lines.front() == "value required";
}

std::set<std::string> namesInTable()
{
    std::set<std::string> names;
    for (const auto& [name, lines] : tableLines())
        if (!isOverloadable(lines))
            names.insert(name);
    return names;
}

std::vector<FormatStructure> structuresInTable()
{
    std::vector<FormatStructure> structures = packageFormat();
    structures.erase(std::remove_if(structures.begin(), structures.end(),
                                    [](const auto& one) { return isOverloadable(linesOf(one)); }),
                     structures.end());
    return structures;
}

// The members whose items or structure are not there, or there against their kind.
Lines faultsOf(const FormatStructure& structure)
{
    Lines faults;
    const std::set<std::string> names = namesOf(packageFormat());
    for (const FormatMember& member : structure.members) {
        const bool hasItems = member.kind == MemberKind::List || member.kind == MemberKind::Union;
        const bool areItemsKnown =
            std::all_of(member.items.begin(), member.items.end(),
                        [&](const FormatItem& item) { return names.count(item.structure) == 1; });
        if (hasItems == member.items.empty() || !areItemsKnown ||
            (member.kind == MemberKind::Structure) != (names.count(member.structure) == 1) ||
            (member.kind == MemberKind::Value) == member.type.empty())
            faults.push_back(member.element);
    }
    return faults;
}

class FormatOf : public testing::TestWithParam<FormatStructure>
{};

std::string testName(const testing::TestParamInfo<FormatStructure>& info)
{
    std::string name = info.param.name;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

} // namespace

namespace Ksx::Kit {

static void PrintTo(const FormatStructure& structure, std::ostream* stream)
{
    *stream << structure.name;
}

} // namespace Ksx::Kit

TEST_P(FormatOf, HasNoMemberThatLeadsNowhere)
{
    EXPECT_EQ(faultsOf(GetParam()), Lines());
}

INSTANTIATE_TEST_SUITE_P(All, FormatOf, testing::ValuesIn(packageFormat()), testName);

class FormatInTable : public FormatOf
{};

TEST_P(FormatInTable, HasTheMembersOfTheTable)
{
    EXPECT_EQ(linesOf(GetParam()), tableLines()[GetParam().name]);
}

INSTANTIATE_TEST_SUITE_P(All, FormatInTable, testing::ValuesIn(structuresInTable()), testName);

TEST(PackageFormat, BeginsWithThePackage)
{
    EXPECT_EQ(packageFormat().front().name, "package");
}

TEST(PackageFormat, HasEachStructureOnce)
{
    EXPECT_EQ(namesOf(packageFormat()).size(), packageFormat().size());
}

TEST(PackageFormat, HasAllStructuresOfTheTableButTheListOfPackages)
{
    std::set<std::string> names = namesOf(structuresInTable());
    names.insert("packageslist");

    EXPECT_EQ(names, namesInTable());
}

TEST(PackageFormat, HasTheItemsOfAListAndTheChoicesOfAUnion)
{
    const std::vector<FormatStructure> format = packageFormat();

    EXPECT_EQ(elementsOf(memberOf(format, "package", "content").items),
              (Lines{"group", "resource", "graph", "function"}));
    EXPECT_EQ(elementsOf(memberOf(format, "resource", "source").items),
              (Lines{"externalcopy", "binboon", "binembedded"}));
    EXPECT_EQ(elementsOf(memberOf(format, "funcData", "constantValue").items).size(), 12U);
}

TEST(PackageFormat, HasTypesDefaultsAndFilePaths)
{
    const std::vector<FormatStructure> format = packageFormat();

    EXPECT_EQ(memberOf(format, "package", "packageType").defaultValue, "Kestrix");
    EXPECT_EQ(memberOf(format, "package", "platform").type, "uint32");
    EXPECT_EQ(memberOf(format, "parameter", "relativeTo").defaultValue, "4294967295");
    EXPECT_EQ(memberOf(format, "GUILayout", "gpos").type, "float3");
    EXPECT_TRUE(memberOf(format, "dependency", "filename").isFilePath);
    EXPECT_FALSE(memberOf(format, "externalcopy", "filename").isFilePath);
}

TEST(PackageFormat, HasOneStructureForAllOverloadableValuesOfAType)
{
    const std::vector<FormatStructure> format = packageFormat();

    EXPECT_EQ(memberOf(format, "paraminput", "type").structure, "overloadable.uint32");
    EXPECT_EQ(memberOf(format, "graph", "primaryInput").structure, "overloadable.uint32");
    EXPECT_EQ(memberOf(format, "overloadable.uint32", "value").type, "uint32");
    EXPECT_EQ(memberOf(format, "overload.uint32", "value").type, "uint32");
}
