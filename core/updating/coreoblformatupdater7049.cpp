#include "updating/oblformatupdater7049.h"

namespace Ksx::Core {

bool OBLFormatUpdater7049::update(QIODevice& /*device*/, Orv::Core::MessageNode* /*log*/,
                                  const Orv::Core::Extensions::ProgressFunction& progress) const
{
    if (progress) {
        progress(0.0F);
        progress(1.0F);
    }
    return true;
}

OBLFormatUpdater::Elements OBLFormatUpdater7049::find(const Document& /*document*/,
                                                      const ElementIndex&) const
{
    return {};
}

std::optional<int> OBLFormatUpdater7049::change(Document& /*document*/,
                                                const Elements& /*found*/) const
{
    return 0;
}

} // namespace Ksx::Core
