#pragma once

#include <string>
#include <vector>

namespace fcp::bench {

[[nodiscard]] double median(std::vector<double> values);

// A figure that is printed beside a measure, and bound to nothing.
class Beside {
public:
    Beside(std::string measure, std::string unitOfFigures, int decimalsOfFigures,
           std::string nameOfFloor = "floor");

    void add(double ours, double floor);

    // The medians of both.
    [[nodiscard]] std::string text() const;

private:
    std::string what;
    std::string unit;
    int decimals;
    std::string floorName;
    std::vector<double> ours;
    std::vector<double> floor;
};

// What the ratio of ours to the floor must keep to.
struct Bound {
    enum class Kind { AtLeast, AtMost };

    Kind kind;
    double ratio;

    [[nodiscard]] bool holds(double measured) const {
        return kind == Kind::AtLeast ? measured >= ratio : measured <= ratio;
    }
};

// One measure, taken once a round on both sides.
class Comparison {
public:
    // `unit` follows the figures, which are printed with `decimals`.
    Comparison(std::string const& what, std::string unit, int decimals, Bound limit);

    void add(double ours, double floor);

    // Printed behind the verdict, in the order of the calls.
    void addRemark(std::string const& text);

    // The ratio is that of one round, so that both sides of it saw the same machine.
    [[nodiscard]] double ratio() const { return median(ratios); }

    [[nodiscard]] bool isWithinBound() const { return bound.holds(ratio()); }

    // One line of a fixed form.
    [[nodiscard]] std::string line() const;

private:
    Beside figures;
    Bound bound;
    std::vector<double> ratios;
    std::string remarks;
};

} // namespace fcp::bench
