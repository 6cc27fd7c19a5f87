#pragma once

#include "Workbench/ContainerApp/Settings.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

// Lets the person choose the folder for exports, and remembers it. Main thread only.
class FolderChooser {
public:
    using Chosen = std::function<void(std::optional<std::string> const& folder)>;

    // Shows a dialog that begins in `folder` and calls back once, later.
    using Dialog = std::function<void(std::string const& folder, Chosen chosen)>;

    // Told, in a sentence, when the choice could not be kept.
    using Problem = std::function<void(std::string const& sentence)>;

    FolderChooser(Settings& settings, Problem problem);

    FolderChooser(FolderChooser const&) = delete;
    FolderChooser& operator=(FolderChooser const&) = delete;

    // Without a dialog nobody can be asked.
    void setDialog(Dialog theDialog) { dialog = std::move(theDialog); }

    // None when the person chose none. Who asks while the dialog is open gets the same answer. The choice is
    // kept also when nobody waits for it any more. Throws DatabaseError.
    void choose(Chosen answer);

private:
    void answerAll(std::optional<std::string> const& folder);

    Settings& settings;
    Problem problem;
    Dialog dialog;
    std::vector<Chosen> waiting;
};

} // namespace workbench
