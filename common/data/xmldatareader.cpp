#include "data/xmldatareader.h"

#include "data/attributebase.h"
#include "data/containerlist.h"
#include "data/containerstruct.h"
#include "data/containerunion.h"
#include "data/exceptionbadvalue.h"
#include "data/filename.h"
#include "data/latin1.h"
#include <QIODevice>
#include <QObject>
#include <algorithm>

namespace Orv::Data {

namespace {

// Above this size a document reports its progress in twentieths, below it once or twice.
constexpr qint64 LargeDocument = 1048577;
constexpr qint64 ProgressSteps = 20;

template <class Reference>
bool isSame(const Reference& text, std::string_view name)
{
    if (static_cast<std::size_t>(text.size()) != name.size())
        return false;
    const QChar* data = text.data();
    for (std::size_t i = 0; i < name.size(); ++i)
        if (data[i].unicode() != static_cast<unsigned char>(name[i]))
            return false;
    return true;
}

std::uint64_t lowestBits(std::size_t count)
{
    return count >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

std::size_t lowestBit(std::uint64_t bits)
{
    return static_cast<std::size_t>(__builtin_ctzll(bits));
}

} // namespace

XmlDataReader::XmlDataReader(QIODevice* device) : BoundedXmlReader(device) {}

int XmlDataReader::read(BaseObject& root, const ProgressFunction& progress)
{
    startProgress(progress);
    m_depth = isStartElement() ? 1 : 0;
    while (!isStartElement() && !hasError() && !atEnd()) // at a read error there is no end
        skipWhitespace();
    if (isStartElement()) {
        if (!isSame(name(), root.getMeta().name))
            return fail(XmlReadStatus::BadRoot,
                        QObject::tr("ORV_DATA_XML_DATA_READER_ERROR_XML_BAD_ROOT"));
        int status = begin(root);
        if (status == 0)
            status = readContainers();
        m_levels.clear();
        if (status != 0)
            return status;
    }
    return error();
}

int XmlDataReader::fail(XmlReadStatus status, const QString& text)
{
    raiseError(text);
    return static_cast<int>(status);
}

int XmlDataReader::failForDepth()
{
    return fail(XmlReadStatus::NestingTooDeep,
                QObject::tr("ORV_DATA_XML_DATA_READER_ERROR_XML_NESTING_TOO_DEEP_%1_%2")
                    .arg(lineNumber())
                    .arg(columnNumber()));
}

XmlDataReader::TokenType XmlDataReader::step()
{
    const TokenType token = advance();
    if (token == StartElement)
        ++m_depth;
    else if (token == EndElement)
        --m_depth;
    return token;
}

void XmlDataReader::skipWhitespace()
{
    do
        step();
    while (isWhitespace());
}

void XmlDataReader::startProgress(const ProgressFunction& progress)
{
    m_progress = &progress;
    m_progressStep = 0;
    m_nextProgressOffset = 0;
    if (!progress || device() == nullptr)
        return;
    m_totalSize = device()->size();
    m_progressStep = m_totalSize >= LargeDocument ? m_totalSize / ProgressSteps : m_totalSize;
}

void XmlDataReader::reportProgress()
{
    if (m_progressStep <= 0 || characterOffset() < m_nextProgressOffset)
        return;
    while (m_nextProgressOffset <= characterOffset())
        m_nextProgressOffset += m_progressStep;
    const double fraction =
        static_cast<double>(characterOffset()) / static_cast<double>(m_totalSize);
    (*m_progress)(static_cast<float>(std::min(1.0, fraction)));
}

int XmlDataReader::expectEnd()
{
    reportProgress();
    if (!isEndElement())
        return fail(XmlReadStatus::EndElementExpected,
                    QObject::tr("ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_END_ELEMENT_%1_%2")
                        .arg(lineNumber())
                        .arg(columnNumber()));
    skipWhitespace();
    return error();
}

// Leaves the reader on the end of the element at hand. The depth limit holds here as well, since a
// document is refused for it whether or not its elements are known.
int XmlDataReader::skipElement()
{
    const int depth = m_depth;
    while (m_depth >= depth) {
        if (m_depth > MaximumDepth)
            return failForDepth();
        if (step() == Invalid)
            return error();
    }
    return 0;
}

int XmlDataReader::begin(BaseObject& object)
{
    if (m_depth > MaximumDepth)
        return failForDepth();
    const ObjectKind kind = object.kind();
    if (kind == ObjectKind::Attribute)
        return readAttribute(static_cast<AttributeBase&>(object));
    std::uint64_t pending = 0;
    if (kind == ObjectKind::Struct)
        pending = lowestBits(static_cast<ContainerStructBase&>(object).members().count);
    m_levels.push_back({&object, kind, pending, nullptr});
    skipWhitespace();
    return error();
}

int XmlDataReader::readAttribute(AttributeBase& attribute)
{
    {
        // Gone before the next token: the reader would otherwise make a new array for it.
        const QXmlStreamAttributes attributes = this->attributes();
        const auto value = std::find_if(attributes.begin(), attributes.end(), [](const auto& one) {
            return isSame(one.qualifiedName(), "v");
        });
        if (value == attributes.end())
            return fail(
                XmlReadStatus::AttributeNotFound,
                QObject::tr("ORV_DATA_XML_DATA_READER_ERROR_XML_ATTRIBUTE_NOT_FOUND_%1_%2_%3")
                    .arg(QStringLiteral("v"))
                    .arg(lineNumber())
                    .arg(columnNumber()));
        if ((attribute.getMeta().valueFlags & ValueFlag::FilePath) != 0)
            m_text = toBytes(value->value().toString()); // a file name, which is Unicode
        else
            assignLatin1(m_text, value->value().data(), value->value().size());
    }
    try {
        attribute.fromString(m_text);
    } catch (const boost::bad_lexical_cast&) {
        throw ExceptionBadValue(std::string(attribute.getMeta().name), lineNumber(), m_text);
    }
    skipWhitespace();
    return hasError() ? error() : expectEnd();
}

int XmlDataReader::readContainers()
{
    while (!m_levels.empty()) {
        int status = 0;
        switch (m_levels.back().kind) {
        case ObjectKind::Struct:
            status = stepStruct(m_levels.back());
            break;
        case ObjectKind::List:
            status = stepList(m_levels.back());
            break;
        default:
            status = stepUnion(m_levels.back());
        }
        if (status != 0)
            return status;
    }
    return 0;
}

int XmlDataReader::endLevel()
{
    const int status = expectEnd();
    m_levels.pop_back();
    return status;
}

int XmlDataReader::stepStruct(Level& level)
{
    const MemberSpan members = static_cast<ContainerStructBase*>(level.object)->members();
    if (!isStartElement()) {
        for (std::uint64_t rest = level.pending; rest != 0; rest &= rest - 1)
            if (!members.rows[lowestBit(rest)].meta->isOptional)
                return fail(
                    XmlReadStatus::MemberMissing,
                    QObject::tr("ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_MEMBER_%1_%2_%3")
                        .arg(name().toString())
                        .arg(lineNumber())
                        .arg(columnNumber()));
        return endLevel();
    }
    // In declaration order, so that a file in the order of writing hits at once.
    const auto elementName = name();
    for (std::uint64_t rest = level.pending; rest != 0; rest &= rest - 1) {
        const std::size_t index = lowestBit(rest);
        if (!isSame(elementName, members.rows[index].meta->name))
            continue;
        level.pending &= ~(std::uint64_t{1} << index);
        return begin(const_cast<BaseObject&>(*members.object(index)));
    }
    const int status = skipElement();
    return status != 0 ? status : expectEnd();
}

int XmlDataReader::stepList(Level& level)
{
    auto& list = static_cast<ContainerListBase&>(*level.object);
    if (level.child != nullptr)
        list.pushBack(std::move(level.child));
    if (!isStartElement())
        return endLevel();
    assignLatin1(m_text, name().data(), name().size());
    level.child = list.createChild(m_text);
    // An unknown item leaves its own end element at hand, which ends the list in the next step.
    return level.child != nullptr ? begin(*level.child) : skipElement();
}

int XmlDataReader::stepUnion(Level& level)
{
    auto& alternatives = static_cast<ContainerUnionBase&>(*level.object);
    if (level.child != nullptr) {
        alternatives.set(std::move(level.child));
        return endLevel();
    }
    if (!isStartElement())
        return endLevel();
    assignLatin1(m_text, name().data(), name().size());
    level.child = alternatives.createChild(m_text);
    if (level.child != nullptr)
        return begin(*level.child);
    const int status = skipElement();
    return status != 0 ? status : endLevel();
}

} // namespace Orv::Data
