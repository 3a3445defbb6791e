// The uids of what stands in the content of a package, kept in step with it.
#pragma once

#include "core/listenersimple.h"
#include "data/densemap.h"
#include "ksx/core/follow.h"
#include "ksx/core/uidsource.h"
#include <optional>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class ContentObjectBase;
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Stands on a package, whose shadow owns it, and has a listener on each content list in it. What
// happens elsewhere in the package makes no difference, but tells that a change is under way.
class ContentUids final
    : public Orv::Core::ListenerSimple<Stage::Mirror, Orv::Data::ChangeType::Descendant>
{
public:
    explicit ContentUids(const Data::Content::Package& package); // for of() alone

    // Returns that of a package, made if there is none in a walk over the content. Returns null for
    // a package that is not open, and while it has changes of which nobody has been told yet.
    static ContentUids* of(const Data::Content::Package& package);

    bool contains(Uid uid) const { return m_counts.contains(uid); }

    bool isOwnedByShadow() const override { return true; }
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    void refill(const Data::Content::Package& package);
    void follow(const Orv::Data::DataMessage& message);
    // Both take what stands in the object along.
    void enter(const Data::Content::ContentObjectBase& object);
    void leave(const Data::Content::ContentObjectBase& object);
    void add(const Orv::Data::BaseObject* object, Uid uid);
    void remove(const Orv::Data::BaseObject* object);

    Orv::Data::DenseMap<const Orv::Data::BaseObject*, Uid> m_uids;
    Orv::Data::DenseMap<Uid, std::size_t> m_counts;
    bool m_isStale = false; // something has died before it could be looked at
    // Also hears that a list goes itself: something may have gone from it before.
    std::optional<Follow<&ContentUids::follow, ListChanges | Orv::Data::ChangeType::Removed>>
        m_listListener;
};

} // namespace Ksx::Core
