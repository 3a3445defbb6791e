#include "elementcheck.h"

#include "core/regularfile.h"
#include "data/attribute.h"
#include "data/boundedxmlreader.h"
#include "data/filename.h"
#include "data/latin1.h"
#include "findinglist.h"
#include "ksx/kit/format.h"
#include <QHash>
#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <algorithm>
#include <map>

namespace Ksx::Kit {

namespace {

using Orv::Data::valueFromString;

template <class T>
bool isValue(const std::string& text)
{
    try {
        static_cast<void>(valueFromString<T>(text));
        return true;
    } catch (const boost::bad_lexical_cast&) {
        return false;
    }
}

struct ValueType
{
    const char* name;
    bool (*accepts)(const std::string& text);
};

constexpr ValueType ValueTypes[] = {
    {"bool", &isValue<bool>},
    {"uint32", &isValue<Orv::Data::UInt>},
    {"float", &isValue<float>},
    {"float1", &isValue<Orv::Data::Float1>},
    {"float2", &isValue<Orv::Data::Float2>},
    {"float3", &isValue<Orv::Data::Float3>},
    {"float4", &isValue<Orv::Data::Float4>},
    {"int1", &isValue<Orv::Data::Int1>},
    {"int2", &isValue<Orv::Data::Int2>},
    {"int3", &isValue<Orv::Data::Int3>},
    {"int4", &isValue<Orv::Data::Int4>},
};

// Any text is a string.
bool isValueOf(const std::string& type, const QString& text)
{
    const auto* const found = std::find_if(std::begin(ValueTypes), std::end(ValueTypes),
                                           [&](const ValueType& one) { return type == one.name; });
    return found == std::end(ValueTypes) || found->accepts(Orv::toLatin1(text));
}

QString shown(const std::string& text)
{
    return QString::fromStdString(text);
}

// The structures of the format by their names, and their members by the names of their elements.
struct FormatIndex
{
    FormatIndex()
    {
        for (const FormatStructure& structure : structures) {
            byName[structure.name] = &structure;
            for (const FormatMember& member : structure.members)
                members[&structure][shown(member.element)] = &member;
        }
    }

    std::vector<FormatStructure> structures = packageFormat();
    std::map<std::string, const FormatStructure*> byName;
    std::map<const FormatStructure*, QHash<QString, const FormatMember*>> members;
};

const FormatIndex& formatIndex()
{
    static const FormatIndex index; // the language guards the first use
    return index;
}

// An element that is open: a structure, or a list or union of items.
struct OpenElement
{
    QString name;
    const FormatStructure* structure = nullptr; // null for a list or union
    const FormatMember* items = nullptr;        // null for a structure
    std::vector<const FormatMember*> seen = {}; // members of the structure
    QString place = {};                         // of the object that it is, or is in
    bool isObject = false;                      // whether its identifier is a part of the place
};

// Goes through the elements of a document.
class ElementCheck
{
public:
    ElementCheck(QIODevice& device, FindingList& findings) : m_reader(&device), m_findings(findings)
    {}

    void run()
    {
        for (;;) {
            switch (m_reader.advance()) {
            case QXmlStreamReader::StartElement:
                if (m_open.empty() && m_reader.name() != QLatin1String("package"))
                    return;
                begin();
                break;
            case QXmlStreamReader::EndElement:
                end();
                break;
            case QXmlStreamReader::EndDocument:
            case QXmlStreamReader::Invalid:
                return;
            default:
                break;
            }
        }
    }

private:
    void begin()
    {
        const QString name = m_reader.name().toString();
        if (m_open.empty())
            m_open.push_back({name, &formatIndex().structures.front()});
        else if (m_open.back().structure != nullptr)
            beginMember(name);
        else
            beginItem(name);
    }

    void beginMember(const QString& name)
    {
        OpenElement& owner = m_open.back();
        const auto& members = formatIndex().members.at(owner.structure);
        const FormatMember* const member = members.value(name);
        if (member == nullptr) {
            add(FindingCode::UnknownElement, QStringLiteral("<%1> is no member of <%2>"), name);
            skip();
            return;
        }
        if (std::count(owner.seen.begin(), owner.seen.end(), member) == 1)
            add(FindingCode::DoubleElement, QStringLiteral("<%1> is in <%2> more than once"), name);
        else
            owner.seen.push_back(member);
        if (member->kind == MemberKind::Value)
            takeValue(*member, name);
        else if (member->kind == MemberKind::Structure)
            m_open.push_back(
                {name, formatIndex().byName.at(member->structure), nullptr, {}, owner.place});
        else
            m_open.push_back({name, nullptr, member, {}, owner.place});
    }

    void beginItem(const QString& name)
    {
        const OpenElement& owner = m_open.back();
        const auto& items = owner.items->items;
        const auto found = std::find_if(items.begin(), items.end(), [&](const FormatItem& item) {
            return name == QLatin1String(item.element.c_str());
        });
        if (found == items.end()) {
            add(FindingCode::UnknownItem, QStringLiteral("<%1> is no item of <%2>"), name);
            skip();
            return;
        }
        const bool isObject = owner.items->element == "content";
        m_open.push_back(
            {name, formatIndex().byName.at(found->structure), nullptr, {}, owner.place, isObject});
    }

    void takeValue(const FormatMember& member, const QString& name)
    {
        OpenElement& owner = m_open.back();
        const QString text = m_reader.attributes().value(QLatin1String("v")).toString();
        if (!isValueOf(member.type, text))
            add(FindingCode::BadValue, QStringLiteral("<%1> of <%2> is no %3: ")
                                               .arg(name, owner.name, shown(member.type)) +
                                           text);
        if (owner.isObject && member.element == "identifier")
            owner.place = placeIn(owner.place, text);
        skip();
    }

    void end()
    {
        const OpenElement element = std::move(m_open.back());
        m_open.pop_back();
        if (element.structure == nullptr)
            return;
        for (const FormatMember& member : element.structure->members)
            if (member.isRequired &&
                std::count(element.seen.begin(), element.seen.end(), &member) == 0)
                m_findings.add(
                    FindingCode::MissingElement, element.place,
                    QStringLiteral("<%1> has no <%2>").arg(element.name, shown(member.element)),
                    m_reader.lineNumber(), m_reader.columnNumber());
    }

    // Goes behind the end of the element at hand.
    void skip()
    {
        for (int depth = 1; depth > 0;) {
            const auto token = m_reader.advance();
            if (token == QXmlStreamReader::Invalid)
                return;
            if (token == QXmlStreamReader::StartElement)
                ++depth;
            else if (token == QXmlStreamReader::EndElement)
                --depth;
        }
    }

    void add(FindingCode code, const QString& pattern, const QString& name)
    {
        add(code, pattern.arg(name, m_open.back().name));
    }
    void add(FindingCode code, const QString& text)
    {
        m_findings.add(code, m_open.back().place, text, m_reader.lineNumber(),
                       m_reader.columnNumber());
    }

    Orv::Data::BoundedXmlReader m_reader;
    FindingList& m_findings;
    std::vector<OpenElement> m_open; // from the root on
};

} // namespace

void checkElements(const QString& file, FindingList& findings)
{
    Orv::Core::RegularFile device(file);
    if (device.open(QIODevice::ReadOnly))
        ElementCheck(device, findings).run();
}

} // namespace Ksx::Kit
