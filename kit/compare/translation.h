// Turns the references of one version of a package into those of another one.
#pragma once

#include "compare/references.h"
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace Orv::Data {
class AttributeBase;
} // namespace Orv::Data

namespace Ksx::Kit {

// Holds no more than what differs, so that nothing is looked up for most packages.
class Translation
{
public:
    // The numbers of the targets of one list.
    using Numbers = std::unordered_map<unsigned, unsigned>;

    // Has numbers of its own for a kind of target until it ends.
    class Scope
    {
    public:
        Scope(Translation& translation, Target target);
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope();

    private:
        Numbers& m_numbers;
        Numbers m_outer;
    };

    // `target` is none of the two kinds of outputs of nodes.
    void set(Target target, unsigned from, unsigned to) { numbersOf(target)[from] = to; }
    unsigned number(Target target, unsigned uid) const;

    // Outputs are named by the number of their node in this version as well.
    void setOutput(unsigned node, unsigned from, unsigned to) { m_outputs[keyOf(node, from)] = to; }
    unsigned output(unsigned node, unsigned uid) const;
    void forgetOutputs() { m_outputs.clear(); }

    void setDependency(unsigned from, unsigned to) { m_dependencies[from] = to; }
    // Returns the number of a dependency in the other version.
    unsigned dependency(unsigned uid) const;
    // Paths without a dependency, and those that name the dependency of that number, are paths in
    // the package itself.
    void setOwn(unsigned uid) { m_own.insert(uid); }
    // Both are identifiers with "/" in between.
    void setPath(const std::string& from, const std::string& to) { m_paths[from] = to; }

    // Returns the text that a text of the document has in the other version.
    std::string text(const std::string& text) const;
    // Appends the text that the leaf has in the other version.
    void appendText(const Orv::Data::AttributeBase& leaf, std::string& out) const;

private:
    static std::uint64_t keyOf(unsigned node, unsigned output)
    {
        return (std::uint64_t{node} << 32) | output;
    }
    Numbers& numbersOf(Target target) { return m_numbers[static_cast<std::size_t>(target)]; }
    bool isEmpty() const;
    std::string pathText(const std::string& text) const;
    unsigned referenceNumber(Target target, const Orv::Data::AttributeBase& leaf) const;

    Numbers m_numbers[static_cast<std::size_t>(Target::ParameterSet) + 1];
    std::unordered_map<std::uint64_t, unsigned> m_outputs;
    Numbers m_dependencies;
    std::unordered_set<unsigned> m_own;
    std::unordered_map<std::string, std::string> m_paths;
};

} // namespace Ksx::Kit
