#include "ksx/core/dependenciesdictionary.h"

#include "data/changeevent.h"
#include "data/content/package.h"
#include <algorithm>

namespace Ksx::Core {

using Data::Content::Package;

const DependenciesDictionary::OfPackage* DependenciesDictionary::find(const Package& package) const
{
    const auto place = std::find_if(m_packages.begin(), m_packages.end(),
                                    [&](const OfPackage& one) { return one.package == &package; });
    return place == m_packages.end() ? nullptr : &*place;
}

void DependenciesDictionary::addUse(const Package& package, Uid dependency,
                                    const Orv::Data::BaseObject& user)
{
    auto* ofPackage = const_cast<OfPackage*>(find(package));
    if (ofPackage == nullptr) {
        m_packages.push_back({Orv::Data::DataPointerBox<Package>(&package), {}});
        ofPackage = &m_packages.back();
    }
    std::list<UserBox>& users = ofPackage->uses[dependency];
    if (std::none_of(users.begin(), users.end(), [&](const UserBox& one) { return one == &user; }))
        users.emplace_back(&user);
}

bool DependenciesDictionary::removeUse(const Package& package, Uid dependency,
                                       const Orv::Data::BaseObject& user)
{
    auto* ofPackage = const_cast<OfPackage*>(find(package));
    if (ofPackage == nullptr)
        return false;
    const auto users = ofPackage->uses.find(dependency);
    if (users == ofPackage->uses.end())
        return false;
    const auto place = std::find_if(users->second.begin(), users->second.end(),
                                    [&](const UserBox& one) { return one == &user; });
    if (place == users->second.end())
        return false;
    users->second.erase(place);
    if (users->second.empty())
        ofPackage->uses.erase(users);
    return true;
}

std::vector<Uid> DependenciesDictionary::dependenciesOf(const Package& package) const
{
    std::vector<Uid> dependencies;
    if (const OfPackage* ofPackage = find(package))
        for (const auto& [dependency, users] : ofPackage->uses)
            if (isUsed(package, dependency))
                dependencies.push_back(dependency);
    return dependencies;
}

std::vector<DependenciesDictionary::UserBox> DependenciesDictionary::usersOf(const Package& package,
                                                                             Uid dependency) const
{
    std::vector<UserBox> live;
    const OfPackage* ofPackage = find(package);
    const auto users =
        ofPackage == nullptr ? decltype(ofPackage->uses.end())() : ofPackage->uses.find(dependency);
    if (ofPackage == nullptr || users == ofPackage->uses.end())
        return live;
    std::copy_if(users->second.begin(), users->second.end(), std::back_inserter(live),
                 [](const UserBox& user) { return static_cast<bool>(user); });
    return live;
}

bool DependenciesDictionary::isUsed(const Package& package, Uid dependency) const
{
    return !usersOf(package, dependency).empty();
}

void DependenciesDictionary::removeDead()
{
    m_packages.remove_if([](const OfPackage& one) { return !one.package; });
    for (OfPackage& one : m_packages) {
        for (auto use = one.uses.begin(); use != one.uses.end();) {
            use->second.remove_if([](const UserBox& user) { return !user; });
            use = use->second.empty() ? one.uses.erase(use) : std::next(use);
        }
    }
}

const Orv::Data::ListenerFilter& DependenciesDictionaryUpdater::getFilter() const
{
    using Orv::Data::ChangeType;
    static constexpr Orv::Data::ListenerFilter filter{ChangeType::Erased,
                                                      Orv::Data::MessageMask::All, 0};
    return filter;
}

void DependenciesDictionaryUpdater::deliver(const Orv::Data::DataMessage&)
{
    m_dictionary.removeDead();
}

} // namespace Ksx::Core
