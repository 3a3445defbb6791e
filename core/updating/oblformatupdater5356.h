// Moves the objects of a package into a group named like it.
#pragma once

#include "updating/oblformatupdater.h"

namespace Ksx::Core {

class OBLFormatUpdater5356 final : public OBLFormatUpdater
{
public:
    Orv::Core::Version updaterVersion() const override { return {1, 1, 0, 5356}; }

protected:
    const char* className() const override { return "Ksx::Core::OBLFormatUpdater5356"; }
    Elements find(const Document& document, const ElementIndex& index) const override;
    std::optional<int> change(Document& document, const Elements& found) const override;
};

} // namespace Ksx::Core
