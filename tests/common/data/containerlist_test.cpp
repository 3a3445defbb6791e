#include "data/containerlist.h"

#include "data/datapointerbox.h"
#include "data/shadowobject.h"
#include "support/shelfbuilder.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <array>
#include <numeric>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace TestDocument;
using Orv::Data::Attribute;
using Orv::Data::DataPointerBox;
using Orv::Data::PointerArray;

std::string titlesOf(const Shelf& shelf)
{
    std::string titles;
    for (const Book& book : shelf.books())
        titles += book.title().get();
    return titles;
}

const Orv::Data::BaseObject* deepestOf(const Shelf& root)
{
    const Orv::Data::BaseObject* deepest = &root;
    while (!static_cast<const Shelf*>(deepest)->shelves().isEmpty())
        deepest = &static_cast<const Shelf*>(deepest)->shelves().front();
    return deepest;
}

// Writes a letter when it dies with the object that it listens to.
class LastWords final : public Orv::Data::ListenerBase
{
public:
    LastWords(char letter, std::string& text) : m_letter(letter), m_text(text) {}
    ~LastWords() override { m_text += m_letter; }
    bool isOwnedByShadow() const override { return true; }
    std::uint16_t getPriority() const override { return 0; }
    const Orv::Data::ListenerFilter& getFilter() const override
    {
        static constexpr Orv::Data::ListenerFilter filter{0, 0, 0};
        return filter;
    }
    void deliver(const Orv::Data::DataMessage&) override {}

private:
    char m_letter;
    std::string& m_text;
};

std::unique_ptr<Book> aLoudBook(char letter, std::string& text)
{
    auto book = std::make_unique<Book>();
    Orv::Data::ShadowObject::of(*book).addListener(*new LastWords(letter, text));
    return book;
}

TEST(ContainerList, HasForwardIterators)
{
    using Iterator = decltype(std::declval<const Shelf&>().books().begin());
    static_assert(std::is_default_constructible_v<Iterator>);
    static_assert(std::is_base_of_v<std::forward_iterator_tag,
                                    std::iterator_traits<Iterator>::iterator_category>);
    const auto shelf = aShelf().withBook("a").withBook("b").build();
    const auto found = std::find_if(shelf->books().begin(), shelf->books().end(),
                                    [](const Book& book) { return book.title().get() == "b"; });
    EXPECT_EQ(found.index(), 1u);
}

TEST(ContainerList, ATreeOfAMillionLevelsCanBeDestroyed)
{
    auto root = nestedShelves(1000000);
    const DataPointerBox<Orv::Data::BaseObject> deepest(deepestOf(*root));
    root.reset();
    EXPECT_FALSE(deepest);
}

TEST(ContainerList, DestroysItsItemsInOrder)
{
    std::string destroyed;
    {
        Shelf shelf;
        shelf.books().pushBack(aLoudBook('a', destroyed));
        shelf.books().pushBack(aLoudBook('b', destroyed));
        shelf.books().pushBack(aLoudBook('c', destroyed));
    }
    EXPECT_EQ(destroyed, "abc");
}

TEST(ContainerList, IsEmptyAtFirst)
{
    EXPECT_TRUE(Shelf().books().isEmpty());
}

TEST(ContainerList, HasNoItemsAtFirst)
{
    EXPECT_EQ(Shelf().books().size(), 0u);
}

TEST(ContainerList, BeginsAtItsEndWhileItIsEmpty)
{
    const Shelf shelf;
    EXPECT_EQ(shelf.books().begin(), shelf.books().end());
}

TEST(ContainerList, IsNotModifiedWhileItIsEmpty)
{
    EXPECT_FALSE(Shelf().books().isModified());
}

TEST(ContainerList, IsModifiedByAnItemAtItsDefault)
{
    EXPECT_TRUE(aShelf().withBook("").build()->books().isModified());
}

TEST(ContainerList, PushBackSetsTheParent)
{
    Shelf shelf;
    shelf.books().pushBack(std::make_unique<Book>());
    EXPECT_EQ(shelf.books().front().getParent(), &shelf.books());
}

