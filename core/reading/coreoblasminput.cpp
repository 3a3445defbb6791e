#include "reading/oblasminput.h"

#include "data/content/paraminput.h"
#include "data/desc/valuetype.h"
#include "data/floattext.h"
#include "data/latin1.h"
#include <QDomElement>
#include <QStringList>
#include <algorithm>
#include <optional>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
namespace ValueType = Data::Desc::ValueType;

QString attributeOf(const QDomElement& element, const char* name)
{
    return element.attribute(QLatin1String(name));
}

QDomElement childOf(const QDomElement& element, const char* name)
{
    return element.firstChildElement(QLatin1String(name));
}

std::optional<bool> truthOf(const QString& text)
{
    if (text == QLatin1String("yes") || text == QLatin1String("on") || text == QLatin1String("1"))
        return true;
    if (text == QLatin1String("no") || text == QLatin1String("off") || text == QLatin1String("0"))
        return false;
    return std::nullopt;
}

const QString LabelName = QStringLiteral("label");

struct TypeRow
{
    int described; // the number in a description
    unsigned valueType;
};

constexpr int NoNumber = -1; // descriptions never name the type
constexpr int DescribedImage = 5;
constexpr TypeRow ValueTypes[] = {
#define VALUE_TYPE(name, bit, value, stored, other, number) {number, ValueType::name},
#include "data/desc/valuetypes.inc"
};

// An image without a valid color type has no type, which is no failure.
unsigned imageTypeOf(const QDomElement& gui)
{
    const QString colorType = attributeOf(childOf(gui, "guiimage"), "colortype");
    if (colorType == QLatin1String("grayscale"))
        return ValueType::GrayscaleImage;
    return colorType == QLatin1String("color") ? ValueType::ColorImage : ValueType::Unknown;
}

std::optional<unsigned> valueTypeOf(const QString& text, const QDomElement& gui)
{
    bool isNumber = false;
    const qint64 described = text.toUInt(&isNumber);
    if (!isNumber)
        return std::nullopt;
    if (described == DescribedImage)
        return imageTypeOf(gui);
    for (const TypeRow& row : ValueTypes)
        if (row.described == described)
            return row.valueType;
    return std::nullopt;
}

bool readNumber(const QString& text, int& number)
{
    bool isNumber = false;
    number = text.toInt(&isNumber);
    return isNumber;
}

bool readNumber(const QString& text, float& number)
{
    const std::optional<float> read = Orv::floatOf(text);
    number = read.value_or(0.0F);
    return read.has_value();
}

// Components stand with commas between them.
template <class Constant>
std::unique_ptr<Orv::Data::BaseObject> vectorOf(const QString& text)
{
    auto constant = std::make_unique<Constant>();
    typename Constant::ValueType value;
    const QStringList parts = text.split(',');
    if (static_cast<std::size_t>(parts.size()) != value.size())
        return nullptr;
    for (std::size_t i = 0; i < value.size(); ++i)
        if (!readNumber(parts[static_cast<int>(i)], value[i]))
            return nullptr;
    constant->value().assign(value);
    return constant;
}

std::unique_ptr<Orv::Data::BaseObject> booleanOf(const QString& text)
{
    const auto truth = truthOf(text);
    if (!truth)
        return nullptr;
    auto constant = std::make_unique<ConstantValueBool>();
    constant->value().assign(*truth);
    return constant;
}

std::unique_ptr<Orv::Data::BaseObject> textOf(const QString& text)
{
    auto constant = std::make_unique<ConstantValueString>();
    constant->value().assign(Orv::toLatin1(text));
    return constant;
}

struct DefaultRow
{
    unsigned valueType;
    std::unique_ptr<Orv::Data::BaseObject> (*read)(const QString& text);
};

constexpr DefaultRow Defaults[] = {
#define VALUE_TYPE(name, ...)                      {ValueType::name, &booleanOf},
#define VECTOR_TYPE(name, bit, value, stored, ...) {ValueType::name, &vectorOf<stored>},
#define TEXT_TYPE(name, ...)                       {ValueType::name, &textOf},
#include "data/desc/valuetypes.inc"
};

// False for a text that is no value of the type. Images have no default: theirs is passed over.
bool readDefault(const QString& text, unsigned valueType, DefaultValue& defaultValue)
{
    if (text.isEmpty())
        return true;
    for (const DefaultRow& row : Defaults) {
        if (row.valueType != valueType)
            continue;
        auto value = row.read(text);
        if (value == nullptr)
            return false;
        defaultValue.set(std::move(value));
    }
    return true;
}

void addOption(DefaultWidget& widget, const QString& name, const QString& value)
{
    auto option = std::make_unique<Option>();
    option->name().assign(Orv::toLatin1(name));
    option->value().assign(Orv::toLatin1(value));
    widget.options().pushBack(std::move(option));
}

enum class Widgets
{
    All,
    Numbers, // sliders and angles
};

struct OptionRow
{
    const char* attribute;
    const char* option;
    Widgets widgets;
};

constexpr OptionRow Options[] = {
    {"min", "min", Widgets::Numbers},     {"max", "max", Widgets::Numbers},
    {"clamp", "clamp", Widgets::Numbers}, {"step", "step", Widgets::All},
    {"suffix", "suffix", Widgets::All},   {"valuescale", "valueScale", Widgets::All},
    {"unit", "unit", Widgets::Numbers},
};

