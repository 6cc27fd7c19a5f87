#include "Workbench/ContainerApp/ExportPanel.h"

#include "Workbench/ContainerApp/ExportFormat.h"
#include "Workbench/ContainerApp/Widgets.h"

#include <utility>

namespace workbench {

namespace {

constexpr int rowSpacing = 8;
constexpr int largestListHeight = 96;

} // namespace

ExportPanel::ExportPanel(WindowActions theActions)
    : Gtk::Box{Gtk::Orientation::VERTICAL, rowSpacing}
    , actions{std::move(theActions)} {
    add_css_class("exports");
    buildStart();
    buildFolder();
    buildProgress();
    buildList();
}

void ExportPanel::showFolder(std::string const& path) {
    folder.set_text(path);
    folder.set_tooltip_text(path);
}

void ExportPanel::showExports(std::vector<WindowContent::ExportRow> const& rows) {
    scroller.set_visible(!rows.empty());
    if (rows == shownExports)
        return;
    shownExports = rows;
    while (auto* row = list.get_row_at_index(0))
        list.remove(*row);
    for (auto const& row : rows) {
        auto& label = leftAligned(*Gtk::make_managed<Gtk::Label>(row.time + "   " + row.text));
        label.set_ellipsize(Pango::EllipsizeMode::MIDDLE);
        label.set_tooltip_text(row.text);
        setClass(label, "failed", row.state == ExportState::Failed);
        list.append(label);
    }
}

void ExportPanel::showProgress(std::optional<double> progress) {
    progressRow.set_visible(progress.has_value());
    exportButton.set_sensitive(!progress);
    bar.set_fraction(progress.value_or(0));
}

void ExportPanel::start() {
    auto const chosen = format.get_selected();
    if (exportButton.get_sensitive() && chosen < exportFormats().size())
        actions.startExport(std::string{exportFormats()[chosen].name});
}

void ExportPanel::buildStart() {
    auto titles = std::vector<Glib::ustring>{};
    for (auto const& each : exportFormats())
        titles.emplace_back(std::string{each.title});
    setChoices(format, titles);
    setAccessibleName(format, "Format of the export");
    format.set_hexpand(true);
    exportButton.add_css_class("suggested");
    exportButton.set_tooltip_text("Export the comments of this sequence (Ctrl+E)");
    exportButton.signal_clicked().connect([this] { start(); });
    startRow.set_spacing(rowSpacing);
    startRow.append(format);
    startRow.append(exportButton);
    append(startRow);
}

void ExportPanel::buildFolder() {
    folderTitle.add_css_class("quiet");
    leftAligned(folder).set_ellipsize(Pango::EllipsizeMode::START);
    folder.set_hexpand(true);
    change.set_tooltip_text("Choose another folder for exports");
    change.signal_clicked().connect([this] { actions.changeFolder(); });
    folderRow.set_spacing(rowSpacing);
    folderRow.append(folderTitle);
    folderRow.append(folder);
    folderRow.append(change);
    append(folderRow);
}

void ExportPanel::buildProgress() {
    setAccessibleName(bar, "Progress of the export");
    bar.set_hexpand(true);
    bar.set_valign(Gtk::Align::CENTER);
    cancel.set_tooltip_text("Stop the export and remove what it has written");
    cancel.signal_clicked().connect([this] { actions.cancelExport(); });
    progressRow.set_spacing(rowSpacing);
    progressRow.append(bar);
    progressRow.append(cancel);
    progressRow.hide();
    append(progressRow);
}

void ExportPanel::buildList() {
    setAccessibleName(list, "Exports");
    list.set_selection_mode(Gtk::SelectionMode::NONE);
    scroller.set_child(list);
    scroller.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller.set_propagate_natural_height(true);
    scroller.set_max_content_height(largestListHeight);
    scroller.hide();
    append(scroller);
}

} // namespace workbench
