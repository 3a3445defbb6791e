// What is known of an atomic filter, the built-in image node of a graph.
#pragma once

#include "data/desc/parametergroup.h"

namespace Ksx::Data::Desc {

// The numbers of the filters.
enum class FilterKind : unsigned
{
    Gradient,
    Blend,
    Transformation,
    GrayscaleConversion,
    Shuffle,
    FxMaps,
    Svg,
    Uniform,
    Warp,
    Emboss,
    MotionBlur,
    Blur,
    DirMotionBlur,
    DirectionalWarp,
    Sharpen,
    Hsl,
    Levels,
    Bitmap,
    Text,
    Normal
};

// A kind of node in the graph that an FX-map holds.
struct SubNode
{
    std::string identifier;
    std::string nameKey;
    std::string descKey;
    ParameterGroupPointer group;          // connections first, then parameters
    std::vector<const Parameter*> inputs; // the connections among them
};

// A list of records, each with the same fields: the keys of a gradient.
struct ParameterList
{
    std::string identifier;
    std::vector<const Parameter*> fields; // parameters of the filter's own group
};

struct FilterOutputUsage
{
    std::string name;       // such as "diffuse"
    std::string components; // such as "RGBA"
};

// An output of a node that has several.
struct FilterOutput
{
    std::string identifier;
    std::string name;    // for users
    std::string tooltip; // for users
    unsigned type = 0;   // one ValueType
    std::vector<FilterOutputUsage> usages = {};
};

// The filters of the table are never changed. A node without a table makes one of its own and fills
// the fields.
struct Filter
{
    std::string identifier; // in package files
    unsigned kind = 0;      // of FilterKind
    unsigned outputTypes = 0;
    unsigned flags = 0;
    // Keys of translations in the context "Ksx::Data::Desc::Filters".
    std::string nameKey;
    std::string shortNameKey;
    std::string descKey;
    // The filter's own group, the one that all filters have, and that of the bitmap data where the
    // filter takes one.
    std::vector<ParameterGroupPointer> groups;
    // The connectors, in order. They are in the filter's own group too, before the parameters.
    std::vector<const Parameter*> inputs;
    // Of a node that makes its own description. The filters of the table have the one output that
    // `outputTypes` describes.
    std::vector<FilterOutput> outputs;
    std::vector<ParameterList> lists;
    std::vector<SubNode> subNodes; // of an FX-map; no other filter has any

    // By the group's identifier or name(): null if the filter has no such group.
    const ParameterGroup* group(std::string_view name) const;
    // By identifier: the first one in the order of the groups, or null.
    const Parameter* parameter(std::string_view name) const;
    // By identifier, or null.
    const SubNode* subNode(std::string_view name) const;
};

} // namespace Ksx::Data::Desc
