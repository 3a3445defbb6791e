#include "completion/commandline.h"

#include <boost/program_options/options_description.hpp>
#include <iostream>
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

std::vector<Option> optionsOf(const po::options_description& description)
{
    std::vector<Option> options;
    for (const auto& option : description.options())
        options.push_back(
            {option->long_name(), firstSentence(option->description()), valuesOf(*option)});
    return options;
}

int printScript(int argc, const char* const* argv, const Program& program)
{
    const std::map<std::string, std::string (*)(const Program&)> scripts = {
        {"bash", &bashScript}, {"zsh", &zshScript}, {"fish", &fishScript}};
    const auto script = scripts.find(argc == 2 ? argv[1] : "");
    if (script == scripts.end()) {
        std::cerr << "usage: " << program.name << "-completion bash|zsh|fish\n";
        return 2;
    }
    std::cout << script->second(program);
    return 0;
}

} // namespace Completion
