#include "drawing/drawingstyle.h"

#include "data/desc/valuetype.h"
#include "drawing/markup.h"
#include <array>

namespace Ksx::Kit {

namespace {

namespace ValueType = Data::Desc::ValueType;

constexpr unsigned Floats =
    ValueType::Float1 | ValueType::Float2 | ValueType::Float3 | ValueType::Float4;
constexpr unsigned Integers = ValueType::Int1 | ValueType::Int2 | ValueType::Int3 | ValueType::Int4;

struct TypeRow
{
    Look look;
    const char* shape;
};

constexpr std::array<TypeRow, TypeGroupCount> Types{{
    {{"color", "color image"}, "m-4.5 0a4.5 4.5 0 1 0 9 0a4.5 4.5 0 1 0-9 0z"},
    {{"grayscale", "grayscale image"}, "m-4-4h8v8h-8z"},
    {{"image", "image of either kind"}, "m-5.5 0l5.5-5.5 5.5 5.5-5.5 5.5z"},
    {{"float", "float"}, "m-4.5-4.5l9 4.5-9 4.5z"},
    {{"integer", "integer"}, "m-5 4l5-9 5 9z"},
    {{"boolean", "boolean"}, "m-2-5h4v3h3v4h-3v3h-4v-3h-3v-4h3z"},
    {{"text", "text"}, "m-5-2.5h10v5h-10z"},
    {{"unknown", "other type"}, "m-3 0a3 3 0 1 0 6 0a3 3 0 1 0-6 0z"},
}};

constexpr std::array<Look, BoxKindCount> Kinds{{{"filter", "filter"},
                                                {"instance", "instance"},
                                                {"input", "input"},
                                                {"output", "output"},
                                                {"operation", "operation"},
                                                {"variable", "variable"},
                                                {"constant", "constant"},
                                                {"other", "other node"}}};

struct MarkRow
{
    Look look;
    const char* sign;
};

constexpr std::array<MarkRow, MarkCount> Marks{{{{"", ""}, ""},
                                                {{"added", "added"}, "+"},
                                                {{"removed", "removed"}, "\u2212"},
                                                {{"changed", "changed"}, "\u2260"},
                                                {{"moved", "moved"}, "\u2192"}}};

// Rules for what is the same in both schemes.
constexpr const char* Common =
    ".ksx text{font-family:\"DejaVu Sans\",Verdana,sans-serif;font-size:10px}\n"
    ".ksx .caption{font-size:14px;font-weight:bold}\n"
    ".ksx .title{font-size:12px;font-weight:bold}\n"
    ".ksx .detail{font-size:9.5px}\n"
    ".ksx .note text,.ksx .legend text{font-size:11px}\n"
    ".ksx .right{text-anchor:end}\n"
    ".ksx .sign{font-size:13px;font-weight:bold;text-anchor:middle}\n"
    ".ksx .wire{fill:none;stroke-width:1.6}\n"
    ".ksx .wire.color{stroke-width:2.6}\n"
    ".ksx .outline{stroke-width:1.2}\n"
    ".ksx .result .outline{stroke-width:3}\n"
    ".ksx .off .outline{stroke-dasharray:2 3}\n"
    ".ksx .off .title,.ksx .off .detail{opacity:.6}\n"
    ".ksx .edge{fill:none;stroke-width:3.5}\n"
    ".ksx .wire.added,.ksx .wire.removed,.ksx .wire.changed,.ksx .wire.moved{stroke-width:4}\n"
    ".ksx .removed{stroke-dasharray:7 4}\n"
    ".ksx .changed{stroke-dasharray:2 3}\n"
    ".ksx .moved{stroke-dasharray:9 3 2 3}\n"
    ".ksx .sign,.ksx .disc{stroke-dasharray:none}\n"
    ".ksx a{cursor:pointer}\n"
    ".ksx a:hover .title,.ksx a:focus .title{text-decoration:underline}\n";

// Rules of the schemes: the selector, and the declarations in light and in dark.
struct Rule
{
    const char* selector;
    const char* light;
    const char* dark;
};

constexpr Rule Rules[] = {
    {".ground", "fill:#ffffff", "fill:#16191d"},
    {"text", "fill:#1b1f24", "fill:#e6e9ec"},
    {".detail", "fill:#4d565f", "fill:#b0b8c0"},
    {".legend .line", "stroke:#c4cad0", "stroke:#3c444c"},
    {".note rect", "fill:#fbf6df;stroke:#d8c98a", "fill:#2d2a1d;stroke:#6b6239"},
    {".frame rect", "fill:#eef1f4;stroke:#9aa4ae", "fill:#20262c;stroke:#5b6670"},
    {".filter .outline", "fill:#dbe9f7;stroke:#2f6ea8", "fill:#1d3348;stroke:#6fa8dc"},
    {".instance .outline", "fill:#dcf0dc;stroke:#357a3c", "fill:#1c3a22;stroke:#79c383"},
    {".input .outline", "fill:#fdeccb;stroke:#a36a00", "fill:#43310f;stroke:#e0aa4c"},
    {".output .outline", "fill:#f6dcea;stroke:#a23b75", "fill:#43203a;stroke:#e38cc0"},
    {".operation .outline", "fill:#d8f0ef;stroke:#1f7a78", "fill:#143a3b;stroke:#5fbfbc"},
    {".variable .outline", "fill:#fdeccb;stroke:#a36a00", "fill:#43310f;stroke:#e0aa4c"},
    {".constant .outline", "fill:#e9eaec;stroke:#666d75", "fill:#2c3136;stroke:#a0a8b0"},
    {".other .outline", "fill:#f4f4f4;stroke:#8a8f95", "fill:#24282c;stroke:#858c93"},
    {".wire.color", "stroke:#c4500b", "stroke:#f08c4a"},
    {".wire.grayscale", "stroke:#6b7178", "stroke:#a4abb3"},
    {".wire.image", "stroke:#7a4fc0", "stroke:#b798ee"},
    {".wire.float", "stroke:#1f7a78", "stroke:#5fbfbc"},
    {".wire.integer", "stroke:#2f6ea8", "stroke:#6fa8dc"},
    {".wire.boolean", "stroke:#a23b75", "stroke:#e38cc0"},
    {".wire.text", "stroke:#a36a00", "stroke:#e0aa4c"},
    {".wire.unknown", "stroke:#8a8f95", "stroke:#858c93"},
    {".knob", "stroke:#ffffff", "stroke:#16191d"},
    {".knob.color", "fill:#c4500b", "fill:#f08c4a"},
    {".knob.grayscale", "fill:#6b7178", "fill:#a4abb3"},
    {".knob.image", "fill:#7a4fc0", "fill:#b798ee"},
    {".knob.float", "fill:#1f7a78", "fill:#5fbfbc"},
    {".knob.integer", "fill:#2f6ea8", "fill:#6fa8dc"},
    {".knob.boolean", "fill:#a23b75", "fill:#e38cc0"},
    {".knob.text", "fill:#a36a00", "fill:#e0aa4c"},
    {".knob.unknown", "fill:#8a8f95", "fill:#858c93"},
    {".edge.added,.ksx .wire.added", "stroke:#14803c", "stroke:#4cc26b"},
    {".edge.removed,.ksx .wire.removed", "stroke:#c8102e", "stroke:#ff7b72"},
    {".edge.changed,.ksx .wire.changed", "stroke:#8250df", "stroke:#c297ff"},
    {".edge.moved,.ksx .wire.moved", "stroke:#0550ae", "stroke:#79c0ff"},
    {".disc.added", "fill:#14803c", "fill:#4cc26b"},
    {".disc.removed", "fill:#c8102e", "fill:#ff7b72"},
    {".disc.changed", "fill:#8250df", "fill:#c297ff"},
    {".disc.moved", "fill:#0550ae", "fill:#79c0ff"},
    {".sign", "fill:#ffffff", "fill:#16191d"},
};

QByteArray ruleText(const char* selector, const char* declarations)
{
    return QByteArray(".ksx ") + selector + '{' + declarations + "}\n";
}

template <class Rows, class Key>
const auto& rowOf(const Rows& rows, Key key)
{
    return rows[static_cast<std::size_t>(key)];
}

// Joins numbers and words of a path.
QByteArray path(std::initializer_list<QByteArray> steps)
{
    QByteArray text;
    for (const QByteArray& step : steps)
        text += step;
    return text;
}

// Returns a rectangle whose corners have a radius of their own on each side.
QByteArray roundedOutline(double width, double height, double left, double right)
{
    const auto arc = [](double radius, const char* end) {
        const QByteArray text = numberText(radius);
        QByteArray place(end);
        place.replace('r', text);
        return "a" + text + ' ' + text + " 0 0 1 " + place;
    };
    return path({"M", numberText(left), " 0H", numberText(width - right), arc(right, "r r"), "V",
                 numberText(height - right), arc(right, "-r r"), "H", numberText(left),
                 arc(left, "-r -r"), "V", numberText(left), arc(left, "r -r"), "z"});
}

QByteArray cutOutline(double width, double height, double cut)
{
    const QByteArray low = numberText(cut);
    return path({"M", low, " 0H", numberText(width - cut), "L", numberText(width), ' ' + low, "V",
                 numberText(height - cut), "L", numberText(width - cut), ' ' + numberText(height),
                 "H", low, "L0 ", numberText(height - cut), "V", low, "z"});
}

} // namespace

TypeGroup groupOf(unsigned type)
{
    const auto isIn = [&](unsigned set) { return type != 0 && (type & ~set) == 0; };
    if (type == ValueType::ColorImage)
        return TypeGroup::Color;
    if (type == ValueType::GrayscaleImage)
        return TypeGroup::Grayscale;
    if (isIn(ValueType::ColorOrImage) && (type & ValueType::Image) != 0)
        return TypeGroup::Image;
    if (isIn(Floats))
        return TypeGroup::Float;
    if (isIn(Integers))
        return TypeGroup::Integer;
    if (type == ValueType::Bool)
        return TypeGroup::Boolean;
    return isIn(ValueType::Text | ValueType::String) ? TypeGroup::Text : TypeGroup::Unknown;
}

const Look& lookOf(TypeGroup group)
{
    return rowOf(Types, group).look;
}

const Look& lookOf(BoxKind kind)
{
    return rowOf(Kinds, kind);
}

const Look& lookOf(Mark mark)
{
    return rowOf(Marks, mark).look;
}

const char* signOf(Mark mark)
{
    return rowOf(Marks, mark).sign;
}

const char* shapeOf(TypeGroup group)
{
    return rowOf(Types, group).shape;
}

QByteArray outlineOf(BoxKind kind, double width, double height)
{
    constexpr double Plain = 3;
    constexpr double Round = 14;
    constexpr double Cut = 7;
    const double room = height / 2;
    const double round = Round < room ? Round : room;
    switch (kind) {
    case BoxKind::Input:
    case BoxKind::Variable:
        return roundedOutline(width, height, round, Plain);
    case BoxKind::Output:
        return roundedOutline(width, height, Plain, round);
    case BoxKind::Operation:
        return roundedOutline(width, height, round, round);
    case BoxKind::Constant:
        return cutOutline(width, height, Cut < room ? Cut : room);
    default:
        return roundedOutline(width, height, Plain, Plain);
    }
}

QByteArray styleSheet(bool hasDark)
{
    QByteArray text = Common;
    for (const Rule& rule : Rules)
        text += ruleText(rule.selector, rule.light);
    if (!hasDark)
        return text;
    text += "@media (prefers-color-scheme:dark){\n";
    for (const Rule& rule : Rules)
        text += ruleText(rule.selector, rule.dark);
    return text + "}\n";
}

} // namespace Ksx::Kit
