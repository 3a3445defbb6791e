#include "ksx/kit/schema.h"

#include "ksx/kit/format.h"
#include <QStringList>
#include <QXmlStreamWriter>

namespace Ksx::Kit {

namespace {

// The texts that the reader takes for a value, in terms of the data types that both schemas share.
struct ValueForm
{
    QString type;
    QString base;
    // Names and values of the restrictions of the base.
    std::vector<std::pair<QString, QString>> facets;
};

const char* const Float =
    "[+\\-]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][+\\-]?[0-9]+)?|[+\\-]?(nan|inf)";
const char* const Integer = "[+\\-]?[0-9]+";

ValueForm patternForm(const QString& type, const QString& pattern)
{
    return {type, QStringLiteral("string"), {{QStringLiteral("pattern"), pattern}}};
}

// Any one character is between two components, and one may follow the last.
ValueForm vectorForm(const QString& type, const char* component, int size)
{
    const QString one = QStringLiteral("(%1)").arg(QLatin1String(component));
    QStringList components;
    for (int i = 0; i < size; ++i)
        components.append(one);
    return patternForm(type + QString::number(size),
                       components.join(QStringLiteral("[^0-9]")) + QStringLiteral("[^0-9]?"));
}

std::vector<ValueForm> valueForms()
{
    std::vector<ValueForm> forms = {
        {QStringLiteral("string"), QStringLiteral("string"), {}},
        patternForm(QStringLiteral("bool"), QStringLiteral("[+\\-]?0|\\+?1")),
        {QStringLiteral("uint32"),
         QStringLiteral("integer"),
         {{QStringLiteral("minInclusive"), QStringLiteral("-4294967295")},
          {QStringLiteral("maxInclusive"), QStringLiteral("4294967295")}}},
        patternForm(QStringLiteral("float"), QLatin1String(Float))};
    for (int size = 1; size <= 4; ++size) {
        forms.push_back(vectorForm(QStringLiteral("float"), Float, size));
        forms.push_back(vectorForm(QStringLiteral("int"), Integer, size));
    }
    return forms;
}

QString text(const std::string& name)
{
    return QString::fromStdString(name);
}

// The name of the definition of a value.
QString valueName(const QString& type)
{
    return QStringLiteral("value.") + type;
}

// Writes elements with attributes and closes them in their order.
class SchemaWriter
{
public:
    explicit SchemaWriter(QByteArray& out) : m_writer(&out)
    {
        m_writer.setAutoFormatting(true);
        m_writer.setAutoFormattingIndent(1);
        m_writer.writeStartDocument();
    }

    using Attributes = std::vector<std::pair<const char*, QString>>;