// The lowest number behind "label" in the names of attributes. None without such a name.
std::optional<unsigned> firstLabelOf(const QDomElement& gui)
{
    std::optional<unsigned> first;
    const QDomNamedNodeMap attributes = gui.attributes();
    for (int i = 0; i < attributes.count(); ++i) {
        const QString name = attributes.item(i).nodeName();
        bool isNumber = false;
        const unsigned number = name.mid(LabelName.size()).toUInt(&isNumber);
        if (isNumber && name == LabelName + QString::number(number))
            first = std::min(first.value_or(number), number);
    }
    return first;
}

void readOptions(const QDomElement& gui, Widgets widgets, DefaultWidget& widget)
{
    for (const OptionRow& row : Options) {
        const bool isOfWidget = row.widgets == Widgets::All || row.widgets == widgets;
        if (!isOfWidget || !gui.hasAttribute(QLatin1String(row.attribute)))
            continue;
        QString value = attributeOf(gui, row.attribute);
        if (row.attribute == QLatin1String("clamp"))
            if (const auto truth = truthOf(value))
                value = *truth ? QStringLiteral("1") : QStringLiteral("0");
        addOption(widget, QLatin1String(row.option), value);
    }
    const auto first = firstLabelOf(gui);
    for (unsigned number = first.value_or(0); first.has_value(); ++number) {
        const QString label = LabelName + QString::number(number);
        if (!gui.hasAttribute(label))
            return;
        addOption(widget, label, gui.attribute(label));
    }
}

// The marks between values, texts and entries must not stand in a text.
QString entryText(QString text)
{
    return text.replace('|', ' ').replace(';', ' ');
}

// The entries of a combo box as one text: "value;text | value;text".
void readComboBoxOptions(const QDomElement& gui, DefaultWidget& widget)
{
    QStringList entries;
    const QString name = QStringLiteral("guicomboboxitem");
    for (QDomElement item = gui.firstChildElement(name); !item.isNull();
         item = item.nextSiblingElement(name))
        entries.append(attributeOf(item, "value") + ';' + entryText(attributeOf(item, "text")));
    addOption(widget, QStringLiteral("editorID"), QStringLiteral("dropdownlist"));
    addOption(widget, QStringLiteral("parameters"), entries.join(QStringLiteral(" | ")));
}

void readWidget(const QString& name, const QDomElement& gui, DefaultWidget& widget)
{
    const QDomElement slider = childOf(gui, "guislider");
    const QDomElement angle = childOf(gui, "guiangle");
    const QDomElement comboBox = childOf(gui, "guicombobox");
    QString widgetName = name;
    if (!slider.isNull()) {
        widgetName = QStringLiteral("slider");
        readOptions(slider, Widgets::Numbers, widget);
    } else if (!angle.isNull()) {
        widgetName = QStringLiteral("angle");
        readOptions(angle, Widgets::Numbers, widget);
    } else if (!comboBox.isNull()) {
        widgetName = QStringLiteral("dropdownlist");
        readComboBoxOptions(comboBox, widget);
        readOptions(comboBox, Widgets::All, widget);
    } else {
        readOptions(childOf(gui, "guiimage"), Widgets::All, widget);
    }
    widget.name().assign(Orv::toLatin1(widgetName));
}

void readTexts(const QDomElement& element, const QDomElement& gui, ParamInput& input)
{
    input.attributes().label().assign(Orv::toLatin1(attributeOf(gui, "label")));
    input.attributes().description().assign(Orv::toLatin1(attributeOf(gui, "description")));
    const QString userTag = gui.hasAttribute(QStringLiteral("usertag"))
                                ? attributeOf(gui, "usertag")
                                : attributeOf(element, "usertag");
    input.attributes().usertags().assign(Orv::toLatin1(userTag));
    input.group().assign(Orv::toLatin1(attributeOf(gui, "group")));
    input.disabled().value().assign(attributeOf(gui, "state") == QLatin1String("disabled"));
}

// A one-component integer with a toggle and no finer widget is a boolean.
bool isBooleanInDisguise(const QString& widget, unsigned valueType, const QDomElement& gui)
{
    return widget == QLatin1String("togglebutton") && valueType == ValueType::Int1 &&
           childOf(gui, "guiangle").isNull() && childOf(gui, "guislider").isNull() &&
           childOf(gui, "guicombobox").isNull();
}

} // namespace

std::unique_ptr<ParamInput> readOblasmInput(const QDomElement& element)
{
    for (const char* required : {"identifier", "uid", "type"})
        if (!element.hasAttribute(QLatin1String(required)))
            return nullptr;
    bool isNumber = false;
    const unsigned uid = attributeOf(element, "uid").toUInt(&isNumber);
    const QDomElement gui = childOf(element, "inputgui");
    auto valueType = valueTypeOf(attributeOf(element, "type"), gui);
    if (!isNumber || !valueType)
        return nullptr;
    QString widget = attributeOf(gui, "widget");
    if (isBooleanInDisguise(widget, *valueType, gui)) {
        widget = QStringLiteral("buttons");
        valueType = ValueType::Bool;
    }
    auto input = std::make_unique<ParamInput>();
    input->identifier().assign(Orv::toLatin1(attributeOf(element, "identifier")));
    input->uid().assign(uid);
    input->type().value().assign(*valueType);
    readTexts(element, gui, *input);
    if (!readDefault(attributeOf(element, "default"), *valueType, input->defaultValue()))
        return nullptr;
    readWidget(widget, gui, input->defaultWidget());
    return input;
}

} // namespace Ksx::Core
