// Tells the input nodes of a graph of the inputs for which they stand.
#pragma once

#include "data/content/paraminput.h"
#include "editing/itemindex.h"
#include "ksx/core/uidsource.h"
#include <set>
#include <unordered_map>

namespace Ksx::Core {

class CompInputNodeController;

// What an input node sees of an input.
struct SeenInput
{
    Uid uid;
    unsigned type;

    friend bool operator==(const SeenInput& a, const SeenInput& b)
    {
        return a.uid == b.uid && a.type == b.type;
    }
};

// Owned by the controller of the graph. Hears of the inputs behind the controllers of inputs, nodes
// and connections.
class InputNodeWatch final
    : public ItemFollower<InputNodeWatch, Data::Content::ParamInput, SeenInput, Stage::Description>
{
public:
    explicit InputNodeWatch(const List& inputs);

    // The node stands for the input of that uid from now on, or no longer.
    void add(CompInputNodeController& node, Uid entry);
    void remove(const CompInputNodeController& node, Uid entry);

    static SeenInput read(const Data::Content::ParamInput& input);
    void enter(const Data::Content::ParamInput& input, const SeenInput& seen);
    void leave(const Data::Content::ParamInput* input, const SeenInput& seen);
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    std::unordered_multimap<Uid, CompInputNodeController*> m_nodes;
    std::set<Uid> m_touched; // by the present message
};

} // namespace Ksx::Core
