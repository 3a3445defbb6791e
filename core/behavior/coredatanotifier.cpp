#include "ksx/core/datanotifier.h"

#include "content/nodekind.h"
#include "core/manipulatorcontext.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include "data/treewalk.h"
#include "ksx/core/contentwalk.h"
#include "ksx/core/edit.h"
#include "ksx/core/plainroute.h"
#include <QtGlobal>
#include <algorithm>
#include <iterator>

namespace Ksx::Core {

using namespace Data::Content;
using Orv::Data::BaseObject;

namespace {

// An object's class by its declaration, which takes a third of the time of a cast.
template <class T>
const T* as(const BaseObject* object)
{
    const bool isOfClass = object != nullptr && &object->getMeta() == &T::MetaTag::record;
    return isOfClass ? static_cast<const T*>(object) : nullptr;
}

// The classes of the objects that the walk below meets, wherever they stand in a package, beside the
// implementations of nodes.
const Orv::Data::ObjectMeta* const VisitedTypes[] = {
    &Package::MetaTag::record,  &Group::MetaTag::record,    &Graph::MetaTag::record,
    &Function::MetaTag::record, &Resource::MetaTag::record, &ParamNode::MetaTag::record,
};

bool isVisited(const Orv::Data::ObjectMeta* type)
{
    return kindOf(*type) != NodeKind::None ||
           std::find(std::begin(VisitedTypes), std::end(VisitedTypes), type) !=
               std::end(VisitedTypes);
}

} // namespace

// Gives an object and what stands in it to the entries that name classes, and looks only where
// objects of such classes can stand: a package has millions of others.
class DataNotifier::Walk
{
public:
    Walk(const std::vector<OfType>& types, const Arrival& arrival)
        : m_types(types), m_arrival(arrival)
    {}

    void visit(const BaseObject& object)
    {
        if (as<Package>(&object) != nullptr ||
            dynamic_cast<const ContentObjectBase*>(&object) != nullptr)
            visitContentOf(object);
        else if (const auto* node = as<CompNode>(&object))
            visitNode(*node);
        else
            Orv::Data::visitTree(object, [this](const BaseObject& one) { give(one); });
        for (const BaseObject* above = object.getParent(); above != nullptr;
             above = above->getParent())
            give(*above);
    }

private:
    void give(const BaseObject& object)
    {
        const Orv::Data::ObjectMeta* const type = &object.getMeta();
        for (const OfType& one : m_types) {
            if (one.type != type)
                continue;
            for (Functor* functor : one.functors)
                (*functor)(object, m_arrival);
        }
    }
    void visitContentOf(const BaseObject& root)
    {
        struct Level
        {
            const Orv::Data::ContainerList<ContentObjectBase>* list;
            std::size_t next;
        };
        std::vector<Level> levels;
        for (const BaseObject* object = &root; object != nullptr;) {
            visitObject(*object);
            if (const auto* content = contentOf(*object))
                levels.push_back({content, 0});
            while (!levels.empty() && levels.back().next == levels.back().list->size())
                levels.pop_back();
            object = levels.empty() ? nullptr : &levels.back().list->at(levels.back().next++);
        }
    }
    void visitObject(const BaseObject& object)
    {
        give(object);
        if (const auto* graph = as<Graph>(&object)) {
            for (const CompNode& node : graph->compNodes())
                visitNode(node);
            visitValues(graph->baseParameters());
        } else if (const auto* function = as<Function>(&object)) {
            visitValue(function->paramValue());
        }
    }
    void visitNode(const CompNode& node)
    {
        const BaseObject* const implementation = node.compImplementation().get();
        if (implementation == nullptr)
            return;
        give(*implementation);
        visitParameterPlaces(
            node, [this](const ParameterPlace& place) { visitValues(place.parameters); });
    }
    void visitValues(const ParameterList& parameters)
    {
        for (const Parameter& parameter : parameters)
            visitValue(parameter.paramValue());
    }
    void visitValue(const ParamValue& value)
    {
        if (const DynamicValue* const computed = computedValueOf(value))
            for (const ParamNode& node : computed->paramNodes())
                give(node);
    }

    const std::vector<OfType>& m_types;
    const Arrival& m_arrival;
};

void DataNotifier::Functor::operator()(const BaseObject&, const Arrival&) {}

void DataNotifier::add(std::unique_ptr<Functor> functor)
{
    m_functors.push_back(std::move(functor));
    Functor* const added = m_functors.back().get();
    if (added->types().empty())
        m_ofAll.push_back(added);
    for (const Orv::Data::ObjectMeta* type : added->types()) {
        Q_ASSERT(isVisited(type));
        const auto known =
            std::find_if(m_ofTypes.begin(), m_ofTypes.end(),
                         [type](const OfType& ofType) { return ofType.type == type; });
        if (known == m_ofTypes.end())
            m_ofTypes.push_back({type, {added}});
        else
            known->functors.push_back(added);
    }
}

void DataNotifier::attachTo(const BaseObject& root)
{
    editPlainly([&](Orv::Core::ManipulatorContext& context) {
        context.addListener(root, *this);
        return true;
    });
}

void DataNotifier::deliver(const Orv::Data::DataMessage& message)
{
    Orv::Data::ManipulatorContextBase* context = message.context.access();
    if (context == nullptr)
        return;
    for (const auto& box : context->takeInserted()) {
        const BaseObject* const inserted = box.get();
        if (inserted == nullptr || &rootOf(*inserted) != message.object.get())
            continue;
        if (as<Package>(inserted) == nullptr) {
            visitOpened(*context);
            visit(*inserted, {*context, editableContext(message)});
        } else if (m_isDeferring) {
            m_opened.push_back(box);
        } else {
            visit(*inserted, {*context, nullptr});
        }
    }
}

void DataNotifier::visit(const BaseObject& object, const Arrival& arrival) const
{
    if (!m_ofTypes.empty())
        Walk(m_ofTypes, arrival).visit(object);
    if (m_ofAll.empty())
        return;
    Orv::Data::visitTree(object, [&](const BaseObject& one) {
        for (Functor* functor : m_ofAll)
            (*functor)(one, arrival);
    });
}

void DataNotifier::visitOpened()
{
    if (m_opened.empty())
        return;
    editPlainly([this](Orv::Core::ManipulatorContext& context) {
        visitOpened(context);
        return true;
    });
}

void DataNotifier::visitOpened(Orv::Data::ManipulatorContextBase& context)
{
    for (const auto& package : std::exchange(m_opened, {}))
        if (package && isAttached(*package)) // it may have been closed again
            visit(*package, {context, nullptr});
}

} // namespace Ksx::Core