TEST(ContainerList, PushBackAppends)
{
    EXPECT_EQ(titlesOf(*aShelf().withBook("a").withBook("b").withBook("c").build()), "abc");
}

TEST(ContainerList, GivesItsItemsByPosition)
{
    EXPECT_EQ(aShelf().withBook("a").withBook("b").build()->books().at(1).title().get(), "b");
}

TEST(ContainerList, GivesItsFirstItem)
{
    EXPECT_EQ(aShelf().withBook("a").withBook("b").build()->books().front().title().get(), "a");
}

TEST(ContainerList, GivesItsLastItem)
{
    EXPECT_EQ(aShelf().withBook("a").withBook("b").build()->books().back().title().get(), "b");
}

TEST(ContainerList, FindsThePlaceOfAnItem)
{
    const auto shelf = aShelf().withBook("a").withBook("b").build();
    EXPECT_EQ(shelf->books().indexOf(shelf->books().back()), 1u);
}

TEST(ContainerList, AnswersItsSizeForThePlaceOfAStranger)
{
    EXPECT_EQ(aShelf().withBook("a").withBook("b").build()->books().indexOf(Book()), 2u);
}

TEST(ContainerList, ItemsStayWhereTheyAreWhenItGrows)
{
    auto shelf = aShelf().withBook("first").build();
    const Book* first = &shelf->books().front();
    shelf = ShelfBuilder(std::move(shelf)).withBooks(1000).build();
    EXPECT_EQ(&shelf->books().front(), first);
}

TEST(ContainerList, ClearDeletesTheItems)
{
    auto shelf = aShelf().withBook("atlas").build();
    const DataPointerBox<Book> book(&shelf->books().front());
    shelf->books().clear();
    EXPECT_EQ(book.get(), nullptr);
}

TEST(ContainerList, ClearLeavesItEmpty)
{
    auto shelf = aShelf().withBook("a").withBook("b").build();
    shelf->books().clear();
    EXPECT_TRUE(shelf->books().isEmpty());
}

TEST(ContainerList, CanBeFilledAgainAfterClear)
{
    auto shelf = aShelf().withBook("a").build();
    shelf->books().clear();
    shelf->books().pushBack(std::make_unique<Book>());
    EXPECT_EQ(shelf->books().size(), 1u);
}

TEST(ContainerList, DeletesItsItemsWithItself)
{
    auto shelf = aShelf().withBook("atlas").build();
    const DataPointerBox<Book> book(&shelf->books().front());
    shelf.reset();
    EXPECT_EQ(book.get(), nullptr);
}

// An item that records whether a box on its list still had its target when the item died.
struct WitnessMeta_
{
    static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("witness", Required);
};
class Witness final : public Orv::Data::MetaBinder<Attribute<UInt>, WitnessMeta_>
{
public:
    Witness(DataPointerBox<BaseObject>& box, bool& hadTarget) : m_box(box), m_hadTarget(hadTarget)
    {}
    ~Witness() override { m_hadTarget = static_cast<bool>(m_box); }

private:
    DataPointerBox<BaseObject>& m_box;
    bool& m_hadTarget;
};

TEST(ContainerList, ItsItemsDieBeforeIt)
{
    bool hadTarget = false;
    auto shelf = std::make_unique<Shelf>();
    DataPointerBox<BaseObject> list(&shelf->shelves());
    shelf->shelves().pushBack(std::make_unique<Witness>(list, hadTarget));
    shelf.reset();
    EXPECT_TRUE(hadTarget);
}

// Ten pointers, each to a place of its own, so that their order can be read.
class PointerArrayOfTen : public testing::Test
{
protected:
    PointerArrayOfTen()
    {
        for (std::size_t i = 0; i < m_objects.size(); ++i)
            m_pointers[i] = &m_objects[i];
        m_array.insert(0, m_pointers.data(), 10);
    }
    std::string order() const
    {
        std::string digits;
        for (std::size_t i = 0; i < m_array.size(); ++i)
            digits += std::to_string(static_cast<const Book*>(m_array[i]) - m_objects.data());
        return digits;
    }
    std::array<Book, 10> m_objects;
    std::array<BaseObject*, 10> m_pointers{};
    PointerArray m_array;
};

