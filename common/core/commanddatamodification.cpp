#include "core/commanddatamodification.h"

#include <boost/function/function_base.hpp>
#include <utility>

namespace Orv::Core {

CommandDataModification::CommandDataModification(Function function, const QString& name,
                                                 const std::string& mergeKey)
    : CommandHistory(name, mergeKey), m_function(std::move(function))
{}

bool CommandDataModification::apply(ManipulatorContext& context)
{
    if (!m_function)
        throw boost::bad_function_call();
    return m_function(context);
}

} // namespace Orv::Core
