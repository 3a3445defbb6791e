// The identifiers of the items of a list, kept in step with the list.
#pragma once

#include "editing/itemindex.h"
#include "editing/takennames.h"
#include <string>

namespace Ksx::Core {

// Returns the identifier of an item, and the empty text for what has none.
template <class Item>
const std::string& identifierOf(const Item& item)
{
    return item.identifier().get();
}

template <class Item>
class IdentifierIndex final : public ItemIndex<IdentifierIndex<Item>, Item, std::string>
{
public:
    explicit IdentifierIndex(const Orv::Data::ContainerList<Item>& list) { this->refill(list); }

    const TakenNames& names() const { return m_names; }

    static std::string read(const Item& item) { return identifierOf(item); }
    void enter(const Item&, const std::string& identifier) { m_names.add(identifier); }
    void leave(const Item*, const std::string& identifier) { m_names.remove(identifier); }

private:
    TakenNames m_names;
};

} // namespace Ksx::Core
