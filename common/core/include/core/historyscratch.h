// The record by which an edit is reversed.
#pragma once

#include "data/datapointerbox.h"
#include <boost/any.hpp>
#include <cstddef>
#include <exception>
#include <list>
#include <memory>
#include <vector>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Orv::Core {

class ManipulatorAttributeBase;
class ManipulatorBase;
class ManipulatorContext;
class ManipulatorFactoryBase;
class ManipulatorListBase;
class ManipulatorUnionBase;

// The tree is not in the state that an undo needs.
class ExceptionCantUndo : public std::exception
{
public:
    const char* what() const noexcept override { return "inconsistent undo"; }
};

// The items that manipulators record while an edit runs, each the inverse of one primitive change.
// Owns the objects that the edit took out of the tree: they die with the history, unless an undo
// gives them back.
class HistoryScratch
{
public:
    class Item;

    HistoryScratch();
    HistoryScratch(const HistoryScratch&) = delete;
    HistoryScratch& operator=(const HistoryScratch&) = delete;
    ~HistoryScratch();

    std::size_t size() const { return m_items.size(); }

    // Each is called by the manipulator in question. The attribute's value is the one before.
    void addAttribute(const ManipulatorAttributeBase& manipulator);
    void addListInsert(const ManipulatorListBase& manipulator, std::size_t index,
                       std::size_t count);
    // Takes ownership of the items.
    void addListErase(const ManipulatorListBase& manipulator, std::size_t index,
                      std::vector<Data::BaseObject*> items);
    void addListMove(const ManipulatorListBase& manipulator, std::size_t index,
                     std::ptrdiff_t offset);
    // `oldChild` may be null.
    void addUnion(const ManipulatorUnionBase& manipulator,
                  std::unique_ptr<Data::BaseObject> oldChild);

    // Reverses all items in `context`, which has another history, and drops them, the last one
    // first. Throws ExceptionCantUndo at the first item that cannot be reversed. That item and
    // those before it stay, and have changed nothing.
    void undoAll(ManipulatorContext& context);
    // Cuts the listeners of all removed subtrees off, once the context has ended well.
    void settleAll(ManipulatorContext& context);
    // Reverses what has been done in `context`, whose own history this is. What stays is the record
    // of the reversing itself.
    void rollback(ManipulatorContext& context);
    // Takes over the items of a later history, which is empty afterwards.
    void append(HistoryScratch& other);

private:
    void add(std::unique_ptr<Item> item);

    std::list<std::unique_ptr<Item>> m_items;
};

} // namespace Orv::Core
