// The sections of a run. Each measures its subject and writes its part of the report.
#pragma once

#include <string>

#include "bench/Report.h"

namespace kvo::bench {

void MeasureTextHelpers(Report& report);
void MeasureControls(Report& report);
void MeasurePages(Report& report);
void MeasurePreviews(Report& report);
void MeasureLanguage(Report& report);
void MeasurePicker(Report& report);
// `kvo` and `empty` are paths of programs.
void MeasureFolders(Report& report, const std::string& kvo);
void MeasureStart(Report& report, const std::string& kvo, const std::string& empty);

}  // namespace kvo::bench
