#pragma once

#include "Doubles/Journal.h"
#include "FcpExtension/ContainerAppBridge.h"

#include <functional>
#include <list>
#include <string>
#include <vector>

namespace fcp::test {

// Keeps every call with its completion; a test resumes them when it likes, or gives `onWait` to act inside
// the call.
class FakeContainerBridge final : public ContainerBridge {
public:
    struct Call {
        std::string operation;
        Json argument;
    };

    explicit FakeContainerBridge(Journal& sharedJournal)
        : journal(sharedJournal) {}

    void openURL(std::string const& url) override { note("openURL", url); }

    void syncComment(Json comment, Completion<bool> done) override {
        wait("syncComment", comment, flags, std::move(done));
    }

    void deleteComment(std::string const& commentId, Completion<bool> done) override {
        wait("deleteComment", commentId, flags, std::move(done));
    }

    void syncAllComments(Json comments, Completion<bool> done) override {
        wait("syncAllComments", comments, flags, std::move(done));
    }

    void clearAllMarkers(Completion<bool> done) override {
        wait("clearAllMarkers", nullptr, flags, std::move(done));
    }

    void startExport(Json config, Completion<bool> done) override {
        wait("startExport", config, flags, std::move(done));
    }

    void cancelExport(Completion<bool> done) override {
        wait("cancelExport", nullptr, flags, std::move(done));
    }

    void selectOutputFolder(Completion<std::optional<std::string>> done) override {
        wait("selectOutputFolder", nullptr, folders, std::move(done));
    }

    void getMarkerAtTime(double seconds, double threshold, Completion<std::optional<Json>> done) override {
        wait("getMarkerAtTime", {seconds, threshold}, markers, std::move(done));
    }

    std::vector<Call> calls;
    std::list<Completion<bool>> flags;
    std::list<Completion<std::optional<std::string>>> folders;
    std::list<Completion<std::optional<Json>>> markers;
    std::function<void()> onWait; // runs inside a waiting operation, once its completion is kept

private:
    void note(std::string const& operation, Json argument) {
        journal.note("bridge " + operation);
        calls.push_back({operation, std::move(argument)});
    }

    template <typename T>
    void wait(std::string const& operation, Json argument, std::list<Completion<T>>& kept,
              Completion<T> done) {
        note(operation, std::move(argument));
        kept.push_back(std::move(done));
        if (onWait)
            onWait();
    }

    Journal& journal;
};

} // namespace fcp::test
