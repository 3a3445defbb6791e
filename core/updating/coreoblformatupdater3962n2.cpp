#include "updating/oblformatupdater3962n2.h"

#include "updating/elementpath.h"

namespace Ksx::Core {

// Files before build 3962 had the names of the configuration elements the other way round.
//   <configuration><name v="default"/><uid v="7"/><configurations>
//     <configuration><name v="one"/><uid v="8"/><configurations/></configuration>
//   </configurations></configuration>
// becomes
//   <configurations><name v="default"/><uid v="7"/><configuration>
//     <configurations><name v="one"/><uid v="8"/><configuration/></configurations>
//   </configuration></configurations>
// Every `configurations` inside is renamed, at any depth, and every `configuration` that is an item
// of one; any other `configuration` inside is left alone.
OBLFormatUpdater::Elements OBLFormatUpdater3962n2::find(const Document& document,
                                                        const ElementIndex&) const
{
    return elementsAt(document, "/package/configuration");
}

std::optional<int> OBLFormatUpdater3962n2::change(Document& /*document*/,
                                                  const Elements& found) const
{
    constexpr std::string_view singular = "configuration";
    constexpr std::string_view plural = "configurations";
    int count = 0;
    const auto rename = [&count](Elements elements, std::string_view name) {
        for (Element& element : elements) {
            element.rename(name);
            ++count;
        }
    };
    for (const Element& outer : found) {
        const Elements lists = descendantsOf(outer, plural);
        Elements items;
        for (const Element& list : lists)
            for (Element item = list.firstChild(singular); !item.isNull();
                 item = item.nextSibling(singular))
                items.push_back(item);
        rename(lists, singular);
        rename(items, plural);
        rename({outer}, plural);
    }
    return count;
}

} // namespace Ksx::Core
