#include "support/shelfbuilder.h"

#include "data/filename.h"
#include "data/xmldatawriter.h"
#include "support/shelfcases.h"
#include <QBuffer>
#include <QXmlStreamWriter>
#include <array>
#include <cmath>
#include <cstring>

namespace TestDocument {

using Orv::Data::AttributeBase;
using Orv::Data::ObjectKind;
using Orv::Data::ObjectMeta;
using Orv::Data::ValueFlag;
using TestSupport::pick;

const char* const RequiredMembers = R"(<name v="n"/><shelves/>)";

ShelfBuilder& ShelfBuilder::named(const std::string& name)
{
    m_shelf->name().assign(name);
    return *this;
}

ShelfBuilder& ShelfBuilder::withUid(UInt uid)
{
    m_shelf->uid().assign(uid);
    return *this;
}

ShelfBuilder& ShelfBuilder::atLevel(UInt level)
{
    m_shelf->level().assign(level);
    return *this;
}

ShelfBuilder& ShelfBuilder::atPath(const std::string& bytes)
{
    m_shelf->path().assign(bytes);
    return *this;
}

ShelfBuilder& ShelfBuilder::atSpot(const Float3& spot)
{
    m_shelf->spot().assign(spot);
    return *this;
}

ShelfBuilder& ShelfBuilder::weighing(float weight)
{
    m_shelf->weight().assign(weight);
    return *this;
}

ShelfBuilder& ShelfBuilder::ofSize(const Int2& size)
{
    m_shelf->size().assign(size);
    return *this;
}

ShelfBuilder& ShelfBuilder::opened()
{
    m_shelf->open().assign(true);
    return *this;
}

ShelfBuilder& ShelfBuilder::withBook(const std::string& title, UInt pages)
{
    auto book = std::make_unique<Book>();
    book->title().assign(title);
    book->pages().assign(pages);
    m_shelf->books().pushBack(std::move(book));
    return *this;
}

ShelfBuilder& ShelfBuilder::withBooks(std::size_t count, const std::string& title)
{
    for (std::size_t i = 0; i < count; ++i)
        withBook(title);
    return *this;
}

ShelfBuilder& ShelfBuilder::withCandle(UInt wicks)
{
    auto candle = std::make_unique<Candle>();
    candle->wicks().assign(wicks);
    m_shelf->lamp().set(std::move(candle));
    return *this;
}

ShelfBuilder& ShelfBuilder::withBulb(float watts)
{
    auto bulb = std::make_unique<Bulb>();
    bulb->watts().assign(watts);
    m_shelf->lamp().set(std::move(bulb));
    return *this;
}

ShelfBuilder& ShelfBuilder::coloured(const std::string& color)
{
    m_shelf->cover().color().assign(color);
    return *this;
}

ShelfBuilder& ShelfBuilder::withShelf(std::unique_ptr<Shelf> shelf)
{
    m_shelf->shelves().pushBack(std::move(shelf));
    return *this;
}

std::unique_ptr<Shelf> nestedShelves(std::size_t count)
{
    auto shelf = aShelf().named("1").build();
    for (std::size_t i = 2; i <= count; ++i)
        shelf = aShelf().named(std::to_string(i)).withShelf(std::move(shelf)).build();
    return shelf;
}

float randomFiniteFloat(std::mt19937& random)
{
    for (;;) {
        const auto bits = static_cast<std::uint32_t>(random());
        float value = 0;
        std::memcpy(&value, &bits, sizeof(value));
        if (std::isfinite(value))
            return value;
    }
}

namespace {

// One below the largest, so that the six digits of a vector's element do not round beyond it.
float randomElement(std::mt19937& random)
{
    const float value = randomFiniteFloat(random);
    return std::abs(value) > 1e38f ? 0.5f : value;
}

bool oneIn(std::mt19937& random, int count)
{
    return pick(random, 1, count) == 1;
}

char32_t randomCharacter(std::mt19937& random)
{
    switch (pick(random, 0, 4)) {
    case 0:
        return pick<char32_t>(random, 0x20, 0x7F);
    case 1:
        return pick<char32_t>(random, 0x80, 0xFF);
    case 2:
        return pick<char32_t>(random, 0x100, 0xD7FF);
    case 3:
        return pick<char32_t>(random, 0xE000, 0xFFFD);
    default:
        return pick<char32_t>(random, 0x10000, 0x10FFFD);
    }
}

} // namespace

std::string randomLatin1(std::mt19937& random, int length)
{
    static constexpr std::array<char, 3> Blanks = {'\t', '\n', '\r'};
    std::string text;
    for (int rest = pick(random, 0, length); rest > 0; --rest) {
        if (oneIn(random, 20))
            text.push_back(Blanks[pick<std::size_t>(random, 0, 2)]);
        else
            text.push_back(static_cast<char>(pick(random, 0x20, 0xFF)));
    }
    return text;
}

std::string randomUtf8(std::mt19937& random, int length)
{
    std::u32string text;
    for (int rest = pick(random, 0, length); rest > 0; --rest)
        text.push_back(randomCharacter(random));
    return QString::fromStdU32String(text).toStdString();
}

std::unique_ptr<Shelf> randomShelf(std::mt19937& random, int depth)
{
    ShelfBuilder builder;
    builder.named(randomLatin1(random, 30));
    if (oneIn(random, 2))
        builder.withUid(static_cast<UInt>(random()));
    if (oneIn(random, 2))
        builder.atLevel(pick<UInt>(random, 6, 8));
    if (oneIn(random, 2))
        builder.atPath(randomUtf8(random, 30));
    if (oneIn(random, 2))
        builder.atSpot({{randomElement(random), randomElement(random), randomElement(random)}});
    if (oneIn(random, 2))
        builder.weighing(randomFiniteFloat(random));
    if (oneIn(random, 2))
        builder.ofSize({{static_cast<int>(random()), static_cast<int>(random())}});
    if (oneIn(random, 2))
        builder.opened();
    for (int rest = pick(random, 0, 3); rest > 0; --rest)
        builder.withBook(randomLatin1(random, 60), pick<UInt>(random, 0, 2));
    if (oneIn(random, 3))
        builder.withCandle(static_cast<UInt>(random()));
    else if (oneIn(random, 2))
        builder.withBulb(randomFiniteFloat(random));
    if (oneIn(random, 3))
        builder.coloured(randomLatin1(random, 5));
    for (int rest = depth > 1 ? pick(random, 0, 3) : 0; rest > 0; --rest)
        builder.withShelf(randomShelf(random, depth - 1));
    return builder.build();
}

std::string written(const BaseObject& root)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Orv::Data::XmlDataWriter writer(&buffer);
    EXPECT_TRUE(writer.write(root));
    return buffer.data().toStdString();
}

