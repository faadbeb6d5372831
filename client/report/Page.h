#pragma once

#include <string>

#include "doctor/Doctor.h"
#include "report/Overview.h"

namespace ZOTDam::Client {

// The content of a report on this machine.
struct ReportContent {
    Overview overview;
    std::string problem;  // why the overview is empty; otherwise empty
    Diagnosis diagnosis;
};

// Returns a self-contained HTML page.
std::string PageOf(const ReportContent& content);

}  // namespace ZOTDam::Client
