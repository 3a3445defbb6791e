// Finds controllers by a key of their objects, such as a uid.
#pragma once

#include <unordered_map>

namespace Ksx::Core {

// Told of each controller that comes, goes or changes its key, in constant time. Where several have
// one key, the first one in their order is found; to find out which that is takes a walk, but only
// then and only after a change.
template <class Key, class Controller>
class ControllerIndex
{
public:
    void add(Controller& controller, const Key& key)
    {
        m_keys.insert_or_assign(&controller, key);
        // Which of the two stands first is not known here.
        if (!m_found.emplace(key, &controller).second)
            m_isStale = true;
    }
    void remove(Controller& controller)
    {
        const auto own = m_keys.find(&controller);
        if (own == m_keys.end())
            return;
        m_isStale = m_isStale || hasDuplicates();
        const auto found = m_found.find(own->second);
        if (found != m_found.end() && found->second == &controller)
            m_found.erase(found);
        m_keys.erase(own);
    }
    void change(Controller& controller, const Key& key)
    {
        const auto own = m_keys.find(&controller);
        if (own == m_keys.end() || own->second == key)
            return;
        remove(controller);
        add(controller, key);
    }
    // The order of the controllers has changed.
    void reorder() { m_isStale = m_isStale || hasDuplicates(); }

    // The first controller of that key, null if there is none. `controllers` answers all of them,
    // as pointers, in their order.
    template <class InOrder>
    Controller* find(const Key& key, const InOrder& controllers)
    {
        if (m_isStale)
            rebuild(controllers());
        const auto found = m_found.find(key);
        return found == m_found.end() ? nullptr : found->second;
    }

private:
    bool hasDuplicates() const { return m_keys.size() != m_found.size(); }

    template <class Controllers>
    void rebuild(const Controllers& controllers)
    {
        m_found.clear();
        for (Controller* controller : controllers) {
            const auto own = m_keys.find(controller);
            if (own != m_keys.end())
                m_found.emplace(own->second, controller);
        }
        m_isStale = false;
    }

    std::unordered_map<const Controller*, Key> m_keys;
    std::unordered_map<Key, Controller*> m_found;
    bool m_isStale = false;
};

} // namespace Ksx::Core
