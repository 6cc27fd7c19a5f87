#include "benches/Sides/BenchPanel.h"

#include "FcpExtension/ViewController.h"
#include "Platform/Gtk/Conversions.h"
#include "Platform/Gtk/GtkWebView.h"
#include "Ports/FileManager.h"
#include "Ports/Platform.h"
#include "benches/Sides/SideOptions.h"

#include <utility>

namespace fcp::bench {

class BenchPanel::DevelopmentMode final : public FileManager {
public:
    [[nodiscard]] bool fileExists(std::string const& path) const override {
        return path == "/tmp/zelvix-fcp-dev";
    }
};

class BenchPanel::MeasuredPage final : public UrlParser {
public:
    explicit MeasuredPage(std::string pageURL)
        : url(std::move(pageURL)) {}

    [[nodiscard]] std::optional<Url> parse(std::string const&) const override { return parseUrl(url); }

private:
    std::string const url;
};

// Says when the page has finished, if it is to, as the bare engine does.
class BenchPanel::Engine final : public WebEngine {
public:
    Engine(MainLoop& loop, LogSystem& logs, bool tell)
        : engine(loop, logs)
        , saysFinished(tell) {}

    [[nodiscard]] std::shared_ptr<UserContentController> makeUserContentController() override {
        return engine.makeUserContentController();
    }

    [[nodiscard]] std::shared_ptr<WebView> makeWebView() override { return engine.makeWebView(); }

    [[nodiscard]] std::shared_ptr<WebView> makeWebView(Rect const& frame,
                                                       WebViewConfiguration const& configuration) override {
        auto view = engine.makeWebView(frame, configuration);
        if (!saysFinished)
            return view;
        auto const& made = static_cast<GtkWebView const&>(*view);
        g_signal_connect(made.engineView(), "load-changed", G_CALLBACK(loadChanged), nullptr);
        return view;
    }

private:
    static void loadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer) {
        if (event == WEBKIT_LOAD_FINISHED)
            sayFinished();
    }

    GtkWebEngine engine;
    bool const saysFinished;
};

BenchPanel::BenchPanel(GtkWidget* root, SideOptions const& options)
    : files(std::make_unique<DevelopmentMode>())
    , addresses(std::make_unique<MeasuredPage>(options.url))
    , engine(std::make_unique<Engine>(loop, logs, options.saysFinished))
    , styles(gdk_display_get_default())
    , userInterface(root, styles)
    , controller(ViewController::create({*files, hostRuntime, logs, loop, mediaTime, notificationCenter,
                                         *addresses, userInterface, uuids, *engine, workspace})) {
    controller->loadView();
    controller->viewDidLoad();
}

BenchPanel::~BenchPanel() = default;

} // namespace fcp::bench
