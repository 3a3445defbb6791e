// What the kinds, types and marks of drawings look like.
#pragma once

#include "ksx/kit/drawing.h"
#include <QByteArray>

namespace Ksx::Kit {

// The groups of types that pictures tell apart.
enum class TypeGroup
{
    Color,
    Grayscale,
    Image,
    Float,
    Integer,
    Boolean,
    Text,
    Unknown,
};
constexpr std::size_t TypeGroupCount = 8;
constexpr std::size_t BoxKindCount = 8;
constexpr std::size_t MarkCount = 5;

TypeGroup groupOf(unsigned type);

// The class of the style sheet and the words of the legend.
struct Look
{
    const char* name;
    const char* words;
};

const Look& lookOf(TypeGroup group);
const Look& lookOf(BoxKind kind);
const Look& lookOf(Mark mark);

// Returns the sign of a mark in UTF-8. People who see no colours tell marks by it.
const char* signOf(Mark mark);

// Returns the steps of a path that draw a connector around its place. Each group has a shape.
const char* shapeOf(TypeGroup group);

// Returns the path of the outline of a box at 0. Each kind has corners of its own.
QByteArray outlineOf(BoxKind kind, double width, double height);

// Returns the style sheet: light, and dark on request.
QByteArray styleSheet(bool hasDark);

} // namespace Ksx::Kit
