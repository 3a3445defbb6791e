// Finds what differs between two packages.
#pragma once

#include "compare/contentpairs.h"
#include "compare/objectcomparison.h"
#include "compare/translation.h"
#include "compare/whereabouts.h"
#include "ksx/kit/comparison.h"
#include <vector>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

// Compares two packages, which must outlive it and not change.
class PackageComparison
{
public:
    // File names are told relative to `folder`.
    PackageComparison(const Data::Content::Package& first, const Data::Content::Package& second,
                      const ComparisonOptions& options, const QDir& folder);
    PackageComparison(const PackageComparison&) = delete;
    PackageComparison& operator=(const PackageComparison&) = delete;

    const ContentPairs& content() const { return m_content; }

    // Returns the differences. To be called once.
    std::vector<Difference> run();

private:
    void addContent(ChangeKind kind, const Orv::Data::BaseObject& object);
    bool isSameOwner(const Orv::Data::BaseObject* first, const Orv::Data::BaseObject* second) const;
    void compareContent(const Orv::Data::BaseObject& first, const Orv::Data::BaseObject& second);

    const Data::Content::Package& m_first;
    const Data::Content::Package& m_second;
    const ContentPairs m_content;
    Translation m_translation; // of the second package
    std::vector<Difference> m_differences;
    Whereabouts m_walk; // in the second package
    ObjectComparison m_objects;
};

} // namespace Ksx::Kit
