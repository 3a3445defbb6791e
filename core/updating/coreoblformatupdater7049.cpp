#include "updating/oblformatupdater7049.h"

#include <QDomDocument>

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

OBLFormatUpdater::Elements OBLFormatUpdater7049::find(const QDomDocument& /*document*/,
                                                      const DomIndex&) const
{
    return {};
}

std::optional<int> OBLFormatUpdater7049::change(QDomDocument& /*document*/,
                                                const Elements& /*found*/) const
{
    return 0;
}

} // namespace Ksx::Core
