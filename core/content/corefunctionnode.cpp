#include "content/functionnode.h"

#include "content/constantvalue.h"
#include "data/content/paramnode.h"
#include "data/desc/function.h"

namespace Ksx::Core {

std::unique_ptr<Data::Content::ParamNode> makeFunctionNode(const Data::Desc::Function& function,
                                                           Uid uid)
{
    auto node = std::make_unique<Data::Content::ParamNode>();
    node->uid().assign(uid);
    node->function().assign(function.identifier);
    // Marks are no types: an open type stays a set until something is connected.
    constexpr unsigned marks =
        Data::Desc::FunctionType::Generic | Data::Desc::FunctionType::NoOutput;
    node->type().value().assign(function.outputType & ~marks);
    if (function.data) {
        auto data = std::make_unique<Data::Content::FuncData>();
        data->name().assign(FunctionDataName);
        const unsigned type = function.data->type;
        data->constantValue().set(makeConstant(type, zeroOf(type)));
        node->funcDatas().pushBack(std::move(data));
    }
    return node;
}

} // namespace Ksx::Core
