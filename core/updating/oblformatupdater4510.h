// Turns the usage number of an output into a list of usages.
#pragma once

#include "updating/oblformatupdater.h"

namespace Ksx::Core {

class OBLFormatUpdater4510 final : public OBLFormatUpdater
{
public:
    Orv::Core::Version updaterVersion() const override { return {1, 0, 1, 4510}; }

protected:
    const char* className() const override { return "Ksx::Core::OBLFormatUpdater4510"; }
    Elements find(const Document& document, const ElementIndex& index) const override;
    std::optional<int> change(Document& document, const Elements& found) const override;
};

} // namespace Ksx::Core
