// The page of a package in a report.
#pragma once

#include "ksx/kit/drawing.h"
#include "ksx/kit/finding.h"
#include "ksx/kit/inventory.h"
#include <QByteArray>
#include <QStringList>
#include <functional>
#include <vector>

namespace Ksx::Kit {

// A graph or a function of a page. One of the first two is there.
struct PageObject
{
    const Graph* graph = nullptr;
    const Function* function = nullptr;
    // "group/graph".
    QString path;
    QString anchor;
    // Empty where the page has pictures enough.
    QByteArray picture;
    // The way of the layout, and the number of nodes and connections.
    QString pictureNote;
};

struct PageContent
{
    QString page;
    QString title;
    QString file;
    // Null for a package that cannot be read.
    const Inventory* inventory = nullptr;
    // For each dependency the page of its package, or an empty text.
    QStringList dependencyPages;
    std::vector<Finding> findings;
    std::vector<PageObject> objects;
    // With their paths in place of their identifiers.
    std::vector<Resource> resources;
    std::size_t leftOut = 0;
};

// Returns a page of HTML.
QByteArray pageText(const PageContent& content);

} // namespace Ksx::Kit
