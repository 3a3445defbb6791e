// How much of some kinds a document may have, counted in its UTF-8 bytes on their way to a reader.
#pragma once

#include <QByteArray>
#include <QHash>

class QXmlStreamReader;

namespace Orv::Data {

// Counts the attributes of each element: a reader compares every one with all others. Looks closely
// at no more than the last tag of each block, since the others are as short as a block.
class AttributeBound
{
public:
    static constexpr int MaximumAttributes = 1000;
    // Blocks may be no longer. MaximumAttributes different names alone need more bytes than this.
    static constexpr qint64 MaximumBlockSize = 4096;

    // Takes the next block of the document. False once an element has too many attributes.
    bool accept(const char* begin, const char* end);

private:
    enum class Place
    {
        Outside, // of tags
        TagBegin,
        Tag,
        Value, // of an attribute, up to the quote that began it
    };

    void scanTag(const char* begin, const char* end);

    Place m_place = Place::Outside;
    char m_quote = '"';
    int m_count = 0; // of the tag at hand
};

// Counts the bytes of a document type, for which a reader takes a time that grows with their square.
// Counts the most that a parameter entity can stand for as well: the reader expands it at once.
class DocumentTypeBound
{
public:
    static constexpr qint64 MaximumSize = qint64(64) * 1024;

    explicit DocumentTypeBound(int parameterEntitySize) : m_parameterEntitySize(parameterEntitySize)
    {}

    // Takes the next bytes in front of the root element. False once the document type is too large.
    bool accept(const char* begin, const char* end);

private:
    int m_parameterEntitySize;
    bool m_isInside = false;
    QByteArray m_window; // the latest bytes, as long as the mark of a document type is not met
    qint64 m_size = 0;
};

// Adds up the sizes of the texts that references to entities stand for. Costs nothing unless a
// document type declares some.
class EntityBound
{
public:
    // In characters. A small document may expand as far as the first, whatever its size. The second
    // keeps a run below a gigabyte, since a character may take ten bytes on its way into a tree.
    static constexpr qint64 MinimumLimit = qint64{10} << 20;
    static constexpr qint64 MaximumLimit = qint64{64} << 20;

    // A document may expand to a hundred times its size in bytes, within these limits.
    explicit EntityBound(qint64 documentSize);

    // Takes the general entities of the document type that `reader` has at hand.
    void declare(const QXmlStreamReader& reader);
    // Takes the next bytes behind the document type. False once the texts come to too much.
    bool accept(const char* begin, const char* end);
    // Takes characters that stand for nothing in the bytes.
    bool add(qint64 characters)
    {
        m_sum += characters;
        return m_sum <= m_limit;
    }

private:
    void endReference();

    qint64 m_limit;
    qint64 m_sum = 0;
    QHash<QByteArray, qint64> m_sizes; // of the texts of entities, nested ones included
    int m_longestName = 0;
    bool m_isInReference = false;
    QByteArray m_name; // of the reference at hand, as far as it has come
};

} // namespace Orv::Data
