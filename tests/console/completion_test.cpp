// The facts that scripts for shells are made of.
#include "completion/commandline.h"
#include <boost/program_options.hpp>
#include <gtest/gtest.h>

namespace {

namespace po = boost::program_options;
using Completion::Option;
using Completion::optionsOf;
using Completion::Values;

Option onlyOption(const char* name, const po::value_semantic* value, const char* text)
{
    po::options_description description;
    description.add_options()(name, value, text);
    return optionsOf(description).front();
}

} // namespace

TEST(CompletionOptions, ASwitchTakesNoValue)
{
    EXPECT_EQ(onlyOption("brief", po::bool_switch(), "").values, Values::None);
}

TEST(CompletionOptions, AnOptionOfFoldersTakesFolders)
{
    EXPECT_EQ(onlyOption("presets-path", po::value<std::string>(), "").values, Values::Folders);
}

TEST(CompletionOptions, AnotherOptionTakesAnyValue)
{
    EXPECT_EQ(onlyOption("jobs", po::value<unsigned>(), "").values, Values::Any);
}

TEST(CompletionOptions, AreTheFirstSentenceOfTheirDescription)
{
    EXPECT_EQ(onlyOption("brief", po::bool_switch(), "Reads the head. No more.").text,
              "Reads the head");
}

TEST(CompletionOptions, HoldNoCharacterThatAShellWouldRead)
{
    EXPECT_EQ(onlyOption("brief", po::bool_switch(), "It's [a] $head").text, "It s  a   head");
}
