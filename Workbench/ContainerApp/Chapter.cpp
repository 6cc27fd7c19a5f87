#include "Workbench/ContainerApp/Chapter.h"

#include <algorithm>
#include <utility>

namespace workbench {

std::vector<Chapter> chaptersOf(Timeline timeline) {
    auto chapters = std::vector<Chapter>{};
    for (auto& marker : oneOnEachFrame(std::move(timeline.markers))) {
        if (!chapters.empty())
            chapters.back().end = std::min(chapters.back().end, marker.frame);
        auto const end = marker.frames > 0 ? marker.frame + marker.frames : timeline.length;
        chapters.push_back({.begin = marker.frame, .end = end, .remarks = std::move(marker.remarks)});
    }
    return chapters;
}

} // namespace workbench