    void begin(const char* element, const Attributes& attributes = {})
    {
        m_writer.writeStartElement(QLatin1String(element));
        for (const auto& [name, value] : attributes)
            m_writer.writeAttribute(QLatin1String(name), value);
    }
    void end(int count = 1)
    {
        for (int i = 0; i < count; ++i)
            m_writer.writeEndElement();
    }
    void empty(const char* element, const Attributes& attributes = {})
    {
        begin(element, attributes);
        end();
    }
    void write(const QString& characters) { m_writer.writeCharacters(characters); }
    void finish() { m_writer.writeEndDocument(); }

private:
    QXmlStreamWriter m_writer;
};

// --- RELAX NG

void writeElement(SchemaWriter& out, const std::string& element, const QString& definition)
{
    out.begin("element", {{"name", text(element)}});
    out.empty("ref", {{"name", definition}});
    out.end();
}

void writeItems(SchemaWriter& out, const FormatMember& member)
{
    out.begin("element", {{"name", text(member.element)}});
    out.begin(member.kind == MemberKind::List ? "zeroOrMore" : "optional");
    out.begin("choice");
    for (const FormatItem& item : member.items)
        writeElement(out, item.element, text(item.structure));
    out.end(3);
}

void writeMember(SchemaWriter& out, const FormatMember& member)
{
    if (!member.isRequired)
        out.begin("optional");
    if (member.kind == MemberKind::Value)
        writeElement(out, member.element, valueName(text(member.type)));
    else if (member.kind == MemberKind::Structure)
        writeElement(out, member.element, text(member.structure));
    else
        writeItems(out, member);
    if (!member.isRequired)
        out.end();
}

void writeValueForm(SchemaWriter& out, const ValueForm& form)
{
    out.begin("define", {{"name", valueName(form.type)}});
    out.begin("attribute", {{"name", QStringLiteral("v")}});
    out.begin("data", {{"type", form.base}});
    for (const auto& [name, value] : form.facets) {
        out.begin("param", {{"name", name}});
        out.write(value);
        out.end();
    }
    out.end(3);
}

// --- XML Schema

void declareElement(SchemaWriter& out, const std::string& element, const QString& type,
                    bool isRequired = true)
{
    SchemaWriter::Attributes attributes{{"name", text(element)}, {"type", type}};
    if (!isRequired)
        attributes.emplace_back("minOccurs", QStringLiteral("0"));
    out.empty("xs:element", attributes);
}

void declareItems(SchemaWriter& out, const FormatMember& member)
{
    SchemaWriter::Attributes attributes{{"name", text(member.element)}};
    if (!member.isRequired)
        attributes.emplace_back("minOccurs", QStringLiteral("0"));
    out.begin("xs:element", attributes);
    out.begin("xs:complexType");
    SchemaWriter::Attributes count{{"minOccurs", QStringLiteral("0")}};
    if (member.kind == MemberKind::List)
        count.emplace_back("maxOccurs", QStringLiteral("unbounded"));
    out.begin("xs:choice", count);
    for (const FormatItem& item : member.items)
        declareElement(out, item.element, text(item.structure));
    out.end(3);
}

void declareMember(SchemaWriter& out, const FormatMember& member)
{
    if (member.kind == MemberKind::Value)
        declareElement(out, member.element, valueName(text(member.type)), member.isRequired);
    else if (member.kind == MemberKind::Structure)
        declareElement(out, member.element, text(member.structure), member.isRequired);
    else
        declareItems(out, member);
}

void declareValueForm(SchemaWriter& out, const ValueForm& form)
{
    out.begin("xs:complexType", {{"name", valueName(form.type)}});
    out.begin("xs:attribute", {{"name", QStringLiteral("v")}, {"use", QStringLiteral("required")}});
    out.begin("xs:simpleType");
    out.begin("xs:restriction", {{"base", QStringLiteral("xs:") + form.base}});
    for (const auto& [name, value] : form.facets)
        out.empty(("xs:" + name).toLatin1().constData(), {{"value", value}});
    out.end(4);
}

} // namespace

QByteArray relaxNgSchema()
{
    QByteArray schema;
    SchemaWriter out(schema);
    out.begin("grammar",
              {{"xmlns", QStringLiteral("http://relaxng.org/ns/structure/1.0")},
               {"datatypeLibrary", QStringLiteral("http://www.w3.org/2001/XMLSchema-datatypes")}});
    out.begin("start");
    const std::vector<FormatStructure> format = packageFormat();
    writeElement(out, format.front().name, text(format.front().name));
    out.end();
    for (const FormatStructure& structure : format) {
        out.begin("define", {{"name", text(structure.name)}});
        out.begin("interleave");
        for (const FormatMember& member : structure.members)
            writeMember(out, member);
        out.end(2);
    }
    for (const ValueForm& form : valueForms())
        writeValueForm(out, form);
    out.finish();
    return schema;
}

QByteArray xmlSchema()
{
    QByteArray schema;
    SchemaWriter out(schema);
    out.begin("xs:schema", {{"xmlns:xs", QStringLiteral("http://www.w3.org/2001/XMLSchema")}});
    const std::vector<FormatStructure> format = packageFormat();
    declareElement(out, format.front().name, text(format.front().name));
    for (const FormatStructure& structure : format) {
        out.begin("xs:complexType", {{"name", text(structure.name)}});
        out.begin("xs:all");
        for (const FormatMember& member : structure.members)
            declareMember(out, member);
        out.end(2);
    }
    for (const ValueForm& form : valueForms())
        declareValueForm(out, form);
    out.finish();
    return schema;
}

} // namespace Ksx::Kit
