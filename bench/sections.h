// The parts of a run. Each times its subject and writes its chapter.
#pragma once

#include <string>

#include "bench/Report.h"

namespace kvo::bench {

void MeasureTextHelpers(Report& report);
void MeasureControls(Report& report);
// The speed of each size of page also goes to `plotData`: lines of bytes, MB/s of saving, of the
// bare search, and of the fastest tokenizer.
void MeasurePages(Report& report, const std::string& plotData);
void MeasurePicker(Report& report);
// `kvo` and `empty` are programs' paths.
void MeasureStart(Report& report, const std::string& kvo, const std::string& empty);

}  // namespace kvo::bench
