#include "updating/oblformatupdater5017.h"

#include "updating/attributesmover.h"
#include "updating/elementpath.h"

namespace Ksx::Core {

// Files before build 5017 had the texts of outputs and inputs in leaves of their own.
//   <paraminput><identifier v="in"/><uid v="3"/><desc v="Size"/><usertag v="x"/>...</paraminput>
// becomes
//   <paraminput><identifier v="in"/><uid v="3"/>
//     <attributes><description v="Size"/><usertags v="x"/></attributes>...</paraminput>
// `attributes` that stand already take the texts in. An empty leaf goes without a trace.
OBLFormatUpdater::Elements OBLFormatUpdater5017::find(const Document& document,
                                                      const ElementIndex& index) const
{
    Elements found;
    for (const char* path :
         {"/package/content/*/graphoutput/desc", "/package/content/*/paraminput/desc",
          "/package/content/*/paraminput/usertag"}) {
        const Elements more = elementsAt(document, path, &index);
        found.insert(found.end(), more.begin(), more.end());
    }
    return found;
}

std::optional<int> OBLFormatUpdater5017::change(Document& document, const Elements& found) const
{
    AttributesMover mover(document, "uid");
    for (const Element& leaf : found)
        mover.move(leaf, leaf.name() == "desc" ? "description" : "usertags");
    return static_cast<int>(found.size());
}

} // namespace Ksx::Core
