#pragma once

#include "Doubles/FakeContainerBridge.h"
#include "Doubles/FakePlatform.h"
#include "FcpExtension/MessageHandler.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace fcp::test {

using Lines = std::vector<std::string>;

// A handler over doubles: a page to talk to, a host with a sequence, and a container bridge once it is
// attached.
class HandlerFixture : public testing::Test {
protected:
    void attachBridge() { handler->setContainerBridge(bridge); }

    // Posts a message as the page does.
    void post(Json body) {
        FakeUserContentController controller(journal);
        handler->userContentController(controller, {"fcpBridge", std::move(body)});
    }

    // Posts a request and returns what the page got at once, parsed; none without an answer.
    [[nodiscard]] std::optional<Json> ask(Json body) {
        auto const resolveId = "page-" + std::to_string(++asked);
        body["resolveId"] = resolveId;
        post(std::move(body));
        return page->answerTo(resolveId);
    }

    [[nodiscard]] std::optional<Json> lastAnswer() const {
        return page->answerTo("page-" + std::to_string(asked));
    }

    FakePlatform platform;
    Journal& journal = platform.journal;
    std::shared_ptr<FakeWebView> page = std::make_shared<FakeWebView>(journal, "page");
    std::shared_ptr<FakeContainerBridge> bridge = std::make_shared<FakeContainerBridge>(journal);
    std::shared_ptr<MessageHandler> handler = MessageHandler::create(page, platform.ports);

private:
    int asked = 0;
};

} // namespace fcp::test
