// The words that say what an output is for.
#pragma once

#include "core/singleton.h"
#include <QObject>
#include <string>
#include <vector>

namespace Ksx::Data::Desc {

// The words that are offered; a package may use any other one, which is then added while the
// program runs. Used by the thread of the documents.
class OutputUsage final : public QObject, public Orv::Core::Singleton<OutputUsage>
{
    Q_OBJECT

public:
    // Old files name a usage by its index here.
    static constexpr const char* BuiltIn[] = {
        "diffuse",          "opacity",      "emissive",    "ambient",
        "ambientOcclusion", "mask",         "normal",      "bump",
        "height",           "displacement", "specular",    "specularLevel",
        "specularColor",    "glossiness",   "roughness",   "anisotropyLevel",
        "anisotropyAngle",  "transmissive", "reflection",  "refraction",
        "environment",      "IOR",          "scattering0", "scattering1",
        "scattering2",      "scattering3",  "$matte",      "$any",
        "$userInput",
    };

    // In the order in which they are offered: the built-in ones first. Those that begin with "$"
    // are markers for the consumers and no usages.
    const std::vector<std::string>& usages() const { return m_entries; }
    // Appends the word, also one that is there already, and emits entryAdded.
    void addEntry(const std::string& usage);

    // The groups of channels in which a usage may be taken.
    const std::vector<std::string>& components() const;

Q_SIGNALS:
    void entryAdded(std::string usage);

private:
    friend class Orv::Core::Singleton<OutputUsage>;
    OutputUsage();

    std::vector<std::string> m_entries;
};

} // namespace Ksx::Data::Desc
