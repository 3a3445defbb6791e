#include "compare/alignment.h"

#include "compare/contentpairs.h"
#include "compare/nodeshapes.h"
#include "compare/shape.h"
#include "compare/translation.h"
#include "contentplace.h"
#include <algorithm>
#include <deque>
#include <functional>
#include <unordered_map>

namespace Ksx::Kit {

namespace {

using Orv::Data::BaseObject;

// Aligns two lists, one criterion after the other.
class Aligner
{
public:
    Aligner(const Items& first, const Items& second, const Translation& firstTranslation,
            const Translation& secondTranslation)
        : m_first(first), m_second(second), m_firstTranslation(firstTranslation),
          m_secondTranslation(secondTranslation)
    {
        m_result.inSecond.assign(first.size(), Alignment::None);
        m_result.inFirst.assign(second.size(), Alignment::None);
    }

    Alignment run(bool byShape)
    {
        alignInPlace();
        if (isDone())
            return std::move(m_result);
        alignBy(&Aligner::uidKey);
        alignBy(&Aligner::nameKey);
        if (byShape && !isDone() && hasUids())
            alignByShape();
        return std::move(m_result);
    }

private:
    using Key = std::string; // empty for an item without one
    using KeyFunction = Key (Aligner::*)(const BaseObject&, bool isSecond) const;

    bool isDone() const
    {
        const auto isLeft = [](std::size_t index) { return index == Alignment::None; };
        return std::none_of(m_result.inSecond.begin(), m_result.inSecond.end(), isLeft) ||
               std::none_of(m_result.inFirst.begin(), m_result.inFirst.end(), isLeft);
    }

    // Nearly all lists have the same items at their begin, for which no keys are made. A name that
    // a list has twice is that of its first item, as in a search.
    void alignInPlace()
    {
        const std::size_t count = std::min(m_first.size(), m_second.size());
        for (std::size_t i = 0; i < count && isSame(*m_first[i], *m_second[i]); ++i)
            m_result.pair(i, i);
    }

    bool isSame(const BaseObject& first, const BaseObject& second) const
    {
        if (first.getMeta().name != second.getMeta().name)
            return false;
        const auto uid = translatedUidOf(first, m_firstTranslation);
        if (uid)
            return uid == translatedUidOf(second, m_secondTranslation);
        const std::string* const name = nameOf(first);
        return name == nullptr || *name == *nameOf(second);
    }

    Key uidKey(const BaseObject& item, bool isSecond) const
    {
        const auto uid = translatedUidOf(item, isSecond ? m_secondTranslation : m_firstTranslation);
        return uid ? keyOf(item, std::to_string(*uid)) : Key();
    }

    Key nameKey(const BaseObject& item, bool /*isSecond*/) const
    {
        if (contentObjectOf(&item) == &item)
            return keyOf(item, pathOf(item));
        const std::string* const name = nameOf(item);
        return name == nullptr ? Key() : keyOf(item, *name);
    }

    static Key keyOf(const BaseObject& item, const std::string& text)
    {
        return std::string(item.getMeta().name) + ' ' + text;
    }

    void alignBy(KeyFunction key)
    {
        std::unordered_map<Key, std::deque<std::size_t>> left;
        for (std::size_t i = 0; i < m_first.size(); ++i) {
            const Key own =
                m_result.inSecond[i] == Alignment::None ? (this->*key)(*m_first[i], false) : Key();
            if (!own.empty())
                left[own].push_back(i);
        }
        for (std::size_t i = 0; !left.empty() && i < m_second.size(); ++i) {
            if (m_result.inFirst[i] != Alignment::None)
                continue;
            const auto found = left.find((this->*key)(*m_second[i], true));
            if (found == left.end() || found->second.empty())
                continue;
            m_result.pair(found->second.front(), i);
            found->second.pop_front();
        }
    }

    bool hasUids() const { return uidOf(*m_first.front()).has_value(); }

    void alignByShape()
    {
        if (connexionsOf(*m_first.front()) != nullptr) {
            alignNodesByShape(m_first, m_second, m_result);
            return;
        }
        alignEqual(
            m_result, [this](std::size_t i) { return shapeOf(*m_first[i]); },
            [this](std::size_t i) { return shapeOf(*m_second[i]); });
    }

    const Items& m_first;
    const Items& m_second;
    const Translation& m_firstTranslation;
    const Translation& m_secondTranslation;
    Alignment m_result;
};

// Returns the members of a longest ascending series of different numbers.
std::vector<std::size_t> ascendingSeries(const std::vector<std::size_t>& numbers)
{
    std::vector<std::size_t> ends; // of a series of each length, the least that there is
    std::vector<std::size_t> former(numbers.size(), Alignment::None);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto place = std::lower_bound(ends.begin(), ends.end(), numbers[i],
                                            [&](std::size_t end, std::size_t number) { //
                                                return numbers[end] < number;
                                            });
        if (place != ends.begin())
            former[i] = *std::prev(place);
        if (place == ends.end())
            ends.push_back(i);
        else
            *place = i;
    }
    std::vector<std::size_t> series;
    for (std::size_t i = ends.empty() ? Alignment::None : ends.back(); i != Alignment::None;
         i = former[i])
        series.push_back(i);
    return series;
}

} // namespace

void alignEqual(Alignment& alignment, const std::function<Shape(std::size_t)>& ofFirst,
                const std::function<Shape(std::size_t)>& ofSecond)
{
    std::unordered_map<Shape, std::deque<std::size_t>> left;
    for (std::size_t i = 0; i < alignment.inSecond.size(); ++i)
        if (alignment.inSecond[i] == Alignment::None)
            left[ofFirst(i)].push_back(i);
    for (std::size_t i = 0; i < alignment.inFirst.size(); ++i) {
        if (alignment.inFirst[i] != Alignment::None)
            continue;
        const Shape shape = ofSecond(i);
        const auto found = left.find(shape);
        if (shape == 0 || found == left.end() || found->second.empty())
            continue;
        alignment.pair(found->second.front(), i);
        found->second.pop_front();
    }
}

Alignment align(const Items& first, const Items& second, const Translation& translation)
{
    return Aligner(first, second, Translation(), translation).run(true);
}

Alignment alignByKey(const Items& first, const Items& second,
                     const std::array<Translation, 2>& translations)
{
    return Aligner(first, second, translations[0], translations[1]).run(false);
}

std::optional<unsigned> translatedUidOf(const BaseObject& item, const Translation& translation)
{
    const auto uid = uidOf(item);
    const bool isReference = uid && kindOf(item).uid != "uid";
    return isReference ? translation.number(Target::Output, *uid) : uid;
}

std::vector<bool> movedItems(const Alignment& alignment)
{
    std::vector<std::size_t> items;
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < alignment.inFirst.size(); ++i) {
        if (alignment.inFirst[i] == Alignment::None)
            continue;
        items.push_back(i);
        places.push_back(alignment.inFirst[i]);
    }
    std::vector<bool> isMoved(alignment.inFirst.size(), false);
    for (const std::size_t item : items)
        isMoved[item] = true;
    for (const std::size_t stays : ascendingSeries(places))
        isMoved[items[stays]] = false;
    return isMoved;
}

} // namespace Ksx::Kit
