#include "function/functionpath.h"

#include "content/functionnode.h"
#include "data/content/paramnode.h"

namespace Ksx::Core {

using namespace Data::Content;

namespace {
const std::string NoPath;
} // namespace

bool isFunctionInstance(const ParamNode& node)
{
    return node.function().get() == "instance";
}

const std::string& functionPathOf(const ParamNode& node)
{
    for (const FuncData& data : node.funcDatas()) {
        const auto* text = dynamic_cast<const ConstantValueString*>(data.constantValue().get());
        if (text != nullptr && data.name().get() == FunctionDataName)
            return text->value().get();
    }
    return NoPath;
}

} // namespace Ksx::Core
