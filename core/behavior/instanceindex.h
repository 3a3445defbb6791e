// All instances of graphs, or of functions, in a document, found by what they refer to.
#pragma once

#include "core/listenerdeaf.h"
#include "core/listenersimple.h"
#include "data/changeevent.h"
#include "ksx/core/behavior/behaviors.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/stage.h"
#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Ksx::Core::Behavior {

// Base of the behaviours of instances. One stands on the shadow of each instance and dies with it.
// A place in an index costs it two pointers.
class InstanceBehavior
    : public Orv::Core::ListenerSimple<Stage::Repair, Orv::Data::ChangeType::Descendant,
                                       Orv::Data::MessageMask::Content>
{
public:
    InstanceBehavior() = default;
    InstanceBehavior(const InstanceBehavior&) = delete;
    InstanceBehavior& operator=(const InstanceBehavior&) = delete;
    ~InstanceBehavior() override { leaveIndex(); }

    bool isOwnedByShadow() const override { return true; }
    // The data path of the instance, as it now is.
    virtual std::string_view path() const = 0;

private:
    friend class InstanceIndex;
    void leaveIndex();

    InstanceBehavior* m_next = nullptr;
    InstanceBehavior** m_link = nullptr; // what points at this one; null outside of an index
};

// Stands on the shadow of the root of a document. Loading is not slowed down: an instance is only
// chained to the others until somebody looks for the instances of an object.
class InstanceIndex : public Orv::Core::ListenerDeaf<>
{
public:
    InstanceIndex() = default;
    InstanceIndex(const InstanceIndex&) = delete;
    InstanceIndex& operator=(const InstanceIndex&) = delete;
    ~InstanceIndex() override;

    bool isOwnedByShadow() const override { return true; }

    // Enters an instance, again if its path has changed.
    void add(InstanceBehavior& instance);
    // Those whose path ends in the identifier, and maybe more. They stay where they are until the
    // document is edited.
    std::vector<InstanceBehavior*> find(std::string_view identifier);
    bool hasAny(std::string_view identifier);

private:
    static void chain(InstanceBehavior*& head, InstanceBehavior& instance);
    InstanceBehavior*& headOf(std::string_view identifier);

    InstanceBehavior* m_unsorted = nullptr;
    std::unordered_map<std::size_t, InstanceBehavior*> m_sorted; // by the hash of the identifier
};

// The index of a class of behaviours in the document of an object.
template <class B>
class InstanceIndexOf final : public InstanceIndex
{
public:
    explicit InstanceIndexOf(const Orv::Data::BaseObject&) {}

    static InstanceIndexOf& of(const Orv::Data::BaseObject& object)
    {
        return listenerOf<InstanceIndexOf>(rootOf(object));
    }
};

} // namespace Ksx::Core::Behavior
