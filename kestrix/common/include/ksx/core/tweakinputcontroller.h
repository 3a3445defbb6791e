// An input of a graph that takes a value.
#pragma once

#include "ksx/core/inputcontroller.h"
#include <string>

namespace Ksx::Data::Desc {
struct Parameter;
} // namespace Ksx::Data::Desc

namespace Ksx::Core {

class TweakInputController final : public InputController
{
public:
    explicit TweakInputController(const Data::Content::ParamInput& input);

    // Both make the input look like what it is going to drive, in one command without history
    // text, which other inputs of the graph do not have to make room for: the identifier is made
    // unique among them. False if the input has died.
    //
    // Like a parameter of a node: type, identifier, label, description, default value and widget
    // with its options. The widget of a parameter with entries is a drop-down list of them.
    bool initFromDescription(const Data::Desc::Parameter& description,
                             const std::string& group = {});
    // Like an input of another graph: its texts, default value and widget as they stand there.
    bool initFromInput(const Data::Content::ParamInput& source);
};

} // namespace Ksx::Core
