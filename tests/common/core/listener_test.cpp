// The ready-made listeners.
#include "core/listenerbridge.h"
#include "core/listenerdeaf.h"
#include "core/listenersimple.h"
#include "core/listenerslot.h"
#include "data/changeevent.h"
#include "data/shadowobject.h"
#include "support/editing.h"

#include <gtest/gtest.h>

using Orv::Core::ListenerBridge;
using Orv::Core::ListenerDeaf;
using Orv::Core::ListenerSimple;
using Orv::Core::ListenerSlot;
using Orv::Data::ChangeEvent;
using Orv::Data::ChangeType;
using namespace TestSupport;

namespace {

constexpr std::uint32_t ItemTypes = ChangeType::Inserted | ChangeType::Erased;
constexpr std::uint32_t AllMembers = 0xFFFFFFFFu;

// A base that the ready-made listeners are put on.
class NamedListener : public Orv::Data::ListenerBase
{
public:
    NamedListener() = default;
    explicit NamedListener(const std::string& name) : m_name(name) {}
    const std::string& name() const { return m_name; }

private:
    std::string m_name = "nameless";
};

class ItemListener final : public ListenerSimple<0x8006, ItemTypes, 2, NamedListener>
{
public:
    using ListenerSimple::ListenerSimple;
    void deliver(const DataMessage&) override { ++deliveries; }
    int deliveries = 0;
};

using Bridge = ListenerBridge<3, ItemTypes, AllMembers, int>;

// Has its messages told by a bridge.
class Watcher final : public Orv::SecuredObject
{
public:
    explicit Watcher(Journal& journal) : m_journal(journal) {}
    void hear(const DataMessage& message, int argument)
    {
        m_journal.push_back(std::to_string(message.type) + " to " + std::to_string(argument));
    }

private:
    Journal& m_journal;
};

DataMessage insertion()
{
    DataMessage message;
    message.type = ChangeType::Inserted;
    return message;
}

} // namespace

TEST(ListenerSimple, HasTheGivenPriority)
{
    EXPECT_EQ(ItemListener().getPriority(), 0x8006);
}

TEST(ListenerSimple, HasTheGivenFilterAndConsumesNothing)
{
    const Orv::Data::ListenerFilter filter = ItemListener().getFilter();
    EXPECT_EQ(filter.typeMask, 24u);
    EXPECT_EQ(filter.memberMask, 2u);
    EXPECT_EQ(filter.consumeMask, 0u);
}

TEST(ListenerSimple, HasTheConstructorsOfItsBase)
{
    EXPECT_EQ(ItemListener("items").name(), "items");
}

TEST(ListenerSimple, IsNotOwnedByTheShadow)
{
    EXPECT_FALSE(ItemListener().isOwnedByShadow());
}

TEST(ListenerSimple, HearsWhatItsFilterAccepts)
{
    Library library;
    ItemListener listener;
    attach(library.root.books(), listener);
    edit([&](auto& context) { ShelfEdit(library.root, context).books().erase(0, 1); });
    EXPECT_EQ(listener.deliveries, 1);
}

TEST(ListenerDeaf, AcceptsNothing)
{
    const ListenerDeaf<> listener;
    ChangeEvent event{0xFFFFFFFFu, {}, AllMembers};
    EXPECT_FALSE(listener.accept(event));
    EXPECT_EQ(event.memberMask, AllMembers);
}

TEST(ListenerDeaf, DoesNothingWithAMessage)
{
    ListenerDeaf<NamedListener> listener("deaf");
    listener.deliver(insertion());
    EXPECT_EQ(listener.name(), "deaf");
}

TEST(ListenerDeaf, HoldsItsPlaceOnTheObject)
{
    Library library;
    ListenerDeaf<NamedListener> listener("deaf");
    attach(library.root, listener);
    EXPECT_EQ(library.root.shadow()->findListener<NamedListener>(), &listener);
}

TEST(ListenerBridge, HasTheGivenPriorityAndFilter)
{
    const Bridge bridge(1);
    EXPECT_EQ(bridge.getPriority(), 3);
    EXPECT_EQ(bridge.getFilter().typeMask, 24u);
    EXPECT_EQ(bridge.getFilter().memberMask, AllMembers);
    EXPECT_EQ(bridge.getFilter().consumeMask, 0u);
}

TEST(ListenerBridge, CallsEachFunctionWithTheMessageAndItsArgument)
{
    Bridge bridge(7);
    Journal calls;
    bridge.connect([&](const DataMessage& message, int argument) {
        calls.push_back("first " + std::to_string(message.type + argument));
    });
    bridge.connect([&](const DataMessage&, int) { calls.push_back("second"); });
    bridge.deliver(insertion());
    EXPECT_EQ(calls, (Journal{"first 15", "second"}));
}

TEST(ListenerBridge, TakesAnArgumentOfOneByte)
{
    ListenerBridge<0xFFFF, ChangeType::Value, AllMembers, char> bridge('x');
    char heard = ' ';
    bridge.connect([&](const DataMessage&, char argument) { heard = argument; });
    bridge.deliver(insertion());
    EXPECT_EQ(heard, 'x');
}

TEST(ListenerBridge, WithoutAFunctionDoesNothing)
{
    Bridge bridge(7);
    EXPECT_NO_THROW(bridge.deliver(insertion()));
}

TEST(ListenerBridge, ForgetsAFunctionThatWasDisconnected)
{
    Bridge bridge(7);
    int calls = 0;
    const auto connection = bridge.connect([&](const DataMessage&, int) { ++calls; });
    connection.disconnect();
    bridge.deliver(insertion());
    EXPECT_EQ(calls, 0);
}

TEST(ListenerBridge, HearsOfTheObjectItIsAttachedTo)
{
    Library library;
    Bridge bridge(7);
    Journal heard;
    bridge.connect([&](const DataMessage& m, int) { heard.push_back(textOf(m.runs)); });
    attach(library.root.books(), bridge);
    edit([&](auto& context) { ShelfEdit(library.root, context).books().erase(1, 1); });
    EXPECT_EQ(heard, Journal{"K1 E1"});
}

TEST(ListenerSlot, CallsTheMemberFunction)
{
    Journal heard;
    Watcher watcher(heard);
    const ListenerSlot<Watcher, int> slot(watcher, &Watcher::hear);
    slot(insertion(), 7);
    EXPECT_EQ(heard, Journal{"8 to 7"});
}

TEST(ListenerSlot, DoesNothingOnceTheObjectHasDied)
{
    Journal heard;
    auto watcher = std::make_unique<Watcher>(heard);
    const ListenerSlot<Watcher, int> slot(*watcher, &Watcher::hear);
    watcher.reset();
    slot(insertion(), 7);
    EXPECT_EQ(heard, Journal{});
}

TEST(ListenerSlot, CanBeConnectedToABridge)
{
    Journal heard;
    Watcher watcher(heard);
    Bridge bridge(7);
    bridge.connect(ListenerSlot<Watcher, int>(watcher, &Watcher::hear));
    bridge.deliver(insertion());
    EXPECT_EQ(heard, Journal{"8 to 7"});
}

TEST(ListenerSlot, MayStayConnectedWhenItsObjectDies)
{
    Journal heard;
    auto watcher = std::make_unique<Watcher>(heard);
    Bridge bridge(7);
    bridge.connect(ListenerSlot<Watcher, int>(*watcher, &Watcher::hear));
    watcher.reset();
    bridge.deliver(insertion());
    EXPECT_EQ(heard, Journal{});
}
