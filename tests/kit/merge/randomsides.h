// Random changes of two copies of a package, on different objects.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace Orv::Data {
class BaseObject;
class AttributeBase;
class ContainerListBase;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace TestSupport {

// Shares the items of a package between two sides, and changes what is on a side. Values change,
// nodes come, parameters and connections go, and items of lists move.
class RandomSides
{
public:
    explicit RandomSides(std::uint32_t seed) : m_seed(seed) {}

    // Changes a copy of the package for one of the sides, 0 or 1. All copies are equal at first.
    void change(Ksx::Data::Content::Package& package, std::uint32_t side);

private:
    void changeValue(Orv::Data::AttributeBase& leaf);
    void changeItem(Orv::Data::BaseObject& item);
    void moveItem(const Orv::Data::ContainerListBase& list);
    void addNodes(Ksx::Data::Content::Package& package);
    void removeChosen();
    std::uint32_t draw(std::uint32_t bound)
    {
        return static_cast<std::uint32_t>(m_random() % bound);
    }

    std::uint32_t m_seed;
    std::mt19937 m_random;
    std::vector<Orv::Data::BaseObject*> m_removed;
};

} // namespace TestSupport
