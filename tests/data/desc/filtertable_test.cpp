#include "data/desc/filtertable.h"

#include "data/desc/valuetype.h"
#include "data/vec.h"
#include "support/golden.h"
#include "support/shelfcases.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <algorithm>
#include <cctype>
#include <sstream>

using namespace Ksx::Data::Desc;
using Orv::Data::Vec;
using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::caseName;
using TestSupport::goldenPath;
using TestSupport::readFile;

namespace {

using Lines = std::vector<std::string>;

// A table of the tests' own, so that they do without the one of the process.
const FilterTable& filters()
{
    static const FilterTable table(makeCommonParameters(), makeInputParameters());
    return table;
}

const Filter& filter(const std::string& identifier)
{
    return *filters().find(identifier);
}

// The first parameter of that identifier, which a filter, one of its sub-nodes or a group has.
const Parameter& parameter(const std::string& owner, const std::string& identifier)
{
    if (owner == "Common_parameters")
        return *filter("blur").group(owner)->find(identifier);
    const Filter* const found = filters().find(owner);
    return found ? *found->parameter(identifier)
                 : *filter("fxmaps").subNode(owner)->group->find(identifier);
}

Lines identifiersOf(const std::vector<const Filter*>& all)
{
    Lines identifiers;
    for (const Filter* const one : all)
        identifiers.push_back(one->identifier);
    return identifiers;
}

Lines identifiersOf(const std::vector<const Parameter*>& all)
{
    Lines identifiers;
    for (const Parameter* const one : all)
        identifiers.push_back(one->identifier);
    return identifiers;
}

// The blocks of the golden file, which blank lines part, by the first word of each.
std::map<std::string, Lines> goldenBlocks()
{
    std::map<std::string, Lines> blocks;
    std::istringstream text(readFile(goldenPath("filters.txt")));
    Lines* block = nullptr;
    for (std::string line; std::getline(text, line);) {
        if (line.empty())
            block = nullptr;
        else if (!block)
            block = &blocks[line.substr(0, line.find(' '))];
        if (block)
            block->push_back(line);
    }
    return blocks;
}

// --- the tables in the words of the golden file

const std::map<unsigned, std::string> typeWords{
    {1, "color image"},
    {2, "grayscale image"},
    {3, "image"},
    {4, "bool"},
    {16, "int"},
    {32, "int2"},
    {64, "int3"},
    {128, "int4"},
    {256, "float"},
    {512, "float2"},
    {1024, "float3"},
    {2048, "float4"},
    {2304, "float or float4"},
    {2307, "float, float4 or image"},
    {4096, "fx-map"},
    {16384, "text"},
    {32768, "string"},
    {65536, "pattern"},
};

const std::map<unsigned, std::string> outputWords{
    {1, "color"}, {2, "grayscale"}, {3, "color or grayscale"}};

template <class T>
bool writeIf(std::ostream& stream, const boost::any& value)
{
    const T* const held = boost::any_cast<T>(&value);
    if (held && *held != T{})
        stream << " = " << std::boolalpha << *held;
    return held;
}

// Nothing for zero, which is what most parameters are.
void writeDefault(std::ostream& stream, const Parameter& described)
{
    const boost::any& value = described.defaultValue;
    const bool isKnown =
        writeIf<bool>(stream, value) || writeIf<unsigned>(stream, value) ||
        writeIf<Vec<int, 2>>(stream, value) || writeIf<Vec<int, 3>>(stream, value) ||
        writeIf<Vec<float, 1>>(stream, value) || writeIf<Vec<float, 2>>(stream, value) ||
        writeIf<Vec<float, 4>>(stream, value) || writeIf<std::string>(stream, value);
    if (!isKnown)
        stream << " of unknown shape";
}

bool contains(const std::vector<const Parameter*>& list, const Parameter* described)
{
    return std::find(list.begin(), list.end(), described) != list.end();
}

std::string lineOf(const Parameter& described, bool isConnector)
{
    std::ostringstream line;
    line << "  " << (isConnector ? "connector " : "") << described.identifier << ':';
    for (const ValueEntry& entry : described.entries)
        line << ' ' << entry.identifier;
    if (described.entries.empty())
        line << ' ' << typeWords.at(described.type);
    if (!isConnector)
        writeDefault(line, described);
    if (described.flags != 0)
        line << (described.flags == 0x20  ? ", primary"
                 : described.flags == 0x8 ? ", inherited"
                                          : ", unknown flags");
    return line.str();
}

std::string prefixOf(const std::string& key, const std::string& ending)
{
    return key.substr(0, key.rfind(ending));
}

Lines blockOf(const std::string& head, const ParameterGroup& group,
              const std::vector<const Parameter*>& connectors)
{
    Lines lines{head};
    for (const Parameter* const described : group.parameters())
        lines.push_back(lineOf(*described, contains(connectors, described)));
    return lines;
}

Lines blockOf(const ParameterGroup& group)
{
    return blockOf(group.identifier() + "  prefix " + prefixOf(group.nameKey(), "_NAME"), group,
                   {});
}

Lines blockOf(const SubNode& node)
{
    return blockOf("fxmaps/" + node.identifier + "  prefix " + prefixOf(node.nameKey, "_NAME"),
                   *node.group, node.inputs);
}

Lines blockOf(const Filter& one)
{
    std::ostringstream head;
    head << one.identifier << "  kind " << one.kind << "  prefix " << prefixOf(one.nameKey, "_NAME")
         << "  output " << outputWords.at(one.outputTypes) << "  flags " << one.flags;
    return blockOf(head.str(), *one.groups.front(), one.inputs);
}

std::map<std::string, Lines> describedBlocks()
{
    std::map<std::string, Lines> blocks;
    for (const Filter* const one : filters().all())
        blocks[one->identifier] = blockOf(*one);
    for (const SubNode& node : filter("fxmaps").subNodes)
        blocks["fxmaps/" + node.identifier] = blockOf(node);
    blocks["Common_parameters"] = blockOf(*makeCommonParameters());
    blocks["Input_parameters"] = blockOf(*makeInputParameters());
    return blocks;
}

Lines namesOf(const std::map<std::string, Lines>& blocks)
{
    Lines names;
    for (const auto& [name, lines] : blocks)
        names.push_back(name);
    return names;
}

// --- keys

std::string capitalsWithoutGaps(const std::string& text)
{
    std::string result;
    for (const char letter : text)
        if (letter != ' ' && letter != '_')
            result += static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    return result;
}

// Where the words of the key are not those of the identifier, or the keys are not built alike.
void collectOddKeys(Lines& odd, const std::string& prefix, const Parameter& described)
{
    const std::string key = prefixOf(described.nameKey, "_NAME");
    const bool isByRule =
        described.nameKey == key + "_NAME" && described.descKey == key + "_DESC" &&
        key.compare(0, prefix.size() + 1, prefix + '_') == 0 &&
        capitalsWithoutGaps(key.substr(prefix.size())) == capitalsWithoutGaps(described.identifier);
    if (!isByRule)
        odd.push_back(described.nameKey);
}

Lines oddKeysOf(const std::string& prefix, const ParameterGroup& group)
{
    Lines odd;
    for (const Parameter* const described : group.parameters())
        collectOddKeys(odd, prefix, *described);
    return odd;
}

Lines oddKeysOfFilters()
{
    Lines odd;
    for (const Filter* const one : filters().all())
        for (const std::string& key :
             oddKeysOf(prefixOf(one->nameKey, "_NAME"), *one->groups.front()))
            odd.push_back(key);
    for (const SubNode& node : filter("fxmaps").subNodes)
        for (const std::string& key : oddKeysOf(prefixOf(node.nameKey, "_NAME"), *node.group))
            odd.push_back(key);
    return odd;
}

// --- what filters have in common

Lines filtersWithoutCommonParameters()
{
    Lines without;
    const ParameterGroup* const shared = filters().all().front()->group("__common__");
    for (const Filter* const one : filters().all())
        if (!shared || one->group("__common__") != shared)
            without.push_back(one->identifier);
    return without;
}

Lines filtersWithInputParameters()
{
    Lines with;
    for (const Filter* const one : filters().all())
        if (one->group("Input_parameters"))
            with.push_back(one->identifier);
    return with;
}

Lines filtersNotFound()
{
    Lines lost;
    for (const Filter* const one : filters().all())
        if (filters().find(one->kind) != one || filters().find(one->identifier) != one)
            lost.push_back(one->identifier);
    return lost;
}

// Connectors hold no value, and the defaults of all others have the shape of their type.
void collectOddShapes(Lines& odd, const ParameterGroup& group,
                      const std::vector<const Parameter*>& connectors)
{
    for (const Parameter* const described : group.parameters()) {
        const std::type_info& wanted =
            contains(connectors, described) ? typeid(void) : emptyValueOf(described->type).type();
        if (described->defaultValue.type() != wanted)
            odd.push_back(described->identifier);
    }
}

Lines parametersWithOddShapes()
{
    Lines odd;
    for (const Filter* const one : filters().all())
        collectOddShapes(odd, *one->groups.front(), one->inputs);
    for (const SubNode& node : filter("fxmaps").subNodes)
        collectOddShapes(odd, *node.group, node.inputs);
    collectOddShapes(odd, *makeCommonParameters(), {});
    return odd;
}

Lines filtersWithSeveralPrimaryInputs()
{
    Lines several;
    for (const Filter* const one : filters().all())
        if (std::count_if(one->inputs.begin(), one->inputs.end(), [](const Parameter* input) {
                return (input->flags & ParameterFlag::Primary) != 0;
            }) > 1)
            several.push_back(one->identifier);
    return several;
}

struct BlockCase
{
    std::string block;
    std::string name;
};

void PrintTo(const BlockCase& one, std::ostream* stream)
{
    *stream << one.block;
}

std::vector<BlockCase> blockCases()
{
    std::vector<BlockCase> cases;
    for (const std::string& block : namesOf(goldenBlocks())) {
        std::string name = block;
        std::replace_if(
            name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, 'X');
        cases.push_back({block, name});
    }
    return cases;
}

struct ExtraCase
{
    const char* name;
    const char* owner;
    const char* parameter;
    const char* extra;
    const char* value;
};

struct KeyCase
{
    const char* name;
    const char* owner;
    const char* parameter;
    std::size_t item;
    const char* key; // without the ending
};

} // namespace

