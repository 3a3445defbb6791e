#include "ksx/kit/report.h"

#include "core/fileplace.h"
#include "data/content/package.h"
#include "drawnobjects.h"
#include "findinglist.h"
#include "ksx/core/datapath.h"
#include "openedpackage.h"
#include "packageparts.h"
#include "report/filenames.h"
#include "report/packagepage.h"
#include "report/pageparts.h"
#include <QSet>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <unordered_map>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;

constexpr std::size_t MaximumPageBoxes = 50000; // a browser shows no more in a useful time
constexpr std::size_t MaximumObjects = 2000;
constexpr std::size_t MaximumResources = 1000;
constexpr int MaximumText = 200; // characters of what the index has
const QString PathPrefix = QStringLiteral("pkg://");
const QString PageFolder = QStringLiteral("packages/");

QString withoutPrefix(const QString& place)
{
    return place.startsWith(PathPrefix) ? place.mid(PathPrefix.size()) : place;
}

// Returns the name of a file without its folder.
QString bareName(const QString& file)
{
    return file.mid(file.lastIndexOf(QChar('/')) + 1);
}

QString withoutEnding(const QString& name)
{
    const auto end = name.lastIndexOf(QChar('.'));
    return end > 0 ? name.left(end) : name;
}

// Collects the parts of a page out of an open package.
class PageMaker
{
public:
    PageMaker(OpenedPackage& package, const QStringList& presetsPaths,
              const std::function<QString(const QString&)>& pageOfFile, ReportEntry& entry)
        : m_package(package), m_inventory(inventoryOf(package)), m_pageOfFile(pageOfFile),
          m_entry(entry)
    {
        m_content.inventory = &m_inventory;
        m_content.findings = findingsOf(package, presetsPaths);
        addDependencies();
        addPictures();
        addContent(m_inventory.content, QString());
        m_entry.isReadable = true;
        m_entry.description = m_inventory.head.description.left(MaximumText);
        if (!m_inventory.head.identifier.isEmpty())
            m_entry.title = m_inventory.head.identifier.left(MaximumText);
    }

    const PageContent& content() const { return m_content; }

private:
    void addDependencies()
    {
        int number = 0;
        for (const Doc::Dependency& one : m_package.document->dependencies()) {
            if (static_cast<std::size_t>(number) == m_inventory.dependencies.size())
                break;
            const Dependency& dependency =
                m_inventory.dependencies[static_cast<std::size_t>(number)];
            const bool isOther = dependency.way != DependencyWay::Itself && dependency.isFound;
            const QString page = isOther ? m_pageOfFile(dependency.path) : QString();
            m_content.dependencyPages.append(page);
            m_pagesOfUids.emplace(one.uid().get(), page);
            ++number;
            if (dependency.way != DependencyWay::Itself)
                ++m_entry.dependencies;
            if (!page.isEmpty() && page != m_entry.page)
                m_entry.uses.append(page);
        }
        m_entry.uses.removeDuplicates();
    }

    // Returns the address of the graph of an instance. Returns an empty text for one of a package
    // that is not in the report.
    QString addressOf(const Box& box) const
    {
        if (box.target.isEmpty())
            return {};
        const QString anchor = QChar('#') + anchorOf(box.target);
        if (box.isOwnTarget)
            return m_anchors.contains(anchor) ? anchor : QString();
        const std::string path = box.target.toLatin1().toStdString();
        const auto uid = Core::DataPath::dependencyOf(path);
        const auto page = uid ? m_pagesOfUids.find(*uid) : m_pagesOfUids.end();
        const bool hasPage = page != m_pagesOfUids.end() && !page->second.isEmpty();
        return hasPage ? page->second + anchor : QString();
    }

    void addPictures()
    {
        const DrawnObjects found = drawnObjectsOf(*m_package.document);
        const GraphDrawer drawer(*m_package.document);
        m_content.leftOut = found.leftOut;
        for (const DrawnObject& object : found.objects)
            m_anchors.insert(QChar('#') + anchorOf(object.place));
        std::size_t boxes = 0;
        for (const DrawnObject& object : found.objects) {
            PageObject& one = m_pictures[{object.place, object.function != nullptr}].emplace_back();
            one.path = withoutPrefix(object.place);
            if (boxes >= MaximumPageBoxes)
                continue;
            Drawing drawing = drawingOf(drawer, object);
            boxes += drawing.boxes.size();
            for (Box& box : drawing.boxes)
                box.link = addressOf(box);
            one.picture = svgOf(drawing, SvgForm::Part);
            one.pictureNote = QStringLiteral("%1, %2; layout: %3")
                                  .arg(counted(drawing.boxes.size(), "node", "nodes"),
                                       counted(drawing.wires.size(), "connection", "connections"),
                                       wordOf(drawing.way));
        }
    }