TEST_F(PointerArrayOfTen, HoldsThemInOrder)
{
    EXPECT_EQ(order(), "0123456789");
}

TEST_F(PointerArrayOfTen, InsertsBeforeTheFirst)
{
    m_array.insert(0, &m_pointers[8], 2);
    EXPECT_EQ(order(), "890123456789");
}

TEST_F(PointerArrayOfTen, InsertsInTheMiddle)
{
    m_array.insert(5, &m_pointers[0], 2);
    EXPECT_EQ(order(), "012340156789");
}

TEST_F(PointerArrayOfTen, InsertsBehindTheLast)
{
    m_array.insert(10, &m_pointers[0], 1);
    EXPECT_EQ(order(), "01234567890");
}

TEST_F(PointerArrayOfTen, IsLeftByAnInsertionOfNothing)
{
    m_array.insert(3, nullptr, 0);
    EXPECT_EQ(order(), "0123456789");
}

TEST_F(PointerArrayOfTen, ForgetsFromTheMiddle)
{
    m_array.erase(2, 3);
    EXPECT_EQ(order(), "0156789");
}

TEST_F(PointerArrayOfTen, ForgetsTheLast)
{
    m_array.erase(9, 1);
    EXPECT_EQ(order(), "012345678");
}

TEST_F(PointerArrayOfTen, IsEmptyAfterAllAreForgotten)
{
    m_array.erase(0, 10);
    EXPECT_EQ(m_array.size(), 0u);
}

TEST_F(PointerArrayOfTen, MovesOneForward)
{
    m_array.move(2, 5);
    EXPECT_EQ(order(), "0134526789");
}

TEST_F(PointerArrayOfTen, MovesOneBackward)
{
    m_array.move(5, 2);
    EXPECT_EQ(order(), "0152346789");
}

TEST_F(PointerArrayOfTen, IsLeftByAMoveToTheSamePlace)
{
    m_array.move(4, 4);
    EXPECT_EQ(order(), "0123456789");
}

TEST_F(PointerArrayOfTen, RefusesMoreThanItsCapacity)
{
    EXPECT_THROW(m_array.insert(10, m_pointers.data(), std::size_t{1} << 32), std::length_error);
}

TEST_F(PointerArrayOfTen, IsLeftByARefusal)
{
    EXPECT_THROW(m_array.insert(0, m_pointers.data(), std::size_t{1} << 32), std::length_error);
    EXPECT_EQ(order(), "0123456789");
}

std::string refusalText()
{
    PointerArray array;
    try {
        array.insert(0, nullptr, std::size_t{1} << 32);
    } catch (const std::length_error& error) {
        return error.what();
    }
    return {};
}

TEST(PointerArray, SaysThatTheListIsTooLong)
{
    EXPECT_EQ(refusalText(), "list<T> too long");
}

TEST(PointerArray, TakesOneWord)
{
    EXPECT_EQ(sizeof(PointerArray), sizeof(void*));
}

std::vector<Orv::Data::BaseObject*> pointersOf(const PointerArray& array)
{
    std::vector<Orv::Data::BaseObject*> pointers;
    for (std::size_t i = 0; i < array.size(); ++i)
        pointers.push_back(array[i]);
    return pointers;
}

// An array of so many items that edits far from its ends make blocks of it.
class LongArray : public testing::Test
{
protected:
    LongArray()
    {
        for (std::size_t i = 0; i < 5000; ++i) {
            books.push_back(std::make_unique<Book>());
            expected.push_back(books.back().get());
        }
        array.insert(0, expected.data(), expected.size());
    }
    void erase(std::size_t index, std::size_t count)
    {
        array.erase(index, count);
        const auto begin = expected.begin() + static_cast<std::ptrdiff_t>(index);
        expected.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
    }
    void insert(std::size_t index, const std::vector<Orv::Data::BaseObject*>& pointers)
    {
        array.insert(index, pointers.data(), pointers.size());
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(index), pointers.begin(),
                        pointers.end());
    }
    void move(std::size_t from, std::size_t to)
    {
        array.move(from, to);
        Orv::Data::BaseObject* const moved = expected[from];
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(from));
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(to), moved);
    }

    std::vector<std::unique_ptr<Book>> books;
    PointerArray array;
    std::vector<Orv::Data::BaseObject*> expected;
};

