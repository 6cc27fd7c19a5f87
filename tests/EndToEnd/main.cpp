#include <gtest/gtest.h>
#include <gtkmm.h>

// GTK first: the tests make widgets. What the toolkit warns of ends the program.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    auto const application =
        Gtk::Application::create("com.zelvix.fcp.tests", Gio::Application::Flags::NON_UNIQUE);
    g_log_set_always_fatal(
        static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_ERROR | G_LOG_LEVEL_WARNING));
    return RUN_ALL_TESTS();
}
