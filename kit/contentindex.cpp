#include "contentindex.h"

#include "data/content/package.h"
#include "ksx/core/contentwalk.h"
#include "ksx/core/datapath.h"

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Orv::Data::BaseObject;
using ContentList = Orv::Data::ContainerList<Doc::ContentObjectBase>;

} // namespace

ContentIndex::ContentIndex(const Doc::Package& package) : m_package(package)
{
    std::vector<std::pair<const BaseObject*, const ContentList*>> open{
        {&package, &package.content()}};
    while (!open.empty()) {
        const auto [owner, content] = open.back();
        open.pop_back();
        for (const Doc::ContentObjectBase& item : *content) {
            const auto* const named = dynamic_cast<const Doc::ContentInterface*>(&item);
            m_objects.try_emplace({owner, named->identifierAttribute().get()}, &item);
            if (const ContentList* inner = Core::contentOf(item))
                open.emplace_back(&item, inner);
        }
    }
}

const BaseObject* ContentIndex::objectOf(const Core::DataPath& path) const
{
    const BaseObject* object = &m_package;
    for (const std::string& segment : path.segments()) {
        const auto found = m_objects.find({object, segment});
        if (found == m_objects.end())
            return nullptr;
        object = found->second;
    }
    return object;
}

bool ContentIndex::leadsSomewhere(const Core::DataPath& path) const
{
    const bool isInside = path.parameter(Core::DataPathKey::Type).has_value();
    return objectOf(path) != nullptr && (!isInside || path.resolve(m_package) != nullptr);
}

} // namespace Ksx::Kit
