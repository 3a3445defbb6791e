// Checks the values of inputs.
#pragma once

#include "data/content/graph.h"
#include <QString>

namespace Ksx::Kit {

class FindingList;

// Adds inputs whose default is outside of the bounds of their widget.
void checkInput(const Data::Content::ParamInput& input, const QString& place,
                FindingList& findings);

template <class Inputs>
void checkInputs(const Inputs& inputs, const QString& place, FindingList& findings)
{
    for (const Data::Content::ParamInput& input : inputs)
        checkInput(input, place, findings);
}

} // namespace Ksx::Kit
