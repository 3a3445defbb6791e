// Writes drawings as SVG.
#include "drawing/drawinglayout.h"
#include "drawing/drawingstyle.h"
#include "drawing/markup.h"
#include "drawing/textwidth.h"
#include "ksx/kit/drawing.h"
#include "ksx/kit/inventory.h"
#include <QStringList>
#include <algorithm>
#include <array>
#include <cmath>

namespace Ksx::Kit {

namespace {

using namespace BoxMeasure;

constexpr double MinimumPicture = 360; // the width, so that a legend has room
constexpr double PictureGap = 32;      // between drawings
constexpr double CaptionHeight = 30;
constexpr double CaptionSize = 14;
constexpr double EmptyHeight = 40; // of a drawing without a box
constexpr double LegendMargin = 24;
constexpr double LegendLine = 24;
constexpr double LegendSize = 11;
constexpr double SwatchWidth = 26;
constexpr double SwatchHeight = 14;
constexpr double InstanceShift = 4; // of the second outline of an instance

QByteArray pair(double x, double y)
{
    return numberText(x) + ' ' + numberText(y);
}

QByteArray at(double x, double y)
{
    return " x=\"" + numberText(x) + "\" y=\"" + numberText(y) + '"';
}

QByteArray textElement(const char* classes, double x, double y, const QString& text)
{
    const QByteArray classText =
        *classes == '\0' ? QByteArray() : QByteArray(" class=\"") + classes + '"';
    return "<text" + classText + at(x, y) + '>' + escaped(text) + "</text>";
}

QByteArray knob(double x, double y, unsigned type)
{
    const TypeGroup group = groupOf(type);
    return QByteArray("<path class=\"knob ") + lookOf(group).name + "\" d=\"M" + pair(x, y) +
           shapeOf(group) + "\"/>";
}

// Returns the disc with the sign of a mark.
QByteArray badge(double x, double y, Mark mark)
{
    return QByteArray("<circle class=\"disc ") + lookOf(mark).name + "\" cx=\"" + numberText(x) +
           "\" cy=\"" + numberText(y) + "\" r=\"9\"/>" +
           textElement("sign", x, y + 4.5, QString::fromUtf8(signOf(mark)));
}

QString tooltipOf(const Box& box)
{
    QString text = box.title + QChar('\n') + box.detail + QStringLiteral("\nuid %1").arg(box.uid);
    if (!box.target.isEmpty())
        text += QChar('\n') + box.target;
    if (box.isDisabled)
        text += QStringLiteral("\ndisabled");
    if (box.isResult)
        text += QStringLiteral("\nthe result");
    if (box.mark != Mark::None)
        text += QChar('\n') + QLatin1String(lookOf(box.mark).words);
    return text;
}

QByteArray connectorText(const Connector& connector, double x, double y, double width,
                         const char* classes)
{
    QByteArray text = knob(x + (*classes == '\0' ? 0 : width), y, connector.type);
    const double from = *classes == '\0' ? x + Padding : x + width - Padding;
    if (!connector.name.isEmpty())
        text += textElement(classes, from, y + 3.5, connector.name);
    const QString type = connector.type == 0 ? QString() : nameOfType(connector.type);
    return "<g><title>" + escaped(connector.name + QChar(' ') + type).trimmed() + "</title>" +
           text + "</g>";
}

// Cuts the names of a row to the room that they have.
void fitRow(QString& input, QString& output, double width)
{
    const double room = width - 2 * Padding;
    const double wanted = input.isEmpty() ? 0 : textWidth(input, ConnectorSize) + Padding / 2;
    const double outputRoom = std::max(room / 2, room - wanted);
    output = fittingText(output, outputRoom, ConnectorSize);
    const double used = output.isEmpty() ? 0 : textWidth(output, ConnectorSize) + Padding / 2;
    input = fittingText(input, room - used, ConnectorSize);
}

QByteArray connectorsOf(const Box& box)
{
    QByteArray text;
    const std::size_t rows = std::max(box.inputs.size(), box.outputs.size());
    for (std::size_t i = 0; i < rows; ++i) {
        Connector input = i < box.inputs.size() ? box.inputs[i] : Connector();
        Connector output = i < box.outputs.size() ? box.outputs[i] : Connector();
        fitRow(input.name, output.name, box.width);
        const double y = inputPlace(box, i).y() - box.y;
        if (i < box.inputs.size())
            text += connectorText(input, 0, y, box.width, "");
        if (i < box.outputs.size())
            text += connectorText(output, 0, y, box.width, "right");
    }
    return text;
}

// Returns a box, with its upper left corner at 0.
QByteArray bodyOf(const Box& box)
{
    const QByteArray outline = outlineOf(box.kind, box.width, box.height);
    QByteArray text = "<title>" + escaped(tooltipOf(box)) + "</title>";
    if (box.kind == BoxKind::Instance)
        text += "<path class=\"outline\" transform=\"translate(" +
                pair(InstanceShift, InstanceShift) + ")\" d=\"" + outline + "\"/>";
    text += "<path class=\"outline\" d=\"" + outline + "\"/>";
    if (box.mark != Mark::None)
        text += QByteArray("<path class=\"edge ") + lookOf(box.mark).name + "\" d=\"" + outline +
                "\"/>";
    const double room = box.width - 2 * Padding;
    text += textElement("title", Padding, 16, fittingText(box.title, room, TitleSize, true));
    text += textElement("detail", Padding, 28, fittingText(detailLine(box), room, DetailSize));
    text += connectorsOf(box);
    if (box.mark != Mark::None)
        text += badge(box.width, 0, box.mark);
    return text;
}

QByteArray boxText(const Box& box)
{
    QByteArray classes = lookOf(box.kind).name;
    classes += box.isDisabled ? " off" : "";
    classes += box.isResult ? " result" : "";
    const QByteArray text = "<g class=\"" + classes + "\" transform=\"translate(" +
                            pair(box.x, box.y) + ")\">" + bodyOf(box) + "</g>";
    if (box.link.isEmpty())
        return text + '\n';
    return "<a href=\"" + escaped(box.link) + "\">" + text + "</a>\n";
}

// Returns the steps of a path from a point to another one, level at both ends.
QByteArray curve(const QPointF& begin, const QPointF& end, double bend)
{
    return 'C' + pair(begin.x() + bend, begin.y()) + ' ' + pair(end.x() - bend, end.y()) + ' ' +
           pair(end.x(), end.y());
}

QByteArray curveTo(const QPointF& begin, const QPointF& end)
{
    return curve(begin, end, std::clamp(std::abs(end.x() - begin.x()) / 2, 24.0, 160.0));
}

// Goes to the height at once, runs level, and comes back in front of the end.
QByteArray detourPath(const QPointF& begin, const QPointF& end, double height)
{
    constexpr double Turn = 32;
    const QPointF left(begin.x() + Turn, height);
    const QPointF right(end.x() - Turn, height);
    return curve(begin, left, Turn / 2) + 'H' + numberText(right.x()) + curve(right, end, Turn / 2);
}

QByteArray wireText(const Drawing& drawing, const Wire& wire)
{
    const Box& from = drawing.boxes[wire.from];
    const Box& to = drawing.boxes[wire.to];
    const QPointF begin = outputPlace(from, wire.output);
    const QPointF end = inputPlace(to, wire.input);
    QByteArray classes = QByteArray("wire ") + lookOf(groupOf(from.outputs[wire.output].type)).name;
    if (wire.mark != Mark::None)
        classes += QByteArray(" ") + lookOf(wire.mark).name;
    return "<path class=\"" + classes + "\" d=\"M" + pair(begin.x(), begin.y()) +
           (wire.detour ? detourPath(begin, end, *wire.detour) : curveTo(begin, end)) + "\"/>\n";
}

QByteArray noteText(const Note& note)
{
    QByteArray text = QByteArray("<g class=\"note") + (note.isFrame ? " frame" : "") + "\"><rect" +
                      at(note.x, note.y) + " width=\"" + numberText(note.width) + "\" height=\"" +
                      numberText(note.height) + "\" rx=\"3\"/>";
    double y = note.y + NoteMargin + NoteSize;
    for (const QString& line : note.text.split(QChar('\n'))) {
        text += textElement("", note.x + NoteMargin, y, line);
        y += NoteLine;
    }
    if (note.mark != Mark::None)
        text += badge(note.x + note.width, note.y, note.mark);
    return text + "</g>\n";
}

QByteArray contentOf(const Drawing& drawing)
{
    QByteArray text;
    for (const Note& note : drawing.notes)
        text += noteText(note);
    for (const Wire& wire : drawing.wires)
        text += wireText(drawing, wire);
    for (const Box& box : drawing.boxes)
        text += boxText(box);
    if (drawing.boxes.empty())
        text +=
            textElement("detail", LegendMargin, EmptyHeight / 2 + 4, QStringLiteral("No nodes"));
    return text;
}

// The kinds, types and marks that drawings have.
struct Uses
{
    std::array<bool, BoxKindCount> kinds{};
    std::array<bool, TypeGroupCount> types{};
    std::array<bool, MarkCount> marks{};

