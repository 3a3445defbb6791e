#include "ksx/core/renaming.h"

#include "content/contentidentifiers.h"
#include "content/packageof.h"
#include "content/uniqueidentifier.h"
#include "core/ilibraryservices.h"
#include "core/manipulatorattribute.h"
#include "data/content/constantvalues.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/content/paramnode.h"
#include "data/identifiersuite.h"
#include "function/funcdatamodifier.h"
#include "ksx/core/datapath.h"
#include "ksx/core/edit.h"
#include "ksx/core/filereferences.h"
#include "ksx/core/funcnodecontroller.h"
#include "ksx/core/graphinterface.h"
#include "ksx/core/ilibraryservices.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputusers.h"
#include "ksx/core/objecturl.h"
#include "ksx/core/outputcontroller.h"
#include "ksx/core/packageslistmanager.h"
#include <vector>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using Orv::Data::BaseObject;
using Orv::Data::ContainerList;

constexpr const char* ClassName = "Ksx::Core::Renaming";

struct NewText
{
    const TextAttribute* text;
    std::string value;
};
using NewTexts = std::vector<NewText>; // the identifier first

bool applyTexts(Orv::Core::ManipulatorAttribute<Orv::Data::Text> identifier,
                const Orv::Data::DataPointerBoxMasterKey&, const NewTexts& texts)
{
    for (const NewText& changed : texts)
        Orv::Core::ManipulatorAttribute<Orv::Data::Text>(*changed.text, identifier.context())
            .set(changed.value);
    return true;
}

bool write(NewTexts texts, const char* historyKey)
{
    const Orv::Data::DataPointerBox<TextAttribute> identifier(texts.front().text);
    return runEdit(identifier, std::move(texts), &applyTexts, historyText(ClassName, historyKey))
        .has_value();
}

bool hasLegalText(const std::string& identifier)
{
    return !Orv::DefaultIdentifierPolicy::normalize(identifier).empty();
}

// The graph that holds an input or an output. Null for an item of a function.
const Graph* graphOf(const BaseObject& item)
{
    const BaseObject* const list = item.getParent();
    return list == nullptr ? nullptr : dynamic_cast<const Graph*>(list->getParent());
}

template <class Item>
bool isFirstOfItsName(const ContainerList<Item>& list, const Item& item)
{
    for (const Item& other : list)
        if (other.identifier().get() == item.identifier().get())
            return &other == &item;
    return false;
}

// The name of the input, in each function that reads it.
void appendReaders(const Graph& graph, const ParamInput& input, const std::string& identifier,
                   NewTexts& texts)
{
    if (!isFirstOfItsName(graph.paraminputs(), input))
        return;
    for (const FuncNodeController* reader : collectInputUsers(graph, input.identifier().get())) {
        const FuncData* const data = functionDataIn(reader->node()->funcDatas());
        const auto* const name =
            dynamic_cast<const ConstantValueString*>(data->constantValue().get());
        texts.push_back({&name->value(), identifier});
    }
}

// An object of the content of a package, as data paths name it.
struct ContentPlace
{
    explicit ContentPlace(const ContentObjectBase& object)
        : target(object), identifier(identifierOf(object))
    {
        for (const BaseObject* owner = object.getParent(); owner != nullptr;
             owner = owner->getParent())
            depth += dynamic_cast<const ContentInterface*>(owner) == nullptr ? 0u : 1u;
    }

    // Returns whether a path of the package `from` leads to the object or into it.
    bool isOn(const std::string& text, const Package& from) const
    {
        if (!DataPath::isDataPath(text))
            return false;
        const DataPath path(text);
        const std::vector<std::string>& segments = path.segments();
        if (segments.size() <= depth || segments[depth] != identifier)
            return false;
        std::string begin = "pkg://";
        for (std::size_t i = 0; i <= depth; ++i)
            begin += segments[i] + '/';
        if (const auto dependency = path.parameter(DataPathKey::Dependency))
            begin = DataPath::withParameter(begin, DataPathKey::Dependency, *dependency);
        return resolveObjectUrl(begin, from) == &target;
    }

    const ContentObjectBase& target;
    std::string identifier;
    std::size_t depth = 0; // of its segment in a path
};

void appendPaths(const ContentPlace& place, const std::string& identifier, NewTexts& texts)
{
    auto* const services = dynamic_cast<ILibraryServices*>(Orv::libraryServices());
    if (services == nullptr)
        return;
    for (const auto& package : services->packagesListManager()->openPackages())
        visitTexts(*package, [&](const TextAttribute& text) {
            if (place.isOn(text.get(), *package))
                texts.push_back(
                    {&text, DataPath::withSegment(text.get(), place.depth, identifier)});
        });
}

} // namespace

bool renameInput(const InputController& input, const std::string& identifier)
{
    const ParamInput* const item = input.input();
    const Graph* const graph = item == nullptr ? nullptr : graphOf(*item);
    if (graph == nullptr || !hasLegalText(identifier))
        return false;
    const std::string name = freeIdentifier(identifier, defaultInputIdentifier(),
                                            ParamInputNameExist(graph->paraminputs(), item));
    if (name == item->identifier().get())
        return true;
    NewTexts texts = {{&item->identifier(), name}};
    appendReaders(*graph, *item, name, texts);
    return write(std::move(texts), "RENAME_INPUT_HISTORY_DESC");
}

bool renameOutput(const OutputController& output, const std::string& identifier)
{
    const GraphOutput* const item = output.output();
    const Graph* const graph = item == nullptr ? nullptr : graphOf(*item);
    if (graph == nullptr || !hasLegalText(identifier))
        return false;
    const std::string name = freeIdentifier(identifier, defaultOutputIdentifier(),
                                            GraphOutputNameExist(graph->graphOutputs(), item));
    return name == item->identifier().get() ||
           write({{&item->identifier(), name}}, "RENAME_OUTPUT_HISTORY_DESC");
}

bool renameContent(const ContentObjectBase& object, const std::string& identifier)
{
    const auto* const named = dynamic_cast<const ContentInterface*>(&object);
    const BaseObject* const list = object.getParent();
    if (named == nullptr || list == nullptr || packageOf(object) == nullptr ||
        !hasLegalText(identifier))
        return false;
    const std::string name = uniqueIdentifier(*list->getParent(), identifier, &object);
    if (name == named->identifierAttribute().get())
        return true;
    NewTexts texts = {{&named->identifierAttribute(), name}};
    appendPaths(ContentPlace(object), name, texts);
    return write(std::move(texts), "RENAME_CONTENT_HISTORY_DESC");
}

} // namespace Ksx::Core
