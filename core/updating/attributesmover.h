// Moving texts of old files into `attributes` elements.
#pragma once

#include "data/lightdocument.h"
#include <string>
#include <string_view>

namespace Ksx::Core {

// Moves leaves into the first `attributes` among their siblings, which is made where it is missing.
// Serves one run over a document, during which nobody else changes the elements it has met. Leaves
// of one parent come one behind the other, lest the parent be searched for each of them.
class AttributesMover
{
public:
    // `document` outlives the mover. New `attributes` stand behind the first sibling `anchor`, at
    // the end where there is none, and behind the leaf itself if `anchor` is empty.
    AttributesMover(Orv::Data::LightDocument& document, std::string_view anchor);

    // Takes the leaf away. Its text, unless it is empty, becomes that of the member `target`.
    void move(Orv::Data::LightElement leaf, std::string_view target);

private:
    Orv::Data::LightElement attributesBeside(const Orv::Data::LightElement& leaf);
    Orv::Data::LightElement member(Orv::Data::LightElement attributes, std::string_view name);

    Orv::Data::LightDocument& m_document;
    std::string m_anchor;
    Orv::Data::LightElement m_parent; // of the last leaf, and two elements in it
    Orv::Data::LightElement m_attributes;
    Orv::Data::LightElement m_member;
};

} // namespace Ksx::Core
