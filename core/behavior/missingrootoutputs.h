// Which outputs of a graph are without a root output, kept in step with both lists.
#pragma once

#include "core/listenerdeaf.h"
#include "data/content/graph.h"
#include "data/densemap.h"
#include "editing/itemindex.h"
#include "ksx/core/uidsource.h"
#include <cstddef>

namespace Ksx::Core::Behavior {

// Stands on a graph, whose shadow owns it.
class MissingRootOutputs final : public Orv::Core::ListenerDeaf<>
{
public:
    explicit MissingRootOutputs(const Data::Content::Graph& graph); // for of() alone

    // Returns that of a graph, made if there is none, in time with the length of the lists. Returns
    // null while somebody has yet to be told of a change of one of them.
    static const MissingRootOutputs* of(const Data::Content::Graph& graph);

    bool isEmpty() const { return m_missing == 0; }
    bool isOwnedByShadow() const override { return true; }

private:
    struct Counts
    {
        std::size_t outputs = 0;
        std::size_t roots = 0;
        bool isMissing() const { return outputs > 0 && roots == 0; }
    };
    // One side: the outputs, or the root outputs.
    template <class Item>
    class Side final : public ItemFollower<Side<Item>, Item, Uid>
    {
    public:
        Side(MissingRootOutputs& owner, std::size_t Counts::*count) : m_owner(owner), m_count(count)
        {}
        void fill(const Orv::Data::ContainerList<Item>& list) { this->refill(list); }
        static Uid read(const Item& item);
        void enter(const Item&, Uid uid) { m_owner.change(uid, m_count, 1); }
        void leave(const Item*, Uid uid) { m_owner.change(uid, m_count, ~std::size_t{0}); }

    private:
        MissingRootOutputs& m_owner;
        std::size_t Counts::*m_count;
    };

    void change(Uid uid, std::size_t Counts::*count, std::size_t step);

    Orv::Data::DenseMap<Uid, Counts> m_counts;
    std::size_t m_missing = 0; // uids
    Side<Data::Content::GraphOutput> m_outputs{*this, &Counts::outputs};
    Side<Data::Content::RootOutput> m_roots{*this, &Counts::roots};
};

} // namespace Ksx::Core::Behavior
