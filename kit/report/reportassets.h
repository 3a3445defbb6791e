// The style and the script of reports, which lie in kit/report/assets.
#pragma once

namespace Ksx::Kit {

extern const char* const ReportStyle;
extern const char* const ReportScript;

} // namespace Ksx::Kit
