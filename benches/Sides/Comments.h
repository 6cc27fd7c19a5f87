#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace fcp::bench {

// As many as make 1 MB of JSON text; the measured page makes the same ones.
inline constexpr int commentsOfOneMegabyte = 4180;

struct Comment {
    std::string id;
    std::string author;
    std::string text;
    double seconds;
    int resolved; // as the bus wants its booleans
};

[[nodiscard]] inline Comment makeComment(int number) {
    std::string const sentence = "The grade drifts here, compare with the take before. ";
    return {"comment-" + std::to_string(number), "A. Reviewer", sentence + sentence + sentence, number * 1.5,
            0};
}

[[nodiscard]] inline std::vector<Comment> makeComments(int count) {
    std::vector<Comment> comments;
    comments.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        comments.push_back(makeComment(i));
    return comments;
}

} // namespace fcp::bench
