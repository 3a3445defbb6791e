#include "content/uniqueidentifier.h"

#include "content/contentidentifiers.h"
#include "data/identifiersuite.h"
#include "ksx/core/contentwalk.h"
#include <QString>
#include <string_view>
#include <unordered_set>

namespace Ksx::Core {

namespace {

using Data::Content::ContentObjectBase;
using ContentList = Orv::Data::ContainerList<ContentObjectBase>;
using Orv::Data::BaseObject;

// The names in a content list that lead to other objects than `ignored`, which may be null. Those in
// a live document are kept beside it.
class Names
{
public:
    Names(const ContentList& content, const BaseObject* ignored)
    {
        const auto* index =
            ignored == nullptr ? IdentifierIndex<ContentObjectBase>::of(content) : nullptr;
        if (index != nullptr)
            m_names = &index->names();
        else
            collect(content, ignored);
    }
    Names(const Names&) = delete;
    Names& operator=(const Names&) = delete;

    const TakenNames* operator->() const { return m_names; }

private:
    void collect(const ContentList& content, const BaseObject* ignored)
    {
        std::unordered_set<std::string_view> known; // the first object of a name has it
        for (const ContentObjectBase& item : content)
            if (known.insert(identifierOf(item)).second && &item != ignored)
                m_own.add(identifierOf(item));
    }

    TakenNames m_own;
    const TakenNames* m_names = &m_own;
};

} // namespace

NumberedName::NumberedName(const std::string& text) : base(text)
{
    const std::size_t last = text.rfind('_');
    if (last == std::string::npos)
        return;
    bool isNumber = false;
    const int found = QString::fromLatin1(text.data() + last + 1).toInt(&isNumber);
    if (!isNumber)
        return;
    base.resize(last);
    number = found;
}

std::string uniqueIdentifier(const BaseObject& container, const std::string& wanted,
                             const BaseObject* ignored)
{
    if (wanted.empty())
        return wanted;
    std::string candidate = Orv::DefaultIdentifierPolicy::normalize(wanted);
    const ContentList* const content = contentOf(container);
    if (content == nullptr)
        return candidate.empty() ? "_1" : candidate;
    const Names names(*content, ignored);
    // An empty one leads to the container itself.
    if (!candidate.empty() && names->count(candidate) == 0)
        return candidate;
    const NumberedName name(candidate);
    return name.base + '_' + std::to_string(names->freeNumber(name.base, name.number));
}

} // namespace Ksx::Core
