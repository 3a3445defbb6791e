// Folders of packages and their plans.
#pragma once

#include "data/filename.h"
#include "ksx/kit/updateplanner.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include <string>
#include <vector>

namespace TestSupport {

// A library in the folder "lib" whose results go to the folder "out" beside it.
class Library
{
public:
    // Adds a package that depends on others, by the names in its file.
    Library& with(const std::string& name, const std::vector<std::string>& needs = {})
    {
        PackageText package = aPackage();
        unsigned uid = 10;
        for (const std::string& need : needs)
            package.dependingOn(need, uid++);
        directory.write("lib/" + name, package.text());
        return *this;
    }

    Ksx::Kit::BatchOptions options() const
    {
        Ksx::Kit::BatchOptions options;
        options.folders = QStringList(path("lib"));
        options.target = path("out");
        options.presetsPath = path("lib/presets");
        options.shared = QStringList(path("lib/presets"));
        return options;
    }

    Ksx::Kit::BatchPlan plan(unsigned shards = 1) const { return plan(options(), shards); }

    static Ksx::Kit::BatchPlan plan(const Ksx::Kit::BatchOptions& options, unsigned shards = 1)
    {
        Ksx::Kit::UpdatePlanner planner(options);
        for (QStringList files = planner.next(); !files.isEmpty(); files = planner.next())
            for (const QString& file : files) {
                QString reason;
                if (const auto package = Ksx::Kit::scoutPackage(file, options.presetsPath, reason))
                    planner.add(file, *package);
                else
                    planner.addFailure({file, reason});
            }
        return planner.finish(shards);
    }

    QString path(const std::string& name) const { return Orv::fromBytes(directory.path(name)); }

    TemporaryDirectory directory;
};

// "a.obl 1, b.obl 1, c.obl 2": the packages with the numbers of their components.
inline std::string componentsOf(const Ksx::Kit::BatchPlan& plan)
{
    std::string text;
    for (const Ksx::Kit::BatchPackage& package : plan.packages)
        text += (text.empty() ? "" : ", ") + Orv::toBytes(package.input) + ' ' +
                std::to_string(package.component);
    return text;
}

// The same with the numbers of their shards.
inline std::string shardsOf(const Ksx::Kit::BatchPlan& plan)
{
    std::string text;
    for (const Ksx::Kit::BatchPackage& package : plan.packages)
        text += (text.empty() ? "" : ", ") + Orv::toBytes(package.input) + ' ' +
                std::to_string(package.shard);
    return text;
}

} // namespace TestSupport
