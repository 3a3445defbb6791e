// How a graph's input looks from a node that is an instance of the graph.
#pragma once

#include "data/desc/parameter.h"

namespace Ksx::Data::Content {
class ParamInput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// The description that corresponds to an input: its type, texts, default and widget. All options of
// the widget become extras. A drop-down list, which is told by the widget's name or by its option
// "editorID", has an entry for each part of its option "parameters": "0;Single | 1;Double", or the
// texts alone, which count from 0.
Data::Desc::Parameter parameterOfInput(const Data::Content::ParamInput& input);

} // namespace Ksx::Core
