#include "Workbench/HostEditor/Sequence.h"

#include <mlt++/Mlt.h>

#include <utility>

namespace workbench {

Sequence::Sequence(std::unique_ptr<Mlt::Profile> profile, std::unique_ptr<Mlt::Producer> producer,
                   SequenceFacts facts)
    : shape(std::move(profile))
    , source(std::move(producer))
    , known(std::move(facts)) {
    known.rate = {shape->frame_rate_num(), shape->frame_rate_den()};
    known.length = source->get_playtime();
    known.displayAspect = shape->dar();
    source->set("eof", "pause");
    source->set_speed(0);
}

Sequence::~Sequence() = default;

} // namespace workbench
