// Builders of test documents, and the short ways to write and to read one.
#pragma once

#include "data/xmldatareader.h"
#include "support/testdocument.h"
#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace TestDocument {

// Builds a shelf: aShelf().named("hall").withBook("atlas", 12).withShelf(aShelf().build()).build().
class ShelfBuilder
{
public:
    ShelfBuilder() = default;
    // Goes on with a shelf that there is already.
    explicit ShelfBuilder(std::unique_ptr<Shelf> shelf) : m_shelf(std::move(shelf)) {}

    ShelfBuilder& named(const std::string& name);
    ShelfBuilder& withUid(UInt uid);
    ShelfBuilder& atLevel(UInt level);
    ShelfBuilder& atPath(const std::string& bytes);
    ShelfBuilder& atSpot(const Float3& spot);
    ShelfBuilder& weighing(float weight);
    ShelfBuilder& ofSize(const Int2& size);
    ShelfBuilder& opened();
    ShelfBuilder& withBook(const std::string& title, UInt pages = 0);
    // `count` books of one title.
    ShelfBuilder& withBooks(std::size_t count, const std::string& title = "book");
    ShelfBuilder& withCandle(UInt wicks);
    ShelfBuilder& withBulb(float watts);
    ShelfBuilder& coloured(const std::string& color);
    ShelfBuilder& withShelf(std::unique_ptr<Shelf> shelf);
    // Ends the building.
    std::unique_ptr<Shelf> build() { return std::move(m_shelf); }

private:
    std::unique_ptr<Shelf> m_shelf = std::make_unique<Shelf>();
};

inline ShelfBuilder aShelf()
{
    return ShelfBuilder();
}

// A shelf within a shelf and so on, `count` of them.
std::unique_ptr<Shelf> nestedShelves(std::size_t count);
// The element depth of nestedShelves(count) in a file.
constexpr std::size_t depthOfNestedShelves(std::size_t count)
{
    return 2 * count;
}

// A shelf with everything at random: texts of all Latin-1 characters that XML can hold, paths of
// all of Unicode, all numbers that can be read back, and up to `depth` shelves in each other.
std::unique_ptr<Shelf> randomShelf(std::mt19937& random, int depth);
// Any float but NaN and the infinities.
float randomFiniteFloat(std::mt19937& random);
// Up to `length` characters from 0x20 on, tabulator and line ends, in Latin-1.
std::string randomLatin1(std::mt19937& random, int length);
// Up to `length` characters of Unicode, in UTF-8.
std::string randomUtf8(std::mt19937& random, int length);

// The bytes that XmlDataWriter gives for a document.
std::string written(const BaseObject& root);
// The bytes that QXmlStreamWriter gives for it, token by token: what XmlDataWriter must give.
std::string writtenByStreamWriter(const BaseObject& root);

// What became of a read.
struct ReadOutcome
{
    std::unique_ptr<Shelf> shelf;
    int status;
    std::string message;
};
// Reads a document whose root is a shelf. A value that is refused throws.
ReadOutcome readShelf(const std::string& bytes,
                      const Orv::Data::ProgressFunction& progress = nullptr);

// The text of a shelf's element with these members.
std::string shelfXml(const std::string& members);
// The members that a shelf in a file must have.
extern const char* const RequiredMembers;

} // namespace TestDocument
