// Damaged and hostile inputs that more than one test tries.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace TestSupport {

struct DamageCase
{
    const char* name;
    std::string (*bytes)();
};

std::ostream& operator<<(std::ostream& stream, const DamageCase& c);

std::string repeated(const std::string& text, int count);
// As many elements, each the content of the one before.
std::string nestedElements(const std::string& name, int count);
// Bits count from the lowest of the first byte.
std::string withFlippedBit(std::string bytes, std::size_t bit);

// As many attributes, each with another name and no value.
std::string manyAttributes(int count);
// The text in UTF-16 with a byte order mark.
std::string inUtf16(const std::string& ascii);

// Document types that declare an entity "e": one that stands for 300 gigabytes, one of 100 kilobytes,
// one of 4,000 characters, which a stream reader takes, and one that stands for itself.
std::string entityBomb(const std::string& root);
std::string longEntity(const std::string& root);
std::string shortEntity(const std::string& root);
std::string entityOfItself(const std::string& root);

// Descriptions of an assembly that are no XML, or more of it than anybody reads.
std::vector<DamageCase> brokenDescriptions();
// Bytes that no archive has, or whose list of files cannot be read.
std::vector<DamageCase> noArchives();
// Small archives with a list of millions of things.
std::vector<DamageCase> overlongLists();

} // namespace TestSupport