// --- rows

class FilterRow : public testing::TestWithParam<BlockCase>
{};

TEST_P(FilterRow, HasTheConnectorsAndParametersOfTheTable)
{
    EXPECT_EQ(describedBlocks()[GetParam().block], goldenBlocks()[GetParam().block]);
}

INSTANTIATE_TEST_SUITE_P(All, FilterRow, testing::ValuesIn(blockCases()), caseName<BlockCase>);

TEST(FilterTable, HasTheRowsOfTheTableAndNoOthers)
{
    EXPECT_EQ(namesOf(describedBlocks()), namesOf(goldenBlocks()));
}

TEST(FilterTable, ListsTheFiltersInTheOrderInWhichTheyAreOffered)
{
    EXPECT_THAT(identifiersOf(filters().all()),
                ElementsAre("grayscaleconversion", "uniform", "levels", "hsl", "sharpen",
                            "directionalwarp", "dirmotionblur", "blur", "transformation",
                            "motionblur", "emboss", "warp", "shuffle", "blend", "bitmap",
                            "gradient", "text", "svg", "fxmaps", "normal"));
}

// --- look-ups

TEST(FilterTable, FindsEachFilterByKindAndByIdentifier)
{
    EXPECT_THAT(filtersNotFound(), IsEmpty());
}

