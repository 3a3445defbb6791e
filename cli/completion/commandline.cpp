#include "completion/commandline.h"

#include "core/programcommand.h"
#include "data/filename.h"
#include <boost/program_options/options_description.hpp>
#include <map>

namespace Completion {

namespace {

namespace po = boost::program_options;

const std::map<std::string, Values> KindsByName = {
    {"input", Values::Packages},
    {"inputs", Values::Packages},
    {"output-path", Values::Folders},
    {"presets-path", Values::Folders},
};

Values valuesOf(const po::option_description& option)
{
    if (option.semantic()->max_tokens() == 0)
        return Values::None;
    const auto found = KindsByName.find(option.long_name());
    return found == KindsByName.end() ? Values::Any : found->second;
}

// Returns the text up to its first full stop or line end, without quotes and characters that a shell
// would read as its own.
std::string firstSentence(const std::string& text)
{
    std::string sentence = text.substr(0, text.find('\n'));
    const std::size_t stop = sentence.find(". ");
    if (stop != std::string::npos)
        sentence.resize(stop);
    if (!sentence.empty() && sentence.back() == '.')
        sentence.pop_back();
    for (char& c : sentence)
        if (std::string("'\"`$\\[]:{}").find(c) != std::string::npos)
            c = ' ';
    return sentence;
}

} // namespace

Program programOf(const std::string& name,
                  const std::vector<std::unique_ptr<Orv::Core::ProgramCommand>>& commands)
{
    Program program{name, {}};
    for (const auto& pointer : commands) {
        const Orv::Core::ProgramCommand& command = *pointer;
        Command& one = program.commands.emplace_back();
        one.name = Orv::toBytes(command.name());
        for (const auto& option : command.options().options())
            one.options.push_back(
                {option->long_name(), firstSentence(option->description()), valuesOf(*option)});
    }
    return program;
}

} // namespace Completion