namespace {

void writeByStreamWriter(QXmlStreamWriter& writer, const BaseObject& object)
{
    const ObjectMeta& meta = object.getMeta();
    const QString name = QString::fromLatin1(meta.name.data(), static_cast<int>(meta.name.size()));
    if (const auto* attribute = dynamic_cast<const AttributeBase*>(&object)) {
        const std::string text = attribute->toString();
        const bool isFilePath = (meta.valueFlags & ValueFlag::FilePath) != 0;
        writer.writeEmptyElement(name);
        writer.writeAttribute(QStringLiteral("v"), isFilePath ? Orv::fromBytes(text)
                                                              : QString::fromLatin1(text.c_str()));
        return;
    }
    writer.writeStartElement(name);
    const bool isStruct = object.kind() == ObjectKind::Struct;
    for (const auto place = object.createConstIterator(); !place->atEnd(); place->next()) {
        const BaseObject& child = *place->get();
        if (!isStruct || !child.getMeta().isOptional || child.isModified())
            writeByStreamWriter(writer, child);
    }
    writer.writeEndElement();
}

} // namespace

std::string writtenByStreamWriter(const BaseObject& root)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QXmlStreamWriter writer(&buffer);
    writer.writeStartDocument();
    writeByStreamWriter(writer, root);
    writer.writeEndDocument();
    EXPECT_FALSE(writer.hasError());
    return buffer.data().toStdString();
}

ReadOutcome readShelf(const std::string& bytes, const Orv::Data::ProgressFunction& progress)
{
    QByteArray data = QByteArray::fromStdString(bytes);
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    Orv::Data::XmlDataReader reader(&buffer);
    auto shelf = std::make_unique<Shelf>();
    const int status = reader.read(*shelf, progress);
    return {std::move(shelf), status, reader.errorString().toStdString()};
}

std::string shelfXml(const std::string& members)
{
    return "<shelf>" + members + "</shelf>";
}

} // namespace TestDocument
