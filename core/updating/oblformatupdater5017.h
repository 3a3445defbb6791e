// Moves the texts of outputs and inputs into their attributes.
#pragma once

#include "updating/oblformatupdater.h"

namespace Ksx::Core {

class OBLFormatUpdater5017 final : public OBLFormatUpdater
{
public:
    Orv::Core::Version updaterVersion() const override { return {1, 0, 3, 5017}; }

protected:
    const char* className() const override { return "Ksx::Core::OBLFormatUpdater5017"; }
    Elements find(const Document& document, const ElementIndex& index) const override;
    std::optional<int> change(Document& document, const Elements& found) const override;
};

} // namespace Ksx::Core
