#include "doctor/Finding.h"

#include <algorithm>

namespace ZOTDam::Client {

bool Findings::HasConsequence(std::string_view consequence) const {
    return std::ranges::find(list, consequence, &Finding::consequence) != list.end();
}

std::vector<Finding> Findings::InOrder() const {
    std::vector<Finding> sorted = list;
    std::ranges::stable_sort(sorted, {}, &Finding::number);
    return sorted;
}

}  // namespace ZOTDam::Client
