#include "command/commandtable.h"

#include "command/command.h"

namespace Ksx::Kit {

const std::vector<Command>& commands()
{
    static const std::vector<Command> all = {
        {"info", "PACKAGE|FOLDER|-...", "Lists what is in packages", &declareInfoOptions, &runInfo},
        {"check", "PACKAGE|FOLDER|-...", "Finds whatever is out of date or wrong in packages",
         &declareCheckOptions, &runCheck},
        {"preview", "PACKAGE|FOLDER|-...", "Tells what an update of packages would do",
         &declarePreviewOptions, &runPreview},
        {"diff", "FIRST SECOND", "Tells what differs between two packages or two folders",
         &declareDiffOptions, &runDiff},
        {"merge", "BASE OURS THEIRS", "Joins the changes that two sides made to a package",
         &declareMergeOptions, &runMerge},
        {"draw", "PACKAGE|FOLDER|-...", "Draws graphs, as pictures or as pages for a browser",
         &declareDrawOptions, &runDraw},
        {"batch", "plan update FOLDER... | run|resume|status|report|verify|commands|submit PLAN",
         "Updates whole libraries, on one machine or many", &declareBatchOptions, &runBatch},
        {"schema", "", "Writes the format of packages as a schema", &declareSchemaOptions,
         &runSchema},
    };
    return all;
}

} // namespace Ksx::Kit