TEST(FilterTable, FindsNoFilterBehindTheLastKind)
{
    EXPECT_EQ(filters().find(20u), nullptr);
    EXPECT_EQ(filters().find(4294967295u), nullptr);
}

TEST(FilterTable, FindsNoFilterOfAnotherIdentifier)
{
    EXPECT_EQ(filters().find("Blend"), nullptr);
    EXPECT_EQ(filters().find("blen"), nullptr);
    EXPECT_EQ(filters().find(""), nullptr);
}

TEST(FilterTable, NamesTheKindsByTheirNumbers)
{
    EXPECT_EQ(filters().find(FilterKind::Transformation), filters().find(2u));
    EXPECT_EQ(filters().find(FilterKind::FxMaps), filters().find(5u));
    EXPECT_EQ(filters().find(FilterKind::Bitmap), filters().find(17u));
    EXPECT_EQ(filters().find(FilterKind::Normal), filters().find(19u));
}

TEST(Filter, FindsItsOwnParametersBeforeTheCommonOnes)
{
    EXPECT_EQ(filter("text").parameter("position")->type, ValueType::Int2);
    EXPECT_EQ(filter("text").parameter("outputsize")->type, ValueType::Int2);
    EXPECT_EQ(filter("text").parameter("opacity"), nullptr);
}

