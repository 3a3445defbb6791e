// The session that objects of Python share, and their links to objects of its documents.
#pragma once

#include "data/baseobject.h"
#include "data/datapointerbox.h"
#include "ksx/core/session.h"
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace Ksx::Python {

using ObjectBox = Orv::Data::DataPointerBox<Orv::Data::BaseObject>;

// A session, and the thread that it belongs to. Python may destroy an object in any thread, also
// while the session reads files without the interpreter's lock. So boxes that another thread gives
// back wait for the session's own thread.
class World
{
public:
    explicit World(const QStringList& presetsPaths);
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    ~World();

    // Returns the session. Raises SessionError if it is closed, and in any other thread.
    Core::Session& session();
    // Raises SessionError if the session is closed, and in any other thread.
    void check();
    // Closes the session. Objects of its packages are gone then.
    void close();
    bool isClosed() const { return m_session == nullptr; }
    // Returns whether the session is open in this thread.
    bool isUsable() const { return m_session != nullptr && m_thread == std::this_thread::get_id(); }

    // Takes a box that its object of Python does not need any more.
    void giveBack(std::unique_ptr<ObjectBox> box) noexcept;

private:
    void dropGiven();

    std::unique_ptr<Core::Session> m_session;
    std::thread::id m_thread = std::this_thread::get_id();
    std::mutex m_mutex; // of the next
    std::vector<std::unique_ptr<ObjectBox>> m_given;
    std::atomic<bool> m_hasGiven = false; // asked at each call, which a lock would slow down
};

using WorldPointer = std::shared_ptr<World>;

// A link to an object of a document. It reads as gone while the object is no part of an open
// package. An undo that brings the object back makes it valid again. Copies share one box.
class Handle
{
public:
    Handle(WorldPointer world, const Orv::Data::BaseObject& object);

    // Returns the object, which has the class that the link was made with. Raises GoneError if it
    // is no part of an open package, and SessionError as World::check() does.
    const Orv::Data::BaseObject& object() const;
    template <class T>
    const T& as() const
    {
        return static_cast<const T&>(object());
    }
    // Returns whether the object is part of an open package. Raises SessionError in another thread
    // than that of an open session.
    bool isValid() const;
    // Returns the reason for which the object cannot be used. Returns null for a valid object.
    const char* fault() const;

    const WorldPointer& world() const { return m_anchor->world; }
    Core::Session& session() const { return world()->session(); }

    // Returns whether both are links to one object, which must not have died.
    bool isSame(const Handle& other) const;
    std::size_t hash() const;

private:
    // Gives its box back to the world at its end.
    struct Anchor
    {
        Anchor(WorldPointer session, const Orv::Data::BaseObject& object);
        Anchor(const Anchor&) = delete;
        Anchor& operator=(const Anchor&) = delete;
        ~Anchor();

        WorldPointer world;
        std::unique_ptr<ObjectBox> box;
        const void* address;
    };

    std::shared_ptr<const Anchor> m_anchor;
};

} // namespace Ksx::Python
