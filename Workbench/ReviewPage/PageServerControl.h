#pragma once

#include <memory>

namespace workbench {

class PageServer;

// Lets somebody outside stop the page server and start it again while the workbench runs, as when a page
// developer wants the port, or to see the panel lose its server:
//
//     busctl --user set-property
//         com.zelvix.fcp.ReviewPage /com/zelvix/fcp/ReviewPage com.zelvix.fcp.ReviewPage1 Served b false
//
// The property can be read, too. Setting it answers after the change; an error carries the server's own line.
// In main, next to the server and destroyed before it:
//
//     PageServer page;
//     PageServerControl control{page};
//
// Without a session bus it does nothing. Main thread only.
class PageServerControl final {
public:
    explicit PageServerControl(PageServer& server);
    ~PageServerControl();
    PageServerControl(PageServerControl const&) = delete;
    PageServerControl& operator=(PageServerControl const&) = delete;

private:
    class Service;

    std::unique_ptr<Service> service; // empty without a bus
};

} // namespace workbench
