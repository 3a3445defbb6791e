#include "updating/packageupdater3962.h"

#include "data/content/package.h"
#include "data/filename.h"
#include "ksx/core/filereferences.h"
#include <optional>
#include <string>
#include <string_view>

namespace Ksx::Core {

namespace {

using Orv::Core::MessageLevel;

std::optional<std::string> withPresentEnding(const std::string& value)
{
    constexpr std::string_view Before = ".kestrix";
    if (value.size() < Before.size() ||
        value.compare(value.size() - Before.size(), Before.size(), Before) != 0)
        return std::nullopt;
    return value.substr(0, value.size() - Before.size()) + ".obl";
}

std::optional<std::string> withPresentScheme(const std::string& value)
{
    constexpr std::string_view Before = "ksx://";
    if (value.compare(0, Before.size(), Before) != 0)
        return std::nullopt;
    return "obl://" + value.substr(Before.size());
}

} // namespace

// Before build 3962 package files had another ending, and the presets library another scheme.
//   <filename v="ksx://wood.kestrix"/>  becomes  <filename v="obl://wood.obl"/>
// Each of the two is a change of its own in the log; they are counted from 1.
bool PackageUpdater3962::update(Data::Content::Package& package, Orv::Core::MessageNode* log,
                                const Orv::Core::Extensions::ProgressFunction& /*progress*/) const
{
    int count = 0;
    for (TextAttribute* reference : fileReferencesOf(package))
        for (const auto rewrite : {&withPresentEnding, &withPresentScheme}) {
            const std::optional<std::string> value = rewrite(reference->get());
            if (!value)
                continue;
            addMessage(log, MessageLevel::Information,
                       QStringLiteral("%1] %2 -> %3")
                           .arg(QString::number(++count), Orv::fromBytes(reference->get()),
                                Orv::fromBytes(*value)));
            reference->assign(*value);
        }
    return true;
}

} // namespace Ksx::Core
