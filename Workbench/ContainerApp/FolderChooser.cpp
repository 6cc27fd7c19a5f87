#include "Workbench/ContainerApp/FolderChooser.h"

#include <utility>

namespace workbench {

FolderChooser::FolderChooser(Settings& theSettings, Problem theProblem)
    : settings{theSettings}
    , problem{std::move(theProblem)} {}

void FolderChooser::choose(Chosen answer) {
    if (!dialog) {
        answer({});
        return;
    }
    auto const isOpen = !waiting.empty();
    waiting.push_back(std::move(answer));
    if (!isOpen)
        dialog(outputFolder(settings),
               [this](std::optional<std::string> const& folder) { answerAll(folder); });
}

void FolderChooser::answerAll(std::optional<std::string> const& folder) {
    auto const answers = std::exchange(waiting, {});
    try {
        if (folder)
            settings.set(outputFolderSetting, *folder);
    } catch (DatabaseError const& error) {
        problem(std::string{"the folder cannot be remembered: "} + error.what());
    }
    for (auto const& answer : answers)
        answer(folder);
}

} // namespace workbench
