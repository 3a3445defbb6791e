#include "cycle.h"

#include <algorithm>

namespace Ksx::Kit {

namespace {

enum class State
{
    New,
    Open, // on the way from the vertex where the walk began
    Done,
};

struct Step
{
    std::size_t vertex;
    std::size_t next; // of its edges
};

} // namespace

std::vector<std::size_t> cyclesIn(const Edges& edges)
{
    std::vector<std::size_t> closing;
    std::vector<State> states(edges.size(), State::New);
    std::vector<Step> way;
    for (std::size_t first = 0; first < edges.size(); ++first) {
        if (states[first] == State::New) {
            states[first] = State::Open;
            way.push_back({first, 0});
        }
        while (!way.empty()) {
            Step& step = way.back();
            if (step.next == edges[step.vertex].size()) {
                states[step.vertex] = State::Done;
                way.pop_back();
                continue;
            }
            const std::size_t target = edges[step.vertex][step.next++];
            if (states[target] == State::Open) {
                closing.push_back(target);
            } else if (states[target] == State::New) {
                states[target] = State::Open;
                way.push_back({target, 0});
            }
        }
    }
    std::sort(closing.begin(), closing.end());
    closing.erase(std::unique(closing.begin(), closing.end()), closing.end());
    return closing;
}

} // namespace Ksx::Kit
