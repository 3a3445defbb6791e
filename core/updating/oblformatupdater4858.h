// Moves the description of graphs, resources and functions into their attributes.
#pragma once

#include "updating/oblformatupdater.h"

namespace Ksx::Core {

class OBLFormatUpdater4858 final : public OBLFormatUpdater
{
public:
    Orv::Core::Version updaterVersion() const override { return {1, 0, 3, 4858}; }

protected:
    const char* className() const override { return "Ksx::Core::OBLFormatUpdater4858"; }
    Elements find(const Document& document, const ElementIndex& index) const override;
    std::optional<int> change(Document& document, const Elements& found) const override;
};

} // namespace Ksx::Core
