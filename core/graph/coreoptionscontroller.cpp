#include "ksx/core/optionscontroller.h"

#include "data/content/option.h"
#include "ksx/core/edit.h"

namespace Ksx::Core {

OptionsController::OptionsController(const Data::Content::Options& options) : m_options(&options)
{
    listenTo(options, m_listener);
}

OptionsController::~OptionsController() = default;

const Data::Content::Options* OptionsController::options() const
{
    return m_options.get();
}

} // namespace Ksx::Core
