#include "compare/contentpairs.h"

#include "compare/translation.h"
#include "contentplace.h"
#include "data/content/package.h"
#include "ksx/core/contentwalk.h"
#include "packageparts.h"

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Orv::Data::BaseObject;

Items contentOf(const Doc::Package& package)
{
    Items items;
    Core::visitContent(package, [&](const Doc::ContentObjectBase& object) { //
        items.push_back(&object);
    });
    return items;
}

} // namespace

std::string pathOf(const BaseObject& object)
{
    std::vector<const std::string*> names{nameOf(object)};
    for (const BaseObject* owner = contentOwnerOf(object); owner != nullptr;
         owner = contentOwnerOf(*owner))
        names.push_back(nameOf(*owner));
    std::string path;
    for (auto name = names.rbegin(); name != names.rend(); ++name)
        path += (path.empty() ? "" : "/") + **name;
    return path;
}

ContentPairs::ContentPairs(const Doc::Package& first, const Doc::Package& second)
    : m_firstPackage(first), m_secondPackage(second), m_first(contentOf(first)),
      m_second(contentOf(second)), m_alignment(align(m_first, m_second, Translation()))
{
    for (std::size_t i = 0; i < m_second.size(); ++i) {
        const std::size_t partner = m_alignment.inFirst[i];
        if (partner == Alignment::None)
            continue;
        m_partners.emplace(m_second[i], m_first[partner]);
        m_partners.emplace(m_first[partner], m_second[i]);
    }
}

const BaseObject* ContentPairs::partnerOf(const BaseObject* object) const
{
    const auto found = m_partners.find(object);
    return found == m_partners.end() ? nullptr : found->second;
}

void ContentPairs::addTo(Translation& translation) const
{
    const Items first = itemsOf(m_firstPackage.dependencies());
    const Items second = itemsOf(m_secondPackage.dependencies());
    const Alignment dependencies = align(first, second, translation);
    for (std::size_t i = 0; i < second.size(); ++i) {
        const auto& own = static_cast<const Doc::Dependency&>(*second[i]);
        const std::size_t partner = dependencies.inFirst[i];
        if (own.filename().get() == ItselfName)
            translation.setOwn(own.uid().get());
        if (partner != Alignment::None)
            translation.setDependency(
                own.uid().get(), static_cast<const Doc::Dependency&>(*first[partner]).uid().get());
    }
    for (std::size_t i = 0; i < m_second.size(); ++i) {
        const std::size_t partner = m_alignment.inFirst[i];
        if (partner == Alignment::None)
            continue;
        const std::string from = pathOf(*m_second[i]);
        const std::string to = pathOf(*m_first[partner]);
        if (from != to)
            translation.setPath(from, to);
    }
}

} // namespace Ksx::Kit
