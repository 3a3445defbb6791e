#include "inputcheck.h"

#include "data/desc/valuetype.h"
#include "findinglist.h"
#include "packageparts.h"
#include <QStringList>
#include <algorithm>
#include <vector>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Numbers = std::vector<double>;

// Returns the numbers of a text. Returns none for a text that holds something else.
Numbers numbersIn(QString text)
{
    for (QChar& c : text)
        if (c == QLatin1Char(',') || c == QLatin1Char(';') || c.isSpace())
            c = QLatin1Char(' ');
    Numbers numbers;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        bool isNumber = false;
        numbers.push_back(word.toDouble(&isNumber));
        if (!isNumber)
            return {};
    }
    return numbers;
}

// A bound is one number for all components, or one for each. Any other text is no bound.
template <class Compare>
bool isBeyond(const Numbers& values, const Numbers& bounds, const Compare& compare)
{
    if (bounds.size() == 1)
        return std::any_of(values.begin(), values.end(),
                           [&](double value) { return compare(value, bounds.front()); });
    if (bounds.size() != values.size())
        return false;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (compare(values[i], bounds[i]))
            return true;
    return false;
}

} // namespace

void checkInput(const Doc::ParamInput& input, const QString& place, FindingList& findings)
{
    const Input shown = inputOf(input);
    namespace ValueType = Data::Desc::ValueType;
    if ((shown.type & (ValueType::Text | ValueType::String)) != 0)
        return;
    const Numbers values = numbersIn(shown.defaultValue);
    if (isBeyond(values, numbersIn(shown.minimum), std::less<>()) ||
        isBeyond(values, numbersIn(shown.maximum), std::greater<>()))
        findings.add(
            FindingCode::OutOfRange, place,
            QStringLiteral("The default %1 of the input '%2' is not in its range, %3 to %4")
                .arg(shown.defaultValue, shown.identifier, shown.minimum, shown.maximum));
}

} // namespace Ksx::Kit