    explicit Uses(const std::vector<Drawing>& drawings)
    {
        for (const Drawing& drawing : drawings) {
            for (const Box& box : drawing.boxes)
                add(box);
            for (const Wire& wire : drawing.wires)
                marks[static_cast<std::size_t>(wire.mark)] = true;
            for (const Note& note : drawing.notes)
                marks[static_cast<std::size_t>(note.mark)] = true;
        }
        marks[static_cast<std::size_t>(Mark::None)] = false;
    }

private:
    void add(const Box& box)
    {
        kinds[static_cast<std::size_t>(box.kind)] = true;
        marks[static_cast<std::size_t>(box.mark)] = true;
        for (const auto* connectors : {&box.inputs, &box.outputs})
            for (const Connector& connector : *connectors)
                types[static_cast<std::size_t>(groupOf(connector.type))] = true;
    }
};

// Writes the legend, item by item, in lines of a bounded width.
class Legend
{
public:
    explicit Legend(double width) : m_width(width) {}

    void add(const Uses& uses)
    {
        for (std::size_t i = 0; i < uses.kinds.size(); ++i)
            if (uses.kinds[i])
                addKind(static_cast<BoxKind>(i));
        for (std::size_t i = 0; i < uses.types.size(); ++i)
            if (uses.types[i])
                addType(static_cast<TypeGroup>(i));
        for (std::size_t i = 0; i < uses.marks.size(); ++i)
            if (uses.marks[i])
                addMark(static_cast<Mark>(i));
    }

