#include "drawing/textwidth.h"

#include <array>

namespace Ksx::Kit {

namespace {

constexpr QChar Ellipsis(0x2026);
constexpr double BoldFactor = 1.13;
// In thousandths of the size of the font.
constexpr int EllipsisAdvance = 1000;
constexpr int LatinAdvance = 690; // letters with accents; few are wider
constexpr int WideAdvance = 1000; // scripts whose letters are squares

// The advances of the characters from the blank to the tilde, in thousandths.
constexpr std::array<short, 95> Advances{
    318, 401, 460, 838, 636, 950, 780, 275, 390, 390, 500, 838, 318, 361,  318, 337, 636, 636, 636,
    636, 636, 636, 636, 636, 636, 636, 337, 337, 838, 838, 838, 531, 1000, 684, 686, 698, 770, 632,
    575, 775, 752, 295, 295, 656, 557, 863, 748, 787, 603, 787, 695, 635,  611, 732, 684, 989, 685,
    611, 685, 390, 337, 390, 838, 500, 500, 613, 635, 550, 635, 615, 352,  635, 634, 278, 278, 579,
    278, 974, 634, 612, 635, 635, 411, 521, 392, 634, 592, 818, 592, 592,  525, 636, 337, 636, 838};

int advanceOf(QChar c)
{
    const unsigned code = c.unicode();
    if (code >= ' ' && code - ' ' < Advances.size())
        return Advances[code - ' '];
    if (c == Ellipsis)
        return EllipsisAdvance;
    return code < 0x0590 ? LatinAdvance : WideAdvance;
}

double factorOf(double size, bool isBold)
{
    return size * (isBold ? BoldFactor : 1.0) / 1000.0;
}

} // namespace

double textWidth(const QString& text, double size, bool isBold)
{
    double sum = 0;
    for (const QChar c : text)
        sum += advanceOf(c);
    return sum * factorOf(size, isBold);
}

QString fittingText(const QString& text, double width, double size, bool isBold)
{
    const double room = width / factorOf(size, isBold);
    double sum = 0;
    QString shown;
    auto fitting = shown.size(); // characters that fit in front of an ellipsis
    for (const QChar c : text) {
        const QChar visible = c.category() == QChar::Other_Control ? QChar(' ') : c;
        sum += advanceOf(visible);
        if (sum > room) {
            shown.truncate(fitting);
            if (shown.endsWith(QChar(' ')))
                shown.chop(1);
            if (!shown.isEmpty() && shown.at(shown.size() - 1).isHighSurrogate())
                shown.chop(1);
            return shown + Ellipsis;
        }
        shown += visible;
        if (sum + EllipsisAdvance <= room)
            fitting = shown.size();
    }
    return shown;
}

} // namespace Ksx::Kit
