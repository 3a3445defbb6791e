// What both lanes of reading make of a document, and documents on which they might differ.
#pragma once

#include <random>
#include <string>
#include <vector>

namespace TestSupport {

// Returns an empty text if both lanes give the same tree, status, message or exception for a package
// document. Otherwise says what differs.
std::string differenceOfLanes(const std::string& document);

// Returns an empty text if both lanes give the same light document or error, and if the trees that are
// built from these are what their texts are read as. Otherwise says what differs.
std::string differenceOfLightDocuments(const std::string& document);

// Returns an empty text if the import gives the same tree and messages from the document that all
// format updaters have changed as from its text. Otherwise says what differs.
std::string differenceOfUpdates(const std::string& document);

// Returns the packages among the samples and the expected results that are small, with some that
// have references, other encodings and many kinds of values.
std::vector<std::string> documentsForLanes();

// Makes documents that are nearly the one that they come from: other bytes, values and references,
// tags that are gone, twice or elsewhere, and what only a reader of all of XML knows.
class XmlMutator
{
public:
    explicit XmlMutator(unsigned seed) : m_random(seed) {}

    std::string mutant(std::string document);

private:
    using Range = std::pair<std::size_t, std::size_t>; // place and size

    std::size_t below(std::size_t count);
    const std::string& oneOf(const std::vector<std::string>& texts);
    Range anyTag(const std::string& document);
    Range anyValue(const std::string& document);
    void mutate(std::string& document);

    std::mt19937 m_random;
};

// Compares the lanes, light documents and updates on `count` mutants of the documents in turn. Says on which
// of them they differ first, and how. Returns an empty text if they agree.
std::string firstDifferenceOfLanes(unsigned seed, long count);

} // namespace TestSupport
