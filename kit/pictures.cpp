#include "ksx/kit/pictures.h"

#include "core/fileplace.h"
#include "data/content/package.h"
#include "drawnobjects.h"
#include "ksx/kit/packagehead.h"
#include "packageparts.h"
#include "report/filenames.h"

namespace Ksx::Kit {

bool drawPackage(const QString& file, const QStringList& presetsPaths, const PictureChoice& choice,
                 const std::function<bool(const Picture&)>& take, QString& reason)
{
    const QString canonical = Orv::Core::canonicalPath(file);
    QStringList updates;
    const auto package =
        openPackage(canonical.isEmpty() ? file : canonical, presetsPaths, updates, reason);
    if (package == nullptr)
        return false;
    const DrawnObjects found = drawnObjectsOf(*package);
    const std::vector<DrawnObject>& objects = found.objects;
    UniqueFileNames names;
    QStringList pictureNames;
    QHash<QString, QString> namesOfPlaces; // of the first object at each place, as in the format
    for (const DrawnObject& object : objects) {
        pictureNames.append(names.nameFor(dottedName(object.place)));
        if (!namesOfPlaces.contains(object.place))
            namesOfPlaces.insert(object.place, pictureNames.last());
    }
    const GraphDrawer drawer(*package);
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const DrawnObject& object = objects[i];
        if (!choice.place.isEmpty() && withoutScheme(choice.place) != withoutScheme(object.place))
            continue;
        Picture picture{object.place, pictureNames[static_cast<int>(i)], object.function != nullptr,
                        drawingOf(drawer, object)};
        picture.drawing.caption = withoutScheme(object.place);
        for (Box& box : picture.drawing.boxes) {
            const auto name = box.isOwnTarget
                                  ? namesOfPlaces.constFind(box.target.section('?', 0, 0))
                                  : namesOfPlaces.constEnd();
            if (name != namesOfPlaces.constEnd())
                box.link = *name + choice.ending;
        }
        if (!take(picture))
            return false;
    }
    if (found.leftOut == 0)
        return true;
    reason =
        QStringLiteral("it has %1 more graphs and functions than are drawn").arg(found.leftOut);
    return false;
}

} // namespace Ksx::Kit
