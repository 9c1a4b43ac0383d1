// The bench's few statistics: medians of back-to-back pairs and the spread of a set of values.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace ZeKLBench {

// The middle value, or the mean of the two middle values of an even count; `values` must not
// be empty.
inline double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 != 0) {
        return *middle;
    }
    // The lower middle is the largest value below the upper one.
    return (*std::max_element(values.begin(), middle) + *middle) / 2;
}

// The smallest and largest of some values.
struct Range {
    double min = 1e300;
    double max = 0;
    void Add(double value) {
        min = std::min(min, value);
        max = std::max(max, value);
    }
    // How far the largest lies above the smallest, in percent.
    double Percent() const { return max > 0 ? (max / min - 1) * 100 : 0.0; }
};

}  // namespace ZeKLBench
