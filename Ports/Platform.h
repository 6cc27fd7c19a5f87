#pragma once

namespace fcp {

class FileManager;
class HostRuntime;
class LogSystem;
class MainLoop;
class MediaTime;
class NotificationCenter;
class UrlParser;
class UserInterface;
class UuidGenerator;
class WebEngine;
class Workspace;

// Everything that the panel asks of a platform. The wiring that fills it outlives the panel and whatever
// the panel left in the main loop.
struct Platform {
    FileManager& fileManager;
    HostRuntime& hostRuntime;
    LogSystem& logs;
    MainLoop& mainLoop;
    MediaTime& mediaTime;
    NotificationCenter& notificationCenter;
    UrlParser& urlParser;
    UserInterface& userInterface;
    UuidGenerator& uuids;
    WebEngine& webEngine;
    Workspace& workspace;
};

} // namespace fcp
