#include "data/desc/outputusage.h"

#include <gtest/gtest.h>

using Ksx::Data::Desc::OutputUsage;

namespace {

using Words = std::vector<std::string>;

// Before any test of this process adds a word.
const Words builtIn = OutputUsage::instance().usages();

} // namespace

TEST(OutputUsage, IsOneObject)
{
    EXPECT_EQ(&OutputUsage::instance(), &OutputUsage::instance());
}

TEST(OutputUsage, OffersTheBuiltInWordsInTheirOrder)
{
    EXPECT_EQ(builtIn, (Words{"diffuse",          "opacity",      "emissive",    "ambient",
                              "ambientOcclusion", "mask",         "normal",      "bump",
                              "height",           "displacement", "specular",    "specularLevel",
                              "specularColor",    "glossiness",   "roughness",   "anisotropyLevel",
                              "anisotropyAngle",  "transmissive", "reflection",  "refraction",
                              "environment",      "IOR",          "scattering0", "scattering1",
                              "scattering2",      "scattering3",  "$matte",      "$any",
                              "$userInput"}));
}

TEST(OutputUsage, OffersSixComponents)
{
    EXPECT_EQ(OutputUsage::instance().components(), (Words{"RGBA", "RGB", "R", "G", "B", "A"}));
}

TEST(OutputUsage, AppendsANewWord)
{
    Words expected = OutputUsage::instance().usages();
    expected.emplace_back("translucency");
    OutputUsage::instance().addEntry("translucency");
    EXPECT_EQ(OutputUsage::instance().usages(), expected);
}

TEST(OutputUsage, AppendsAWordThatIsThereAgain)
{
    const Words before = OutputUsage::instance().usages();
    OutputUsage::instance().addEntry("diffuse");
    EXPECT_EQ(OutputUsage::instance().usages().size(), before.size() + 1);
    EXPECT_EQ(OutputUsage::instance().usages().back(), "diffuse");
}

TEST(OutputUsage, TellsOfEachNewWordWhenItIsThere)
{
    Words told;
    bool isThere = false;
    QObject receiver;
    QObject::connect(&OutputUsage::instance(), &OutputUsage::entryAdded, &receiver,
                     [&](const std::string& usage) {
                         told.push_back(usage);
                         isThere = OutputUsage::instance().usages().back() == usage;
                     });
    OutputUsage::instance().addEntry("wetness");
    EXPECT_EQ(told, Words{"wetness"});
    EXPECT_TRUE(isThere);
}

TEST(OutputUsage, AnswersToItsOwnClassName)
{
    OutputUsage& usage = OutputUsage::instance();
    EXPECT_STREQ(usage.metaObject()->className(), "Ksx::Data::Desc::OutputUsage");
    EXPECT_EQ(usage.qt_metacast("Ksx::Data::Desc::OutputUsage"), &usage);
}

TEST(OutputUsage, AnswersToTheNameOfItsSingletonBase)
{
    OutputUsage& usage = OutputUsage::instance();
    EXPECT_EQ(usage.qt_metacast("Orv::Core::Singleton<OutputUsage>"),
              static_cast<Orv::Core::Singleton<OutputUsage>*>(&usage));
}

TEST(OutputUsage, AnswersToNoOtherName)
{
    EXPECT_EQ(OutputUsage::instance().qt_metacast("OutputUsage"), nullptr);
}
