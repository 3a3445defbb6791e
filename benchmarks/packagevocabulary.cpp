// The tables of what generated packages are made of.
#include "packagevocabulary.h"

namespace Benchmark {

// clang-format off
const std::vector<FilterRow>& filters()
{
    using V = ValueKind;
    static const std::vector<FilterRow> rows{
        {"uniform", Inputs::None, Type::Gray, {},
            {{"colorswitch", V::Bool, 1}, {"outputcolor", V::Float1, 1000}}},
        {"uniform", Inputs::None, Type::Color, {},
            {{"outputcolor", V::Float4, 1000}}},
        {"blend", Inputs::TwoAlike, 0, {"source", "destination"},
            {{"blendingmode", V::Choice, 8}, {"opacity", V::Float1, 1000},
             {"alphablending", V::Bool, 1}, {"maskrectangle", V::Float4, 1000}}},
        {"levels", Inputs::AnyOne, 0, {"input1", nullptr},
            {{"levelinlow", V::ByColor, 400}, {"levelinhigh", V::ByColor, 1000},
             {"levelinmid", V::ByColor, 1000}, {"levelouthigh", V::ByColor, 1000}}},
        {"blur", Inputs::AnyOne, 0, {"input1", nullptr},
            {{"intensity", V::Float1, 24000}}},
        {"sharpen", Inputs::AnyOne, 0, {"input1", nullptr},
            {{"intensity", V::Float1, 3000}}},
        {"transformation", Inputs::AnyOne, 0, {"input1", nullptr},
            {{"matrix22", V::Float4, 2000}, {"offset", V::Float2, 500},
             {"filtering", V::Choice, 2}, {"mattecolor", V::ByColor, 1000}}},
        {"dirmotionblur", Inputs::AnyOne, 0, {"input1", nullptr},
            {{"intensity", V::Float1, 20000}, {"mblurangle", V::Float1, 1000}}},
        {"warp", Inputs::AnyThenGray, 0, {"input1", "inputgradient"},
            {{"intensity", V::Float1, 1000}}},
        {"directionalwarp", Inputs::AnyThenGray, 0, {"input1", "inputintensity"},
            {{"intensity", V::Float1, 20000}, {"warpangle", V::Float1, 1000}}},
        {"emboss", Inputs::AnyThenGray, 0, {"input1", "inputgradient"},
            {{"lightangle", V::Float1, 1000}, {"highlightcolor", V::ByColor, 1000}}},
        {"normal", Inputs::GrayOne, Type::Color, {"input1", nullptr},
            {{"intensity", V::Float1, 16000}, {"inversedy", V::Bool, 1}}},
        {"grayscaleconversion", Inputs::ColorOne, Type::Gray, {"input1", nullptr},
            {{"channelsweights", V::Float4, 1000}}},
        {"hsl", Inputs::ColorOne, Type::Color, {"input1", nullptr},
            {{"hue", V::Float1, 1000}, {"saturation", V::Float1, 1000},
             {"luminosity", V::Float1, 1000}}},
    };
    return rows;
}

const std::vector<ParameterRow>& commonParameters()
{
    static const std::vector<ParameterRow> rows{
        {"outputsize", ValueKind::Size, 12},
        {"format", ValueKind::Choice, 4},
        {"pixelsize", ValueKind::Float2, 500},
        {"tiling", ValueKind::Choice, 4},
        {"randomseed", ValueKind::Seed, 1000},
    };
    return rows;
}

const std::vector<InputRow>& numberInputs()
{
    static const std::vector<InputRow> rows{
        {"roughness", Type::Float1, "constantValueFloat1", "0.35", "slider",
            {{"min", "0"}, {"max", "1"}, {"step", "0.01"}}},
        {"scale", Type::Int1, "constantValueInt1", "4", "dropdownlist",
            {{"parameters", "1;small | 4;medium | 16;large"}}},
        {"tint", Type::Float4, "constantValueFloat4", "0.8 0.62 0.4 1", "color", {}},
    };
    return rows;
}

const std::vector<UsageRow>& usages()
{
    static const std::vector<UsageRow> rows{
        {"RGBA", "diffuse",  "diffuse_map",  Type::Color},
        {"RGBA", "normal",   "normal_map",   Type::Color},
        {"RGBA", "height",   "height_map",   Type::Gray},
        {"RGBA", "specular", "specular_map", Type::Gray},
        {"RGBA", "emissive", "emissive_map", Type::Color},
        {"A",    "opacity",  "opacity_map",  Type::Gray},
    };
    return rows;
}
// clang-format on

} // namespace Benchmark
