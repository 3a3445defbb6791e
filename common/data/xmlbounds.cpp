#include "data/xmlbounds.h"

#include <QXmlStreamReader>
#include <algorithm>
#include <cstring>

namespace Orv::Data {

namespace {

const char* find(const char* begin, const char* end, char wanted)
{
    const void* found = std::memchr(begin, wanted, static_cast<std::size_t>(end - begin));
    return found == nullptr ? end : static_cast<const char*>(found);
}

// `end` if there is none.
const char* findLast(const char* begin, const char* end, char wanted)
{
    const void* found = ::memrchr(begin, wanted, static_cast<std::size_t>(end - begin));
    return found == nullptr ? end : static_cast<const char*>(found);
}

// The sizes of texts in which texts are nested.
class EntitySizes
{
public:
    explicit EntitySizes(qint64 limit) : m_limit(limit) {}

    void add(const QXmlStreamEntityDeclaration& entity)
    {
        m_texts.insert(entity.name().toUtf8(), entity.value().toUtf8());
    }
    QHash<QByteArray, qint64> all()
    {
        for (auto text = m_texts.cbegin(); text != m_texts.cend(); ++text)
            sizeOf(text.key(), 0);
        return m_sizes;
    }

private:
    // Entities that nest deeper, or in themselves, count as too large: a reader would refuse them
    // or run out of stack.
    static constexpr int MaximumDepth = 100;
    // An element or an attribute takes as much memory as a text of that many characters.
    static constexpr qint64 MarkupSize = 64;

    qint64 sizeOf(const QByteArray& name, int depth);

    qint64 m_limit;
    QHash<QByteArray, QByteArray> m_texts;
    QHash<QByteArray, qint64> m_sizes;
};

qint64 EntitySizes::sizeOf(const QByteArray& name, int depth)
{
    const auto known = m_sizes.constFind(name);
    if (known != m_sizes.cend())
        return *known;
    const auto text = m_texts.constFind(name);
    if (text == m_texts.cend())
        return 0;
    if (depth > MaximumDepth)
        return m_limit + 1;
    m_sizes.insert(name, m_limit + 1); // for references to itself
    const char* const end = text->constData() + text->size();
    qint64 size = 0;
    for (const char* next = text->constData(); next != end; ++next) {
        size += *next == '<' || *next == '=' ? MarkupSize : 1;
        if (*next != '&')
            continue;
        const char* const nameEnd = find(next, end, ';');
        const QByteArray nested(next + 1, static_cast<int>(nameEnd - next - 1));
        size = std::min(size + sizeOf(nested, depth + 1), m_limit + 1);
    }
    m_sizes.insert(name, size);
    return size;
}

} // namespace

bool AttributeBound::accept(const char* begin, const char* end)
{
    if (m_place != Place::Outside)
        scanTag(begin, find(begin, end, '<'));
    const char* const last = findLast(begin, end, '<');
    if (last != end && m_count <= MaximumAttributes) {
        m_place = Place::TagBegin;
        scanTag(last + 1, end);
    }
    return m_count <= MaximumAttributes;
}

// No "<" stands in a tag: neither outside of values nor, in a document that is well-formed, inside.
void AttributeBound::scanTag(const char* begin, const char* end)
{
    for (const char* next = begin; next != end; ++next) {
        switch (m_place) {
        case Place::Outside:
            return;
        case Place::TagBegin:
            m_count = 0;
            m_place = *next == '!' || *next == '?' || *next == '/' ? Place::Outside : Place::Tag;
            break;
        case Place::Tag:
            if (*next == '>') {
                m_place = Place::Outside;
            } else if (*next == '"' || *next == '\'') {
                m_place = Place::Value;
                m_quote = *next;
                ++m_count;
            }
            break;
        case Place::Value:
            next = find(next, end, m_quote);
            if (next == end)
                return;
            m_place = Place::Tag;
            break;
        }
    }
}

bool DocumentTypeBound::accept(const char* begin, const char* end)
{
    if (!m_isInside) {
        static const QByteArray mark("<!DOCTYPE");
        m_window = m_window.right(mark.size() - 1);
        m_window.append(begin, static_cast<int>(end - begin));
        m_isInside = m_window.contains(mark);
    }
    if (m_isInside)
        m_size += end - begin + std::count(begin, end, '%') * m_parameterEntitySize;
    return m_size <= MaximumSize;
}

EntityBound::EntityBound(qint64 documentSize)
    : m_limit(std::clamp(std::min(documentSize, MaximumLimit) * 100, MinimumLimit, MaximumLimit))
{}

void EntityBound::declare(const QXmlStreamReader& reader)
{
    EntitySizes sizes(m_limit);
    const QXmlStreamEntityDeclarations entities = reader.entityDeclarations();
    for (const QXmlStreamEntityDeclaration& entity : entities)
        sizes.add(entity);
    m_sizes = sizes.all();
    for (auto size = m_sizes.cbegin(); size != m_sizes.cend(); ++size)
        m_longestName = std::max(m_longestName, static_cast<int>(size.key().size()));
}

bool EntityBound::accept(const char* begin, const char* end)
{
    if (m_sizes.isEmpty())
        return true;
    for (const char* next = begin; next != end; ++next) {
        if (!m_isInReference) {
            next = find(next, end, '&');
            if (next == end)
                break;
            m_isInReference = true;
            m_name.clear();
        } else if (*next == ';') {
            endReference();
        } else {
            m_name.append(*next);
            m_isInReference = m_name.size() <= m_longestName && *next != '&';
        }
    }
    return m_sum <= m_limit;
}

void EntityBound::endReference()
{
    m_sum += m_sizes.value(m_name, 0);
    m_isInReference = false;
}

} // namespace Orv::Data
