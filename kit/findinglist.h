// Collects the findings of a check.
#pragma once

#include "ksx/kit/finding.h"
#include <QString>
#include <vector>

namespace Ksx::Kit {

// Keeps some findings of each kind, and counts the others: a damaged file may have millions.
class FindingList
{
public:
    // As many as people read.
    static constexpr std::size_t UsualMaximum = 100;

    explicit FindingList(std::size_t maximumOfAKind = UsualMaximum)
        : m_maximumOfAKind(maximumOfAKind)
    {}

    // `place` is cut if it is long, and so is `text`.
    void add(FindingCode code, const QString& place, const QString& text, qint64 line = 0,
             qint64 column = 0);
    // Returns whether findings of that kind are only counted, so that nobody needs their places.
    bool isFull(FindingCode code) const
    {
        return m_counts[static_cast<std::size_t>(code)] >= m_maximumOfAKind;
    }
    // Returns the findings in the order in which they came. Behind the last one of a kind comes one
    // that counts the others.
    std::vector<Finding> take();

private:
    std::size_t m_maximumOfAKind;
    std::vector<Finding> m_findings;
    std::vector<std::size_t> m_counts = std::vector<std::size_t>(findingKinds().size());
};

// Returns a text as long as a place may be.
QString cutText(const QString& text);
// Returns whether a text is as long as a place may be, so that nothing can be added.
bool isCut(const QString& place);
// Returns the path of an object in another one, as long as a place may be.
QString placeIn(const QString& outer, const QString& identifier);
// Returns the path of a node of a graph.
QString placeOfNode(const QString& graph, unsigned uid);

} // namespace Ksx::Kit
