#include "data/desc/outputusage.h"

namespace Ksx::Data::Desc {

OutputUsage::OutputUsage()
    : m_entries{
          "diffuse",          "opacity",      "emissive",    "ambient",
          "ambientOcclusion", "mask",         "normal",      "bump",
          "height",           "displacement", "specular",    "specularLevel",
          "specularColor",    "glossiness",   "roughness",   "anisotropyLevel",
          "anisotropyAngle",  "transmissive", "reflection",  "refraction",
          "environment",      "IOR",          "scattering0", "scattering1",
          "scattering2",      "scattering3",  "$matte",      "$any",
          "$userInput",
      }
{}

void OutputUsage::addEntry(const std::string& usage)
{
    m_entries.push_back(usage);
    Q_EMIT entryAdded(usage);
}

const std::vector<std::string>& OutputUsage::components() const
{
    static const std::vector<std::string> words{"RGBA", "RGB", "R", "G", "B", "A"};
    return words;
}

} // namespace Ksx::Data::Desc
