// The numbers by which packages and descriptions name the type of a value.
#pragma once

// Each type is one bit, so that a description can name several: Color takes Float1 or Float4.
namespace Ksx::Data::Desc::ValueType {

constexpr unsigned Unknown = 0;

constexpr unsigned ColorImage = 1;
constexpr unsigned GrayscaleImage = 2;
constexpr unsigned Image = ColorImage | GrayscaleImage; // either, by what is connected

#define VALUE_TYPE(name, bit, ...) constexpr unsigned name = bit;
#include "data/desc/valuetypes.inc"

constexpr unsigned FxMap = 4096;    // the connection of two nodes of an FX-map
constexpr unsigned Pattern = 65536; // the connection of a pattern

// A number in grayscale, four in color, by the color mode of the node.
constexpr unsigned Color = Float1 | Float4;
constexpr unsigned ColorOrImage = Color | Image;
constexpr unsigned Float1OrGrayscaleImage = Float1 | GrayscaleImage;
constexpr unsigned Float4OrColorImage = Float4 | ColorImage;

// Returns the type that has the shape of this one. That is Float1 or Float4 for types that images may
// stand for or that follow the color mode, and the type itself for all others.
constexpr unsigned plain(unsigned type)
{
    switch (type) {
    case Float1OrGrayscaleImage:
        return Float1;
    case Float4OrColorImage:
    case Color:
    case ColorOrImage:
        return Float4;
    default:
        return type;
    }
}

// Returns true for what takes an image and no value: an input with a connector. A type for which an
// image can stand is that of a value.
constexpr bool isImage(unsigned type)
{
    return type != Unknown && (type & ~Image) == 0;
}

// Returns true for an image whose color mode is known.
constexpr bool isKnownImage(unsigned type)
{
    return type == ColorImage || type == GrayscaleImage;
}

// Returns true for a connector whose color mode follows what is connected.
constexpr bool isVariant(unsigned type)
{
    return type == Image || type == ColorOrImage;
}

} // namespace Ksx::Data::Desc::ValueType
