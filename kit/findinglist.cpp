#include "findinglist.h"

#include "ksx/core/datapath.h"
#include "packageparts.h"

namespace Ksx::Kit {

namespace {

constexpr int MaximumText = 1000;

} // namespace

void FindingList::add(FindingCode code, const QString& place, const QString& text, qint64 line,
                      qint64 column)
{
    if (++m_counts[static_cast<std::size_t>(code)] <= m_maximumOfAKind)
        m_findings.push_back({code, cutText(place), line, column, cutText(text)});
}

std::vector<Finding> FindingList::take()
{
    for (const FindingKind& kind : findingKinds()) {
        const std::size_t count = m_counts[static_cast<std::size_t>(kind.code)];
        if (count > m_maximumOfAKind)
            m_findings.push_back(
                {kind.code, QString(), 0, 0,
                 QStringLiteral("There are %1 more of this kind").arg(count - m_maximumOfAKind)});
    }
    return std::move(m_findings);
}

QString cutText(const QString& text)
{
    return text.size() > MaximumText ? text.left(MaximumText) + QStringLiteral("...") : text;
}

bool isCut(const QString& place)
{
    return place.size() > MaximumText;
}

QString placeIn(const QString& outer, const QString& identifier)
{
    return cutText(outer.isEmpty() ? QStringLiteral("pkg://") + identifier
                                   : outer + QLatin1Char('/') + identifier);
}

QString placeOfNode(const QString& graph, unsigned uid)
{
    return QStringLiteral("%1?%2=CompNodeType&%3=%4")
        .arg(graph, latinText(Core::DataPathKey::Type), latinText(Core::DataPathKey::CompNodeUid))
        .arg(uid);
}

} // namespace Ksx::Kit
