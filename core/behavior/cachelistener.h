// Drops what was computed of a graph when the graph changes, or one that it shows.
#pragma once

#include "behavior/cachedata.h"
#include "core/listenersimple.h"
#include "data/changeevent.h"
#include "data/content/graph.h"
#include "data/shadowobject.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/stage.h"
#include <vector>

namespace Ksx::Core {

// Stands on the shadow of a graph and dies with it. Comes behind all others, when the document has
// come to rest.
class CacheListenerBase
    : public Orv::Core::ListenerSimple<Stage::Cache, Orv::Data::ChangeType::Descendant,
                                       Orv::Data::MessageMask::Content>
{
public:
    bool isOwnedByShadow() const override { return true; }
    // Drops the data of this graph.
    virtual void drop() = 0;

protected:
    // Returns the graph and all graphs that show it by instances, or show one of them; each once.
    // Instances are known to the behaviours: without these there is the graph alone.
    static std::vector<const Data::Content::Graph*> dependentsOf(const Data::Content::Graph& graph);
};

// The data of class T of one graph.
template <class T>
class CacheListenerItem
{
public:
    explicit CacheListenerItem(const Data::Content::Graph& graph) : m_data(graph) {}
    T& data() { return m_data; }

private:
    T m_data;
};

template <class T>
class CacheListener : public CacheListenerBase
{
public:
    explicit CacheListener(const Data::Content::Graph& graph) : m_graph(&graph), m_item(graph) {}

    T& data() { return m_item.data(); }
    void drop() override { m_item.data().drop(); }
    void deliver(const Orv::Data::DataMessage&) override
    {
        if (!m_graph)
            return;
        for (const Data::Content::Graph* dependent : dependentsOf(*m_graph))
            if (const Orv::Data::ShadowObject* shadow = dependent->shadow())
                if (auto* listener = shadow->findListener<CacheListener>())
                    listener->drop();
    }

private:
    Orv::Data::DataPointerBox<Data::Content::Graph> m_graph;
    CacheListenerItem<T> m_item;
};

// What is known of the compiled forms of graphs.
class CompiledGraphListener final : public CacheListener<CompiledGraphCacheData>
{
public:
    using CacheListener::CacheListener;
    // Made if there is none.
    static CompiledGraphListener& of(const Data::Content::Graph& graph);
};

} // namespace Ksx::Core
