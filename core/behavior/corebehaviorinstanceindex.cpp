#include "behavior/instanceindex.h"

#include <functional>

namespace Ksx::Core::Behavior {

namespace {

// The last segment of a data path; empty ones count for nothing.
std::string_view lastSegment(std::string_view path)
{
    path = path.substr(0, path.find('?'));
    while (!path.empty() && path.back() == '/')
        path.remove_suffix(1);
    return path.substr(path.rfind('/') + 1); // npos wraps to 0
}

} // namespace

void InstanceBehavior::leaveIndex()
{
    if (m_link == nullptr)
        return;
    *m_link = m_next;
    if (m_next != nullptr)
        m_next->m_link = m_link;
    m_next = nullptr;
    m_link = nullptr;
}

InstanceIndex::~InstanceIndex()
{
    while (m_unsorted != nullptr)
        m_unsorted->leaveIndex();
    for (auto& [hash, head] : m_sorted)
        while (head != nullptr)
            head->leaveIndex();
}

void InstanceIndex::chain(InstanceBehavior*& head, InstanceBehavior& instance)
{
    instance.m_next = head;
    instance.m_link = &head;
    if (head != nullptr)
        head->m_link = &instance.m_next;
    head = &instance;
}

void InstanceIndex::add(InstanceBehavior& instance)
{
    instance.leaveIndex();
    chain(m_unsorted, instance);
}

InstanceBehavior*& InstanceIndex::headOf(std::string_view identifier)
{
    return m_sorted[std::hash<std::string_view>()(identifier)];
}

bool InstanceIndex::hasAny(std::string_view identifier)
{
    while (m_unsorted != nullptr) {
        InstanceBehavior& instance = *m_unsorted;
        instance.leaveIndex();
        chain(headOf(lastSegment(instance.path())), instance);
    }
    const auto found = m_sorted.find(std::hash<std::string_view>()(identifier));
    return found != m_sorted.end() && found->second != nullptr;
}

std::vector<InstanceBehavior*> InstanceIndex::find(std::string_view identifier)
{
    std::vector<InstanceBehavior*> instances;
    if (hasAny(identifier))
        for (InstanceBehavior* one = headOf(identifier); one != nullptr; one = one->m_next)
            instances.push_back(one);
    return instances;
}

} // namespace Ksx::Core::Behavior
