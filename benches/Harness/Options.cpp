#include "benches/Harness/Options.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace fcp::bench {

namespace {

constexpr int quickRounds = 2;

[[noreturn]] void showHelp(char const* program, std::string const& purpose, int defaultRounds) {
    std::printf(
        "%s: %s\n\n"
        "  --rounds N  rounds that count (%d); one more comes first and is thrown away\n"
        "  --quick     a few small rounds: shows that it works, not how fast\n"
        "  --check     exit status 1 when a bound is missed\n"
        "  --help      this text\n\n"
        "Each line names a measure, ours, the floor, the median of their ratio over the rounds with its\n"
        "spread, the bound, and whether the median is within it. Needs a session bus and a display.\n",
        program, purpose.c_str(), defaultRounds);
    std::exit(0);
}

[[noreturn]] void refuse(char const* program, char const* problem) {
    std::fprintf(stderr, "%s: %s; see --help\n", program, problem);
    std::exit(2);
}

int readRounds(char const* program, char const* text) {
    if (!text)
        refuse(program, "--rounds wants a number");
    int rounds = 0;
    auto const* const end = text + std::strlen(text);
    auto const [stop, error] = std::from_chars(text, end, rounds);
    if (error != std::errc() || stop != end || rounds < 1)
        refuse(program, "--rounds wants a number from 1 on");
    return rounds;
}

} // namespace

Options readOptions(int argc, char** argv, std::string const& purpose, int defaultRounds) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        std::string_view const argument = argv[i];
        if (argument == "--help" || argument == "-h")
            showHelp(argv[0], purpose, defaultRounds);
        else if (argument == "--quick")
            options.quick = true;
        else if (argument == "--check")
            options.check = true;
        else if (argument == "--rounds")
            options.rounds = readRounds(argv[0], argv[++i]);
        else
            refuse(argv[0], ("unknown option " + std::string(argument)).c_str());
    }
    if (options.rounds == 0)
        options.rounds = options.quick ? quickRounds : defaultRounds;
    return options;
}

} // namespace fcp::bench
