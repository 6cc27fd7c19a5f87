#pragma once

#include "Workbench/HostEditor/ConnectionLight.h"
#include "Workbench/HostEditor/NoticeList.h"
#include "Workbench/HostEditor/OpenControl.h"
#include "Workbench/HostEditor/PanelPane.h"
#include "Workbench/HostEditor/PictureView.h"
#include "Workbench/HostEditor/RecentFiles.h"
#include "Workbench/HostEditor/SequenceChoice.h"
#include "Workbench/HostEditor/TimelineView.h"
#include "Workbench/HostEditor/TransportBar.h"
#include "Workbench/HostEditor/WindowState.h"

#include <gtkmm/headerbar.h>
#include <gtkmm/overlay.h>
#include <gtkmm/paned.h>
#include <gtkmm/window.h>

#include <vector>

namespace workbench {

class Editor;

// The window: picture, transport and timeline at the left, the panel at the right. It shows the editor's
// state and passes on what the user asks for.
class EditorWindow final : public Gtk::Window {
public:
    EditorWindow(Editor& shownEditor, WindowState const& earlier); // the editor outlives the window
    EditorWindow(EditorWindow const&) = delete;
    EditorWindow& operator=(EditorWindow const&) = delete;

    void addNotice(std::string const& line) { notices.add(line); }

    void showPins(std::vector<Pin> pins, bool areLive);

    void showConnections(Connections const& connections) { light.show(connections); }

    [[nodiscard]] int paintedPictures() const { return picture.painted(); }

    // As it is to be found again.
    [[nodiscard]] WindowState state() const;

    [[nodiscard]] PanelPane& panel() { return panelPane; }

private:
    void arrange(WindowState const& earlier);
    void followEditor();
    void listenToControls();
    void listenToKeys();
    bool pressKey(guint key, Gdk::ModifierType modifiers);
    bool pressShuttleKey(guint key);
    bool pressScaleKey(guint key);
    bool typeTimecode(guint key);
    [[nodiscard]] bool keysAreOurs();
    [[nodiscard]] std::int64_t framesInSecond() const;
    void placeLight();
    void listenToDrops();
    void showFiles();
    void showActive();
    void showTarget();

    Editor& editor;
    bool isHolding = false; // the key K: J and L then step
    RecentFiles recent;
    std::size_t seenFiles = 0; // of those that the editor has told
    std::size_t seenProblems = 0;
    Gtk::HeaderBar head;
    OpenControl opening;
    SequenceChoice sequences;
    Gtk::Overlay body;
    ConnectionLight light;
    Gtk::Paned split{Gtk::Orientation::HORIZONTAL};
    Gtk::Box stage{Gtk::Orientation::VERTICAL};
    NoticeList notices;
    PictureView picture;
    TransportBar transport;
    TimelineView timeline;
    PanelPane panelPane;
};

} // namespace workbench
