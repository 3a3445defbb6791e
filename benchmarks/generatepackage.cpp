// Writes a package of any size, in the current format and in canonical form, as benchmark input.
#include "packagegenerator.h"
#include "xmlfile.h"

#include <charconv>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace {

constexpr const char* Usage = "Usage: generatepackage GRAPHS OUTPUT [--seed N] [--nodes N] "
                              "[--dependency FILE]...";
constexpr unsigned FewestNodes = 3; // the bridges

struct Arguments
{
    Benchmark::GeneratorSettings settings;
    std::string output;
};

unsigned number(const std::string& text)
{
    unsigned value = 0;
    const char* end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end)
        throw std::invalid_argument("not a number: " + text);
    return value;
}

Arguments parse(const std::vector<std::string>& words)
{
    Arguments arguments;
    std::vector<std::string> positional;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i].rfind("--", 0) != 0) {
            positional.push_back(words[i]);
            continue;
        }
        const std::string& option = words[i];
        if (++i == words.size())
            throw std::invalid_argument(option + " needs a value");
        if (option == "--seed")
            arguments.settings.seed = number(words[i]);
        else if (option == "--nodes")
            arguments.settings.nodesPerGraph = number(words[i]);
        else if (option == "--dependency")
            arguments.settings.dependencies.push_back(words[i]);
        else
            throw std::invalid_argument("unknown option " + option);
    }
    if (positional.size() != 2)
        throw std::invalid_argument(Usage);
    if (arguments.settings.nodesPerGraph < FewestNodes)
        throw std::invalid_argument("a graph needs 3 nodes at least");
    arguments.settings.graphs = number(positional[0]);
    arguments.output = positional[1];
    return arguments;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const Arguments arguments = parse({argv + 1, argv + argc});
        Benchmark::XmlFile xml(arguments.output);
        Benchmark::PackageGenerator(xml, arguments.settings).write();
        xml.finish();
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "Error! " << error.what() << '\n';
        return 1;
    }
}
