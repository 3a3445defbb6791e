// The numbers by which packages and descriptions name the type of a value.
#pragma once

// Each type is one bit, so that a description can name several: Color takes Float1 or Float4.
namespace Ksx::Data::Desc::ValueType {

constexpr unsigned Unknown = 0;

constexpr unsigned ColorImage = 1;
constexpr unsigned GrayscaleImage = 2;
constexpr unsigned Image = ColorImage | GrayscaleImage; // either, by what is connected

constexpr unsigned Bool = 4;
constexpr unsigned Int1 = 16; // also enumerations, as the index of an item
constexpr unsigned Int2 = 32;
constexpr unsigned Int3 = 64;
constexpr unsigned Int4 = 128;
constexpr unsigned Float1 = 256;
constexpr unsigned Float2 = 512;
constexpr unsigned Float3 = 1024;
constexpr unsigned Float4 = 2048;
constexpr unsigned FxMap = 4096; // the connection of two nodes of an FX-map
constexpr unsigned Text = 16384;
constexpr unsigned String = 32768;
constexpr unsigned Pattern = 65536; // the connection of a pattern

// A number in grayscale, four in color, by the color mode of the node.
constexpr unsigned Color = Float1 | Float4;
constexpr unsigned ColorOrImage = Color | Image;
constexpr unsigned Float1OrGrayscaleImage = Float1 | GrayscaleImage;
constexpr unsigned Float4OrColorImage = Float4 | ColorImage;

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
