// Finds controllers by a key of their objects, such as a uid.
#pragma once

#include "data/densemap.h"
#include <cstddef>

namespace Ksx::Core {

// Hears of each controller that comes, goes or changes its key, in constant time. Where several have
// one key, the first one in their order is found; to find out which one that is takes a walk, but
// only then and only after a change. A controller keeps the key under which it is known here, in the
// member `KnownKey`.
template <class Key, class Controller, Key Controller::*KnownKey>
class ControllerIndex
{
public:
    void add(Controller& controller, const Key& key)
    {
        controller.*KnownKey = key;
        ++m_count;
        // Which of the two is the first one is not known here.
        if (!m_found.emplace(key, &controller).second)
            m_isStale = true;
    }
    // The controller has been added.
    void remove(Controller& controller)
    {
        m_isStale = m_isStale || hasDuplicates();
        const auto found = m_found.find(controller.*KnownKey);
        if (found != m_found.end() && found->value == &controller)
            m_found.erase(found);
        --m_count;
    }
    // The controller has been added.
    void change(Controller& controller, const Key& key)
    {
        if (controller.*KnownKey == key)
            return;
        remove(controller);
        add(controller, key);
    }
    // The order of the controllers has changed.
    void reorder() { m_isStale = m_isStale || hasDuplicates(); }

    // Returns the first controller of that key, null if there is none. `controllers` returns all of
    // them, as pointers, in their order.
    template <class InOrder>
    Controller* find(const Key& key, const InOrder& controllers)
    {
        if (m_isStale)
            rebuild(controllers());
        const auto found = m_found.find(key);
        return found == m_found.end() ? nullptr : found->value;
    }

private:
    bool hasDuplicates() const { return m_count != m_found.size(); }

    template <class Controllers>
    void rebuild(const Controllers& controllers)
    {
        m_found.clear();
        for (Controller* controller : controllers)
            m_found.emplace(controller->*KnownKey, controller);
        m_isStale = false;
    }

    Orv::Data::DenseMap<Key, Controller*> m_found;
    std::size_t m_count = 0; // of the controllers
    bool m_isStale = false;
};

} // namespace Ksx::Core