TEST_F(LongArray, HoldsWhatAVectorHoldsAfterEditsInItsMiddle)
{
    erase(2500, 3);
    insert(1200, {books[2501].get(), books[2502].get()});
    move(4000, 1500);
    move(1500, 4990);
    insert(0, {books[2500].get()});
    erase(4990, 1);
    EXPECT_EQ(pointersOf(array), expected);
}

TEST_F(LongArray, FindsAllItsItemsAfterEditsInItsMiddle)
{
    erase(2500, 1);
    std::vector<std::size_t> places(expected.size());
    std::transform(expected.begin(), expected.end(), places.begin(),
                   [this](const auto* pointer) { return array.indexOf(pointer); });
    std::vector<std::size_t> numbers(expected.size());
    std::iota(numbers.begin(), numbers.end(), 0u);
    EXPECT_EQ(places, numbers);
}

TEST_F(LongArray, FindsItsItemsBeforeAnyEdit)
{
    EXPECT_EQ(array.indexOf(expected[2400]), 2400u);
    EXPECT_EQ(array.indexOf(expected[4999]), 4999u);
    EXPECT_EQ(array.indexOf(expected[3]), 3u);
}

TEST_F(LongArray, AnswersItsLengthForAnItemThatHasLeft)
{
    erase(2500, 1);
    EXPECT_EQ(array.indexOf(books[2500].get()), expected.size());
}

TEST_F(LongArray, MovesAnItemFarInOneStep)
{
    move(0, 4000);
    EXPECT_EQ(pointersOf(array), expected);
}

TEST_F(LongArray, IsOneArrayAgainWhereThatIsAskedFor)
{
    erase(2500, 1);
    Orv::Data::BaseObject* const* const begin = array.flatten();
    EXPECT_TRUE(std::equal(begin, begin + array.size(), expected.begin(), expected.end()));
}

TEST_F(LongArray, CanBeFilledAgainWhenAllHasBeenErased)
{
    erase(2500, 1);
    erase(0, expected.size());
    insert(0, {books[0].get(), books[1].get()});
    EXPECT_EQ(pointersOf(array), expected);
}

// Edits an array and a vector alike, at places at random or, with a bias, at one end. Returns the
// number of steps after which they differed.
int differencesOfRandomArrays(unsigned seed)
{
    std::mt19937 random(seed);
    std::array<Book, 8> items;
    PointerArray array;
    std::vector<Orv::Data::BaseObject*> expected;
    int differences = 0;
    for (int i = 0; i < 2000; ++i) {
        const std::size_t bias = seed % 3; // 0: anywhere, 1: the beginning, 2: the end
        const auto place = [&](std::size_t count) {
            return bias == 0 ? random() % count : bias == 1 ? 0 : count - 1;
        };
        const bool grows = (i / 200) % 2 == 0 ? random() % 4 != 0 : random() % 4 == 0;
        if (grows || expected.empty()) {
            const std::size_t at = place(expected.size() + 1);
            Orv::Data::BaseObject* const added[] = {&items[random() % 8], &items[random() % 8]};
            const std::size_t count = 1 + random() % 2;
            array.insert(at, added, count);
            expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(at), added,
                            added + count);
        } else {
            const std::size_t at = place(expected.size());
            const std::size_t count = 1 + random() % (expected.size() - at);
            array.erase(at, std::min<std::size_t>(count, 3));
            const auto begin = expected.begin() + static_cast<std::ptrdiff_t>(at);
            expected.erase(begin,
                           begin + static_cast<std::ptrdiff_t>(std::min<std::size_t>(count, 3)));
        }
        differences += pointersOf(array) == expected ? 0 : 1;
    }
    return differences;
}

class RandomPointerArray : public testing::TestWithParam<unsigned>
{};

TEST_P(RandomPointerArray, HoldsWhatAVectorHolds)
{
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    EXPECT_EQ(differencesOfRandomArrays(GetParam()), 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomPointerArray, testing::Range(1u, 13u));

} // namespace