TEST(Filter, FindsTheFirstOfSeveralParametersOfAName)
{
    EXPECT_EQ(filter("gradient").parameter("value")->type, ValueType::Float4);
}

TEST(Filter, FindsItsGroupsByIdentifierAndByName)
{
    EXPECT_EQ(filter("blur").group("__main__"), filter("blur").groups.front().get());
    EXPECT_EQ(filter("blur").group("Filters_parameters"), filter("blur").groups.front().get());
    EXPECT_EQ(filter("blur").group("Common_parameters"), filter("blur").group("__common__"));
    EXPECT_EQ(filter("blur").group("Input_parameters"), nullptr);
}

// --- groups

TEST(FilterTable, GivesAllFiltersTheSameCommonParameters)
{
    EXPECT_THAT(filtersWithoutCommonParameters(), IsEmpty());
}

TEST(FilterTable, GivesInputParametersToTheFilterOfBitmapDataOnly)
{
    EXPECT_THAT(filtersWithInputParameters(), ElementsAre("bitmap"));
}

TEST(FilterTable, NamesTheGroupOfAFilterByItsPrefix)
{
    EXPECT_EQ(filter("warp").groups.front()->nameKey(), "WARP_FILTER_PARAMETERS_NAME");
    EXPECT_EQ(filter("warp").groups.front()->descKey(), "WARP_FILTER_PARAMETERS_DESC");
}

TEST(FilterTable, NamesTheSharedGroupsByKeysOfTheirOwn)
{
    EXPECT_EQ(makeCommonParameters()->nameKey(), "COMMON_PARAMETERS_NAME");
    EXPECT_EQ(makeCommonParameters()->descKey(), "COMMON_PARAMETERS_DESC");
    EXPECT_EQ(makeInputParameters()->nameKey(), "INPUT_PARAMETERS_NAME");
    EXPECT_EQ(makeInputParameters()->descKey(), "INPUT_PARAMETERS_DESC");
}

// --- connectors

TEST(FilterTable, ListsConnectorsBeforeParameters)
{
    EXPECT_THAT(identifiersOf(filter("blend").inputs), ElementsAre("source", "destination"));
    EXPECT_EQ(filter("blend").inputs.front(), filter("blend").groups.front()->parameters().front());
}

TEST(FilterTable, HasOnePrimaryInputAFilterAtMost)
{
    EXPECT_THAT(filtersWithSeveralPrimaryInputs(), IsEmpty());
}

