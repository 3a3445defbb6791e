#include "command/commandtable.h"

#include "command/command.h"

namespace Ksx::Kit {

const std::vector<Command>& commands()
{
    static const std::vector<Command> all = {
        {"info", "PACKAGE|FOLDER|-...", "Lists what is in packages", &declareInfoOptions, &runInfo},
        {"check", "PACKAGE|FOLDER|-...", "Finds whatever is out of date or wrong in packages",
         &declareCheckOptions, &runCheck},
        {"schema", "", "Writes the format of packages as a schema", &declareSchemaOptions,
         &runSchema},
    };
    return all;
}

} // namespace Ksx::Kit
