#include "reading/oblasmgraphplaces.h"

#include "content/uniqueidentifier.h"
#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/latin1.h"
#include "ksx/core/uidsource.h"
#include <QCoreApplication>
#include <QStringList>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using ContentList = Orv::Data::ContainerList<ContentObjectBase>;

QStringList segmentsOf(const QString& pkgUrl)
{
    QString path = pkgUrl;
    if (path.startsWith(QLatin1String("pkg://")))
        path.remove(0, 6);
    path = path.section('?', 0, 0);
    QStringList segments = path.split('/');
    segments.removeAll(QString());
    return segments;
}

// The numbers that are not known to be used.
class FreeNumbers
{
public:
    // The first one from there on.
    long long from(long long number);
    void use(long long number) { m_next[number] = number + 1; }

private:
    std::unordered_map<long long, long long> m_next; // of those that are used, a number behind
};

long long FreeNumbers::from(long long number)
{
    long long free = number;
    for (auto next = m_next.find(free); next != m_next.end(); next = m_next.find(free))
        free = next->second;
    while (number != free) // the next search leaps
        number = std::exchange(m_next[number], free);
    return free;
}

} // namespace

// The content of the package or of one of its groups.
class OBLASMGraphPlaces::Level
{
public:
    explicit Level(ContentList& content);

    // The group that the URLs name so. Its identifier may differ, if it was taken.
    Level& group(const std::string& wanted);
    template <class Item>
    Item& add(const std::string& wanted, std::unique_ptr<Item> item);

private:
    std::string freeIdentifier(const std::string& wanted);

    ContentList& m_content;
    std::unordered_set<std::string> m_identifiers;
    std::unordered_set<Uid> m_uids;
    // By identifier, and by the name that was wanted.
    std::unordered_map<std::string, std::shared_ptr<Level>> m_groups;
    std::unordered_map<std::string, FreeNumbers> m_numbers; // by the base of the names
};

OBLASMGraphPlaces::Level::Level(ContentList& content) : m_content(content)
{
    for (std::size_t i = 0; i < content.size(); ++i) {
        ContentObjectBase& item = content.at(i);
        const auto* named = dynamic_cast<const ContentInterface*>(&item);
        m_identifiers.insert(named->identifierAttribute().get());
        m_uids.insert(named->uidAttribute().get());
        if (auto* group = dynamic_cast<Group*>(&item))
            m_groups.emplace(group->identifier().get(), std::make_shared<Level>(group->content()));
    }
}

// The wanted identifier, or the first one that is free behind it.
std::string OBLASMGraphPlaces::Level::freeIdentifier(const std::string& wanted)
{
    if (m_identifiers.insert(wanted).second)
        return wanted;
    NumberedName name(wanted);
    FreeNumbers& numbers = m_numbers[name.base];
    for (;;) {
        name.number = numbers.from(name.number);
        numbers.use(name.number); // no identifier becomes free again
        std::string identifier = name.next();
        if (m_identifiers.insert(identifier).second)
            return identifier;
    }
}

template <class Item>
Item& OBLASMGraphPlaces::Level::add(const std::string& wanted, std::unique_ptr<Item> item)
{
    Item& added = *item;
    added.identifier().assign(freeIdentifier(wanted));
    const auto isTaken = [this](Uid uid) { return m_uids.count(uid) != 0; };
    added.uid().assign(UidSource::shared().next(isTaken));
    m_uids.insert(added.uid().get());
    m_content.pushBack(std::move(item));
    return added;
}

OBLASMGraphPlaces::Level& OBLASMGraphPlaces::Level::group(const std::string& wanted)
{
    std::shared_ptr<Level>& level = m_groups[wanted];
    if (level == nullptr) {
        Group& made = add(wanted, std::make_unique<Group>());
        level = std::make_shared<Level>(made.content());
        m_groups.emplace(made.identifier().get(), level);
    }
    return *level;
}

OBLASMGraphPlaces::OBLASMGraphPlaces(Package& package)
    : m_top(std::make_unique<Level>(package.content()))
{}

OBLASMGraphPlaces::~OBLASMGraphPlaces() = default;

bool OBLASMGraphPlaces::add(const QString& pkgUrl, std::unique_ptr<Graph> graph)
{
    QStringList segments = segmentsOf(pkgUrl);
    const QString identifier = segments.isEmpty()
                                   ? QCoreApplication::translate("Ksx::Data::Desc::Packages",
                                                                 "DEFAULT_NEW_GRAPH_IDENTIFIER")
                                   : segments.takeLast();
    if (segments.size() > MaximumDepth)
        return false;
    Level* level = m_top.get();
    for (const QString& segment : segments)
        level = &level->group(Orv::toLatin1(segment));
    level->add(Orv::toLatin1(identifier), std::move(graph));
    return true;
}

} // namespace Ksx::Core
