// Raises the version of a file and changes nothing in it.
#pragma once

#include "updating/oblformatupdater.h"

namespace Ksx::Core {

class OBLFormatUpdater7049 final : public OBLFormatUpdater
{
public:
    Orv::Core::Version updaterVersion() const override { return {1, 1, 0, 7049}; }
    // Does not even read the device.
    bool update(QIODevice& device, Orv::Core::MessageNode* log,
                const Orv::Core::Extensions::ProgressFunction& progress) const override;

protected:
    const char* className() const override { return "Ksx::Core::OBLFormatUpdater7049"; }
    Elements find(const Document& document, const ElementIndex& index) const override;
    std::optional<int> change(Document& document, const Elements& found) const override;
};

} // namespace Ksx::Core
