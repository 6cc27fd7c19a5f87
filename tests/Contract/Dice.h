#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>

namespace fcp::test {

// The same numbers in every run.
class Dice {
public:
    [[nodiscard]] int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(engine); }

    [[nodiscard]] std::uint64_t bits() { return engine(); }

    template <typename Container>
    [[nodiscard]] auto const& oneOf(Container const& container) {
        return container[static_cast<std::size_t>(below(static_cast<int>(std::size(container))))];
    }

private:
    std::mt19937_64 engine{20'240'607};
};

} // namespace fcp::test
