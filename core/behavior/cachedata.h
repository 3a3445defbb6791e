// What can be computed of a graph and kept until the graph changes.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/lazysignal.h"

namespace Ksx::Data::Content {
class Graph;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Knows whether its data is of the graph as it now is. This library computes none: a program that
// does derives its own class, and says so by the three questions.
class CacheData
{
public:
    CacheData() = default;
    CacheData(const CacheData&) = delete;
    CacheData& operator=(const CacheData&) = delete;
    virtual ~CacheData();

    // Is there no data at all?
    virtual bool isEmpty() const { return true; }
    // Has the graph stayed the same since the last renew()?
    virtual bool isCurrent() const { return m_isCurrent; }
    // Is the data being computed?
    virtual bool isPending() const { return false; }

    // Each fires its signal if that is news.
    void drop();
    void renew();

    LazySignal<> dropped;
    LazySignal<> renewed;

private:
    bool m_isCurrent = false;
};

// The graph in its compiled form.
class CompiledGraphCacheData final : public CacheData
{
public:
    explicit CompiledGraphCacheData(const Data::Content::Graph& graph);
    // Null once it has died.
    const Data::Content::Graph* graph() const;

private:
    Orv::Data::DataPointerBox<Data::Content::Graph> m_graph;
};

// The pictures that the graph gives.
class RenderCacheData final : public CacheData
{
public:
    explicit RenderCacheData(const Data::Content::Graph&) {}
};

} // namespace Ksx::Core
