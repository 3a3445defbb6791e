// A tree that is one long chain. Its links do not own each other, so that its end does not recurse.
#pragma once

#include "data/container.h"
#include <deque>

namespace TestDocument {

class ChainLink final : public Orv::Data::Container
{
public:
    void linkTo(const ChainLink& next) { m_next = &next; }

    Orv::Data::ObjectKind kind() const override { return Orv::Data::ObjectKind::List; }
    const Orv::Data::ObjectMeta& getMeta() const override
    {
        static constexpr Orv::Data::ObjectMeta record =
            Orv::Data::makeMeta("link", Orv::Data::Required);
        return record;
    }
    bool isModified() const override { return m_next != nullptr; }
    std::size_t childCount() const override { return m_next == nullptr ? 0 : 1; }
    const Orv::Data::BaseObject* childAt(std::size_t) const override { return m_next; }

private:
    const ChainLink* m_next = nullptr;
};

// `length` links, each the only child of the one before.
class Chain
{
public:
    explicit Chain(std::size_t length) : m_links(length)
    {
        for (std::size_t i = 1; i < length; ++i)
            m_links[i - 1].linkTo(m_links[i]);
    }
    const Orv::Data::BaseObject& first() const { return m_links.front(); }

private:
    std::deque<ChainLink> m_links;
};

} // namespace TestDocument
