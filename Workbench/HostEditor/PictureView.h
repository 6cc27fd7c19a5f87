#pragma once

#include "Workbench/HostEditor/Picture.h"

#include <gdkmm/texture.h>
#include <gtkmm/widget.h>
#include <sigc++/sigc++.h>

#include <string>

namespace workbench {

// Shows the picture as large as it fits, in the shape that the sequence has; without one, a few words.
class PictureView final : public Gtk::Widget {
public:
    PictureView();

    void show(Picture const& picture);

    // Pictures that have been drawn, each once.
    [[nodiscard]] int painted() const { return paintedSoFar; }

    // Instead of a picture. Empty: nothing, until one comes.
    void say(std::string const& newHeading, std::string const& newDetail);

    void setShape(double displayAspect);

    // How many pixels of the screen there are for a picture, whenever that changes.
    sigc::signal<void(PixelSize)>& signalArea() { return areaChanged; }

protected:
    void snapshot_vfunc(Glib::RefPtr<Gtk::Snapshot> const& snapshot) override;
    void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural,
                       int& minimumBaseline, int& naturalBaseline) const override;
    void size_allocate_vfunc(int width, int height, int baseline) override;

private:
    void drawWords(Glib::RefPtr<Gtk::Snapshot> const& snapshot);

    Glib::RefPtr<Gdk::Texture> texture;
    double pictureAspect = 1;
    double shape = 16.0 / 9.0;
    bool isNew = false; // the picture has not been drawn yet
    int paintedSoFar = 0;
    std::string heading;
    std::string detail;
    sigc::signal<void(PixelSize)> areaChanged;
};

} // namespace workbench
