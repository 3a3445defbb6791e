#include "updating/packageupdater4253.h"

#include "data/content/graph.h"
#include "data/content/package.h"
#include "ksx/core/contentwalk.h"
#include "ksx/core/uidsource.h"
#include <algorithm>
#include <optional>
#include <string>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using Orv::Core::MessageLevel;
using Orv::Data::BaseObject;

constexpr UInt ImageTypes = 3; // grey and colour, the low two bits of an input's type

bool isImage(const ParamInput& input)
{
    return (input.type().value().get() & ImageTypes) != 0;
}

// What `primaryInput` must be; none if it is in order or nothing better is there.
std::optional<Uid> wantedPrimaryInput(const Graph& graph)
{
    const Uid current = graph.primaryInput().value().get();
    const auto& inputs = graph.paraminputs();
    if (inputs.isEmpty())
        return current != 0 ? std::optional<Uid>(0) : std::nullopt;
    const auto isCurrent = [current](const ParamInput& input) {
        return input.uid().get() == current && isImage(input);
    };
    if (current != 0 && std::any_of(inputs.begin(), inputs.end(), isCurrent))
        return std::nullopt;
    const auto first = std::find_if(inputs.begin(), inputs.end(), &isImage);
    return first != inputs.end() ? std::optional<Uid>(first->uid().get()) : std::nullopt;
}

// The path of an object of a content list, as a text for messages.
QString pathText(const BaseObject& object)
{
    std::string path;
    for (const BaseObject* at = &object; at != nullptr; at = at->getParent())
        if (const auto* named = dynamic_cast<const ContentInterface*>(at))
            path.insert(0, '/' + named->identifierAttribute().get());
    return QStringLiteral("pkg:/") +
           QString::fromLatin1(path.data(), static_cast<int>(path.size()));
}

} // namespace

// Before build 4253 the primary input of a graph could name no input, or one that is no image.
//   <graph>... <paraminputs>(7, a number) (9, an image)</paraminputs>
//     <primaryInput><value v="7"/></primaryInput>...</graph>
// becomes
//   <graph>... <paraminputs>(7, a number) (9, an image)</paraminputs>
//     <primaryInput><value v="9"/></primaryInput>...</graph>
// It is the first image input, 0 in a graph without inputs, and stays in one without image inputs.
bool PackageUpdater4253::update(Package& package, Orv::Core::MessageNode* log,
                                const Orv::Core::Extensions::ProgressFunction& /*progress*/) const
{
    int count = 0;
    visitContent(package, [&](ContentObjectBase& object) {
        auto* graph = dynamic_cast<Graph*>(&object);
        const std::optional<Uid> wanted =
            graph == nullptr ? std::nullopt : wantedPrimaryInput(*graph);
        if (!wanted)
            return;
        auto& primaryInput = graph->primaryInput().value();
        if (log != nullptr)
            log->add(MessageLevel::Information,
                     text("COUNT_%1_CHANGE_PRIMARYINPUT_FROM_%2_TO_%3_IN_%4")
                         .arg(QString::number(count++), QString::number(primaryInput.get()),
                              QString::number(*wanted), pathText(*graph)));
        primaryInput.assign(*wanted);
    });
    return true;
}

} // namespace Ksx::Core
