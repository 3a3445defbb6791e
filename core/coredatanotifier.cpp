#include "ksx/core/datanotifier.h"

#include "core/manipulatorcontext.h"
#include "data/changeevent.h"
#include "data/treewalk.h"
#include "ksx/core/plainroute.h"

namespace Ksx::Core {

void DataNotifier::Functor::operator()(const Orv::Data::BaseObject&,
                                       Orv::Data::ManipulatorContextBase&)
{}

void DataNotifier::add(std::unique_ptr<Functor> functor)
{
    m_functors.push_back(std::move(functor));
}

void DataNotifier::attachTo(const Orv::Data::BaseObject& root)
{
    editPlainly([&](Orv::Core::ManipulatorContext& context) {
        context.addListener(root, *this);
        return true;
    });
}

const Orv::Data::ListenerFilter& DataNotifier::getFilter() const
{
    using Orv::Data::ChangeType;
    static constexpr Orv::Data::ListenerFilter filter{ChangeType::Descendant | ChangeType::Inserted,
                                                      Orv::Data::MessageMask::All, 0};
    return filter;
}

void DataNotifier::deliver(const Orv::Data::DataMessage& message)
{
    Orv::Data::ManipulatorContextBase* context = message.context.access();
    if (context == nullptr)
        return;
    for (const auto& inserted : context->takeInserted()) {
        if (!inserted || m_functors.empty() || &rootOf(*inserted) != message.object.get())
            continue;
        Orv::Data::visitTree(*inserted.get(), [&](const Orv::Data::BaseObject& object) {
            for (const auto& functor : m_functors)
                (*functor)(object, *context);
        });
    }
}

} // namespace Ksx::Core