    double height() const { return m_text.isEmpty() ? 0 : m_y + LegendLine; }

    QByteArray textAt(double y) const
    {
        if (m_text.isEmpty())
            return {};
        return "<g class=\"legend\" transform=\"translate(" + pair(0, y) +
               ")\"><path class=\"line\" d=\"M" + pair(LegendMargin, 0) + 'H' +
               numberText(m_width - LegendMargin) + "\"/>" + m_text + "</g>\n";
    }

private:
    void addKind(BoxKind kind)
    {
        const QByteArray outline = outlineOf(kind, SwatchWidth, SwatchHeight);
        QByteArray swatch;
        if (kind == BoxKind::Instance)
            swatch = "<path class=\"outline\" transform=\"translate(3 3)\" d=\"" + outline + "\"/>";
        add(lookOf(kind), SwatchWidth,
            QByteArray("<g class=\"") + lookOf(kind).name + "\" transform=\"translate(0 " +
                numberText(-SwatchHeight / 2) + ")\">" + swatch + "<path class=\"outline\" d=\"" +
                outline + "\"/></g>");
    }

    void addType(TypeGroup group)
    {
        const char* const name = lookOf(group).name;
        add(lookOf(group), SwatchWidth,
            QByteArray("<path class=\"wire ") + name + "\" d=\"M0 0H" + numberText(SwatchWidth) +
                "\"/><path class=\"knob " + name + "\" d=\"M" + pair(SwatchWidth / 2, 0) +
                shapeOf(group) + "\"/>");
    }

