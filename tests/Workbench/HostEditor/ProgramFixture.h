#pragma once

#include "Workbench/HostEditor/Clips.h"
#include "Workbench/HostEditor/RunningProgram.h"
#include "Workbench/HostEditor/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <csignal>
#include <filesystem>
#include <memory>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace workbench {

inline constexpr auto Marker = "/tmp/zelvix-fcp-dev";

inline bool isThere(std::filesystem::path const& file) {
    std::error_code error;
    return std::filesystem::exists(file, error);
}

// Another program that listens on the page's port.
class Stranger {
public:
    Stranger()
        : listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        int const yes = 1;
        setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(3000);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        isListening = bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                      listen(listener, 5) == 0;
    }

    ~Stranger() { close(listener); }

    Stranger(Stranger const&) = delete;
    Stranger& operator=(Stranger const&) = delete;

    bool isListening = false;

private:
    int listener;
};

// The workbench itself, from outside, with two films to open.
class Program : public testing::Test {
protected:
    static void SetUpTestSuite() {
        media = std::make_unique<TemporaryFolder>();
        makeClip(media->path / "film.mp4", {30000, 1001}, 90);
        makeClip(media->path / "second.mp4", {25, 1}, 50);
    }

    static void TearDownTestSuite() { media.reset(); }

    void SetUp() override { ASSERT_FALSE(isThere(Marker)) << "somebody else uses " << Marker; }

    void TearDown() override {
        EXPECT_FALSE(isThere(Marker));
        std::filesystem::remove(Marker);
    }

    static std::vector<std::string> command(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), WORKBENCH_PROGRAM);
        return arguments;
    }

    // The usual case: the panel for tests, no container, no page.
    static std::vector<std::string> quiet(std::vector<std::string> const& more) {
        auto all = command({"--panel", FAKE_PANEL, "--no-page", "--no-container"});
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    static std::string film() { return (media->path / "film.mp4").string(); }

    static void endCleanly(RunningProgram& program, int signal = SIGTERM) {
        program.signal(signal);
        EXPECT_EQ(program.waitForEnd(), 0) << program.output();
    }

    static inline std::unique_ptr<TemporaryFolder> media;
};

} // namespace workbench
