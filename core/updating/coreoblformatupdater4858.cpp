#include "updating/oblformatupdater4858.h"

#include "updating/attributesmover.h"
#include "updating/elementpath.h"

namespace Ksx::Core {

// Files before build 4858 had the description of graphs, resources and functions in `desc`.
//   <graph><identifier v="wood"/><uid v="3"/><desc v="Grain"/>...</graph>
// becomes
//   <graph><identifier v="wood"/><uid v="3"/>
//     <attributes><description v="Grain"/></attributes>...</graph>
// `attributes` that stand already take the description in. An empty `desc` goes without a trace.
OBLFormatUpdater::Elements OBLFormatUpdater4858::find(const Document& document,
                                                      const ElementIndex& index) const
{
    Elements found;
    for (const char* path : {"/package/content/*/graph/desc", "/package/content/*/resource/desc",
                             "/package/content/*/function/desc"}) {
        const Elements more = elementsAt(document, path, &index);
        found.insert(found.end(), more.begin(), more.end());
    }
    return found;
}

std::optional<int> OBLFormatUpdater4858::change(Document& document, const Elements& found) const
{
    AttributesMover mover(document, {});
    for (const Element& desc : found)
        mover.move(desc, "description");
    return static_cast<int>(found.size());
}

} // namespace Ksx::Core