    void addMark(Mark mark) { add(lookOf(mark), SwatchHeight + 4, badge(9, 0, mark)); }

    // The swatch begins at 0, around the middle of the line.
    void add(const Look& look, double swatchWidth, const QByteArray& swatch)
    {
        const QString words = QLatin1String(look.words);
        const double needed = swatchWidth + 8 + textWidth(words, LegendSize) + 20;
        if (m_x > LegendMargin && m_x + needed > m_width) {
            m_x = LegendMargin;
            m_y += LegendLine;
        }
        m_text += "<g transform=\"translate(" + pair(m_x, m_y) + ")\">" + swatch +
                  textElement("", swatchWidth + 8, 4, words) + "</g>\n";
        m_x += needed;
    }

    double m_width;
    double m_x = LegendMargin;
    double m_y = LegendLine;
    QByteArray m_text;
};

// The room that a drawing takes in a picture.
struct Room
{
    explicit Room(const Drawing& drawing)
        : width(std::max(drawing.width, MinimumPicture)),
          height(std::max(drawing.height, EmptyHeight))
    {
        if (!drawing.caption.isEmpty())
            lines.append(drawing.caption);
        if (drawing.leftOut > 0)
            lines.append(QStringLiteral("%1 more parts are not drawn").arg(drawing.leftOut));
    }
    double captionHeight() const { return CaptionHeight * static_cast<double>(lines.size()); }

    double width;
    double height;
    QStringList lines;
};

QByteArray captionText(const Room& room)
{
    QByteArray text;
    double y = CaptionHeight - 6;
    for (const QString& line : room.lines) {
        text += textElement("caption", LegendMargin, y,
                            fittingText(line, room.width - LegendMargin, CaptionSize, true)) +
                '\n';
        y += CaptionHeight;
    }
    return text;
}

QByteArray beginOf(SvgForm form, const QString& title, double width, double height)
{
    QByteArray text;
    if (form != SvgForm::Part)
        text += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    text += "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"ksx\" role=\"img\" viewBox=\"0 0 " +
            pair(width, height) + "\" width=\"" + numberText(width) + "\" height=\"" +
            numberText(height) + "\" aria-label=\"" + escaped(title) + "\">\n";
    if (form != SvgForm::Part)
        text += "<title>" + escaped(title) + "</title>\n<style>\n" +
                styleSheet(form == SvgForm::File) + "</style>\n";
    return text + "<rect class=\"ground\" width=\"" + numberText(width) + "\" height=\"" +
           numberText(height) + "\"/>\n";
}

} // namespace

QByteArray svgStyle()
{
    return styleSheet(true);
}

QByteArray svgOf(const std::vector<Drawing>& drawings, SvgForm form)
{
    std::vector<Room> rooms(drawings.begin(), drawings.end());
    double width = 0;
    double captions = 0;
    double height = 0;
    QStringList titles;
    for (const Room& room : rooms) {
        width += room.width + (width > 0 ? PictureGap : 0);
        captions = std::max(captions, room.captionHeight());
        height = std::max(height, room.height);
        titles += room.lines.mid(0, 1);
    }
    width = std::max(width, MinimumPicture);
    Legend legend(width);
    legend.add(Uses(drawings));
    const double legendTop = captions + height;
    const QString title = titles.isEmpty() ? QStringLiteral("Graph") : titles.join(" / ");
    QByteArray text = beginOf(form, title, width, legendTop + legend.height());
    double x = 0;
    for (std::size_t i = 0; i < drawings.size(); ++i) {
        text += "<g transform=\"translate(" + pair(x, 0) + ")\">\n" + captionText(rooms[i]) +
                "<g transform=\"translate(" + pair(0, captions) + ")\">\n" +
                contentOf(drawings[i]) + "</g>\n</g>\n";
        x += rooms[i].width + PictureGap;
    }
    return text + legend.textAt(legendTop) + "</svg>\n";
}

QByteArray svgOf(const Drawing& drawing, SvgForm form)
{
    return svgOf(std::vector<Drawing>{drawing}, form);
}

} // namespace Ksx::Kit
