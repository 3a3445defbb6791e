// The order in which the listeners of the library are served.
#pragma once

#include "data/listenerbase.h"

// One edit concerns mirrors of lists, controllers, behaviours that edit again, and listeners that
// only show the result. A pass over the messages of an edit serves the stages in the order in which
// they are listed here. Passes repeat until nobody edits any more. Listeners of one stage must not
// rely on each other's order.
//
// A listener of a program that only shows documents takes Display. One that edits further takes
// Repair, and asks editableContext() for the context.
namespace Ksx::Core::Stage {

// Mirrors of lists, indexes and tables. All others ask them, so they are served at each event.
constexpr std::uint16_t Mirror = Orv::Data::FirstPriority;
// Behaviours. They edit the document, so they come before all that shows it.
constexpr std::uint16_t Repair = 0x8001;
// The properties that a node has by its own parameters and inputs. Other nodes ask it for types.
constexpr std::uint16_t Description = 0xFFFC;
// Nodes that show another graph or function. Its own nodes have been described by now.
constexpr std::uint16_t Link = 0xFFFD;
// Connections of nodes. They look for connectors, which all nodes have by now.
constexpr std::uint16_t Connection = 0xFFFE;
// Signals to listeners that show the document. It is settled by now.
constexpr std::uint16_t Display = 0;
// Paths that may lead elsewhere. The table of open packages has to know the packages first.
constexpr std::uint16_t Path = 1;
// Results that were computed of a document. They are dropped when the document has changed.
constexpr std::uint16_t Cache = 3;

} // namespace Ksx::Core::Stage
