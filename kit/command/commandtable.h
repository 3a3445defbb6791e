// The functions of the table of commands.
#pragma once

namespace boost::program_options {
class options_description;
} // namespace boost::program_options

namespace Ksx::Kit {

struct Request;

void declareBatchOptions(boost::program_options::options_description& options);
int runBatch(const Request& request);

void declareCheckOptions(boost::program_options::options_description& options);
int runCheck(const Request& request);

void declareDiffOptions(boost::program_options::options_description& options);
int runDiff(const Request& request);

void declareDrawOptions(boost::program_options::options_description& options);
int runDraw(const Request& request);

void declareInfoOptions(boost::program_options::options_description& options);
int runInfo(const Request& request);

void declareMergeOptions(boost::program_options::options_description& options);
int runMerge(const Request& request);

void declarePreviewOptions(boost::program_options::options_description& options);
int runPreview(const Request& request);

void declareSchemaOptions(boost::program_options::options_description& options);
int runSchema(const Request& request);

} // namespace Ksx::Kit
