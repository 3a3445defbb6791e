// Lists the objects of a package.
#pragma once

#include "ksx/kit/packagehead.h"
#include <QString>
#include <QStringList>
#include <cstddef>
#include <optional>
#include <vector>

namespace Ksx::Kit {

// The way in which a dependency names its file.
enum class DependencyWay
{
    Itself,
    // From the folder of the package on.
    Relative,
    Absolute,
    // By a name of the presets library.
    Presets,
};

// Returns the word for a way: "itself", "relative", "absolute" or "presets".
QString wordOf(DependencyWay way);

// A package that the package refers to.
struct Dependency
{
    NamedDependency named;
    DependencyWay way = DependencyWay::Itself;
    // The file that the name leads to, without a link in it if it exists.
    QString path;
    bool isFound = false;
};

// An input of a graph or a function.
struct Input
{
    QString identifier;
    unsigned uid = 0;
    QString label;
    // The group in which users see it.
    QString group;
    // A ValueType.
    unsigned type = 0;
    // The text of the value as a file has it. Empty without a default.
    QString defaultValue;
    QString widget;
    // The bounds of the widget as a file has them. Empty without a bound.
    QString minimum;
    QString maximum;
    bool isDisabled = false;
};

// The purpose of an output.
struct Usage
{
    QString name;
    // The letters of the channels, such as "RGBA".
    QString components;
};

// An output of a graph.
struct Output
{
    QString identifier;
    unsigned uid = 0;
    QString label;
    std::vector<Usage> usages;
    bool isDisabled = false;
};

// A picture or another file that the package uses.
struct Resource
{
    QString identifier;
    unsigned uid = 0;
    QString format;
    // The file, from the root on.
    QString path;
    bool isFound = false;
    // The size of that file in bytes. 0 if it is missing.
    qint64 size = 0;
    // The element that holds the bytes or names a copy, such as "binembedded". Empty without one.
    QString source;
};

// A graph that computes one value.
struct Function
{
    QString identifier;
    unsigned uid = 0;
    QString label;
    // A ValueType.
    unsigned type = 0;
    std::vector<Input> inputs;
};

struct Graph;
struct Group;

// The objects of a package, a group or a graph, each kind in the order of the file.
struct Content
{
    std::vector<Group> groups;
    std::vector<Graph> graphs;
    std::vector<Function> functions;
    std::vector<Resource> resources;
};

// A graph of images.
struct Graph
{
    QString identifier;
    unsigned uid = 0;
    QString label;
    QString description;
    std::vector<Input> inputs;
    std::vector<Output> outputs;
    std::size_t nodeCount = 0;
    std::size_t connectionCount = 0;
    Content content;
};

// A folder of objects.
struct Group
{
    QString identifier;
    unsigned uid = 0;
    Content content;
};

// All that users ask about one package.
struct Inventory
{
    PackageHead head;
    // The versions of the steps that an update would run, in their order.
    QStringList updates;
    std::vector<Dependency> dependencies;
    Content content;
    // The number of objects in the document, from the package down to each value.
    std::size_t objectCount = 0;
};

// Reads a package without its dependencies. An old one is brought to the current format in memory,
// and is described as it is then, but for its head. "obl://" names lead into the first of
// `presetsPaths`, and into the current folder if there is none.
//
// Returns none on failure, with a sentence in `reason`. Several threads may read at a time as tasks
// of one OrderedTasks.
std::optional<Inventory> takeInventory(const QString& file, const QStringList& presetsPaths,
                                       QString& reason);

// Returns the name of a ValueType: "color", "grayscale" or "image" for images, "float3" and the
// like for values, and the number for anything else.
QString nameOfType(unsigned type);

} // namespace Ksx::Kit
