#include "Contract/MainLoopContract.h"

#include "Doubles/FakeMainLoop.h"
#include "Platform/Gtk/GLibMainLoop.h"

namespace fcp::test {

namespace {

// Moves virtual time on in small steps.
class FakeHarness {
public:
    FakeMainLoop loop;

    [[nodiscard]] Seconds now() const { return passed; }

    bool waitFor(Condition const& condition) {
        for (auto const end = passed + Seconds(20); !condition() && passed < end; passed += step)
            loop.advance(step);
        return condition();
    }

private:
    static constexpr Seconds step{0.001};
    Seconds passed{0};
};

// Turns a context of its own in real time.
class GLibHarness {
    GRef<GMainContext> const context = GRef<GMainContext>::adopt(g_main_context_new());

public:
    GLibMainLoop loop{context.get()};

    [[nodiscard]] static Seconds now() { return std::chrono::steady_clock::now().time_since_epoch(); }

    bool waitFor(Condition const& condition) {
        for (auto const end = now() + Seconds(20); !condition() && now() < end;) {
            loop.after(end - now(), [] {}); // ends the wait below
            g_main_context_iteration(context.get(), TRUE);
        }
        return condition();
    }
};

using Loops = testing::Types<FakeHarness, GLibHarness>;

INSTANTIATE_TYPED_TEST_SUITE_P(Gtk, MainLoopContract, Loops);

} // namespace

} // namespace fcp::test
