#include "compare/translation.h"

#include "data/attribute.h"
#include "ksx/core/datapath.h"
#include <utility>

namespace Ksx::Kit {

namespace {

using Orv::Data::AttributeBase;
using Orv::Data::BaseObject;
using Orv::Data::Text;
using Orv::Data::UInt;

constexpr std::string_view Scheme = "pkg://";

unsigned valueOf(const BaseObject& leaf)
{
    return static_cast<const Orv::Data::Attribute<UInt>&>(leaf).get();
}

unsigned lookedUp(const Translation::Numbers& numbers, unsigned uid)
{
    const auto found = numbers.find(uid);
    return found == numbers.end() ? uid : found->second;
}

} // namespace

Translation::Scope::Scope(Translation& translation, Target target)
    : m_numbers(translation.numbersOf(target))
{
    m_outer.swap(m_numbers);
}

Translation::Scope::~Scope()
{
    m_outer.swap(m_numbers);
}

unsigned Translation::number(Target target, unsigned uid) const
{
    return lookedUp(m_numbers[static_cast<std::size_t>(target)], uid);
}

unsigned Translation::output(unsigned node, unsigned uid) const
{
    const auto found = m_outputs.find(keyOf(node, uid));
    return found == m_outputs.end() ? uid : found->second;
}

unsigned Translation::dependency(unsigned uid) const
{
    return lookedUp(m_dependencies, uid);
}

bool Translation::isEmpty() const
{
    for (const Numbers& numbers : m_numbers)
        if (!numbers.empty())
            return false;
    return m_outputs.empty();
}

unsigned Translation::referenceNumber(Target target, const AttributeBase& leaf) const
{
    const unsigned uid = valueOf(leaf);
    if (target == Target::NodeOutput)
        return output(feedingNodeOf(*leaf.getParent()->getParent()).value_or(0), uid);
    if (target == Target::OwnOutput) {
        const BaseObject* const node = nodeAround(leaf);
        return node == nullptr ? uid : output(uidOf(*node).value_or(0), uid);
    }
    return number(target, uid);
}

void Translation::appendText(const AttributeBase& leaf, std::string& out) const
{
    if (leaf.isText()) {
        const std::string& text = static_cast<const Orv::Data::Attribute<Text>&>(leaf).get();
        const bool isPath =
            !(m_dependencies.empty() && m_paths.empty()) && Core::DataPath::isDataPath(text);
        out += isPath ? pathText(text) : text;
        return;
    }
    const auto target = isEmpty() ? std::nullopt : referenceOf(leaf);
    if (target)
        out += std::to_string(referenceNumber(*target, leaf));
    else
        leaf.appendText(out);
}

std::string Translation::text(const std::string& text) const
{
    const bool isPath =
        !(m_dependencies.empty() && m_paths.empty()) && Core::DataPath::isDataPath(text);
    return isPath ? pathText(text) : text;
}

std::string Translation::pathText(const std::string& text) const
{
    const auto uid = Core::DataPath::dependencyOf(text);
    std::string path = text;
    if (!uid || m_own.count(*uid) == 1) {
        const std::string joined = segmentsOf(text);
        const auto found = m_paths.find(joined);
        const std::size_t place =
            joined.empty() ? std::string::npos : text.find(joined, Scheme.size());
        if (found != m_paths.end() && place != std::string::npos)
            path = text.substr(0, place) + found->second + text.substr(place + joined.size());
    }
    if (!uid || dependency(*uid) == *uid)
        return path;
    return Core::DataPath::withParameter(path, Core::DataPathKey::Dependency,
                                         std::to_string(dependency(*uid)));
}

} // namespace Ksx::Kit