    // Adds the picture of the next object at a place, of those that share it.
    void addObject(const QString& place, const Graph* graph, const Function* function)
    {
        const auto found = m_pictures.find({place, function != nullptr});
        if (found == m_pictures.end() || found->second.empty())
            return;
        PageObject object = std::move(found->second.front());
        found->second.pop_front();
        object.graph = graph;
        object.function = function;
        object.anchor = anchorOf(place);
        const int uses = m_anchorUses[object.anchor]++;
        if (uses > 0)
            object.anchor += QStringLiteral(".%1").arg(uses + 1);
        m_content.objects.push_back(std::move(object));
    }

    void addContent(const Content& content, const QString& outer)
    {
        for (const Graph& graph : content.graphs) {
            const QString place = placeIn(outer, graph.identifier);
            addObject(place, &graph, nullptr);
            ++m_entry.graphs;
            m_entry.inputs += graph.inputs.size();
            addSearch("graph", place, place, graph.label);
            addInputs(graph.inputs, place);
            for (const Output& output : graph.outputs)
                addSearch("output", place, placeIn(place, output.identifier), output.label);
            addContent(graph.content, place);
        }
        for (const Function& function : content.functions) {
            const QString place = placeIn(outer, function.identifier);
            addObject(place, nullptr, &function);
            ++m_entry.functions;
            addSearch("function", place, place, function.label);
            addInputs(function.inputs, place);
        }
        for (const Resource& resource : content.resources)
            addResource(resource, placeIn(outer, resource.identifier));
        for (const Group& group : content.groups)
            addContent(group.content, placeIn(outer, group.identifier));
    }

    void addInputs(const std::vector<Input>& inputs, const QString& place)
    {
        for (const Input& input : inputs)
            addSearch("input", place, placeIn(place, input.identifier), input.label);
    }

    void addResource(const Resource& resource, const QString& place)
    {
        if (m_content.resources.size() == MaximumResources)
            return;
        m_content.resources.push_back(resource);
        m_content.resources.back().identifier = withoutPrefix(place);
        addSearch("resource", place, place, bareName(resource.path));
        if (!m_entry.objects.empty() && m_entry.objects.back().kind == QLatin1String("resource"))
            m_entry.objects.back().anchor = QStringLiteral("resources");
    }

    // `owner` is the place of the graph or function whose section has the object.
    void addSearch(const char* kind, const QString& owner, const QString& place,
                   const QString& label)
    {
        if (m_entry.objects.size() < MaximumObjects)
            m_entry.objects.push_back({QLatin1String(kind), withoutPrefix(place),
                                       label.left(MaximumText), anchorOf(owner)});
    }

    OpenedPackage& m_package;
    const Inventory m_inventory;
    const std::function<QString(const QString&)>& m_pageOfFile;
    ReportEntry& m_entry;
    PageContent m_content;
    std::unordered_map<unsigned, QString> m_pagesOfUids; // of dependencies
    QSet<QString> m_anchors;
    QHash<QString, int> m_anchorUses;
    // By place, and whether it is a function. Objects may share a name.
    std::map<std::pair<QString, bool>, std::deque<PageObject>> m_pictures;
};

void count(const std::vector<Finding>& findings, ReportEntry& entry)
{
    for (const Finding& finding : findings)
        ++(finding.kind().severity == Severity::Error ? entry.errors : entry.warnings);
}

} // namespace

LibraryReport::LibraryReport(const QStringList& files, QStringList presetsPaths)
    : m_presetsPaths(std::move(presetsPaths))
{
    UniqueFileNames names;
    for (const QString& file : files) {
        const QString page = names.nameFor(withoutEnding(bareName(file))) + QStringLiteral(".html");
        m_pages.insert(file, page);
        const QString canonical = Orv::Core::canonicalPath(file);
        if (!canonical.isEmpty() && !m_canonicalPages.contains(canonical))
            m_canonicalPages.insert(canonical, page);
    }
}

ReportPage LibraryReport::pageOf(const QString& file) const
{
    const QString canonical = Orv::Core::canonicalPath(file);
    const QString place = canonical.isEmpty() ? file : canonical;
    ReportPage page;
    page.entry.file = file;
    page.entry.page = m_pages.value(file);
    page.entry.title = bareName(file);
    page.file.name = PageFolder + page.entry.page;
    PageContent content;
    std::optional<PageMaker> maker;
    OpenedPackage package;
    const std::function<QString(const QString&)> pageOfFile = [this](const QString& path) {
        return m_canonicalPages.value(path);
    };
    if (const auto head = readHead(place, page.failure)) {
        package = openForReading(place, *head, m_presetsPaths);
        page.failure = package.reason;
        if (package.document != nullptr)
            content = maker.emplace(package, m_presetsPaths, pageOfFile, page.entry).content();
        else
            content.findings = findingsOf(package, m_presetsPaths);
    } else {
        content.findings = {{FindingCode::UnreadablePackage, QString(), 0, 0,
                             QStringLiteral("The package cannot be opened: ") + page.failure}};
    }
    count(content.findings, page.entry);
    content.page = page.entry.page;
    content.title = page.entry.title;
    content.file = file;
    page.file.text = pageText(content);
    return page;
}

} // namespace Ksx::Kit
