#include "benches/Harness/Comparison.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <utility>

namespace fcp::bench {

namespace {

[[gnu::format(printf, 1, 2)]] std::string formatted(char const* format, ...) {
    char text[400];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

} // namespace

double median(std::vector<double> values) {
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 == 1)
        return *middle;
    return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

Beside::Beside(std::string measure, std::string unitOfFigures, int decimalsOfFigures, std::string nameOfFloor)
    : what(std::move(measure))
    , unit(std::move(unitOfFigures))
    , decimals(decimalsOfFigures)
    , floorName(std::move(nameOfFloor)) {}

void Beside::add(double oursMeasured, double floorMeasured) {
    ours.push_back(oursMeasured);
    floor.push_back(floorMeasured);
}

std::string Beside::text() const {
    return formatted("%s %.*f%s, %s %.*f%s", what.c_str(), decimals, median(ours), unit.c_str(),
                     floorName.c_str(), decimals, median(floor), unit.c_str());
}

Comparison::Comparison(std::string const& what, std::string unit, int decimals, Bound limit)
    : figures(what + ": ours", std::move(unit), decimals)
    , bound(limit) {}

void Comparison::add(double ours, double floor) {
    figures.add(ours, floor);
    ratios.push_back(ours / floor);
}

void Comparison::addRemark(std::string const& text) {
    remarks += "; " + text;
}

std::string Comparison::line() const {
    auto const [least, most] = std::ranges::minmax_element(ratios);
    auto const* const relation = bound.kind == Bound::Kind::AtLeast ? ">=" : "<=";
    return figures.text() +
           formatted(", ratio %.3f (%.3f..%.3f), bound %s %.2f: %s", ratio(), *least, *most, relation,
                     bound.ratio, isWithinBound() ? "within" : "BEYOND") +
           remarks;
}

} // namespace fcp::bench
