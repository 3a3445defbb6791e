// The command "schema": the format of packages for tools that work on XML.
#include "command/command.h"
#include "command/commandtable.h"
#include "command/jsonoutput.h"
#include "ksx/kit/format.h"
#include "ksx/kit/schema.h"
#include <iostream>

namespace Ksx::Kit {

namespace {

namespace po = boost::program_options;

constexpr const char* FormOption = "form";
constexpr const char* JsonOption = "json";

struct Form
{
    const char* name;
    QByteArray (*make)();
};

constexpr Form Forms[] = {{"relaxng", &relaxNgSchema}, {"xsd", &xmlSchema}};

} // namespace

void declareSchemaOptions(po::options_description& options)
{
    // clang-format off
    options.add_options()
        (FormOption, po::value<std::string>()->value_name("relaxng|xsd"),
         "The language of the schema: RELAX NG or XML Schema. Without it RELAX NG.")
        (JsonOption, po::bool_switch(),
         "Prints the format as JSON, which docs/ksx.schema.json describes.");
    // clang-format on
}

int runSchema(const Request& request)
{
    if (!request.operands.isEmpty())
        throw UsageError("The command takes no operand");
    if (request.has(JsonOption)) {
        JsonList structures("schema", "structures");
        for (const FormatStructure& structure : packageFormat())
            structures.add(toJson(structure));
        structures.finish({});
        return NothingFound;
    }
    const QString wanted =
        request.has(FormOption) ? request.text(FormOption) : QString::fromLatin1(Forms[0].name);
    for (const Form& form : Forms) {
        if (wanted != QLatin1String(form.name))
            continue;
        const QByteArray schema = form.make();
        std::cout.write(schema.constData(), schema.size());
        return NothingFound;
    }
    throw UsageError("The option '--form' takes relaxng or xsd");
}

} // namespace Ksx::Kit
