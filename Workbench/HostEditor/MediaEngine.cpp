#include "Workbench/HostEditor/MediaEngine.h"

#include <mlt++/Mlt.h>

#include <clocale>
#include <cstdlib>

namespace workbench {

MediaEngine::MediaEngine() {
    // These modules would bring a second toolkit and a second audio library into the process.
    setenv("MLT_REPOSITORY_DENY",
           "libmltqt:libmltglaxnimate:libmltsdl:libmltopencv:libmltdecklink:libmltjackrack:libmltrtaudio:"
           "libmltmovit:"
           "libmltxine",
           0);
    // The engine reads and writes numbers by the locale; its files are always written in the plain one.
    std::setlocale(LC_NUMERIC, "C");
    // The decoders write to standard error by themselves, several lines for one broken file; what the user
    // has to know is said by the file reader in one. The level is taken over by the decoders when they are
    // loaded.
    mlt_log_set_level(MLT_LOG_FATAL);
    Mlt::Factory::init();
}

MediaEngine::~MediaEngine() {
    Mlt::Factory::close();
}

} // namespace workbench
