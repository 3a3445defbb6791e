#include "world.h"

#include "data/filename.h"
#include "errors.h"
#include <QCoreApplication>
#include <functional>

namespace Ksx::Python {

namespace {

// The application object lives to the end of the process: Qt wants all of them in one thread.
void makeApplication()
{
    static char name[] = "kestrix";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    if (QCoreApplication::instance() != nullptr)
        return;
    // The library behind Qt's other event loop ends the process when it has no memory.
    qputenv("QT_NO_GLIB", "1");
    Orv::installFileNameCodec();
    new QCoreApplication(count, arguments);
}

bool hasSession = false; // guarded by the interpreter's lock

} // namespace

World::World(const QStringList& presetsPaths)
{
    if (hasSession)
        raise("SessionError", "another session is open: close it first");
    makeApplication();
    m_session = std::make_unique<Core::Session>(presetsPaths);
    hasSession = true;
}

World::~World()
{
    close();
}

Core::Session& World::session()
{
    check();
    return *m_session;
}

void World::check()
{
    if (m_session == nullptr)
        raise("SessionError", "the session is closed");
    if (m_thread != std::this_thread::get_id())
        raise("SessionError", "the session belongs to another thread");
    if (m_hasGiven)
        dropGiven();
}

void World::close()
{
    if (m_session == nullptr)
        return;
    m_session.reset();
    hasSession = false;
    dropGiven();
}

void World::dropGiven()
{
    const std::lock_guard lock(m_mutex);
    m_given.clear();
    m_hasGiven = false;
}

void World::giveBack(std::unique_ptr<ObjectBox> box) noexcept
{
    if (m_session == nullptr || m_thread == std::this_thread::get_id())
        return; // which destroys it
    const std::lock_guard lock(m_mutex);
    m_given.push_back(std::move(box));
    m_hasGiven = true;
}

Handle::Anchor::Anchor(WorldPointer session, const Orv::Data::BaseObject& object)
    : world(std::move(session)), box(std::make_unique<ObjectBox>(&object)), address(&object)
{}

Handle::Anchor::~Anchor()
{
    world->giveBack(std::move(box));
}

Handle::Handle(WorldPointer world, const Orv::Data::BaseObject& object)
    : m_anchor(std::make_shared<const Anchor>(std::move(world), object))
{}

const Orv::Data::BaseObject& Handle::object() const
{
    m_anchor->world->check();
    const Orv::Data::BaseObject* const object = m_anchor->box->get();
    if (object == nullptr || !isAttached(*object))
        raise("GoneError", "the object is no part of an open package any more");
    return *object;
}

bool Handle::isValid() const
{
    if (world()->isClosed())
        return false;
    world()->check();
    return *m_anchor->box && isAttached(**m_anchor->box);
}

const char* Handle::fault() const
{
    if (!world()->isClosed() && !world()->isUsable())
        return "of another thread";
    return isValid() ? nullptr : "gone";
}

bool Handle::isSame(const Handle& other) const
{
    return m_anchor == other.m_anchor ||
           (m_anchor->address == other.m_anchor->address && *m_anchor->box && *other.m_anchor->box);
}

std::size_t Handle::hash() const
{
    return std::hash<const void*>()(m_anchor->address);
}

} // namespace Ksx::Python
