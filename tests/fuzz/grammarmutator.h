// Changes documents as their grammar suggests: elements, values and known names in place of bytes.
#pragma once

#include <random>
#include <string>

namespace TestSupport {

// Knows the elements of packages, with the kinds of values that they have, and a description's own.
// Documents need not be right, and do not become so.
class GrammarMutator
{
public:
    explicit GrammarMutator(unsigned seed) : m_random(seed) {}

    // Returns the document after one to four changes. Some are parts of `other`.
    std::string mutant(std::string document, const std::string& other);

private:
    struct Range
    {
        std::size_t begin = 0;
        std::size_t size = 0;
    };

    std::size_t below(std::size_t count);
    template <typename Items>
    const auto& oneOf(const Items& items);
    Range anyElement(const std::string& document);
    Range anyValue(const std::string& document);
    std::string newValue(const std::string& document, const std::string& name);
    std::string newElement();
    void change(std::string& document, const std::string& other);

    void removeElement(std::string& document);
    void repeatElement(std::string& document);
    void moveElement(std::string& document);
    void swapElements(std::string& document);
    void insertElement(std::string& document);
    void wrapElement(std::string& document);
    void renameElement(std::string& document);
    void nestElement(std::string& document);
    void changeValue(std::string& document);
    void changeAttribute(std::string& document);
    void exchangeValue(std::string& document);
    void takeElement(std::string& document, const std::string& other);

    std::mt19937 m_random;
};

} // namespace TestSupport