TEST(FilterTable, TakesABackgroundAsConnectorOfAnFxMapOnly)
{
    EXPECT_THAT(identifiersOf(filter("fxmaps").inputs), ElementsAre("inputpattern", "background"));
    EXPECT_THAT(filter("svg").inputs, IsEmpty());
    EXPECT_THAT(filter("text").inputs, IsEmpty());
}

// --- values

TEST(FilterTable, HasDefaultsOfTheShapeOfTheirType)
{
    EXPECT_THAT(parametersWithOddShapes(), IsEmpty());
}

TEST(FilterTable, NumbersTheItemsOfAnEnumeration)
{
    EXPECT_EQ(boost::any_cast<unsigned>(parameter("blend", "blendingmode").entries[3].value), 3u);
}

class FilterExtra : public testing::TestWithParam<ExtraCase>
{};

TEST_P(FilterExtra, IsKeptAsText)
{
    EXPECT_EQ(parameter(GetParam().owner, GetParam().parameter).extra(GetParam().extra),
              GetParam().value);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(All, FilterExtra, testing::Values(
    ExtraCase{"SizeIsAPowerOfTwo",  "Common_parameters", "outputsize",   "valueInterpretation", "sizepow2"},
    ExtraCase{"SizeLowest",         "Common_parameters", "outputsize",   "min",    "-12"},
    ExtraCase{"SizeHighest",        "Common_parameters", "outputsize",   "max",    "12"},
    ExtraCase{"PixelSizeFirst",     "Common_parameters", "pixelsize",    "label0", "COMMON_PARAMETERS_PIXEL_SIZE_SLIDER_LABEL_0"},
    ExtraCase{"PixelSizeSecond",    "Common_parameters", "pixelsize",    "label1", "COMMON_PARAMETERS_PIXEL_SIZE_SLIDER_LABEL_1"},
    ExtraCase{"OffsetLowest",       "transformation",    "offset",       "min",    "-0.5"},
    ExtraCase{"OffsetHighest",      "transformation",    "offset",       "max",    "0.5"},
    ExtraCase{"FxMapGrayscale",     "fxmaps",            "colorswitch",  "label0", "FXMAP_COLOR_SWITCH_LABEL_0"},
    ExtraCase{"FxMapColor",         "fxmaps",            "colorswitch",  "label1", "FXMAP_COLOR_SWITCH_LABEL_1"},
    ExtraCase{"RenderRoiFirst",     "fxmaps",            "renderroi",    "label0", "FX_MAP_FILTER_RENDERROI_SLIDER_LABEL_0"},
    ExtraCase{"RenderRoiLast",      "fxmaps",            "renderroi",    "label3", "FX_MAP_FILTER_RENDERROI_SLIDER_LABEL_3"},
    ExtraCase{"TilingRoiFirst",     "fxmaps",            "tilingroi",    "label0", "FX_MAP_FILTER_TILINGROI_SLIDER_LABEL_0"},
    ExtraCase{"TilingRoiLast",      "fxmaps",            "tilingroi",    "label3", "FX_MAP_FILTER_TILINGROI_SLIDER_LABEL_3"},
    ExtraCase{"RoiLowest",          "fxmaps",            "renderroi",    "min",    "-1.0"},
    ExtraCase{"BranchHighest",      "paramset",          "branchoffset", "max",    "1.0"},
    ExtraCase{"NoneOfThatName",     "blur",              "intensity",    "label0", ""}),
    caseName<ExtraCase>);
// clang-format on

// --- keys

TEST(FilterTable, BuildsKeysFromPrefixAndWords)
{
    EXPECT_THAT(oddKeysOfFilters(), IsEmpty());
    EXPECT_THAT(oddKeysOf("COMMON_PARAMETERS", *makeCommonParameters()), IsEmpty());
    EXPECT_THAT(oddKeysOf("INPUT_PARAMETERS", *makeInputParameters()), IsEmpty());
}

TEST(FilterTable, PartsTheWordsOfAKey)
{
    EXPECT_EQ(parameter("levels", "levelinmid").nameKey, "LEVELS_LEVEL_IN_MID_NAME");
    EXPECT_EQ(parameter("levels", "levelinmid").descKey, "LEVELS_LEVEL_IN_MID_DESC");
    EXPECT_EQ(parameter("text", "Font data").nameKey, "TEXT_FONT_DATA_NAME");
    EXPECT_EQ(parameter("text", "front color").descKey, "TEXT_FRONT_COLOR_DESC");
}

TEST(FilterTable, KeepsMisspelledKeys)
{
    EXPECT_EQ(filter("directionalwarp").nameKey, "DIRECTIONNAL_WARP_NAME");
    EXPECT_EQ(filter("dirmotionblur").descKey, "DIRECTIONNAL_MOTION_BLUR_DESC");
    EXPECT_EQ(parameter("text", "alignement").nameKey, "TEXT_ALIGNEMENT_NAME");
}

TEST(FilterTable, HasAShortNameForEachFilter)
{
    EXPECT_EQ(filter("svg").shortNameKey, "VECTOR_GRAPHICS_DATA_SHORT_NAME");
}

class ItemKey : public testing::TestWithParam<KeyCase>
{};

TEST_P(ItemKey, HoldsTheParameterAndTheItem)
{
    const ValueEntry& entry =
        parameter(GetParam().owner, GetParam().parameter).entries[GetParam().item];
    EXPECT_EQ(entry.nameKey, GetParam().key + std::string("_NAME"));
    EXPECT_EQ(entry.descKey, GetParam().key + std::string("_DESC"));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(All, ItemKey, testing::Values(
    KeyCase{"Quality",  "Common_parameters", "quality",      1, "COMMON_QUALITY_LOW"},
    KeyCase{"Tiling",   "Common_parameters", "tiling",       0, "COMMON_TILING_NO_TILING"},
    KeyCase{"Format",   "Common_parameters", "format",       0, "COMMON_FORMAT_8_BITS_PER_CHANNEL"},
    KeyCase{"Blending", "blend",             "blendingmode", 2, "BLEND_BLENDING_MODE_SUBSTRACT"},
    KeyCase{"Pattern",  "paramset",          "patterntype",  1, "FX_MAP_PARAM_SET_PATTERN_TYPE_IMAGE_ENTRY"}),
    caseName<KeyCase>);
// clang-format on

// --- key lists and sub-nodes

TEST(Filter, HoldsKeyListsForAGradient)
{
    const std::vector<ParameterList>& lists = filter("gradient").lists;
    ASSERT_EQ(lists.size(), 2u);
    EXPECT_EQ(lists[0].identifier, "gradientalpha");
    EXPECT_EQ(lists[1].identifier, "gradientrgba");
    EXPECT_THAT(identifiersOf(lists[0].fields), ElementsAre("position", "midpoint", "value"));
    EXPECT_THAT(identifiersOf(lists[1].fields), ElementsAre("position", "midpoint", "value"));
}

TEST(Filter, KeysAnAlphaByANumberAndAColorByFour)
{
    const std::vector<ParameterList>& lists = filter("gradient").lists;
    EXPECT_EQ(lists[0].fields[2]->type, ValueType::Float1);
    EXPECT_EQ(lists[1].fields[2]->type, ValueType::Float4);
}

TEST(Filter, HasSubNodesInAnFxMapOnly)
{
    EXPECT_EQ(filter("fxmaps").subNodes.size(), 4u);
    EXPECT_EQ(filter("fxmaps").subNode("markovn"), &filter("fxmaps").subNodes[2]);
    EXPECT_EQ(filter("fxmaps").subNode("markov"), nullptr);
    EXPECT_THAT(filter("blend").subNodes, IsEmpty());
}
