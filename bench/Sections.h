// The parts of a run. Each times its subject and writes its chapter.
#pragma once

#include <string>

#include "bench/Report.h"

namespace kvo::bench {

void MeasureTextHelpers(Report& report);
void MeasureControls(Report& report);
void MeasurePages(Report& report);
void MeasurePicker(Report& report);
// `kvo` and `empty` are programs' paths.
void MeasureStart(Report& report, const std::string& kvo, const std::string& empty);

}  // namespace kvo::bench
