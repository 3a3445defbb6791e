#include "support/damage.h"

#include "support/archive.h"
#include "support/assemblytext.h"
#include "support/packagetext.h"
#include <ostream>

namespace TestSupport {

namespace {

std::string doctype(const std::string& root, const std::string& entities)
{
    return "<!DOCTYPE " + root + " [" + entities + "]>";
}

std::string describedWith(const std::string& doctype)
{
    return doctype + aDescription("<graph label=\"&e;\"/>");
}

const char* const Root = "obldescription";

std::string small()
{
    return storedArchive(anAssemblyInArchive("7", "wood", "pkg://wood"));
}

std::string withList(const std::string& list)
{
    return withArchiveHeader(small(), list);
}

// A list that begins with a number of files, and tells nothing of them.
std::string withFileCount(std::uint64_t count)
{
    return withList(std::string("\1\5", 2) + archiveNumber(count) + std::string(2, '\0'));
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const DamageCase& c)
{
    return stream << c.name;
}

std::string repeated(const std::string& text, int count)
{
    std::string result;
    result.reserve(text.size() * static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

std::string nestedElements(const std::string& name, int count)
{
    return repeated("<" + name + ">", count) + repeated("</" + name + ">", count);
}

std::string manyAttributes(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += "a" + std::to_string(i) + "=\"\" ";
    return text;
}

std::string inUtf16(const std::string& ascii)
{
    std::string bytes = "\xFF\xFE";
    for (const char c : ascii)
        bytes += {c, '\0'};
    return bytes;
}

std::string withFlippedBit(std::string bytes, std::size_t bit)
{
    bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
    return bytes;
}

std::string entityBomb(const std::string& root)
{
    std::string entities = "<!ENTITY e0 \"lol\">";
    for (int i = 1; i < 12; ++i)
        entities += "<!ENTITY e" + std::to_string(i) + " \"" +
                    repeated("&e" + std::to_string(i - 1) + ";", 10) + "\">";
    return doctype(root, entities + "<!ENTITY e \"&e11;\">");
}

std::string longEntity(const std::string& root)
{
    return doctype(root, "<!ENTITY e \"" + std::string(100000, 'x') + "\">");
}

std::string shortEntity(const std::string& root)
{
    return doctype(root, "<!ENTITY e \"" + std::string(4000, 'x') + "\">");
}

std::string entityOfItself(const std::string& root)
{
    return doctype(root, "<!ENTITY e \"&e;\">");
}

std::vector<DamageCase> brokenDescriptions()
{
    return {
        {"Blanks", [] { return std::string("  \n"); }},
        {"NoXml", [] { return std::string("folly"); }},
        {"Zeros", [] { return std::string(1000, '\0'); }},
        {"Binary", [] { return anAssemblyBody(); }},
        {"Unclosed", [] { return aDescription("").substr(0, 90); }},
        {"OtherEnd", [] { return aDescription("</graph>"); }},
        {"TwoRoots", [] { return aDescription("") + aDescription(""); }},
        {"AttributeTwice", [] { return aDescription(R"(<graph label="a" label="b"/>)"); }},
        {"UnknownEntity", [] { return describedWith(""); }},
        {"UnknownEntityInText", [] { return aDescription("&e;"); }},
        {"EntityBomb", [] { return describedWith(entityBomb(Root)); }},
        {"EntityBombInText", [] { return entityBomb(Root) + aDescription("&e;"); }},
        {"FlatEntityBomb",
         [] { return replaced(describedWith(longEntity(Root)), "&e;", repeated("&e;", 100000)); }},
        {"ShortEntityNamedOften",
         [] { return replaced(describedWith(shortEntity(Root)), "&e;", repeated("&e;", 300000)); }},
        {"ShortEntityNamedOftenInText",
         [] { return shortEntity(Root) + aDescription(repeated("&e;", 300000)); }},
        {"TooManyAttributes",
         [] { return aDescription("<graph " + manyAttributes(80000) + "/>"); }},
        {"EntityOfItself", [] { return describedWith(entityOfItself(Root)); }},
        {"FalseEncoding", [] { return aDescription("<graph label=\"\xff\xc3\"/>"); }},
        {"NestedTooDeep", [] { return aDescription(nestedElements("graph", 200000)); }},
        {"UnclosedTooDeep", [] { return repeated("<graphs>", 1000000); }},
    };
}

std::vector<DamageCase> noArchives()
{
    return {
        {"Empty", [] { return std::string(); }},
        {"OneByte", [] { return std::string("7"); }},
        {"SignatureAlone", [] { return small().substr(0, 6); }},
        {"StartAlone", [] { return small().substr(0, ArchiveStartSize); }},
        {"Text", [] { return aPackage().text(); }},
        {"Assembly", [] { return anAssemblyBody(); }},
        {"Zeros", [] { return std::string(100000, '\0'); }},
        {"SignatureAndZeros", [] { return small().substr(0, 8) + std::string(100000, '\0'); }},
        {"Zip", [] { return "PK\3\4" + std::string(1000, '\0'); }},
        {"Executable", [] { return "MZ" + std::string(300000, '\0') + small(); }},
        {"BytesInFront", [] { return "x" + small(); }},
        {"ListBehindTheEnd", [] { return withHeaderPlace(small(), 1000000, 100); }},
        {"ListFarAway", [] { return withHeaderPlace(small(), 1ull << 62, 100); }},
        {"ListInFront", [] { return withHeaderPlace(small(), ~0ull - 31, 100); }},
        {"ListLongerThanTheFile", [] { return withHeaderPlace(small(), 0, 1000000); }},
        {"ListHuge", [] { return withHeaderPlace(small(), 0, 1ull << 62); }},
        {"ListNegative", [] { return withHeaderPlace(small(), 0, ~0ull); }},
        {"BothNegative", [] { return withHeaderPlace(small(), ~0ull, ~0ull); }},
        {"BothHuge", [] { return withHeaderPlace(small(), 1ull << 63, 1ull << 63); }},
        {"ListOfZeros", [] { return withList(std::string(100, '\0')); }},
        {"ListOfOnes", [] { return withList(std::string(100, '\xff')); }},
        {"ListCutOff", [] { return withList(archiveHeader(small()).substr(0, 40)); }},
        {"ListOfText", [] { return withList(aPackage().text()); }},
        {"PackedListTwice",
         [] { return withPackedList(withPackedList(small(), Packing::Stored), Packing::Stored); }},
    };
}

std::vector<DamageCase> overlongLists()
{
    return {
        {"AFewTooManyFiles", [] { return withFileCount(100001); }},
        {"MillionsOfFiles", [] { return withFileCount(50000000); }},
        {"BillionsOfFiles", [] { return withFileCount(1ull << 40); }},
        {"MostFiles", [] { return withFileCount(~0ull); }},
        {"MillionsOfFilesInAPackedList",
         [] { return withPackedList(withFileCount(50000000), Packing::Stored); }},
        {"PackedStreams",
         [] { return withList("\1\4\6" + archiveNumber(0) + archiveNumber(50000000)); }},
        {"PackedStreamsOfAPackedList",
         [] { return withList("\x17\6" + archiveNumber(0) + archiveNumber(50000000)); }},
        {"Blocks", [] { return withList("\1\4\7\x0b" + archiveNumber(50000000)); }},
        {"StreamsOfABlock",
         [] {
             return withList(std::string("\1\4\7\x0b\1\0\1\1\0\x0c\0\0\x08\x0d", 14) +
                             archiveNumber(50000000));
         }},
        {"StreamsOfTwoBlocks",
         [] {
             return withList(std::string("\1\4\7\x0b\2\0\1\1\0\1\1\0\x0c\0\0\0\x08\x0d", 18) +
                             archiveNumber(60000) + archiveNumber(60000));
         }},
        {"SizeOfAPackedList",
         [] {
             return withList(std::string("\x17\6\0\1\x09\1\0\7\x0b\1\0\1\1\0\x0c", 15) +
                             archiveNumber((16 << 20) + 1) + std::string(2, '\0'));
         }},
    };
}

} // namespace TestSupport
