// Draws the graphs and functions of package files.
#pragma once

#include "ksx/kit/drawing.h"
#include <QString>
#include <QStringList>
#include <functional>

namespace Ksx::Kit {

// The picture of a graph or a function of a package.
struct Picture
{
    // The path of the graph: "pkg://group/graph".
    QString place;
    // A file name without an ending. No other picture of the package has it, in upper or lower case.
    QString name;
    bool isFunction = false;
    Drawing drawing;
};

// A choice of pictures.
struct PictureChoice
{
    // The path of the only graph or function, with or without "pkg://". Empty for all of them.
    QString place;
    // The ending of the files. Instances link to the picture of their graph, if it is of the package.
    QString ending = QStringLiteral(".svg");
};

// Opens a package without its dependencies, and hands on a picture of each graph and each function,
// in the order of the package. Groups and graphs come before the objects in them. "obl://" names
// lead into the first of `presetsPaths`.
//
// Stops when `take` returns false. Returns false then, and on failure, with a sentence in `reason`.
// Several threads may draw at a time as tasks of one OrderedTasks.
bool drawPackage(const QString& file, const QStringList& presetsPaths, const PictureChoice& choice,
                 const std::function<bool(const Picture&)>& take, QString& reason);

} // namespace Ksx::Kit
